// One call of PARDISO: its arguments by value, and how it may fail.
#pragma once
#include "solvers_ds/kernel/default/pardiso/names.hpp"

namespace nxl::pardiso {

/// How a step ended. `inner` is the code behind the error: of a check, a stage, or the tag of an allocation.
struct [[nodiscard]] Fault {
    Error error = Error::none;
    i32 inner = 0;
    i64 bytes = 0; ///< that an allocation asked for

    explicit operator bool() const { return error != Error::none; }
};

constexpr Fault refused(i32 code) { return {Error::parameters, code}; }

/// The arguments of one call. `ido` is the step as the driver sees it, without the sub-step's digit.
struct Call {
    i64* pt;
    i32 max_fac_store, matrix_number, mtype, ido;
    i32 neqns;
    const void* a;
    i32* ia;
    i32* ja;
    i32* perm;
    i32 nb;
    Parameters iparam;
    bool messages; ///< msglvl is on
    void* b;
    void* x;
    i32 sub_step = 0; ///< of 331 to 333
    i64 length = 0;   ///< of A, as the driver takes it: from ia, or as the analysis found it

    i32 first_stage() const { return ido > 0 ? ido / 10 : 0; }
    i32 last_stage() const { return ido > 0 ? ido % 10 : 0; }
    bool starts_analysis() const { return first_stage() == 1; }

    /// The length of A that ia tells; 0 where neqns leaves no row pointer to read.
    i64 told_length() const { return neqns < 0 ? 0 : i64{ia[neqns]} - 1; }
};

} // namespace nxl::pardiso
