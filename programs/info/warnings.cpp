// Settings that do not do what they seem to. The library itself says nothing about any of them.
#include "findings.hpp"

#include "service/environment.hpp"
#include "service/thread_environment.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace info {
namespace {

using nxl::environment;
using Lines = std::vector<std::string>;

constexpr std::array<std::string_view, 7> kVariables = {
    "NXL_NUM_THREADS", "NXL_DOMAIN_NUM_THREADS", "NXL_DYNAMIC",   "NXL_DEBUG_CPU_TYPE",
    "NXL_VECTOR_BITS", "NXL_DISABLE_FAST_MM",    "NXL_MM_DISABLE"};

std::string quoted(const std::string& name, std::string_view value) { return name + "='" + std::string(value) + "'"; }

bool digits_alone(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](unsigned char c) { return std::isdigit(c) != 0; });
}

void about_count(Lines& lines, const std::string& name, std::string_view text) {
    if (!digits_alone(text)) lines.push_back(quoted(name, text) + " is not a number and counts as 1");
    else if (nxl::thread_count_from(text) == 0) lines.push_back(name + "=0 sets no count");
}

void about_counts(Lines& lines) {
    if (const char* text = environment("NXL_NUM_THREADS")) about_count(lines, "NXL_NUM_THREADS", text);
    const char* list = environment("NXL_DOMAIN_NUM_THREADS");
    if (!list) return;
    std::string_view rest = list;
    for (nxl::DomainEntry entry; nxl::next_domain_entry(rest, entry);) {
        if (nxl::domain_named(entry.name) >= 0)
            about_count(lines, std::string(entry.name) + " in NXL_DOMAIN_NUM_THREADS", entry.count);
        else
            lines.push_back("NXL_DOMAIN_NUM_THREADS: '" + std::string(entry.name) +
                            "' is not NXL_ALL, NXL_BLAS, NXL_FFT or NXL_VML and is skipped");
    }
    if (!rest.empty())
        lines.push_back("NXL_DOMAIN_NUM_THREADS: a name is missing, and '" + std::string(rest) + "' is not read");
}

void about_words(Lines& lines, const Findings& f) {
    if (const char* text = environment("NXL_DYNAMIC"); text && f.dynamic) {
        std::string word(text);
        std::ranges::transform(word, word.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (const auto off = {"0", "no", "off", "false"}; std::ranges::find(off, word) != off.end())
            lines.push_back(quoted("NXL_DYNAMIC", text) +
                            " leaves dynamic adjustment on: only FALSE and false turn it off");
    }
    if (const char* text = environment("NXL_DEBUG_CPU_TYPE"); text && !f.cpu_class.overridden)
        lines.push_back(quoted("NXL_DEBUG_CPU_TYPE", text) + " is not a class from 0 to 3 and is ignored");
    if (const char* text = environment("NXL_VECTOR_BITS");
        text && std::string_view(text) != std::to_string(f.width.bits))
        lines.push_back(quoted("NXL_VECTOR_BITS", text) +
                        " is ignored: the choices are 128, 256 and 512, as far as there are such kernels");
}

/// Letters to insert, remove or replace on the way from one word to the other.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.back();
}

void about_names(Lines& lines, const Findings& f) {
    for (const auto& [name, value] : f.environment) {
        if (!name.starts_with("NXL_") || std::ranges::find(kVariables, name) != kVariables.end()) continue;
        std::string hint;
        if (nxl::domain_named(name) >= 0) hint = "; it belongs into NXL_DOMAIN_NUM_THREADS";
        for (const std::string_view known : kVariables)
            if (distance(name, known) <= 2) hint = "; is it " + std::string(known) + "?";
        lines.push_back(name + " is not a variable of the library" + hint);
    }
}

void about_affinity(Lines& lines, const Findings& f) {
    if (!f.machine.narrowed() || !f.dynamic) return;
    std::string line = "the affinity mask narrows this process to processors " + list_of(f.machine.allowed) + " of " +
                       list_of(f.machine.online) + ", so that dynamic adjustment keeps every call on one thread";
    if (f.machine.allowed.size() > 1) line += "; to use them, set NXL_DYNAMIC=FALSE and NXL_NUM_THREADS";
    lines.push_back(line);
}

void about_load(Lines& lines, const Findings& f) {
    const int processors = f.machine.allowed.size();
    for (const nxl::ThreadChoice& choice : f.threads) {
        if (&choice != f.threads.data() && choice.store == nxl::domain_all) continue; // said once
        if (processors > 0 && choice.requested > processors)
            lines.push_back(source_of(choice) + " asks for " + std::to_string(choice.requested) +
                            " threads, more than the processors that this process may run on (" +
                            std::to_string(processors) + ")" +
                            (choice.count < choice.requested ? "; it gets " + std::to_string(choice.count) : ""));
    }
}

/// The counts come from libnxl.so, the reasons from this program's own copy of what decides.
void about_versions(Lines& lines, const Findings& f) {
    for (std::size_t domain = 0; domain < f.answers.size(); ++domain)
        if (f.answers[domain] != f.threads[domain].count)
            lines.push_back(f.library + " answers " + std::to_string(f.answers[domain]) + " threads for domain " +
                            kDomains[domain] + " where " + std::to_string(f.threads[domain].count) +
                            " are expected: it is of another version than nxl-info");
}

} // namespace

std::vector<std::string> warnings(const Findings& findings) {
    Lines lines;
    about_affinity(lines, findings);
    about_counts(lines);
    about_load(lines, findings);
    about_words(lines, findings);
    about_names(lines, findings);
    about_versions(lines, findings);
    return lines;
}

} // namespace info
