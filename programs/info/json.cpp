// The findings for scripts: one object, with the same content as the text.
#include "findings.hpp"

#include <cstdio>

namespace info {
namespace {

std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        char escape[8];
        if (c == '"' || c == '\\') (out += '\\') += c;
        else if (static_cast<unsigned char>(c) < 0x20) {
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            out += escape;
        } else out += c;
    }
    return out + '"';
}

/// Builds an object or an array on one line.
class Json {
    std::string text_;
    char end_;

    void separate() {
        if (text_.size() > 1) text_ += ", ";
    }

  public:
    explicit Json(char begin) : text_(1, begin), end_(begin == '{' ? '}' : ']') {}

    Json& add(const char* name, const std::string& value) {
        separate();
        text_ += quoted(name) + ": " + value;
        return *this;
    }
    Json& add(const char* name, long value) { return add(name, std::to_string(value)); }
    Json& add(const std::string& value) {
        separate();
        text_ += value;
        return *this;
    }
    std::string text() const { return text_ + end_; }
};

const char* word(nxl::WidthReason reason) {
    switch (reason) {
    case nxl::WidthReason::environment: return "NXL_VECTOR_BITS";
    case nxl::WidthReason::class_is_narrow: return "class";
    case nxl::WidthReason::processor_has_fma: return "AVX2 and FMA";
    case nxl::WidthReason::processor_has_avx512: return "AVX-512";
    case nxl::WidthReason::processor_lacks_fma: return "no AVX2 or FMA";
    case nxl::WidthReason::system_does_not_save: break;
    }
    return "registers not saved";
}

const char* word(nxl::CountLimit limit) {
    switch (limit) {
    case nxl::CountLimit::none: return "none";
    case nxl::CountLimit::parallel_region: return "parallel region";
    case nxl::CountLimit::physical_cores: break;
    }
    return "physical cores";
}

std::string caches_of(const Machine& machine) {
    Json list('[');
    for (const Cache& cache : machine.caches)
        list.add(Json('{')
                     .add("level", long{cache.level})
                     .add("type", quoted(cache.type))
                     .add("bytes", cache.bytes)
                     .add("processors", long{cache.sharers})
                     .text());
    return list.text();
}

std::string threads_of(const Findings& f) {
    Json object('{');
    for (std::size_t domain = 0; domain < f.threads.size(); ++domain)
        object.add(kDomains[domain], Json('{')
                                         .add("count", long{f.answers[domain]})
                                         .add("requested", long{f.threads[domain].requested})
                                         .add("source", quoted(source_of(f.threads[domain])))
                                         .add("limit", quoted(word(f.threads[domain].limit)))
                                         .text());
    return object.text();
}

std::string environment_of(const Findings& f) {
    Json object('{');
    for (const auto& [name, value] : f.environment) object.add(name.c_str(), quoted(value));
    return object.text();
}

std::string list_of_lines(const std::vector<std::string>& lines) {
    Json list('[');
    for (const std::string& line : lines) list.add(quoted(line));
    return list.text();
}

} // namespace

void print_json(const Findings& f, const std::vector<std::string>& warnings) {
    const std::pair<const char*, std::string> members[] = {
        {"version", quoted(NXL_INFO_VERSION)},
        {"library", quoted(f.library)},
        {"processor", quoted(f.machine.processor)},
        {"vendor", quoted(f.machine.vendor)},
        {"class", std::to_string(static_cast<int>(f.cpu_class.taken))},
        {"class_detected", std::to_string(static_cast<int>(f.cpu_class.detected))},
        {"class_source", quoted(f.cpu_class.overridden ? "NXL_DEBUG_CPU_TYPE" : "processor")},
        {"vector_bits", std::to_string(f.width.bits)},
        {"vector_source", quoted(word(f.width.reason))},
        {"caches", caches_of(f.machine)},
        {"physical_cores", std::to_string(f.machine.cores)},
        {"processors_online", quoted(list_of(f.machine.online))},
        {"processors_allowed", quoted(list_of(f.machine.allowed))},
        {"threads", threads_of(f)},
        {"dynamic", f.dynamic ? "true" : "false"},
        {"dynamic_cores", std::to_string(f.cores)},
        {"scratch_cached", f.scratch_cached ? "true" : "false"},
        {"environment", environment_of(f)},
        {"warnings", list_of_lines(warnings)},
    };
    const char* before = "{\n  ";
    for (const auto& [name, value] : members) {
        std::printf("%s%s: %s", before, quoted(name).c_str(), value.c_str());
        before = ",\n  ";
    }
    std::printf("\n}\n");
}

} // namespace info
