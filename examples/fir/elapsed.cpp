// A thread draws once a second, over itself, while the one that made it works.
#include "elapsed.hpp"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <unistd.h>
#include <utility>

namespace fir {
namespace {

void draw(const std::stop_token& stopped, const std::string& what) {
    std::mutex mutex;
    std::condition_variable_any end;
    std::unique_lock lock(mutex);
    int seconds = 0;
    while (!end.wait_for(lock, stopped, std::chrono::seconds(1), [&] { return stopped.stop_requested(); }))
        std::fprintf(stderr, "\r%s: %d s\033[K", what.c_str(), ++seconds);
    if (seconds > 0) std::fputs("\r\033[K", stderr);
}

/// The signal's action is its own again by now, which ends the process.
void end_the_line(int signal) {
    [[maybe_unused]] const auto count = write(STDERR_FILENO, "\n", 1);
    std::raise(signal);
}

} // namespace

Elapsed::Elapsed(std::string what, bool wanted) {
    if (!wanted || isatty(STDERR_FILENO) != 1) return;
    drawer_ = std::jthread(draw, std::move(what));
    struct sigaction action = {};
    action.sa_handler = end_the_line;
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER;
    sigaction(SIGINT, nullptr, &before_);
    if (before_.sa_handler == SIG_DFL) sigaction(SIGINT, &action, nullptr); // who ignores it goes on
}

Elapsed::~Elapsed() {
    if (!drawer_.joinable()) return;
    drawer_.request_stop();
    drawer_.join();
    if (before_.sa_handler == SIG_DFL) sigaction(SIGINT, &before_, nullptr);
}

} // namespace fir
