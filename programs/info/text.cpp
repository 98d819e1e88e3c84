// The findings for people.
#include "findings.hpp"

#include "service/environment.hpp"

#include <cstdio>

namespace info {
namespace {

using nxl::ThreadChoice;

void line(const char* label, const std::string& text) { std::printf("%-13s%s\n", label, text.c_str()); }

std::string plural(int count, const std::string& thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string class_line(const nxl::ClassChoice& choice) {
    const std::string detected = std::to_string(static_cast<int>(choice.detected));
    if (!choice.overridden) return detected + " (detected)";
    return std::to_string(static_cast<int>(choice.taken)) + " (NXL_DEBUG_CPU_TYPE; detected: " + detected + ")";
}

const char* reason(nxl::WidthReason reason) {
    switch (reason) {
    case nxl::WidthReason::environment: return "NXL_VECTOR_BITS";
    case nxl::WidthReason::class_is_narrow: return "processors of this class have no wider ones";
    case nxl::WidthReason::processor_has_fma: return "the processor has AVX2 and FMA";
    case nxl::WidthReason::processor_has_avx512: return "the processor has AVX-512";
    case nxl::WidthReason::processor_lacks_fma: return "the processor lacks AVX2 or FMA";
    case nxl::WidthReason::system_does_not_save: break;
    }
    return "the operating system does not save wider registers";
}

std::string size_of(long bytes) {
    if (bytes >= 1 << 20 && bytes % (1 << 20) == 0) return std::to_string(bytes >> 20) + " MiB";
    return std::to_string(bytes >> 10) + " KiB";
}

void print_caches(const std::vector<Cache>& caches) {
    const char* label = "caches";
    for (const Cache& cache : caches) {
        std::string text = "L" + std::to_string(cache.level) + " " + cache.type + ", " + size_of(cache.bytes);
        if (cache.sharers > 1) text += ", shared by " + plural(cache.sharers, "processor");
        line(label, text);
        label = "";
    }
    if (caches.empty()) line(label, "not known");
}

std::string affinity_line(const Machine& machine) {
    if (machine.online.size() == 0) return "not known";
    return "processors " + list_of(machine.allowed) +
           (machine.narrowed() ? " of " + list_of(machine.online) : ", all that are online");
}

std::string thread_reason(const ThreadChoice& choice, std::size_t domain, const Findings& f) {
    std::string text = source_of(choice);
    if (choice.store != static_cast<int>(domain)) text = "as for all";
    else if (choice.source == nxl::CountSource::openmp)
        text = nxl::environment("OMP_NUM_THREADS") ? "OMP_NUM_THREADS, through OpenMP" : "OpenMP's default";
    if (choice.store == static_cast<int>(domain) && choice.limit == nxl::CountLimit::physical_cores)
        text += " asks for " + std::to_string(choice.requested) + "; dynamic adjustment holds it to " +
                (f.machine.narrowed() ? "1, as the affinity mask is narrowed" : "the physical cores");
    return text;
}

void print_threads(const Findings& f) {
    for (std::size_t domain = 0; domain < f.threads.size(); ++domain) {
        std::string text = kDomains[domain];
        text.resize(6, ' ');
        text += std::to_string(f.answers[domain]) + "  (" + thread_reason(f.threads[domain], domain, f) + ")";
        line(domain == 0 ? "threads" : "", text);
    }
}

} // namespace

void print_text(const Findings& f) {
    line("nxl", std::string(NXL_INFO_VERSION) + ", " + f.library);
    line("processor", f.machine.processor + (f.machine.vendor.empty() ? "" : ", " + f.machine.vendor));
    line("class", class_line(f.cpu_class));
    line("vectors", std::to_string(f.width.bits) + " bits (" + reason(f.width.reason) + ")");
    print_caches(f.machine.caches);
    const int online = f.machine.online.size(); // 0 where the system does not describe itself
    line("cores", std::to_string(f.machine.cores) + " physical, " +
                      (online > 0 ? plural(online, "processor") : "processors not known"));
    line("affinity", affinity_line(f.machine));
    print_threads(f);
    line("dynamic", f.dynamic ? "on: at most " + plural(f.cores, "thread") + ", and 1 inside a parallel region"
                              : "off (NXL_DYNAMIC)");
    line("scratch", f.scratch_cached
                        ? "cached for each thread"
                        : std::string("not cached (") +
                              (nxl::environment("NXL_MM_DISABLE") ? "NXL_MM_DISABLE)" : "NXL_DISABLE_FAST_MM)"));
    const char* label = "environment";
    for (const auto& [name, value] : f.environment) {
        line(label, name + "=" + value);
        label = "";
    }
    if (f.environment.empty()) line(label, "none of NXL_*, OMP_* and KMP_* is set");
}

} // namespace info
