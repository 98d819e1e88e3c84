// A kernel as its caller sees it: bound at its first call, by processor class and vector width, one indirect call from
// then on.
#pragma once
#include "service/cpu_class.hpp"
#include "service/kernels_of.hpp"
#include <atomic>
#include <type_traits>
#include <utility>

namespace nxl {

/// The table that slots of this process bind from. Each table of kernels specialises it.
template <class Table> const Table& bound_table();
template <> inline const KernelTable& bound_table() { return kernels_of(nxl_cpu_class()); }

template <auto Member> class KernelSlot;

template <class Table, class Fn, Fn Table::* Member> class KernelSlot<Member> {
    std::atomic<Fn> bound_{nullptr}; // threads that race store the same pointer

    [[gnu::cold, gnu::noinline]] Fn bind() {
        const Fn kernel = bound_table<Table>().*Member;
        bound_.store(kernel, std::memory_order_relaxed);
        return kernel;
    }

  public:
    template <class... Args> decltype(auto) operator()(Args&&... args) {
        Fn kernel = bound_.load(std::memory_order_relaxed);
        if (!kernel) [[unlikely]]
            kernel = bind();
        return kernel(std::forward<Args>(args)...);
    }
};

/// The slot of a kernel, a member of a table: `slot<&KernelTable::ddot>(n, x, incx, y, incy)`. No start-up code runs.
template <auto Member> inline constinit KernelSlot<Member> slot;

/// Of two members of a table, the one for scalars of type T.
template <class T, auto Real, auto Complex> constexpr auto& slot_of() {
    if constexpr (std::is_same_v<T, double>) return slot<Real>;
    else return slot<Complex>;
}

} // namespace nxl
