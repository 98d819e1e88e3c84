// The store of the progress callback and its trial call.
#include "service/progress.hpp"
#include <atomic>

namespace nxl {
namespace {
constinit std::atomic<ProgressCallback> stored_callback{nullptr};
}

void set_progress_callback(ProgressCallback callback) { stored_callback.store(callback, std::memory_order_relaxed); }

int test_progress_callback() {
    const ProgressCallback callback = stored_callback.load(std::memory_order_relaxed);
    if (!callback) return 0;
    const int one = 1, two = 2, three = 3;
    return callback(&one, &two, reinterpret_cast<const char*>(&three), 4); // the third is an integer here, not a text
}

} // namespace nxl
