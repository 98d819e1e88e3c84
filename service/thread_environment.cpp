// The grammar of the thread settings in the environment.
#include "service/thread_environment.hpp"
#include <algorithm>
#include <limits>

namespace nxl {
namespace {

constexpr std::string_view quotes_and_blank = " \"'";
constexpr std::string_view separators = " ,;:\"'";
constexpr std::string_view name_ends = "= \"'";
constexpr std::string_view between_name_and_value = " =";

constexpr std::string_view domain_names[thread_domain_count] = {"NXL_ALL", "NXL_BLAS", "NXL_FFT", "NXL_VML"};

void skip(std::string_view& rest, std::string_view characters) {
    rest.remove_prefix(std::min(rest.find_first_not_of(characters), rest.size()));
}

/// Splits off what stands before the first of `stops`.
std::string_view take_until(std::string_view& rest, std::string_view stops) {
    const std::string_view part(rest.data(), std::min(rest.find_first_of(stops), rest.size()));
    rest.remove_prefix(part.size());
    return part;
}

} // namespace

int thread_count_from(std::string_view text) {
    constexpr int largest = std::numeric_limits<int>::max();
    if (text.empty()) return 1;
    int count = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') return 1;
        const int digit = c - '0';
        count = count > (largest - digit) / 10 ? largest : 10 * count + digit;
    }
    return count;
}

int outer_level_count_from(std::string_view list) {
    skip(list, " ");
    const std::string_view first = take_until(list, " ,");
    return first.empty() || first[0] < '0' || first[0] > '9' ? 0 : thread_count_from(first);
}

bool next_domain_entry(std::string_view& rest, DomainEntry& entry) {
    skip(rest, separators);
    entry.name = take_until(rest, name_ends);
    if (entry.name.empty()) return false;
    skip(rest, between_name_and_value);
    entry.count = take_until(rest, separators);
    if (!rest.empty()) rest.remove_prefix(1); // the separator, so that a quote right after "=" cannot stop the walk
    return true;
}

int domain_named(std::string_view name) {
    for (int domain = 0; domain < thread_domain_count; ++domain)
        if (name == domain_names[domain]) return domain;
    return -1;
}

DomainCounts domain_counts_from(std::string_view text) {
    DomainCounts counts;
    for (DomainEntry entry; next_domain_entry(text, entry);) {
        const int domain = domain_named(entry.name), count = thread_count_from(entry.count);
        if (domain >= 0 && count > 0 && counts.of[domain] < 0) counts.of[domain] = count;
    }
    return counts;
}

bool dynamic_from(std::string_view rest) {
    skip(rest, quotes_and_blank);
    const std::string_view word = take_until(rest, quotes_and_blank);
    return word != "FALSE" && word != "false";
}

} // namespace nxl
