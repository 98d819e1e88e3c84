// A thread draws once a second, over itself, while the one that made it works.
#include "elapsed.hpp"

#include "common/progress.hpp"
#include "common/stopwatch.hpp"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace fir {
namespace {

void draw(const std::stop_token& stopped, const std::string& what) {
    common::Progress line(what);
    std::mutex mutex;
    std::condition_variable_any end;
    std::unique_lock lock(mutex);
    const common::Stopwatch watch;
    while (!end.wait_for(lock, stopped, std::chrono::seconds(1), [&] { return stopped.stop_requested(); }))
        line.show(-1.0, [&] { return std::to_string(static_cast<int>(watch.seconds())) + " s"; });
}

} // namespace

Elapsed::Elapsed(std::string what, bool wanted) {
    common::show_progress(wanted);
    if (wanted) drawer_ = std::jthread(draw, std::move(what)); // which stops with this
}

} // namespace fir
