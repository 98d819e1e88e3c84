// Integers on their way through an entry: the caller's 32 bits become 64 inside, and results go back narrowed. A plain
// input needs no type: `*n`, handed to a `const i64&`, widens by sign extension.
#pragma once
#include "service/scratch.hpp"
#include <concepts>
#include <limits>

namespace nxl {

/// An integer result. 64-bit inside; the caller's 32 bits, the low ones, are written when it dies. Declare `info`
/// first, so that it is written last.
struct OutInt {
    int* const user;
    i64 value = 0;

    explicit OutInt(int* user_value) : user(user_value) {}
    ~OutInt() { *user = static_cast<int>(value); }
    OutInt(const OutInt&) = delete;
    OutInt& operator=(const OutInt&) = delete;
};

/// The elements that an array of `count` has in a call with these workspace lengths. A length of -1 makes the call a
/// query, which comes before the caller has its data: then it has none but the first element of a workspace that is
/// told its own length.
template <std::signed_integral... Lengths> constexpr i64 unless_query(i64 count, Lengths... lengths) {
    return ((lengths == -1) || ...) ? 0 : count;
}

/// What goes between the caller's integer array and its 64-bit scratch copy.
enum class Transfer {
    in,        ///< widened on entry
    out,       ///< narrowed back at the end
    in_out,    ///< both
    first_out, ///< workspace: its first element alone goes back, the answer of a workspace query
    none       ///< workspace that stays inside
};

/// A caller's integer array of `count` elements as a 64-bit scratch array of at least one element. Of an output, only
/// the elements that the driver has set go back: the caller's others are neither read nor written.
class WideInts {
    static constexpr i64 untouched = std::numeric_limits<i64>::min(); // narrow integers never widen to this

    int* const out_;
    const i64 out_count_; // elements that may go back
    const Scratch<i64> wide_;

    static constexpr i64 elements_out(i64 count, Transfer way) {
        if (way == Transfer::first_out) return 1;
        return way == Transfer::out || way == Transfer::in_out ? count : 0;
    }

    void widen(const int* user, i64 count) {
        if (data())
            for (i64 i = 0; i < count; ++i) data()[i] = user[i];
    }
    void mark_untouched() {
        if (data())
            for (i64 i = 0; i < out_count_; ++i) data()[i] = untouched;
    }

  public:
    WideInts(const int* user, i64 count) : out_(nullptr), out_count_(0), wide_(count < 1 ? 1 : count) {
        widen(user, count);
    }
    WideInts(int* user, i64 count, Transfer way)
        : out_(user),
          out_count_(elements_out(count, way)),
          wide_(count < 1 ? 1 : count) {
        if (way == Transfer::in || way == Transfer::in_out) widen(user, count);
        else mark_untouched();
    }
    ~WideInts() {
        if (data())
            for (i64 i = 0; i < out_count_; ++i)
                if (data()[i] != untouched) out_[i] = static_cast<int>(data()[i]);
    }
    WideInts(const WideInts&) = delete;
    WideInts& operator=(const WideInts&) = delete;

    /// Null when there was no memory; then nothing was copied and nothing goes back.
    i64* data() const { return wide_.data(); }
};

} // namespace nxl
