#include "bench/interleaved.hpp"
#include <algorithm>
#include <cmath>
#include <utility>

namespace nxl::bench {
namespace {

constexpr double batch_seconds = 30e-6; // a thousand times what reading the clock costs, and seldom interrupted

} // namespace

Interleaved::Interleaved(std::vector<Batch> contenders, double least_seconds, Clock now, Untimed untimed)
    : contenders_(std::move(contenders)),
      now_(now),
      untimed_(std::move(untimed)),
      samples_(contenders_.size()) {
    // Where batches are looked at their number of calls is odd: every second call may undo the one before it.
    const i64 odd = untimed_.after_batch ? 1 : 0;
    for (const Batch& batch : contenders_) calls_.push_back(calls_per_batch(batch, least_seconds) | odd);
}

double Interleaved::time_of(const Batch& batch, i64 calls) const {
    if (!untimed_.before_call) {
        const double start = now_();
        batch(calls);
        return now_() - start;
    }
    double seconds = 0.0;
    for (i64 call = 0; call < calls; ++call) {
        untimed_.before_call();
        const double start = now_();
        batch(1);
        seconds += now_() - start;
    }
    return seconds;
}

/// The shortest of three, so that neither a first call nor an interruption counts.
double Interleaved::settled_time_of(const Batch& batch, i64 calls) const {
    return std::min({time_of(batch, calls), time_of(batch, calls), time_of(batch, calls)});
}

i64 Interleaved::calls_per_batch(const Batch& batch, double least_seconds) const {
    if (least_seconds >= batch_seconds) return 1;
    for (i64 calls = 1;; calls *= 2)
        if (const double seconds = settled_time_of(batch, calls); seconds >= batch_seconds / 2)
            return std::max(i64{1}, std::lround(static_cast<double>(calls) * batch_seconds / seconds));
}

double Interleaved::round() {
    double total = 0.0;
    for (std::size_t place = 0; place < contenders_.size(); ++place) {
        const std::size_t i = (first_ + place) % contenders_.size();
        if (untimed_.before_batch) untimed_.before_batch();
        const double seconds = time_of(contenders_[i], calls_[i]);
        if (untimed_.after_batch) untimed_.after_batch(i, calls_[i]);
        samples_[i].push_back(seconds / static_cast<double>(calls_[i]));
        total += seconds;
    }
    ++first_;
    return total;
}

std::vector<double> Interleaved::seconds() const {
    std::vector<double> result;
    for (std::vector<double> sample : samples_) {
        const auto quartile = sample.begin() + static_cast<i64>(sample.size()) / 4;
        std::ranges::nth_element(sample, quartile);
        result.push_back(*quartile);
    }
    return result;
}

} // namespace nxl::bench
