// The reference BLAS as an oracle, loaded apart from everything else in the process.
#pragma once
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace nxl_test {

/// A Fortran routine by its name with the underscore: reference<void(const int*, ...)>("dscal_").
template <class Fn> Fn* reference(const char* name) {
    static void* const library = dlopen("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3", RTLD_NOW | RTLD_LOCAL);
    void* routine = library ? dlsym(library, name) : nullptr;
    if (!routine) {
        std::fprintf(stderr, "reference BLAS: %s\n", dlerror());
        std::abort();
    }
    return reinterpret_cast<Fn*>(routine);
}

} // namespace nxl_test
