// Arguments on their way through an entry: the caller's 32-bit integers become 64-bit inside, and results go back narrowed.
// A plain input needs no type: `const i64 n64 = *n;` widens by sign extension.
#pragma once
#include "service/scratch.hpp"

namespace nxl {

/// An integer result. 64-bit inside; the caller's 32 bits, the low ones, are written when it dies. Declare `info` first,
/// so that it is written last.
struct OutInt {
    int* const user;
    i64 value = 0;

    explicit OutInt(int* user_value) : user(user_value) {}
    ~OutInt() { *user = static_cast<int>(value); }
    OutInt(const OutInt&) = delete;
    OutInt& operator=(const OutInt&) = delete;
};

/// What goes between the caller's integer array and its 64-bit scratch copy.
enum class Transfer {
    in,        ///< widened on entry
    out,       ///< narrowed back at the end
    in_out,    ///< both
    first_out, ///< workspace: its first element alone goes back, the answer of a workspace query
    none       ///< workspace that stays inside
};

/// A caller's integer array of `count` elements as a 64-bit scratch array of at least one element.
class WideInts {
    int* const out_; // null when nothing goes back
    i64 out_count_;
    Scratch<i64> wide_;

    static bool writes(Transfer way) { return way != Transfer::in && way != Transfer::none; }

    void widen(const int* user, i64 count) {
        if (data())
            for (i64 i = 0; i < count; ++i) data()[i] = user[i];
    }

  public:
    WideInts(const int* user, i64 count) : out_(nullptr), out_count_(0), wide_(count < 1 ? 1 : count) {
        widen(user, count);
    }
    WideInts(int* user, i64 count, Transfer way)
        : out_(writes(way) ? user : nullptr), out_count_(way == Transfer::first_out ? 1 : count),
          wide_(count < 1 ? 1 : count) {
        if (way == Transfer::in || way == Transfer::in_out) widen(user, count);
        if (way == Transfer::first_out) widen(user, 1); // what the driver leaves alone stays
    }
    ~WideInts() {
        if (out_ && data())
            for (i64 i = 0; i < out_count_; ++i) out_[i] = static_cast<int>(data()[i]);
    }
    WideInts(const WideInts&) = delete;
    WideInts& operator=(const WideInts&) = delete;

    /// Null when there was no memory; then nothing was copied and nothing goes back.
    i64* data() const { return wide_.data(); }

    /// Makes `count` elements go back, for an output whose length the driver decides.
    void write_back(i64 count) { out_count_ = count; }
};

} // namespace nxl
