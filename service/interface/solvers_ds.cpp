// Entry of the sparse direct solver.
#include "nxl.h"
#include "service/export.hpp"
#include "solvers_ds/kernel/default/pardiso/entry.hpp"

using namespace nxl;

extern "C" {

NXL_EXPORT void PARDISO(void* pt, const int* max_fac_store, const int* matrix_number, const int* matrix_type,
                        const int* ido, const int* neqns, const void* a, int* ia, int* ja, int* perm, const int* nb,
                        int* iparam, const int* msglvl, void* b, void* x, int* error) noexcept {
    *error = pardiso::pardiso_entry({.pt = static_cast<i64*>(pt),
                                     .max_fac_store = *max_fac_store,
                                     .matrix_number = *matrix_number,
                                     .mtype = *matrix_type,
                                     .ido = *ido,
                                     .neqns = *neqns,
                                     .a = a,
                                     .ia = ia,
                                     .ja = ja,
                                     .perm = perm,
                                     .nb = *nb,
                                     .iparam = pardiso::Parameters(iparam),
                                     .messages = *msglvl != 0,
                                     .b = b,
                                     .x = x});
}

} // extern "C"
