// Levels 2 and 3 through the exported entries in calls drawn at random, against the reference BLAS. NXL_TEST_SEED makes
// one call again, by the seed that its failure names.
#include "tests/blas/exported_level2.hpp"

namespace {

using nxl_test::BlasCall;
using nxl_test::Family;
using nxl_test::Generator;
using nxl_test::routine;

const nxl_test::Routine exported_level3[] = {
    routine<Family::gemm>("dgemm", dgemm),         routine<Family::gemm>("zgemm", zgemm),
    routine<Family::symm>("dsymm", dsymm),         routine<Family::symm>("zsymm", zsymm),
    routine<Family::symm>("zhemm", zhemm),         routine<Family::syrk>("dsyrk", dsyrk),
    routine<Family::syrk>("zsyrk", zsyrk),         routine<Family::syrk>("zherk", zherk),
    routine<Family::syr2k>("dsyr2k", dsyr2k),      routine<Family::syr2k>("zsyr2k", zsyr2k),
    routine<Family::syr2k>("zher2k", zher2k),      routine<Family::trm>("dtrmm", dtrmm),
    routine<Family::trm>("ztrmm", ztrmm),          routine<Family::trm>("dtrsm", dtrsm, "dtrmm"),
    routine<Family::trm>("ztrsm", ztrsm, "ztrmm"),
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

INSTANTIATE_TEST_SUITE_P(Level2, RandomCalls, ::testing::ValuesIn(nxl_test::exported_level2), nxl_test::name_of);
INSTANTIATE_TEST_SUITE_P(Level3, RandomCalls, ::testing::ValuesIn(exported_level3), nxl_test::name_of);

} // namespace
