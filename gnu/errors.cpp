// Reports of bad arguments, on their way from libnxl.so to the handler that a GNU program knows, xerbla_.
#include "nxl.h"
#include "service/export.hpp"
#include <cstddef>
#include <dlfcn.h>

namespace {

template <class Fn> Fn* function_at(void* address) { return reinterpret_cast<Fn*>(address); }

} // namespace

extern "C" {

/// A program, or a library before this one, may define its own, which then takes the reports of both libraries. Failing
/// that they go where they would go without this library, to the next xerbla_ in the order of loading; and if there is
/// none, libnxl.so prints its line.
NXL_EXPORT void xerbla_(const char* srname, const int* info, std::size_t length) noexcept {
    if (void* next = dlsym(RTLD_NEXT, "xerbla_"))
        return function_at<void(const char*, const int*, std::size_t)>(next)(srname, info, length);
    void* const library = dlopen(NXL_SONAME, RTLD_LAZY | RTLD_NOLOAD); // by its handle: XERBLA below comes before its own
    if (!library) return;
    function_at<void(const char*, const int*, int)>(dlsym(library, "XERBLA"))(srname, info, static_cast<int>(length));
    dlclose(library);
}

/// Takes the place of the XERBLA of libnxl.so.
NXL_EXPORT void XERBLA(const char* srname, const int* info, int length) noexcept {
    xerbla_(srname, info, static_cast<std::size_t>(length));
}

} // extern "C"
