// What the nine matrix types have in common and where they part.
#pragma once
#include "solvers_ds/kernel/default/pardiso/names.hpp"

namespace nxl::pardiso {

constexpr i64 magnitude(i64 value) { return value < 0 ? -value : value; }

/// A type of which the checks take notice: some that pass, such as -1 or 5, are none of the nine.
constexpr bool type_in_bounds(int mtype) {
    const i64 m = magnitude(mtype);
    return (m >= 1 && m <= 6) || m == 11 || mtype == 13;
}

/// Even types store the upper triangle, odd ones the whole pattern.
constexpr bool stores_triangle(int mtype) { return mtype % 2 == 0; }

/// Types 3, 4 and 6 of the class, which 13 has too.
constexpr bool is_complex(int mtype) {
    const i64 m = magnitude(mtype), form = m > 10 ? m - 10 : m;
    return form > 2;
}
constexpr int scalar_words(int mtype) { return is_complex(mtype) ? 2 : 1; }

constexpr bool is_unsymmetric(int mtype) { return mtype > 10; }

/// Factored as LDL^T with pivoting inside the supernodes.
constexpr bool is_indefinite(int mtype) { return mtype == -2 || mtype == -4 || mtype == 6; }

/// Factored as LU, with an upper factor of its own.
constexpr bool is_lu(int mtype) { return mtype == 1 || mtype == 3 || mtype == 11 || mtype == 13; }

/// May be matched and scaled before it is ordered.
constexpr bool may_match(int mtype) { return is_indefinite(mtype) || mtype == 11 || mtype == 13; }

} // namespace nxl::pardiso
