// Vector and matrix primitives. All are rated by their traffic, copies and transposes against the bandwidth of a copy.
#include "bench/rows.hpp"
#include <cstdint>

namespace nxl::bench {
namespace {

using u32 = std::uint32_t;
using i32 = std::int32_t;
using Z = zcomplex;

constexpr double value = 0.3;
constexpr Z complex_value{0.6, 0.3};
constexpr int stride_of_packed = 3;
constexpr u32 lag = 3;

u32 length(const Operands& o) { return static_cast<u32>(o.size.n); }

/// A vector that is read, one that is written, and one more to read in a: doubles per element of each.
template <int X, int Y, int A = 0> Work vector_work(const Case& which) {
    const int n = which.size.n;
    const Layout layout{.x = {X * n, 1}, .y = {Y * n, 1}, .a = {A * n, 1}};
    return {0.0, sizeof(double) * (X + A) * double(n), sizeof(double) * Y * double(n), n, layout};
}
Work update_work(const Case& which) { // y is read too
    Work work = vector_work<1, 1>(which);
    work.loaded *= 2;
    return work;
}
Work product_work(const Case& which) {
    Work work = vector_work<0, 0, 1>(which);
    work.layout.shape = Shape::near_one;
    return work;
}
/// About every other element passes: masks are the halves of random doubles.
Work mask_work(const Case& which) {
    Work work = vector_work<1, 1>(which);
    work.layout.b = {which.size.n / 2 + 1, 1};
    work.loaded *= 1.5;
    work.stored *= 0.5;
    return work;
}
const i32* mask(const Operands& o) { return reinterpret_cast<const i32*>(o.b()); }
Work strided_work(const Case& which) {
    Work work = vector_work<stride_of_packed, 1>(which);
    work.loaded /= stride_of_packed;
    return work;
}
/// Indices from 1 to n.
Work indexed_work(const Case& which) {
    Work work = vector_work<1, 1>(which);
    work.layout.x.rows += 1;
    work.layout.y.rows += 1;
    work.layout.pivots = which.size.n;
    work.loaded *= 1.5;
    return work;
}

/// Square matrices a and b: so many hundredths of the elements of one are loaded, and as many stored.
template <class T, int Percent, bool Two = true> Work matrix_work(const Case& which) {
    const int n = which.size.n;
    const Extent square{n, n};
    const double elements = 0.01 * Percent * n * n;
    Work work = work_in_elements<T>(0.0, elements, elements, 1, {.a = square, .b = Two ? square : Extent{}});
    work.copies = true;
    return work;
}
Work zero_work(const Case& which) {
    Work work = matrix_work<double, 50, false>(which);
    work.loaded = 0.0;
    work.copies = false;
    return work;
}
/// Two rows, or two columns.
Work exchange_work(const Case& which) {
    Work work = matrix_work<double, 100, false>(which);
    work.copies = false;
    work.loaded = work.stored = 2.0 * sizeof(double) * which.size.n;
    return work;
}

template <class A, class B> Routine map(const char* name, Work (*work)(const Case&)) {
    return row<void(const A*, B*, u32)>(name, work, [](auto* f, Operands& o) { f(o.x<A>(), o.y<B>(), length(o)); });
}
template <class A, class B> Routine with_real(const char* name, Work (*work)(const Case&)) {
    return row<void(const A*, B*, double, u32)>(name, work,
                                                [](auto* f, Operands& o) { f(o.x<A>(), o.y<B>(), value, length(o)); });
}
template <class A, class B> Routine with_complex(const char* name, Work (*work)(const Case&)) {
    return row<void(const A*, B*, const Z*, u32)>(
        name, work, [](auto* f, Operands& o) { f(o.x<A>(), o.y<B>(), &complex_value, length(o)); });
}
template <class A, class B, class C> Routine of_two(const char* name, Work (*work)(const Case&)) {
    return row<void(const A*, const B*, C*, u32)>(
        name, work, [](auto* f, Operands& o) { f(o.x<A>(), o.a<B>(), o.y<C>(), length(o)); });
}
template <class T> Routine of_matrix(const char* name) {
    return row<void(const T*, T*, u32, u32, u32, u32)>(name, matrix_work<T, 100>, [](auto* f, Operands& o) {
        const u32 n = length(o);
        f(o.a<T>(), o.b<T>(), n, n, n, n);
    });
}
template <class T> Routine in_place(const char* name) {
    return row<void(T*, u32, u32)>(name, matrix_work<T, 100, false>,
                                   [](auto* f, Operands& o) { f(o.a<T>(), length(o), length(o)); });
}
Routine triangle(const char* name) {
    return row<void(const double*, double*, u32, u32, u32, u32, i32)>(name, matrix_work<double, 50>,
                                                                      [](auto* f, Operands& o) {
                                                                          const u32 n = length(o);
                                                                          f(o.a(), o.b(), n, n, n, n, 1);
                                                                      });
}
Routine zero_triangle(const char* name) {
    return row<void(double*, u32, u32, u32, std::uint8_t)>(name, zero_work, [](auto* f, Operands& o) {
        const u32 n = length(o);
        f(o.a(), n, n, n, 0);
    });
}
Routine exchange(const char* name) {
    return row<void(double*, u32, u32, u32, u32)>(name, exchange_work, [](auto* f, Operands& o) {
        const u32 n = length(o);
        f(o.a(), n / 3, n / 2, n, n);
    });
}

} // namespace

// clang-format off
const std::vector<Routine>& primitive_routines() {
    static const std::vector<Routine> rows = {
        with_real<double, double>("AddValue_d", vector_work<1, 1>),
        with_complex<Z, Z>("AddValuec_d", vector_work<2, 2>),
        with_real<Z, Z>("SubFromValuecd_d", vector_work<2, 2>),
        with_real<double, double>("DivideValue_d", vector_work<1, 1>),
        with_complex<Z, Z>("DivideValuec_d", vector_work<2, 2>),
        with_complex<Z, Z>("ScaleByValuec_d", vector_work<2, 2>),
        of_two<Z, double, Z>("AddVeccd_d", vector_work<2, 2, 1>),
        of_two<Z, double, Z>("MulVeccd_d", vector_work<2, 2, 1>),
        of_two<Z, Z, Z>("DivVeccc_d", vector_work<2, 2, 2>),
        of_two<Z, Z, Z>("ConjMulcc_d", vector_work<2, 2, 2>),
        map<double, double>("Sgndd_d", vector_work<1, 1>),
        map<double, double>("SgnMul_d", update_work),
        of_two<double, double, double>("Rem_d", vector_work<1, 1, 1>),
        row<void(const double*, double, double*, u32)>("RemVal_d", vector_work<1, 1>,
            [](auto* f, Operands& o) { f(o.x(), value, o.y(), length(o)); }),
        map<double, double>("Ceil_d", vector_work<1, 1>),
        map<double, double>("Floor_d", vector_work<1, 1>),
        map<double, double>("CumSum_d", vector_work<1, 1>),
        row<void(const double*, double*, u32, u32)>("CumSumDelta_d", vector_work<1, 1>,
            [](auto* f, Operands& o) { f(o.x(), o.y(), length(o), lag); }),
        row<double(const double*, u32)>("Product_d", product_work,
            [](auto* f, Operands& o) { o.result = f(o.a(), length(o)); }),
        map<Z, Z>("Reverse_d", vector_work<2, 2>),
        map<Z, Z>("Flip_d", vector_work<2, 2>),
        map<Z, Z>("MulI_d", vector_work<2, 2>),
        row<void(Z*, u32, const Z*, const Z*)>("Rampc_d", vector_work<0, 2>,
            [](auto* f, Operands& o) { f(o.y<Z>(), length(o), &complex_value, &complex_value); }),
        row<u32(u32, const double*, double*, const i32*)>("PackByMask_d", mask_work,
            [](auto* f, Operands& o) { o.result = f(length(o), o.x(), o.y(), mask(o)); }),

        row<void(const i32*, const double*, const i32*, double*)>("vdpacki", strided_work,
            [](auto* f, Operands& o) { f(&o.size.n, o.x(), &stride_of_packed, o.y()); }),
        row<void(const i32*, const double*, const i32*, double*)>("vdpackv", indexed_work,
            [](auto* f, Operands& o) { f(&o.size.n, o.x(), o.pivots(), o.y()); }),
        row<void(const i32*, const double*, const i32*, double*)>("vdpackm", mask_work,
            [](auto* f, Operands& o) { f(&o.size.n, o.x(), mask(o), o.y()); }),
        row<void(const i32*, const double*, double*, const i32*)>("vdunpackv", indexed_work,
            [](auto* f, Operands& o) { f(&o.size.n, o.x(), o.y(), o.pivots()); }),

        row<void(const double*, double*, u32, u32, u32, u32, u32, u32, u32, u32)>("CopySubMatrix_d",
            matrix_work<double, 100>, [](auto* f, Operands& o) {
                const u32 n = length(o);
                f(o.a(), o.b(), 1, 1, 0, 0, n - 1, n - 1, n, n);
            }),
        of_matrix<double>("ResizeMatrix_d"),
        of_matrix<double>("TransposeMatrix_d"),
        of_matrix<Z>("TransposeMatrixc_d"),
        of_matrix<Z>("AdjungateMatrixc_d"),
        in_place<double>("TransposeSquareMatrix_d"),
        in_place<Z>("TransposeSquareMatrixc_d"),
        triangle("LowerTriangle_d"),
        triangle("UpperTriangle_d"),
        zero_triangle("ZeroLowerTriangle_d"),
        zero_triangle("ZeroUpperTriangle_d"),
        exchange("RowExchange_d"),
        exchange("ColExchange_d"),
    };
    return rows;
}
// clang-format on

} // namespace nxl::bench
