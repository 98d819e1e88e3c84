// Shares of the work, and the program's own NXL_PROGRESS.
#include "progress.hpp"

#include "common/interrupt.hpp"

#include "nxl.h"

#include <cmath>

namespace solve {
namespace {

std::atomic<FactorisationProgress*> current{nullptr};

} // namespace

double progress_of(double residual, double tolerance) {
    if (!(residual < 1.0)) return 0.0;
    return residual <= tolerance ? 1.0 : std::log(residual) / std::log(tolerance);
}

FactorisationProgress::FactorisationProgress(int columns) : columns_(columns) { current = this; }

FactorisationProgress::~FactorisationProgress() { current = nullptr; }

FactorisationProgress::FactorisationProgress() : FactorisationProgress(0) {}

void FactorisationProgress::reach(int step, std::string_view stage) {
    const bool sparse = columns_ == 0;
    if (sparse != stage.starts_with("Pardiso")) return;
    int furthest = furthest_.load(std::memory_order_relaxed);
    while (furthest < step && !furthest_.compare_exchange_weak(furthest, step)) {
    }
    furthest = furthest_.load(std::memory_order_relaxed);
    if (sparse) return progress_.show(furthest / 100.0);
    const double left = 1.0 - static_cast<double>(furthest) / columns_;
    // What is left of the matrix is a square of so many columns: its work goes with the cube.
    progress_.show(1.0 - left * left * left,
                   [&] { return "column " + std::to_string(furthest) + " of " + std::to_string(columns_); });
}

} // namespace solve

/// Called by threads of the factorisation, between blocks of columns. An odd answer stops it.
extern "C" [[gnu::visibility("default")]] int NXL_PROGRESS(const int* /*thread*/, const int* step, const char* stage,
                                                           int stage_length) noexcept {
    // FactorisationProgress outlives the call of the factorisation, and so this one.
    if (auto* progress = solve::current.load()) progress->reach(*step, {stage, static_cast<std::size_t>(stage_length)});
    return common::interrupted() ? 1 : 0;
}
