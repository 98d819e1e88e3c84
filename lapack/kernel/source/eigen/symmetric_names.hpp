// Names of the routines for symmetric and Hermitian matrices.
#pragma once
#include "service/arguments.hpp"

namespace nxl {

/// DSYTRD for double, ZHETRD for zcomplex, of "TRD".
template <class T> consteval RoutineLetters symmetric_routine(const char (&rest)[4]) {
    constexpr bool real = type_letter<T> == 'D';
    return {{type_letter<T>, real ? 'S' : 'H', real ? 'Y' : 'E', rest[0], rest[1], rest[2], '\0'}};
}

} // namespace nxl
