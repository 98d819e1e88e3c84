// Names of the routines that form or apply Q: OR for orthogonal, UN for unitary.
#pragma once
#include "service/arguments.hpp"

namespace nxl {

/// DORGQR for double, ZUNGQR for zcomplex, of "GQR".
template <class T> consteval RoutineLetters q_routine(const char (&rest)[4]) {
    constexpr bool real = type_letter<T> == 'D';
    return {{type_letter<T>, real ? 'O' : 'U', real ? 'R' : 'N', rest[0], rest[1], rest[2], '\0'}};
}

/// The letters that `trans` may have: the transpose of a real matrix is its adjoint, that of a complex one has no use.
template <class T> inline constexpr const char* q_trans_letters = type_letter<T> == 'D' ? "NT" : "NC";

} // namespace nxl
