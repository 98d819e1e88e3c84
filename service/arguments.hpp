// The tests that a routine makes of its arguments, in the order of their positions. The first bad one is reported,
// once, with its position in the published argument list, from 1; the others are not looked at any more.
#pragma once
#include "service/errors.hpp"
#include "service/letters.hpp"
#include "service/types.hpp"
#include "service/workspace.hpp"

namespace nxl {

/// The six letters by which reports and tuning data know a routine, padded with blanks.
struct RoutineLetters {
    char text[7];

    consteval RoutineLetters(const char (&name)[7]) : text{} {
        for (int i = 0; i < 7; ++i) text[i] = name[i];
    }
    constexpr operator const char*() const { return text; }
};

/// D for double, Z for zcomplex: the first letter of names.
template <class T> inline constexpr char type_letter = sizeof(T) == sizeof(double) ? 'D' : 'Z';

/// DGETRF for double, ZGETRF for zcomplex, of "GETRF".
template <class T> consteval RoutineLetters routine(const char (&rest)[6]) {
    return {{type_letter<T>, rest[0], rest[1], rest[2], rest[3], rest[4], '\0'}};
}

/// The tests themselves. How a bad argument is told is the business of `Chain`, the class that is derived from this.
template <class Chain> class ArgumentTests {
    int bad_ = 0; // position; 0: none yet
    i64 value_ = 0;

    friend Chain;
    ArgumentTests() = default;

  public:
    Chain& expect(int position, bool good, i64 value = 0) {
        if (!good && bad_ == 0) {
            bad_ = position;
            value_ = value;
        }
        return static_cast<Chain&>(*this);
    }
    Chain& size(int position, i64 n) { return expect(position, n >= 0, n); }
    Chain& increment(int position, i64 inc) { return expect(position, inc != 0, inc); }
    /// A leading dimension that is at least max(1, least).
    Chain& leading(int position, i64 ld, i64 least) { return expect(position, ld >= 1 && ld >= least, ld); }

  protected:
    /// The first bad argument, or 0, and its value where the test was of a number.
    int bad() const { return bad_; }
    i64 value() const { return value_; }
};

/// `Arguments("DGEMM ").letter(1, transa, "NCT").size(3, m).leading(8, lda, rows).refused()`
class Arguments : public ArgumentTests<Arguments> {
    const RoutineLetters name_;

  public:
    explicit Arguments(const RoutineLetters& name) : name_(name) {}

    Arguments& letter(int position, char option, Letters letters) {
        return expect(position, is_one_of(option, letters));
    }
    template <class T> Arguments& workspace(int position, const Workspace<T>& space) {
        return expect(position, space.suffices());
    }

    /// True when an argument was bad, which has then been reported.
    bool refused() const { return bad() != 0 && report_argument(name_, bad()); }
    /// The same for LAPACK, where info tells the caller: the negative position, or 0.
    bool refused(i64& info) const {
        info = -bad();
        return refused();
    }
};

} // namespace nxl
