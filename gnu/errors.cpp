// Reports of bad arguments, on their way from libnxl.so to the handler that a GNU program knows, xerbla_.
#include "nxl.h"
#include "service/export.hpp"
#include <cstddef>
#include <dlfcn.h>

extern "C" {

/// Whoever in the process has one: the program, or a library, such as the other BLAS. None is defined here: preloaded,
/// it would come before those of libraries, and take the reports of the other BLAS from them.
[[gnu::weak]] void xerbla_(const char* srname, const int* info, std::size_t length);

/// Takes the place of the XERBLA of libnxl.so, which prints its line when there is no xerbla_.
NXL_EXPORT void XERBLA(const char* srname, const int* info, int length) noexcept {
    if (xerbla_) return xerbla_(srname, info, static_cast<std::size_t>(length));
    void* const library = dlopen(NXL_SONAME, RTLD_LAZY | RTLD_NOLOAD);
    if (!library) return;
    // By the handle, where libnxl.so comes first.
    const auto print = reinterpret_cast<decltype(&XERBLA)>(dlsym(library, "XERBLA"));
    print(srname, info, length);
    dlclose(library);
}

} // extern "C"
