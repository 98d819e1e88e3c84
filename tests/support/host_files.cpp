#include "tests/support/host_files.hpp"
#include <cerrno>
#include <cstdio>
#include <dlfcn.h>

namespace nxl_test {

HostFiles host_files;

namespace {

template <class Function> Function* next_one(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool fails(std::FILE* file = nullptr) {
    if (file == stdout || file == stderr) return false;
    if (++host_files.operations != host_files.fail_at) return false;
    errno = EIO;
    return true;
}

} // namespace
} // namespace nxl_test

using nxl_test::fails;
using nxl_test::next_one;

extern "C" {

std::FILE* fopen(const char* path, const char* mode) {
    static auto* const real = next_one<std::FILE*(const char*, const char*)>("fopen");
    return fails() ? nullptr : real(path, mode);
}
std::size_t fread(void* data, std::size_t size, std::size_t count, std::FILE* file) {
    static auto* const real = next_one<std::size_t(void*, std::size_t, std::size_t, std::FILE*)>("fread");
    return fails(file) ? 0 : real(data, size, count, file);
}
std::size_t fwrite(const void* data, std::size_t size, std::size_t count, std::FILE* file) {
    static auto* const real = next_one<std::size_t(const void*, std::size_t, std::size_t, std::FILE*)>("fwrite");
    return fails(file) ? 0 : real(data, size, count, file);
}
int fseeko(std::FILE* file, off_t offset, int whence) {
    static auto* const real = next_one<int(std::FILE*, off_t, int)>("fseeko");
    return fails(file) ? -1 : real(file, offset, whence);
}
int fclose(std::FILE* file) {
    static auto* const real = next_one<int(std::FILE*)>("fclose");
    const bool bad = fails(file);
    const int code = real(file); // closed whatever is said of it
    return bad ? EOF : code;
}
}
