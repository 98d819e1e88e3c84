// Draws the line of progress: when, how wide, and with which parts.
#include "progress.hpp"

#include "interrupt.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace common {
namespace {

std::atomic<bool> shown{false};

bool is_terminal() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && !(kind != nullptr && std::strcmp(kind, "dumb") == 0);
}

/// Asked for at each drawing: windows change their size.
int columns_of_terminal() {
    constexpr int kUsual = 80;
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

/// Without what would move the cursor.
std::string printable(std::string text) {
    std::ranges::replace_if(text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, '?');
    return text;
}

/// The first bytes, not more than so many, without half a character of UTF-8 at the end.
std::string cut(std::string text, int bytes) {
    auto end = static_cast<std::size_t>(std::max(bytes, 0));
    if (text.size() <= end) return text;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80U) --end;
    text.resize(end);
    return text;
}

} // namespace

void show_progress(bool wanted) { shown = wanted && is_terminal(); }

std::string progress_line(int columns, double share, const std::string& stage, const std::string& detail) {
    constexpr int kSpare = 3, kShortest = 10, kLongest = 40; // spare: "^C" as the terminal shows it, and the cursor
    const int room = columns - kSpare;
    const std::string behind = detail.empty() ? "" : "  " + detail;
    if (!(share >= 0.0)) return cut(stage + behind, room);
    const int percent = std::clamp(static_cast<int>(100.0 * share), 0, 100);
    std::string number = std::to_string(percent) + " %";
    number.insert(0, 5 - number.size(), ' ');
    const int left = room - static_cast<int>((stage + " [] " + number + behind).size());
    if (left < kShortest) return cut(number + "  " + stage + behind, room);
    const int width = std::min(left, kLongest), filled = percent * width / 100;
    return stage + " [" + std::string(static_cast<std::size_t>(filled), '#') +
           std::string(static_cast<std::size_t>(width - filled), '.') + "] " + number + behind;
}

Progress::Progress(std::string stage)
    : stage_(printable(std::move(stage))),
      next_draw_((Clock::now() + std::chrono::milliseconds(200)).time_since_epoch().count()) {}

Progress::~Progress() {
    if (!drawn_) return;
    std::fputs("\r\033[K", stderr);
    set_line_open(false);
}

/// For one thread of those that ask at the same time.
bool Progress::due() {
    if (!shown.load(std::memory_order_relaxed)) return false;
    Clock::rep due = next_draw_.load(std::memory_order_relaxed);
    const auto now = Clock::now();
    if (now.time_since_epoch().count() < due) return false;
    const auto next = now + std::chrono::milliseconds(100);
    return next_draw_.compare_exchange_strong(due, next.time_since_epoch().count());
}

void Progress::draw(double share, const std::string& detail) {
    set_line_open(true);
    drawn_ = true;
    std::fprintf(stderr, "\r%s\033[K", progress_line(columns_of_terminal(), share, stage_, printable(detail)).c_str());
}

} // namespace common
