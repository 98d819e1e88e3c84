// Thread settings as the environment writes them: pure functions over text. What becomes of them stands in threads.cpp.
#pragma once
#include "service/threads.hpp"
#include <string_view>

namespace nxl {

inline constexpr int count_not_set = -1;

/// A thread count. Digits alone are their number, at most the largest int; any other text, the empty one too, is 1.
int thread_count_from(std::string_view text);

/// The first count of a list such as `OMP_NUM_THREADS` is, "4,2": that of regions which are not inside another. 0 when
/// the list does not begin with a number.
int outer_level_count_from(std::string_view list);

/// One name and its count, as they stand in `NXL_DOMAIN_NUM_THREADS`.
struct DomainEntry {
    std::string_view name, count;
};

/// Takes the next entry off the list; false at its end.
bool next_domain_entry(std::string_view& rest, DomainEntry& entry);

/// The domain that an entry's name stands for; -1 for other names.
int domain_named(std::string_view name);

struct DomainCounts {
    int of[thread_domain_count] = {count_not_set, count_not_set, count_not_set, count_not_set};
};

/// The counts that `NXL_DOMAIN_NUM_THREADS` holds, as in "NXL_ALL=4, NXL_BLAS 2". A domain's first positive count wins;
/// unknown names are skipped, and an empty name, as in "=4", ends the list.
DomainCounts domain_counts_from(std::string_view text);

/// What `NXL_DYNAMIC` says: off for the words FALSE and false, also in quotes, and on for everything else.
bool dynamic_from(std::string_view text);

} // namespace nxl
