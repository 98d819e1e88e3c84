// dreflect_rows, dreflect_columns, zreflect_rows, zreflect_columns: reflectors of three elements, those of small
// bulges, applied to three rows or columns each.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// tau, second, third of I - tau v v^H, v = (1, second, third).
constexpr int kNumbers = 3;

/// x := x - t (w^H x), with a lane for each x: what a reflector does to the lanes of three registers.
template <class T, int W> struct Reflection {
    Factor<T, W> w2, w3, t1, t2, t3;

    [[gnu::always_inline]] void apply(Vec<W>& x1, Vec<W>& x2, Vec<W>& x3) const {
        Vec<W> sum = x1;
        w2.add_to(sum, x2);
        w3.add_to(sum, x3);
        t1.take_from(x1, sum);
        t2.take_from(x2, sum);
        t3.take_from(x3, sum);
    }
};

/// From the right.
template <class T, int W> [[gnu::always_inline]] inline Reflection<T, W> of_columns(const T* h) {
    return {Factor<T, W>(h[1]), Factor<T, W>(h[2]), Factor<T, W>(h[0]), Factor<T, W>(h[0] * conj(h[1])),
            Factor<T, W>(h[0] * conj(h[2]))};
}

// Rows of one column lie side by side, those of W reflectors in three registers. With W = 4, number of the reflector
// and of its element:
//
//     as loaded    00 01 02 10    11 12 20 21    22 30 31 32
//     picked       00 30 20 10    11 01 31 21    22 12 02 32      each lane from one of the three: two blends
//     turned       00 30 20 10    01 31 21 11    02 32 22 12
//
// since element number 3 r + i of all is in lane (3 r + i) mod W, and 3 has no factor in common with W.
template <int W> constexpr int reflector_in_lane(int lane) {
    for (int r = 0; r < W; ++r)
        if (3 * r % W == lane % W) return r;
    return 0;
}
/// The register from which element `i` comes in a lane, and the element that a lane of a register has.
template <int W> constexpr int source_of(int i, int lane) {
    return (3 * reflector_in_lane<W>(lane - i + 3 * W) + i) / W;
}

template <int W> struct Lanes3 {
    Vec<W> x[3];

    template <int I, int... L> [[gnu::always_inline]] Vec<W> picked(std::integer_sequence<int, L...>) const {
        const Vec<W> two = __builtin_shufflevector(x[0], x[1], (source_of<W>(I, L) == 1 ? W + L : L)...);
        const Vec<W> all = __builtin_shufflevector(two, x[2], (source_of<W>(I, L) == 2 ? W + L : L)...);
        return __builtin_shufflevector(all, all, ((L + I) % W)...);
    }
    /// Register Q as it was loaded, from the elements of the reflectors.
    template <int Q, int... L> [[gnu::always_inline]] Vec<W> put_back(std::integer_sequence<int, L...>) const {
        const Vec<W> second = __builtin_shufflevector(x[1], x[1], ((L + W - 1) % W)...);
        const Vec<W> third = __builtin_shufflevector(x[2], x[2], ((L + 2 * W - 2) % W)...);
        const Vec<W> two = __builtin_shufflevector(x[0], second, ((Q * W + L) % 3 == 1 ? W + L : L)...);
        return __builtin_shufflevector(two, third, ((Q * W + L) % 3 == 2 ? W + L : L)...);
    }
    [[gnu::always_inline]] Lanes3 by_element() const {
        constexpr std::make_integer_sequence<int, W> lanes{};
        return {{picked<0>(lanes), picked<1>(lanes), picked<2>(lanes)}};
    }
    [[gnu::always_inline]] Lanes3 by_row() const {
        constexpr std::make_integer_sequence<int, W> lanes{};
        return {{put_back<0>(lanes), put_back<1>(lanes), put_back<2>(lanes)}};
    }
};

/// Rows of W reflectors.
template <int W> void reflect_group(const double* h, i64 columns, double* c, i64 ld) {
    Reflection<double, W> reflection;
    for (int lane = 0; lane < W; ++lane) {
        const double* const mine = h + kNumbers * reflector_in_lane<W>(lane);
        reflection.w2.value[lane] = mine[1];
        reflection.w3.value[lane] = mine[2];
        reflection.t1.value[lane] = mine[0];
        reflection.t2.value[lane] = mine[0] * mine[1];
        reflection.t3.value[lane] = mine[0] * mine[2];
    }
    for (i64 j = 0; j < columns; ++j, c += ld) {
        Lanes3<W> x = Lanes3<W>{{load<W>(c), load<W>(c + W), load<W>(c + 2 * W)}}.by_element();
        reflection.apply(x.x[0], x.x[1], x.x[2]);
        x = x.by_row();
        for (int q = 0; q < 3; ++q) store<W>(c + q * W, x.x[q]);
    }
}

/// Groups of W from reflector r on. Those of a group begin in the column of its first one.
template <int W>
void reflect_groups(i64 count, i64& r, const double* reflectors, i64 columns, double* c, i64 ld) {
    for (; r + W <= count; r += W)
        reflect_group<W>(reflectors + kNumbers * r, columns - 3 * r, c + 3 * r * (ld + 1), ld);
}

/// Rows of C, the elements of which take a register of W doubles each.
void reflect_complex_rows(const Complex* h, i64 columns, double* c, i64 ld) {
    constexpr int W = 2;
    const Reflection<Complex, W> reflection{Factor<Complex, W>(conj(h[1])), Factor<Complex, W>(conj(h[2])),
                                            Factor<Complex, W>(conj(h[0])), Factor<Complex, W>(conj(h[0]) * h[1]),
                                            Factor<Complex, W>(conj(h[0]) * h[2])};
    for (i64 j = 0; j < columns; ++j, c += ld) {
        Vec<W> x1 = load<W>(c), x2 = load<W>(c + W), x3 = load<W>(c + 2 * W);
        reflection.apply(x1, x2, x3);
        store<W>(c, x1);
        store<W>(c + W, x2);
        store<W>(c + 2 * W, x3);
    }
}

/// Three columns of `size` doubles, in registers of W and then in shorter ones.
template <class T, int W> void reflect_strip(const T* h, i64 size, double* c, i64 ld) {
    const Reflection<T, W> reflection = of_columns<T, W>(h);
    i64 i = 0;
    for (; i + W <= size; i += W) {
        Vec<W> x1 = load<W>(c + i), x2 = load<W>(c + i + ld), x3 = load<W>(c + i + 2 * ld);
        reflection.apply(x1, x2, x3);
        store<W>(c + i, x1);
        store<W>(c + i + ld, x2);
        store<W>(c + i + 2 * ld, x3);
    }
    if constexpr (W > kParts<T>)
        if (i < size) reflect_strip<T, W / 2>(h, size - i, c + i, ld);
}

template <class T>
void reflect_columns(i64 count, const T* reflectors, i64 rows, i64 growth, double* c, i64 ld, i64 next) {
    constexpr int parts = kParts<T>;
    for (i64 r = 0; r < count; ++r)
        reflect_strip<T, kWidest>(reflectors + kNumbers * r, parts * (rows + r * growth), c + parts * r * next,
                                  parts * ld);
}

} // namespace

void dreflect_rows(const i64& count, const double* reflectors, const i64& columns, double* c, const i64& ldc) {
    i64 r = 0;
    if constexpr (kWidest > 4) reflect_groups<8>(count, r, reflectors, columns, c, ldc);
    if constexpr (kWidest > 2) reflect_groups<4>(count, r, reflectors, columns, c, ldc);
    reflect_groups<2>(count, r, reflectors, columns, c, ldc);
    reflect_groups<1>(count, r, reflectors, columns, c, ldc);
}

void zreflect_rows(const i64& count, const zcomplex* reflectors, const i64& columns, zcomplex* c, const i64& ldc) {
    for (i64 r = 0; r < count; ++r)
        reflect_complex_rows(scalars(reflectors) + kNumbers * r, columns - 3 * r, parts(c) + 6 * r * (ldc + 1),
                             2 * ldc);
}

void dreflect_columns(const i64& count, const double* reflectors, const i64& rows, const i64& growth, double* c,
                      const i64& ldc, const i64& next) {
    reflect_columns(count, reflectors, rows, growth, c, ldc, next);
}

void zreflect_columns(const i64& count, const zcomplex* reflectors, const i64& rows, const i64& growth, zcomplex* c,
                      const i64& ldc, const i64& next) {
    reflect_columns(count, scalars(reflectors), rows, growth, parts(c), ldc, next);
}

} // namespace nxl::NXL_TARGET
