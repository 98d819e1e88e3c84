// Option letters and the letters of names. An entry capitalises an option once; behind it letters compare as they are.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The byte, as a capital where it is an ASCII letter.
constexpr char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// Whether an option, in either case, is one of the capital letters.
constexpr bool is_one_of(char option, const char* letters) {
    while (*letters != '\0' && *letters != capital(option)) ++letters;
    return *letters != '\0';
}

/// -1, all bits set, when the first bytes of `a` and `b` are the same letter, whatever its case, or the same byte; else
/// 0. The lengths are the hidden ones of a Fortran call and are not looked at.
inline i64 LSAME(const char* a, const char* b, int, int) { return capital(*a) == capital(*b) ? -1 : 0; }

} // namespace nxl
