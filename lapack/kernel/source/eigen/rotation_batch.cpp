// Sequences of rotations, and the threads that apply them, each to rows of its own.
#include "lapack/kernel/source/eigen/rotation_batch.hpp"
#include "service/kernel_slot.hpp"
#include "service/parallel.hpp"
#include "service/slice.hpp"
#include "service/threads.hpp"

namespace nxl {

double* RotationBatch::sequence(i64 column, i64 step, i64 length) {
    double* const first = columns_ + column * ld_;
    if (first != first_ || step != step_ || count_ == most_sequences || length > length_ || 2 * length < length_) {
        apply();
        first_ = first;
        step_ = step;
        length_ = length;
    }
    double* const turns = turns_.data() + 2 * length_ * count_++;
    for (i64 j = length; j < length_; ++j) { // the elements behind have converged
        turns[2 * j] = 1.0;
        turns[2 * j + 1] = 0.0;
    }
    return turns;
}

void RotationBatch::apply() {
    if (count_ == 0) return;
    const i64 ld = step_ * ld_;
    constexpr double least = 1e5; // rotations of two numbers that are worth a thread
    constexpr i64 unit = 32;      // rows that the kernels take at a time
    const double work = static_cast<double>(rows_) * static_cast<double>(length_) * static_cast<double>(count_);
    int parts = 1;
    if (work >= 2 * least && !region_would_be_serial())
        parts = static_cast<int>(std::min(work / least, static_cast<double>(max_threads(domain_all))));
    const auto turn_rows = [&](i64 start, i64 count) {
        slot<&KernelTable::drotations>(count, length_ + 1, count_, turns_.data(), first_ + start, ld);
    };
    if (parts < 2) turn_rows(0, rows_);
    else
        parallel_blocks(parts, parts, [&](int part) {
            const Slice mine = balanced_slice(rows_, unit, part, parts);
            turn_rows(mine.start, mine.count);
        });
    count_ = 0;
}

} // namespace nxl
