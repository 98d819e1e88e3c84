#include "solvers_ds/kernel/default/pardiso/out_of_core/window.hpp"
#include <algorithm>

namespace nxl::pardiso {

OocWindow window_for(const WindowNeed& need, i64 max_core) {
    const i64 lower = need.lower_bytes(), upper = need.upper_bytes();
    const i64 kilobytes = max_core * 1024 - need.permanent - need.index_arrays;
    if ((((lower >> 10) + need.permanent + (upper >> 10)) >> 10) + 1 > max_core) return {};
    if (kilobytes - 1 < (lower + upper) >> 10) return {};
    const i64 room = (kilobytes - 2) << 10;
    if (room >= need.factor_bytes() + need.list_bytes())
        return {true, true, need.factor_bytes() / 8, need.list_bytes() / 4};
    const i64 ratio = need.factor_bytes() / need.list_bytes();
    const i64 blocks = 2 * (need.largest_block + need.largest_upper) * need.scalar_words * 8;
    const i64 lists = std::max(std::min(room / (ratio + 1), room - blocks), need.least_list_bytes());
    return {true, false, std::max(room - lists, blocks) / 8, lists / 4};
}

} // namespace nxl::pardiso
