// Option letters and the letters of names. An entry capitalises an option once; behind it letters compare as they are.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// The byte, as a capital where it is an ASCII letter.
constexpr char capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// A set of capital letters and digits, a bit each: a test of an option takes no loop.
class Letters {
    std::uint64_t bits_ = 0;

    static constexpr unsigned place(char c) { return static_cast<unsigned char>(c) - 0x20U; } // below 64: up to '_'

  public:
    consteval Letters(const char* letters) {
        for (; *letters != '\0'; ++letters) bits_ |= std::uint64_t{1} << place(*letters);
    }
    constexpr bool has(char c) const { return place(c) < 64 && (bits_ >> place(c) & 1) != 0; }
};

/// Whether an option, in either case, is one of the letters.
constexpr bool is_one_of(char option, Letters letters) { return letters.has(capital(option)); }

/// -1, all bits set, when the first bytes of `a` and `b` are the same letter, whatever its case, or the same byte; else
/// 0. The lengths are the hidden ones of a Fortran call and are not looked at.
inline i64 LSAME(const char* a, const char* b, int, int) { return capital(*a) == capital(*b) ? -1 : 0; }

} // namespace nxl
