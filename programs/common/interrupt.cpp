// The handler of the signals, and what it and the program tell each other.
#include "interrupt.hpp"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <exception>
#include <unistd.h>

namespace common {
namespace {

constexpr unsigned kPatience = 3; // seconds for the work to stop by itself

// Read and written by the handler: lock-free.
std::atomic<bool> line_open{false};
std::atomic<int> watchers{0}, noted{0}; // Interruptibles; the signal that came while there were any

/// Ends the program by the signal, as it would have ended without a handler.
void end_by(int signal) noexcept {
    if (line_open.exchange(false)) [[maybe_unused]]
        const auto written = write(STDERR_FILENO, "\n", 1);
    std::signal(signal, SIG_DFL);
    sigset_t own;
    sigemptyset(&own);
    sigaddset(&own, signal);
    raise(signal);
    pthread_sigmask(SIG_UNBLOCK, &own, nullptr); // blocked while its handler runs; now it is delivered
}

void handle(int signal) noexcept {
    int none = 0;
    if (signal != SIGALRM && watchers.load() > 0 && noted.compare_exchange_strong(none, signal)) {
        alarm(kPatience);
        return;
    }
    const int asked = noted.load();
    end_by(signal == SIGALRM && asked != 0 ? asked : signal);
}

void take_over(int signal) {
    struct sigaction now{};
    if (sigaction(signal, nullptr, &now) != 0 || now.sa_handler != SIG_DFL) return;
    now.sa_handler = handle;
    now.sa_flags = SA_RESTART; // reading goes on after a signal that was noted
    sigaction(signal, &now, nullptr);
}

void take_over_signals() {
    [[maybe_unused]] static const bool once = [] {
        for (const int signal : {SIGINT, SIGTERM, SIGALRM}) take_over(signal);
        return true;
    }();
}

} // namespace

Interruptible::Interruptible() {
    take_over_signals();
    ++watchers;
}

Interruptible::~Interruptible() {
    if (--watchers == 0 && interrupted() && std::uncaught_exceptions() == 0) end_by(noted.load());
}

bool interrupted() noexcept { return noted.load(std::memory_order_relaxed) != 0; }

void stop_if_interrupted() {
    if (interrupted()) throw Interrupted(noted.load());
}

void set_line_open(bool open) noexcept {
    if (open) take_over_signals();
    line_open.store(open);
}

} // namespace common
