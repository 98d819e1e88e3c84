// The exported routines of level 2, for tests that go through all of them.
#pragma once
#include "tests/support/blas_call.hpp"

namespace nxl_test {

inline const Routine exported_level2[] = {
    routine<Family::gemv>("dgemv", dgemv),
    routine<Family::gemv>("zgemv", zgemv),
    routine<Family::ger>("dger", dger),
    routine<Family::ger>("zgerc", zgerc),
    routine<Family::ger>("zgeru", zgeru),
    routine<Family::symv>("dsymv", dsymv),
    routine<Family::symv>("zhemv", zhemv),
    routine<Family::syr>("dsyr", dsyr),
    routine<Family::syr>("zher", zher),
    routine<Family::syr>("zsyr", ZSYR),
    routine<Family::syr2>("dsyr2", dsyr2),
    routine<Family::syr2>("zher2", zher2),
    routine<Family::trv>("dtrmv", dtrmv),
    routine<Family::trv>("ztrmv", ztrmv),
    routine<Family::trv>("dtrsv", dtrsv, "dtrmv"),
    routine<Family::trv>("ztrsv", ztrsv, "ztrmv"),
};

} // namespace nxl_test
