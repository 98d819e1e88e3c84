// The name that tuning data is looked up by: six letters, read from a Fortran string in either case.
#pragma once
#include "service/letters.hpp"
#include <string_view>

namespace nxl {

/// In capitals; letters beyond a shorter string are blanks.
class RoutineName {
    char letters_[6] = {' ', ' ', ' ', ' ', ' ', ' '};

  public:
    constexpr RoutineName(const char* name, int length) {
        for (int i = 0; i < 6 && i < length; ++i) letters_[i] = capital(name[i]);
    }

    constexpr char type() const { return letters_[0]; }
    constexpr std::string_view matrix() const { return {letters_ + 1, 2}; }    // GE of DGETRF
    constexpr std::string_view operation() const { return {letters_ + 3, 3}; } // TRF of DGETRF
};

} // namespace nxl
