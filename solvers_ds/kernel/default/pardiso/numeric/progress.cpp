#include "solvers_ds/kernel/default/pardiso/numeric/progress.hpp"
#include "service/errors.hpp"
#include "solvers_ds/kernel/default/pardiso/message.hpp"
#include <cstring>

namespace nxl::pardiso {

void pardiso_progress(ProgressStage stage, i32 percent) {
    switch (stage) {
    case ProgressStage::percent:
        pardiso_message(Text::percent, percent);
        if (percent == 100) print_empty_line();
        return;
    case ProgressStage::factorisation: return pardiso_message(Text::progress_factorisation);
    case ProgressStage::forward: return pardiso_message(Text::progress_forward);
    case ProgressStage::backward: return pardiso_message(Text::progress_backward);
    }
}

FactorProgress::FactorProgress(i64 size, bool messages) : size_(size), messages_(messages) {
    if (messages_) pardiso_progress(ProgressStage::factorisation);
    tell(0, 0);
}

void FactorProgress::tell(i32 thread, i32 percent) {
    constexpr const char* stage = "Pardiso: factorization phase";
    if (NXL_PROGRESS(&thread, &percent, stage, static_cast<int>(std::strlen(stage))) != 0)
        stopped_.store(true, std::memory_order_relaxed);
    if (messages_ && percent > 0) pardiso_progress(ProgressStage::percent, percent);
}

void FactorProgress::come_to(i32 thread, i64 position) {
    const i32 percent = static_cast<i32>(100.0 * static_cast<double>(position) / static_cast<double>(size_));
    i32 shown = shown_.load(std::memory_order_relaxed);
    while (percent > shown)
        if (shown_.compare_exchange_weak(shown, percent, std::memory_order_relaxed)) return tell(thread, percent);
}

void FactorProgress::finish() {
    if (shown_.load(std::memory_order_relaxed) < 100) tell(0, 100);
}

} // namespace nxl::pardiso
