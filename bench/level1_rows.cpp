// Vector operations.
#include "bench/rows.hpp"
#include "nxl.h"

namespace nxl::bench {
namespace {

constexpr double step[2] = {0.25, -0.25};
constexpr double stretch[2] = {1.0000001, 1.0 / 1.0000001};
constexpr zcomplex zstep[2] = {{0.25, 0.125}, {-0.25, -0.125}};
constexpr zcomplex turn[2] = {{0.8, 0.6}, {0.8, -0.6}};
constexpr double cosine = 0.8;
constexpr double sine[2] = {0.6, -0.6};

/// Work in proportion to the length: per element, so many operations, and elements loaded and stored.
template <class T, int Flops, int Loads, int Stores> Work vector_work(const Case& which) {
    const int n = which.size.n;
    const Extent vector{n, 1};
    const Layout layout{.x = vector, .y = vector, .doubles_per_element = doubles_per_element<T>};
    return {Flops * double(n), sizeof(T) * Loads * double(n), sizeof(T) * Stores * double(n), n, layout};
}
template <int Flops, int Loads, int Stores> Work real_work(const Case& which) {
    return vector_work<double, Flops, Loads, Stores>(which);
}
template <int Flops, int Loads, int Stores> Work complex_work(const Case& which) {
    return vector_work<zcomplex, Flops, Loads, Stores>(which);
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
                    for (i64 call = 0; call < calls; ++call)
                        o.result = f(&o.size.n, o.x<zcomplex>(), &one, o.y<zcomplex>(), &one);
                } else {
                    auto* f = reinterpret_cast<Function*>(symbol.address);
                    for (i64 call = 0; call < calls; ++call)
                        f(&o.result, &o.size.n, o.x<zcomplex>(), &one, o.y<zcomplex>(), &one);
                }
            }};
}

} // namespace

// clang-format off
const std::vector<Routine>& level1_routines() {
    static const std::vector<Routine> rows = {
        row<decltype(ddot)>("ddot", real_work<2, 2, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.size.n, o.x(), &one, o.y(), &one); }),
        row<decltype(daxpy)>("daxpy", real_work<2, 2, 1>,
            [](auto* f, Operands& o) { f(&o.size.n, &next(o, step), o.x(), &one, o.y(), &one); }),
        row<decltype(dscal)>("dscal", real_work<1, 1, 1>,
            [](auto* f, Operands& o) { f(&o.size.n, &next(o, stretch), o.x(), &one); }),
        row<decltype(dcopy)>("dcopy", real_work<0, 1, 1>,
            [](auto* f, Operands& o) { f(&o.size.n, o.x(), &one, o.y(), &one); }),
        row<decltype(dswap)>("dswap", real_work<0, 2, 2>,
            [](auto* f, Operands& o) { f(&o.size.n, o.x(), &one, o.y(), &one); }),
        row<decltype(dasum)>("dasum", real_work<1, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.size.n, o.x(), &one); }),
        row<decltype(idamax)>("idamax", real_work<0, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.size.n, o.x(), &one); }),
        row<decltype(drot)>("drot", real_work<6, 2, 2>,
            [](auto* f, Operands& o) { f(&o.size.n, o.x(), &one, o.y(), &one, &cosine, &next(o, sine)); }),
        row<decltype(dnrm2)>("dnrm2", real_work<2, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.size.n, o.x(), &one); }),

        complex_dot<decltype(zdotc)>("zdotc"),
        complex_dot<decltype(zdotu)>("zdotu"),
        row<decltype(zaxpy)>("zaxpy", complex_work<8, 2, 1>,
            [](auto* f, Operands& o) { f(&o.size.n, &next(o, zstep), o.x<zcomplex>(), &one, o.y<zcomplex>(), &one); }),
        row<decltype(zscal)>("zscal", complex_work<6, 1, 1>,
            [](auto* f, Operands& o) { f(&o.size.n, &next(o, turn), o.x<zcomplex>(), &one); }),
        row<decltype(zdscal)>("zdscal", complex_work<2, 1, 1>,
            [](auto* f, Operands& o) { f(&o.size.n, &next(o, stretch), o.x<zcomplex>(), &one); }),
        row<decltype(zcopy)>("zcopy", complex_work<0, 1, 1>,
            [](auto* f, Operands& o) { f(&o.size.n, o.x<zcomplex>(), &one, o.y<zcomplex>(), &one); }),
        row<decltype(zswap)>("zswap", complex_work<0, 2, 2>,
            [](auto* f, Operands& o) { f(&o.size.n, o.x<zcomplex>(), &one, o.y<zcomplex>(), &one); }),
        row<decltype(dzasum)>("dzasum", complex_work<2, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.size.n, o.x<zcomplex>(), &one); }),
        row<decltype(izamax)>("izamax", complex_work<0, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.size.n, o.x<zcomplex>(), &one); }),
        row<decltype(zdrot)>("zdrot", complex_work<12, 2, 2>,
            [](auto* f, Operands& o) { f(&o.size.n, o.x<zcomplex>(), &one, o.y<zcomplex>(), &one, &cosine, &next(o, sine)); }),
        row<decltype(dznrm2)>("dznrm2", complex_work<4, 1, 0>,
            [](auto* f, Operands& o) { o.result = f(&o.size.n, o.x<zcomplex>(), &one); }),
    };
    return rows;
}
// clang-format on

} // namespace nxl::bench
