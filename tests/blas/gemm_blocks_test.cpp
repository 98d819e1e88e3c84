// How the matrix product on one thread is cut: block lengths of every class, and the memory it packs into.
#include "blas/gemm_processor_seams.hpp"
#include "blas/kernels/level3/gemm_blocks.hpp"
#include "service/kernel_slot.hpp"
#include "tests/support/blas_call.hpp"

namespace nxl {
namespace {

void expect_blocks(const GemmBlocks& blocks, i64 mb, i64 nb, i64 kb) {
    EXPECT_EQ(blocks.mb, mb);
    EXPECT_EQ(blocks.nb, nb);
    EXPECT_EQ(blocks.kb, kb);
}

TEST(GemmBlocks, DepthOfClasses2And3) {
    struct Case {
        i64 k, kb;
    };
    for (const auto& [k, kb] : {Case{1, 128},
                                {100, 128},
                                {128, 128},
                                {129, 132},
                                {252, 252},
                                {253, 256},
                                {255, 256},
                                {256, 256},
                                {257, 132},
                                {258, 132},
                                {511, 256},
                                {512, 256},
                                {5000, 256}})
        EXPECT_EQ(halved_k(k), kb) << k;
}

TEST(GemmBlocks, Class0) {
    expect_blocks(gemm_blocks_def(1000, 1000, 128, 1), 512, 1000, 128);
    expect_blocks(gemm_blocks_def(1000, 4993, 129, 1), 512, 4992, 64);
    expect_blocks(gemm_blocks_def(1000, 1000, 256, 1), 512, 1000, 128);
    expect_blocks(gemm_blocks_def(1000, 1000, 257, 1), 512, 1000, 128);
    expect_blocks(gemm_blocks_def(9000, 1000, 16, 1), 1536, 1000, 128);
    expect_blocks(gemm_blocks_def(9000, 1000, 17, 1), 1024, 1000, 128);
    expect_blocks(gemm_blocks_def(9000, 1000, 33, 1), 768, 1000, 128);
    expect_blocks(gemm_blocks_def(9000, 1000, 65, 1), 512, 1000, 128);
    expect_blocks(gemm_blocks_def(8999, 1000, 16, 1), 512, 1000, 128);
    expect_blocks(gemm_blocks_def(1000, 1000, 300, 2), 256, 1000, 128);
}

TEST(GemmBlocks, Class1) {
    expect_blocks(gemm_blocks_p4n(1000, 3000, 112, 1), 480, 2000, 112);
    expect_blocks(gemm_blocks_p4n(1000, 1500, 113, 1), 480, 1500, 56);
    expect_blocks(gemm_blocks_p4n(1000, 1500, 224, 1), 480, 1500, 112);
    expect_blocks(gemm_blocks_p4n(1000, 1500, 225, 1), 480, 1500, 112);
    expect_blocks(gemm_blocks_p4n(4000, 6000, 224, 1), 512, 5000, 112);
    expect_blocks(gemm_blocks_p4n(4000, 6000, 32, 1), 1024, 5000, 112);
    expect_blocks(gemm_blocks_p4n(4000, 8000, 4000, 1), 512, 5000, 112);
    expect_blocks(gemm_blocks_p4n(4000, 7999, 4000, 1), 480, 2000, 112);
    expect_blocks(gemm_blocks_p4n(4000, 8000, 3999, 1), 480, 2000, 112);
}

TEST(GemmBlocks, Classes2And3) {
    expect_blocks(gemm_blocks_mc(3, 256), 512, 4, 256);
    expect_blocks(gemm_blocks_mc(10001, 256), 512, 10000, 256);
    expect_blocks(gemm_blocks_htn(1001, 100, true), 448, 1004, 128);
    expect_blocks(gemm_blocks_htn(1001, 100, false), 1000, 1004, 128);
    expect_blocks(gemm_blocks_mc3(7, 300), 512, 8, 152);
    expect_blocks(gemm_blocks_mc3(5001, 300), 512, 5000, 152);
}

TEST(GemmBlocks, ComplexOfClass2) {
    expect_blocks(zgemm_blocks_mc(1000, 1, 448), 250, 2, 224);
    expect_blocks(zgemm_blocks_mc(1000, 2001, 256), 440, 2000, 128);
    expect_blocks(zgemm_blocks_mc(1000, 500, 230), 494, 500, 114);
    expect_blocks(zgemm_blocks_mc(1000, 500, 447), 252, 500, 222);
    expect_blocks(zgemm_blocks_mc(1000, 500, 449), 250, 500, 224);
    expect_blocks(zgemm_blocks_mc(1, 500, 10), 2, 500, 224);
    expect_blocks(zgemm_blocks_htn(1000, 500, 300), 370, 500, 152);
}

TEST(GemmMemory, BytesByWhatIsPacked) {
    EXPECT_EQ(gemm_plan(512, 0, 128, 8).bytes, 128 * 64 + 512 * 128 * 8 + 13056);
    EXPECT_EQ(gemm_plan(512, 1000, 128, 8).bytes, 128 * 64 + 512 * 128 * 8 + 1000 * 128 * 8 + 21760);
    EXPECT_EQ(gemm_plan(0, 1000, 128, 16).bytes, 128 * 64 + 1000 * 128 * 16 + 13568);
}

TEST(GemmFamily16, IsToldFromItsVendorAndBothFamilies) {
    static CpuidRegisters vendor, signature;
    const auto cpuid = [](unsigned leaf, unsigned) { return leaf == 0 ? vendor : signature; };
    vendor = {0, 0x68747541, 0x444D4163, 0x69746E65}; // AuthenticAMD
    for (const unsigned extended : {0U, 1U, 2U, 10U})
        for (const unsigned base : {6U, 15U}) {
            signature = {extended << 20 | base << 8, 0, 0, 0};
            EXPECT_EQ(amd_family_16_from(cpuid), base == 15 && extended == 1) << base << ' ' << extended;
        }
    signature = {1U << 20 | 15U << 8, 0, 0, 0};
    vendor.ecx ^= 1;
    EXPECT_FALSE(amd_family_16_from(cpuid));
}

TEST(GemmFamily16, ItsFormsGiveTheProduct) {
    pretend_amd_family_16(Pretended::present);
    const auto routine = nxl_test::routine<nxl_test::Family::gemm>("dgemm", kernels_of(CpuClass::def).xdgemm);
    nxl_test::Generator generator(1);
    for (nxl_test::BlasCall call : letters_of(routine))
        for (const auto& [m, n, k] : {std::tuple{1, 9, 9}, {2, 4, 4}, {7, 5, 257}, {9, 1030, 256}}) {
            call.m = m, call.n = n, call.k = k;
            ASSERT_TRUE(routine.check(randomised(call, generator)));
        }
    pretend_amd_family_16(Pretended::of_processor);
}

} // namespace
} // namespace nxl
