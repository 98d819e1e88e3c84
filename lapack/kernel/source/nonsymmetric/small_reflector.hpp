// Reflectors of two or three elements, of which bulges are made.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/kernel_slot.hpp"
#include "service/matrix.hpp"

namespace nxl {

inline double squared_modulus(double x) { return x * x; }
inline double squared_modulus(const zcomplex& x) { return x.real() * x.real() + x.imag() * x.imag(); }

/// H = I - tau v v^H, v = (1, second, third); third is 0 where there are two elements. As kernels take them.
template <class T> struct SmallReflector {
    T tau, second, third;

    /// H^H x = (beta, 0, 0) for `count` elements x; x[0] becomes beta.
    static SmallReflector of(T* x, i64 count) {
        const double square = squared_modulus(x[1]) + (count > 2 ? squared_modulus(x[2]) : 0.0);
        const double whole = square + squared_modulus(x[0]);
        SmallReflector h{{}, x[1], count > 2 ? x[2] : T{}};
        if (square > 0x1p-900 && whole < 0x1p900) {
            const double beta = -std::copysign(std::sqrt(whole), real_part(x[0]));
            const T scale = T(1.0) / (x[0] - beta);
            h = {(beta - x[0]) / beta, h.second * scale, h.third * scale};
            x[0] = beta;
            return h;
        }
        T rest[2] = {h.second, h.third};
        h.tau = make_reflector(count - 1, x[0], rest, 1);
        h.second = rest[0];
        h.third = rest[1];
        return h;
    }

    /// Rows of C := H^H C, C being `elements` rows.
    void turn_rows(i64 elements, T* c, i64 columns, i64 ld) const {
        if (elements == 3)
            return slot_of<T, &KernelTable::dreflect_rows, &KernelTable::zreflect_rows>()(1, &tau, columns, c, ld);
        const T factor = conj_if<true>(tau), v2 = conj_if<true>(second), t2 = factor * second;
        for (i64 j = 0; j < columns; ++j, c += ld) {
            const T sum = c[0] + v2 * c[1];
            c[0] -= factor * sum;
            c[1] -= t2 * sum;
        }
    }
    /// Columns of C := C H, C being `elements` columns.
    void turn_columns(i64 elements, T* __restrict c, i64 rows, i64 ld) const {
        if (elements == 3) {
            slot_of<T, &KernelTable::dreflect_columns, &KernelTable::zreflect_columns>()(1, &tau, rows, 0, c, ld, 0);
            return;
        }
        const T t1 = tau, v2 = second, t2 = tau * conj_if<true>(second);
        T* const __restrict c2 = c + ld;
        for (i64 i = 0; i < rows; ++i) {
            const T sum = c[i] + v2 * c2[i];
            c[i] -= t1 * sum;
            c2[i] -= t2 * sum;
        }
    }
};
static_assert(sizeof(SmallReflector<double>) == 3 * sizeof(double));

} // namespace nxl
