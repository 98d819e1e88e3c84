// The control block of a handle, 220 words of 64 bits, by name: integers, reals, array bases, and in the words between
// them the timers.
#pragma once
#include "solvers_ds/kernel/default/pardiso/names.hpp"

namespace nxl::pardiso {

class Control {
    i64* words_;

    double& real_word(int word) const { return reinterpret_cast<double*>(words_)[word]; }

  public:
    explicit Control(i64* words) : words_(words) {}

    explicit operator bool() const { return words_ != nullptr; }
    i64& operator[](Word word) const { return words_[static_cast<int>(word)]; }
    double& operator[](RealWord word) const { return real_word(first_real_word + static_cast<int>(word)); }
    i64& operator[](ArrayBase base) const { return words_[first_base_word + static_cast<int>(base)]; }

    /// Seconds of a timer, and whether this call has touched it.
    double& seconds(Timer timer) const { return real_word(first_timer_word + static_cast<int>(timer)); }
    i64& touched(Timer timer) const { return words_[first_flag_word + static_cast<int>(timer)]; }

    i32 small(Word word) const { return static_cast<i32>((*this)[word]); }

    /// The state before stage 1: no structure, no arrays.
    void reset() const {
        for (int word = 0; word < integer_words; ++word) words_[word] = 0;
        for (int word = 0; word < real_words; ++word) real_word(first_real_word + word) = 0.0;
        for (int base = 0; base < base_words; ++base) words_[first_base_word + base] = unset_slot;
        (*this)[RealWord::divergence] = 10.0;
        (*this)[RealWord::unit] = 1.0;
        (*this)[RealWord::tolerance] = 1e-12;
        (*this)[RealWord::tiny] = 1e-30;
    }
};

/// Seconds on the wall, from an origin of their own.
double wall_seconds();

/// Adds its life to a timer and marks it as touched.
class Stopwatch {
    Control control_;
    Timer timer_;
    double start_ = wall_seconds();

  public:
    Stopwatch(Control control, Timer timer) : control_(control), timer_(timer) {}
    ~Stopwatch() {
        control_.seconds(timer_) += wall_seconds() - start_;
        control_.touched(timer_) = 1;
    }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;
};

/// Cuts a block into arrays, each from a multiple of eight bytes, and writes their bases into the control block.
class Layout {
    Control control_;
    i64 halves_ = 0;

  public:
    explicit Layout(Control control) : control_(control) {}

    template <class T> Layout& place(ArrayBase base, i64 count) {
        control_[base] = halves_;
        halves_ += (count * i64{sizeof(T)} + 7) / 8 * 2;
        return *this;
    }

    /// The size so far, in 8-byte words.
    i64 words() const { return halves_ / 2; }
};

} // namespace nxl::pardiso
