// How far the work is: a line on standard error that is drawn over itself and fits the terminal.
#pragma once

#include <atomic>
#include <chrono>
#include <string>

namespace common {

/// Progress is shown from now on, if wanted and if standard error is a terminal; or no longer.
void show_progress(bool wanted);

/// One stage of the work, such as "reading a.mtx". Appears once it has taken a while, is drawn anew a few times a
/// second, and is wiped away at its end. Ctrl-C leaves the terminal on a new line: see interrupt.hpp.
class Progress {
  public:
    explicit Progress(std::string stage);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// `share` of the stage is done, 0 to 1, or below 0 when nobody knows; `detail()` returns a string and is called
    /// only for what is drawn. Any thread may call, as often as it likes.
    template <class Detail> void show(double share, const Detail& detail) {
        if (due()) draw(share, detail());
    }
    void show(double share) {
        if (due()) draw(share, {});
    }

  private:
    using Clock = std::chrono::steady_clock;

    bool due();
    void draw(double share, const std::string& detail);

    const std::string stage_;
    std::atomic<bool> drawn_{false};
    std::atomic<Clock::rep> next_draw_;
};

/// The line for a terminal of so many columns; never wider, so that it can be drawn over. Where there is no room for
/// the bar, the share comes first, and the end is cut off.
std::string progress_line(int columns, double share, const std::string& stage, const std::string& detail);

} // namespace common
