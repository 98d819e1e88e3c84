// The table of routines. Scalars are such that values neither grow nor vanish over millions of calls, and never 0 or 1,
// which have short cuts: one call undoes what the call before it did.
#include "bench/routines.hpp"
#include "nxl.h"
#include <algorithm>
#include <stdexcept>

namespace nxl::bench {
namespace {

constexpr int one = 1;
constexpr double step[2] = {0.25, -0.25};
constexpr double stretch[2] = {1.0000001, 1.0 / 1.0000001};
constexpr zcomplex zstep[2] = {{0.25, 0.125}, {-0.25, -0.125}};
constexpr zcomplex turn[2] = {{0.8, 0.6}, {0.8, -0.6}};
constexpr double cosine = 0.8;
constexpr double sine[2] = {0.6, -0.6};

template <class Scalar> const Scalar& next(Operands& o, const Scalar (&pair)[2]) { return pair[o.turn++ & 1]; }

/// Work in proportion to the length: per element, so many operations, and doubles loaded and stored.
template <int Flops, int Loads, int Stores> Work real_work(int n) {
    return {Flops * double(n), 8 * Loads * double(n), 8 * Stores * double(n), n};
}

/// The same with loads and stores of complex numbers.
template <int Flops, int Loads, int Stores> Work complex_work(int n) {
    return {Flops * double(n), 16 * Loads * double(n), 16 * Stores * double(n), 2 * i64{n}};
}

/// A row whose body calls `f`, of the type that nxl.h declares.
template <class Function, class Body> Routine row(const char* name, Work (*work)(int), Body) {
    return {name, work, [](Symbol symbol, Operands& o, i64 calls) {
                auto* f = reinterpret_cast<Function*>(symbol.address);
                for (i64 call = 0; call < calls; ++call) Body{}(f, o);
            }};
}

/// A row for a complex function: nxl writes its result through the first argument, others return it.
template <class Function> struct ReturningComplex;
template <class... Args> struct ReturningComplex<void(zcomplex*, Args...) noexcept> {
    using type = zcomplex(Args...);
};

template <class Function> Routine complex_dot(const char* name) {
    return {name, complex_work<8, 2, 0>, [](Symbol symbol, Operands& o, i64 calls) {
                if (symbol.complex_result == ComplexResult::by_value) {
                    auto* f = reinterpret_cast<ReturningComplex<Function>::type*>(symbol.address);
                    for (i64 call = 0; call < calls; ++call) o.result = f(&o.n, o.zx(), &one, o.zy(), &one);
                } else {
                    auto* f = reinterpret_cast<Function*>(symbol.address);
                    for (i64 call = 0; call < calls; ++call) f(&o.result, &o.n, o.zx(), &one, o.zy(), &one);
                }
            }};
}

// clang-format off
const std::vector<Routine>& table() {
    static const std::vector<Routine> rows = {
        row<decltype(ddot)>("ddot", real_work<2, 2, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.n, o.x(), &one, o.y(), &one); }),
        row<decltype(daxpy)>("daxpy", real_work<2, 2, 1>,
            [](auto* f, Operands& o) { f(&o.n, &next(o, step), o.x(), &one, o.y(), &one); }),
        row<decltype(dscal)>("dscal", real_work<1, 1, 1>,
            [](auto* f, Operands& o) { f(&o.n, &next(o, stretch), o.x(), &one); }),
        row<decltype(dcopy)>("dcopy", real_work<0, 1, 1>,
            [](auto* f, Operands& o) { f(&o.n, o.x(), &one, o.y(), &one); }),
        row<decltype(dswap)>("dswap", real_work<0, 2, 2>,
            [](auto* f, Operands& o) { f(&o.n, o.x(), &one, o.y(), &one); }),
        row<decltype(dasum)>("dasum", real_work<1, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.n, o.x(), &one); }),
        row<decltype(idamax)>("idamax", real_work<0, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.n, o.x(), &one); }),
        row<decltype(drot)>("drot", real_work<6, 2, 2>,
            [](auto* f, Operands& o) { f(&o.n, o.x(), &one, o.y(), &one, &cosine, &next(o, sine)); }),
        row<decltype(dnrm2)>("dnrm2", real_work<2, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.n, o.x(), &one); }),

        complex_dot<decltype(zdotc)>("zdotc"),
        complex_dot<decltype(zdotu)>("zdotu"),
        row<decltype(zaxpy)>("zaxpy", complex_work<8, 2, 1>,
            [](auto* f, Operands& o) { f(&o.n, &next(o, zstep), o.zx(), &one, o.zy(), &one); }),
        row<decltype(zscal)>("zscal", complex_work<6, 1, 1>,
            [](auto* f, Operands& o) { f(&o.n, &next(o, turn), o.zx(), &one); }),
        row<decltype(zdscal)>("zdscal", complex_work<2, 1, 1>,
            [](auto* f, Operands& o) { f(&o.n, &next(o, stretch), o.zx(), &one); }),
        row<decltype(zcopy)>("zcopy", complex_work<0, 1, 1>,
            [](auto* f, Operands& o) { f(&o.n, o.zx(), &one, o.zy(), &one); }),
        row<decltype(zswap)>("zswap", complex_work<0, 2, 2>,
            [](auto* f, Operands& o) { f(&o.n, o.zx(), &one, o.zy(), &one); }),
        row<decltype(dzasum)>("dzasum", complex_work<2, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.n, o.zx(), &one); }),
        row<decltype(izamax)>("izamax", complex_work<0, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.n, o.zx(), &one); }),
        row<decltype(zdrot)>("zdrot", complex_work<12, 2, 2>,
            [](auto* f, Operands& o) { f(&o.n, o.zx(), &one, o.zy(), &one, &cosine, &next(o, sine)); }),
        row<decltype(dznrm2)>("dznrm2", complex_work<4, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.n, o.zx(), &one); }),
    };
    return rows;
}
// clang-format on

} // namespace

const Routine& routine(const std::string& name) {
    const auto found = std::ranges::find(table(), name, &Routine::name);
    if (found == table().end()) throw std::runtime_error("no routine is called " + name);
    return *found;
}

} // namespace nxl::bench
