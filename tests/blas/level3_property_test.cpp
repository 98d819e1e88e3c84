// Levels 2 and 3 through the exported entries in calls drawn at random, against the reference BLAS. NXL_TEST_SEED makes
// one call again, by the seed that its failure names.
#include "tests/support/blas_call.hpp"

namespace {

using nxl_test::BlasCall;
using nxl_test::Family;
using nxl_test::Generator;
using nxl_test::routine;

const nxl_test::Routine routines[] = {
    routine<Family::gemm>("dgemm", dgemm),
    routine<Family::gemm>("zgemm", zgemm),
    routine<Family::symm>("dsymm", dsymm),
    routine<Family::symm>("zsymm", zsymm),
    routine<Family::symm>("zhemm", zhemm),
    routine<Family::syrk>("dsyrk", dsyrk),
    routine<Family::syrk>("zsyrk", zsyrk),
    routine<Family::syrk>("zherk", zherk),
    routine<Family::syr2k>("dsyr2k", dsyr2k),
    routine<Family::syr2k>("zsyr2k", zsyr2k),
    routine<Family::syr2k>("zher2k", zher2k),
    routine<Family::trm>("dtrmm", dtrmm),
    routine<Family::trm>("ztrmm", ztrmm),
    routine<Family::trm>("dtrsm", dtrsm, "dtrmm"),
    routine<Family::trm>("ztrsm", ztrsm, "ztrmm"),
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

/// Mostly small, one in sixteen up to 300.
int random_size(Generator& generator) { return static_cast<int>(generator() % (generator() % 16 == 0 ? 301 : 71)); }

class RandomCalls : public ::testing::TestWithParam<nxl_test::Routine> {};

TEST_P(RandomCalls, MatchTheReference) {
    NXL_Set_Dynamic(0);
    const std::vector<BlasCall> letters = letters_of(GetParam());
    const char* chosen = std::getenv("NXL_TEST_SEED");
    const unsigned long first = chosen ? std::strtoul(chosen, nullptr, 10) : 1, last = chosen ? first : 200;
    for (unsigned long seed = first; seed <= last; ++seed) {
        Generator generator(seed);
        BlasCall call = randomised(pick(generator, letters), generator);
        for (int* size : {&call.m, &call.n, &call.k}) *size = random_size(generator);
        call.threads = {static_cast<int>(1 + generator() % 6)};
        ASSERT_TRUE(GetParam().check(call)) << "again with NXL_TEST_SEED=" << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(, RandomCalls, ::testing::ValuesIn(routines), nxl_test::name_of);

} // namespace
