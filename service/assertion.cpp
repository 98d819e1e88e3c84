#include "service/assertion.hpp"
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace nxl {
namespace {

/// "pardiso/smat.cpp" of a longer path.
const char* name_in_folder(const char* path) {
    const char *folder = path, *name = path;
    for (const char* at = path; *at; ++at) {
        if (*at != '/') continue;
        folder = name;
        name = at + 1;
    }
    return folder;
}

} // namespace

void assertion_failed(const char* text, const std::source_location& at) {
    const char* source = name_in_folder(at.file_name());
    const char* dot = std::strrchr(source, '.');
    const auto length = static_cast<int>(dot ? dot - source : static_cast<std::ptrdiff_t>(std::strlen(source)));
    std::fflush(stdout);
    std::fprintf(stderr, "Assertion failed: %s, file %.*s, line %u\n", text, length, source, at.line());
    std::abort();
}

} // namespace nxl
