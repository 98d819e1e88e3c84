// Reflectors of two or three elements, of which bulges are made.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/matrix.hpp"

namespace nxl {

inline double squared_modulus(double x) { return x * x; }
inline double squared_modulus(const zcomplex& x) { return x.real() * x.real() + x.imag() * x.imag(); }

/// H = I - tau v v^H, v = (1, second, third); third is 0 where there are two elements.
template <class T> struct SmallReflector {
    T tau, second, third;
    i64 elements;

    /// H^H x = (beta, 0, 0) for `count` elements x; x[0] becomes beta.
    static SmallReflector of(T* x, i64 count) {
        const double square = squared_modulus(x[1]) + (count > 2 ? squared_modulus(x[2]) : 0.0);
        const double whole = square + squared_modulus(x[0]);
        SmallReflector h{{}, x[1], count > 2 ? x[2] : T{}, count};
        if (square > 0x1p-900 && whole < 0x1p900) {
            const ReflectorScalars<T> scalars = reflector_scalars(x[0], std::sqrt(square));
            h.tau = scalars.tau;
            h.second *= scalars.scale;
            h.third *= scalars.scale;
            return h;
        }
        T rest[2] = {h.second, h.third};
        h.tau = make_reflector(count - 1, x[0], rest, 1);
        h.second = rest[0];
        h.third = rest[1];
        return h;
    }

    /// Rows of C := H^H C, C being `elements` rows.
    void turn_rows(T* c, i64 columns, i64 ld) const {
        const T factor = conj_if<true>(tau), v2 = conj_if<true>(second), v3 = conj_if<true>(third);
        const T t2 = factor * second, t3 = factor * third;
        if (elements == 3)
            for (i64 j = 0; j < columns; ++j, c += ld) {
                const T sum = c[0] + v2 * c[1] + v3 * c[2];
                c[0] -= factor * sum;
                c[1] -= t2 * sum;
                c[2] -= t3 * sum;
            }
        else
            for (i64 j = 0; j < columns; ++j, c += ld) {
                const T sum = c[0] + v2 * c[1];
                c[0] -= factor * sum;
                c[1] -= t2 * sum;
            }
    }
    /// Columns of C := C H, C being `elements` columns.
    void turn_columns(T* __restrict c, i64 rows, i64 ld) const {
        const T t1 = tau, t2 = tau * conj_if<true>(second), t3 = tau * conj_if<true>(third), v2 = second, v3 = third;
        T* const __restrict c2 = c + ld;
        if (elements == 3) {
            T* const __restrict c3 = c2 + ld;
            for (i64 i = 0; i < rows; ++i) {
                const T sum = c[i] + v2 * c2[i] + v3 * c3[i];
                c[i] -= t1 * sum;
                c2[i] -= t2 * sum;
                c3[i] -= t3 * sum;
            }
        } else
            for (i64 i = 0; i < rows; ++i) {
                const T sum = c[i] + v2 * c2[i];
                c[i] -= t1 * sum;
                c2[i] -= t2 * sum;
            }
    }
};

} // namespace nxl
