// The tests that a routine makes of its arguments, in the order of their positions. The first bad one is reported,
// once, with its position in the published argument list, from 1; the others are not looked at any more.
#pragma once
#include "service/errors.hpp"
#include "service/types.hpp"

namespace nxl {

/// Whether an option, in either case, is one of the capital letters.
constexpr bool is_one_of(char option, const char* letters) {
    const auto capital = static_cast<char>(folded(option));
    while (*letters != '\0' && *letters != capital) ++letters;
    return *letters != '\0';
}

/// The six letters by which reports and tuning data know a routine, padded with blanks.
struct RoutineLetters {
    char text[7];

    consteval RoutineLetters(const char (&name)[7]) : text{} {
        for (int i = 0; i < 7; ++i) text[i] = name[i];
    }
    operator const char*() const { return text; }
};

/// DGETRF for double, ZGETRF for zcomplex, of "GETRF".
template <class T> consteval RoutineLetters routine(const char (&rest)[6]) {
    const char type = sizeof(T) == sizeof(double) ? 'D' : 'Z';
    return {{type, rest[0], rest[1], rest[2], rest[3], rest[4], '\0'}};
}

/// `Arguments("DGEMM ").letter(1, *transa, "NCT").size(3, m).leading(8, lda, rows).refused()`
class Arguments {
    const RoutineLetters name_;
    int bad_ = 0; // position; 0: none yet

  public:
    explicit Arguments(const RoutineLetters& name) : name_(name) {}

    Arguments& expect(int position, bool good) {
        if (!good && bad_ == 0) bad_ = position;
        return *this;
    }
    Arguments& letter(int position, char option, const char* letters) {
        return expect(position, is_one_of(option, letters));
    }
    Arguments& size(int position, i64 n) { return expect(position, n >= 0); }
    Arguments& increment(int position, i64 inc) { return expect(position, inc != 0); }
    /// A leading dimension, or a length of workspace, that is at least max(1, least).
    Arguments& leading(int position, i64 ld, i64 least) { return expect(position, ld >= 1 && ld >= least); }

    /// True when an argument was bad, which has then been reported.
    bool refused() const { return bad_ != 0 && report_argument(name_, bad_); }
    /// The same for LAPACK, where info tells the caller: the negative position, or 0.
    bool refused(i64& info) const {
        info = -bad_;
        return refused();
    }
};

} // namespace nxl
