// The two kinds of matrices that the family serves, each stored as one triangle: what differs between them is a
// conjugate here and there. For double they are the same.
#pragma once
#include "lapack/kernel/source/common/scalars.hpp"
#include "service/arguments.hpp"

namespace nxl {

enum class Symmetry { symmetric, hermitian };

/// What multiplies from the right to make a product of the kind: L D L^T or L D L^H.
template <class T, Symmetry kind>
inline constexpr char adjoint_letter = kind == Symmetry::hermitian && sizeof(T) != sizeof(double) ? 'C' : 'T';

/// The element on the other side of the diagonal.
template <Symmetry kind, class T> T mirrored(const T& x) { return conj_if(kind == Symmetry::hermitian, x); }

/// An element of the diagonal, of which Hermitian matrices have only the real part.
template <Symmetry kind, class T> T on_diagonal(const T& x) {
    if constexpr (kind == Symmetry::hermitian) return T(std::real(x));
    else return x;
}

/// A block (a, b'; b, c) of D, by quotients of its elements, which do not overflow.
template <class T, Symmetry kind> struct PivotPair {
    T b, first, second, determinant; // first = a / b', second = c / b, determinant = (a c - b b') / (b b')

    PivotPair(const T& a, const T& off, const T& c)
        : b(off),
          first(on_diagonal<kind>(a) / mirrored<kind>(off)),
          second(on_diagonal<kind>(c) / off),
          determinant(on_diagonal<kind>(first * second - T(1.0))) {}

    /// (x, y) := the inverse of the block, times it.
    void divide(T& x, T& y) const {
        const T one = x / mirrored<kind>(b), other = y / b;
        x = (second * one - other) / determinant;
        y = (first * other - one) / determinant;
    }
};

/// DSYTRF, ZSYTRF or ZHETRF of "TRF".
template <class T, Symmetry kind> consteval RoutineLetters routine_of(const char (&rest)[4]) {
    constexpr bool hermitian = kind == Symmetry::hermitian;
    return {{type_letter<T>, hermitian ? 'H' : 'S', hermitian ? 'E' : 'Y', rest[0], rest[1], rest[2], '\0'}};
}

} // namespace nxl
