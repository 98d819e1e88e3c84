// The reference BLAS of the system's packages as an oracle. It is loaded from its own folder, which no other BLAS
// shares, and apart from the names of the program.
#pragma once
#include <dlfcn.h>
#include <stdexcept>
#include <string>

namespace nxl_test {

/// A routine by its Fortran name, as "dgemm_"; Fn is its type, with one std::size_t at the end for each character
/// argument. A missing library or name throws, which fails the test.
template <class Fn> Fn* reference(const char* name) {
    // The second names the first among its needs and is given the copy that is there already.
    static void* const libraries[] = {dlopen("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3", RTLD_NOW | RTLD_LOCAL),
                                      dlopen("/usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3", RTLD_NOW | RTLD_LOCAL)};
    for (void* library : libraries) {
        if (!library) throw std::runtime_error("no reference BLAS: install the packages libblas3 and liblapack3");
        if (void* address = dlsym(library, name)) return reinterpret_cast<Fn*>(address);
    }
    throw std::runtime_error(std::string("the reference BLAS has no ") + name);
}

} // namespace nxl_test
