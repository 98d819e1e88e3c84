// Parameters of the multishift QR iteration for Hessenberg matrices, and of its kin. Method: Braman, Byers and Mathias,
// The multishift QR algorithm, parts I and II, SIAM J. Matrix Anal. Appl. 23 (2002). The numbers are the published
// defaults.
#pragma once
#include "lapack/kernel/source/tuning/routine_name.hpp"
#include "service/types.hpp"
#include <algorithm>
#include <bit>
#include <cstdint>

namespace nxl {

/// For `active` rows and columns that have not yet converged.
struct MultishiftSizes {
    static constexpr i64 least_order = 75; // smaller matrices go to the double-shift iteration
    static constexpr i64 nibble = 14;      // percentage of a window that must deflate for its sweep to be skipped

    /// Simultaneous shifts, an even number.
    static constexpr i64 shifts(i64 active) {
        if (active < 30) return 2;
        if (active < 60) return 4;
        if (active < 150) return 10;
        if (active < 590) return std::max(i64{10}, active / rounded_log2(active)) / 2 * 2;
        if (active < 3000) return 64;
        return active < 6000 ? 128 : 256;
    }
    /// Columns of the deflation window.
    static constexpr i64 window(i64 active) {
        constexpr i64 wide_above = 500;
        return active <= wide_above ? shifts(active) : 3 * shifts(active) / 2;
    }
    /// How the work of `amount` shifts of a sweep, or columns of a reordering, is done: 0 reflections one by one, 2
    /// gathered into products with the blocks' zeros kept out.
    static constexpr i64 gathering(i64 amount) { return amount >= 14 ? 2 : 0; }

  private:
    /// Of a number from 1 to 2^31, to the nearest integer.
    static constexpr i64 rounded_log2(i64 value) {
        return std::bit_width(static_cast<std::uint64_t>(value * value)) / 2;
    }
};

/// What is asked for by name, with ILAENV's numbers.
enum class EigenQuery : i64 { least_order = 12, deflation_window = 13, nibble = 14, shifts = 15, accumulate = 16 };

/// For rows and columns ilo to ihi; -1 for another query.
i64 eigen_tuning(EigenQuery query, const RoutineName& name, i64 ilo, i64 ihi);

} // namespace nxl
