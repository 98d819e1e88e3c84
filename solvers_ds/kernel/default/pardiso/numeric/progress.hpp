// How far a factorisation has come, for the host and for the user.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"
#include <atomic>

namespace nxl::pardiso {

/// What pardiso_progress prints: a percentage, or the line that introduces them.
enum class ProgressStage : int { percent = 1, factorisation = -1, forward = -2, backward = -3 };
void pardiso_progress(ProgressStage stage, i32 percent = 0);

/// Tells each new percentage once, whichever thread comes to it.
class FactorProgress {
    const i64 size_;
    const bool messages_;
    std::atomic<i32> shown_{0};
    std::atomic<bool> stopped_{false};

    void tell(i32 thread, i32 percent);

  public:
    FactorProgress(i64 size, bool messages);

    /// The columns before `position` of L are done, or begun by somebody.
    void come_to(i32 thread, i64 position);
    void finish();
    /// The host has asked to stop.
    bool stopped() const { return stopped_.load(std::memory_order_relaxed); }
};

} // namespace nxl::pardiso
