// The names of the kernels with files, as reports have them.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/factor.hpp"

namespace nxl::pardiso {

template <class M> constexpr const char* factor_kernel_name() {
    constexpr bool complex = is_complex_scalar<typename M::T>;
    switch (M::form) {
    case Form::cholesky: return complex ? "ch_blkl" : "blkl";
    case Form::ldl: return M::hermitian ? "ch_blkldl" : complex ? "c_blkl" : "blkldl";
    case Form::lu: return complex ? "c_blklu" : "blklu";
    default: return complex ? "c_blklu_unsym" : "blklu_unsym";
    }
}

/// For one right-hand side, or several.
template <class M> constexpr const char* solve_kernel_name(bool one) {
    constexpr bool complex = is_complex_scalar<typename M::T>;
    switch (M::form) {
    case Form::cholesky:
        if (complex) return one ? "ch_blkslvs1" : "ch_blkslvs";
        return one ? "blkslvs1" : "blkslvs";
    case Form::ldl:
        if (M::hermitian) return one ? "ch_blkldlslvs1" : "ch_blkldlslvs";
        if (complex) return one ? "c_blkslvs1" : "c_blkslvs";
        return one ? "blkldlslvs1" : "blkldlslvs";
    default:
        if (complex) return one ? "c_blkslv1_unsym" : "c_blkslv_unsym";
        return one ? "blkslv1_unsym" : "blkslv_unsym";
    }
}

} // namespace nxl::pardiso
