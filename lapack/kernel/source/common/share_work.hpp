// Independent items of like size, dealt to as many threads as they pay for.
#pragma once
#include "service/parallel.hpp"
#include "service/slice.hpp"
#include "service/threads.hpp"

namespace nxl {

/// Calls body(start, end) for parts of `count` items, each of which takes `work` operations. Parts end at multiples of
/// `unit`; no result may depend on where.
template <class Body> void share_work(i64 count, i64 unit, double work, const Body& body) {
    constexpr double least = 1e5; // operations that are worth a thread
    const auto items = static_cast<double>(count);
    const double most = std::min(items * work / least, items / static_cast<double>(unit));
    if (most < 2.0 || region_would_be_serial()) return body(i64{0}, count);
    const int parts = static_cast<int>(std::min(most, static_cast<double>(max_threads(domain_all))));
    if (parts < 2) return body(i64{0}, count);
    parallel_blocks(parts, parts, [&](int part) {
        const Slice mine = balanced_slice(count, unit, part, parts);
        body(mine.start, mine.end());
    });
}

} // namespace nxl
