// Processor class, vector width, kernel tables and slots.
#include "service/cpu_class_seams.hpp"
#include "service/kernel_slot.hpp"
#include <cpuid.h>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <set>

namespace nxl {
namespace {

CpuClass class_with(const char* setting) {
    if (setting) setenv("NXL_DEBUG_CPU_TYPE", setting, 1);
    else unsetenv("NXL_DEBUG_CPU_TYPE");
    return nxl_cpu_class_detect();
}

TEST(CpuClass, OverrideTakesOnlyTheFourClasses) {
    const CpuClass detected = class_with(nullptr);
    for (const char* setting : {"0", "1", "2", "3"})
        EXPECT_EQ(static_cast<int>(class_with(setting)), std::atoi(setting));
    EXPECT_EQ(class_with("3 or so"), CpuClass::mc3);
    // Detection decides. Where it finds class 0 a wrong reading of "00" or "x" would not show, so both sides are looked
    // at.
    for (const char* setting : {"4", "-1", "x", "", "99999999999", "-4294967295"})
        EXPECT_EQ(class_with(setting), detected) << setting;
    for (const char* setting : {"00", "abc", "0 "}) EXPECT_EQ(class_with(setting), detected) << setting;
}

TEST(CpuClass, FollowsFromVendorAndFeatures) {
    constexpr unsigned sse3 = 1U << 0, ssse3 = 1U << 9, sse4_1 = 1U << 19, sse4_2 = 1U << 20; // of CPUID leaf 1, ECX
    struct Case {
        bool intel;
        unsigned ecx1;
        int cpu_class, pack_class;
    };
    for (const Case& c : {Case{false, ~0U, 0, 0},
                          {true, 0, 0, 1},
                          {true, sse3, 1, 1},
                          {true, sse3 | ssse3, 2, 2},
                          {true, sse3 | ssse3 | sse4_1, 2, 3},
                          {true, ~0U, 3, 4},
                          {true, sse4_2, 3, 4},
                          {true, ~(sse3 | ssse3 | sse4_1 | sse4_2), 0, 1}}) {
        EXPECT_EQ(static_cast<int>(class_of({c.intel, c.ecx1})), c.cpu_class) << c.ecx1;
        EXPECT_EQ(pack_class_of({c.intel, c.ecx1}), c.pack_class) << c.ecx1;
    }
}

TEST(CpuClass, OtherVendorsAreClass0) {
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    __get_cpuid(0, &eax, &ebx, &ecx, &edx);
    char vendor[13] = {};
    std::memcpy(vendor, &ebx, 4), std::memcpy(vendor + 4, &edx, 4), std::memcpy(vendor + 8, &ecx, 4);
    const CpuClass detected = class_with(nullptr);
    if (std::strcmp(vendor, "GenuineIntel") != 0) EXPECT_EQ(detected, CpuClass::def);
    else EXPECT_NE(detected, CpuClass::def); // all that run 64-bit code and are still in use have SSE3
    EXPECT_EQ(nxl_pack_cpu_class() == 0, std::strcmp(vendor, "GenuineIntel") != 0);
    EXPECT_EQ(nxl_cpu_class(), detected); // what detection stored is what everybody reads
}

TEST(KernelTables, EveryPlaceIsFilledAndEachClassHasItsOwn) {
    std::set<const KernelTable*> tables;
    for (const CpuClass cpu_class : {CpuClass::def, CpuClass::p4n, CpuClass::mc, CpuClass::mc3}) {
        const KernelTable& table = kernels_of(cpu_class);
        tables.insert(&table);
        void* places[sizeof(KernelTable) / sizeof(void*)];
        std::memcpy(places, &table, sizeof places);
        for (const void* place : places) EXPECT_NE(place, nullptr);
    }
    EXPECT_EQ(tables.size(), 4U);
}

TEST(KernelSlots, BindOnceToTheClassOfTheirFirstCall) {
    // dscal by 1 leaves a signalling NaN on class 3 and quiets it on class 0.
    const auto leaves_signalling_nan = [](auto& slot) {
        const std::uint64_t signalling = 0x7FF0000000000001;
        double x;
        std::memcpy(&x, &signalling, sizeof x);
        const i64 one = 1;
        const double unit = 1.0;
        slot(one, unit, &x, one);
        return std::memcmp(&x, &signalling, sizeof x) == 0;
    };
    static KernelSlot<&KernelTable::dscal> bound_on_3, bound_on_0;
    class_with("3");
    EXPECT_TRUE(leaves_signalling_nan(bound_on_3));
    class_with("0");
    EXPECT_TRUE(leaves_signalling_nan(bound_on_3));
    EXPECT_FALSE(leaves_signalling_nan(bound_on_0));
    class_with(nullptr);
}

TEST(VectorWidth, NarrowOnRequestElseWhatTheProcessorHas) {
    const char* setting = std::getenv("NXL_VECTOR_BITS");
    const bool wide = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    const bool widest = wide && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                        __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl");
    const int there = widest ? 512 : wide ? 256 : 128;
    const int asked = setting && std::strcmp(setting, "512") != 0 ? std::atoi(setting) : there;
    for (const char* narrow : {"1", "2"}) {
        class_with(narrow);
        EXPECT_EQ(vector_width_choice().bits, 128) << narrow;
    }
    class_with("3");
    EXPECT_EQ(vector_width_choice().bits, std::min(asked, there));
    class_with("0");
    EXPECT_EQ(vector_width_choice().bits, std::min({asked, there, 256}));
    class_with(nullptr);
}

} // namespace
} // namespace nxl
