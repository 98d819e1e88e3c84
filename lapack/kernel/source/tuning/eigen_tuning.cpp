// Parameters of the multishift QR iteration: the published defaults.
#include "lapack/kernel/source/tuning/eigen_tuning.hpp"
#include <algorithm>
#include <bit>

namespace nxl {
namespace {

constexpr i64 least_multishift_order = 75;
constexpr i64 nibble_percentage = 14;
constexpr i64 wide_window_above = 500; // active columns
constexpr i64 products_from = 14;      // shifts of a sweep, or columns of a reordering
constexpr i64 zeros_kept_from = 14;

/// log2 of a number from 1 to 2^31, rounded to the nearest integer.
i64 rounded_log2(i64 value) { return std::bit_width(static_cast<std::uint64_t>(value * value)) / 2; }

/// For `active` rows and columns that have not yet converged.
i64 shift_count(i64 active) {
    if (active < 30) return 2;
    if (active < 60) return 4;
    if (active < 150) return 10;
    if (active < 590) return std::max(i64{10}, active / rounded_log2(active)) / 2 * 2;
    if (active < 3000) return 64;
    return active < 6000 ? 128 : 256;
}

i64 window_width(i64 active) {
    const i64 shifts = shift_count(active);
    return active <= wide_window_above ? shifts : 3 * shifts / 2;
}

/// How the work of `amount` shifts or columns is gathered.
i64 gathering(i64 amount) {
    if (amount >= zeros_kept_from) return 2;
    return amount >= products_from ? 1 : 0;
}

i64 accumulation(const RoutineName& name, i64 active) {
    const auto matrix = name.matrix(), operation = name.operation();
    if (matrix == "GG" && (operation == "HRD" || operation == "HD3")) return std::max(i64{1}, gathering(active));
    if (operation == "EXC") return gathering(active);
    const bool iterates = (matrix == "HS" && operation == "EQR") || (matrix == "LA" && operation.starts_with("QR"));
    return iterates ? gathering(shift_count(active)) : 0;
}

} // namespace

i64 eigen_tuning(EigenQuery query, const RoutineName& name, char, i64, i64 ilo, i64 ihi, i64) {
    const i64 active = ihi - ilo + 1;
    switch (query) {
    case EigenQuery::least_order: return least_multishift_order;
    case EigenQuery::deflation_window: return window_width(active);
    case EigenQuery::nibble: return nibble_percentage;
    case EigenQuery::shifts: return shift_count(active);
    case EigenQuery::accumulate: return accumulation(name, active);
    }
    return -1;
}

} // namespace nxl
