// Thread counts: the environment's grammar, who wins over whom, dynamic adjustment, and the counting of cores. Each
// case of the environment runs in a child process, since a process reads it once.
#include "nxl.h"
#include "service/openmp_runtimes.hpp"
#include "service/parallel.hpp"
#include "service/physical_cores.hpp"
#include "service/thread_environment.hpp"
#include "service/worthwhile_threads.hpp"
#include "tests/support/child.hpp"
#include <atomic>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <omp.h>
#include <sched.h>
#include <thread>

namespace nxl {
namespace {

using Strings = std::vector<std::string>;

// ---- Grammar ----

struct DomainText {
    const char* text;
    int all, blas, fft, vml;
};

TEST(ThreadEnvironment, DomainGrammar) {
    constexpr int none = count_not_set;
    for (const auto& [text, all, blas, fft, vml] : {
             DomainText{"NXL_ALL=4, NXL_BLAS=2", 4, 2, none, none},
             {"NXL_ALL 4 NXL_BLAS 2", 4, 2, none, none},
             {"NXL_ALL=1:NXL_BLAS=2;NXL_FFT=3 NXL_VML=4", 1, 2, 3, 4},
             {"NXL_BLAS=2,NXL_BLAS=3", none, 2, none, none},
             {"NXL_BLAS=0,NXL_BLAS=3", none, 3, none, none},
             {"NXL_FFT", none, none, 1, none},
             {"NXL_FFT=", none, none, 1, none},
             {"NXL_ALL=4x,NXL_VML=-2", 1, none, none, 1},
             {"NXL_ALL=4,NXL_BLASS=5,nxl_fft=6,NXL_VML=7", 4, none, none, 7},
             {"'NXL_ALL=4' \"NXL_VML == 3\"", 4, none, none, 3},
             {"NXL_ALL=\"4\",NXL_BLAS=2", 1, 2, none, none},
             {"\"NXL_ALL\"=4,NXL_BLAS=2", 1, none, none, none},
             {"NXL_ALL=4,=5,NXL_BLAS=2", 4, none, none, none},
             {"NXL_ALL,4 NXL_BLAS,2", none, none, none, none},
             {"NXL_ALL=99999999999999999999", INT_MAX, none, none, none},
             {" ,;:'\"", none, none, none, none},
         }) {
        const DomainCounts counts = domain_counts_from(text);
        EXPECT_EQ((std::vector{all, blas, fft, vml}), std::vector(counts.of, counts.of + thread_domain_count)) << text;
    }
}

TEST(ThreadEnvironment, CountsSaturateInsteadOfOverflowing) {
    EXPECT_EQ(thread_count_from("2147483647"), INT_MAX);
    EXPECT_EQ(thread_count_from("2147483648"), INT_MAX);
    EXPECT_EQ(thread_count_from("21474836470"), INT_MAX);
    EXPECT_EQ(thread_count_from("2147483646"), INT_MAX - 1);
}

TEST(OpenMpRuntimes, TheCountThatAProgramSetIsTaken) {
    EXPECT_EQ(spoken_count(1, 4, 4), 1); // said to libomp
    EXPECT_EQ(spoken_count(4, 7, 4), 7); // to libgomp
    EXPECT_EQ(spoken_count(2, 7, 4), 2); // to both
    for (const auto& [list, count] : {std::pair{"4,2", 4}, {" 3", 3}, {",2", 0}, {"abc", 0}})
        EXPECT_EQ(outer_level_count_from(list), count) << list;
}

// ---- Precedence, in child processes ----

/// Carries out one order of the script that a child process gets; answers are printed, a blank after each.
void obey(const std::string& order) {
    int a = 0, b = 0;
    if (order == "narrow") { // to the first processor that is allowed
        cpu_set_t one;
        CPU_ZERO(&one);
        for (int p = 0; CPU_COUNT(&one) == 0; ++p)
            if (ProcessorSet::of_process(getpid()).has(p)) CPU_SET(p, &one);
        sched_setaffinity(0, sizeof one, &one);
    } else if (order == "dynamic?") {
        std::printf("%d ", NXL_Get_Dynamic());
    } else if (order == "race?") { // first queries from many threads at once, against a setter
        std::atomic<int> lowest{INT_MAX}, waiting{8};
        std::vector<std::thread> threads;
        for (int t = 0; t < 8; ++t)
            threads.emplace_back([&] {
                for (--waiting; waiting > 0;) {
                }
                NXL_Domain_Set_Num_Threads(9, domain_vml);
                for (int got = NXL_Get_Max_Threads(), low = lowest;
                     got < low && !lowest.compare_exchange_weak(low, got);) {
                }
            });
        for (std::thread& thread : threads) thread.join();
        std::printf("%d %d ", lowest.load(), NXL_Domain_Get_Max_Threads(domain_vml));
    } else if (std::sscanf(order.c_str(), "set %d", &a) == 1) {
        NXL_Set_Num_Threads(a);
    } else if (std::sscanf(order.c_str(), "dynamic %d", &a) == 1) {
        NXL_Set_Dynamic(a);
    } else if (std::sscanf(order.c_str(), "domain %d %d", &a, &b) == 2) {
        std::printf("%d ", NXL_Domain_Set_Num_Threads(b, a));
    } else if (std::sscanf(order.c_str(), "%d?", &a) == 1) {
        std::printf("%d ", a == domain_all ? NXL_Get_Max_Threads() : NXL_Domain_Get_Max_Threads(a));
    } else if (std::sscanf(order.c_str(), "work %d of %d?", &a, &b) == 2) {
        std::printf("%d ", worthwhile_threads(domain_all, a, b));
    } else if (std::sscanf(order.c_str(), "region %d?", &a) == 1) {
        int answer[2];
        parallel_blocks(2, 2, [&](int block) { answer[block] = NXL_Domain_Get_Max_Threads(a); });
        std::printf("%d %d ", answer[0], answer[1]);
    } else {
        std::printf("what is '%s'? ", order.c_str());
    }
}

struct Case {
    const char* name;
    Strings environment;
    Strings orders;
    std::string answers;
};

class ThreadCounts : public ::testing::TestWithParam<Case> {};

TEST_P(ThreadCounts, InAFreshProcess) {
    const auto& [name, environment, orders, answers] = GetParam();
    const auto [status, output] = nxl_test::run_self(orders, environment);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(output, answers);
}

const std::string fixed = "NXL_DYNAMIC=false", omp3 = "OMP_NUM_THREADS=3", five = "NXL_NUM_THREADS=5",
                  domains = "NXL_DOMAIN_NUM_THREADS=NXL_ALL=4,NXL_BLAS=2";

std::string held_to_cores(int count) { return std::to_string(std::min(count, nxl_count_physical_cores())) + " "; }

INSTANTIATE_TEST_SUITE_P(
    , ThreadCounts,
    ::testing::Values(
        // What the count is taken from.
        Case{"nothing_set", {fixed, omp3}, {"0?", "1?", "7?"}, "3 3 3 "},
        Case{"count", {fixed, omp3, five}, {"0?", "1?", "-1?"}, "5 5 5 "},
        Case{"zero", {fixed, omp3, "NXL_NUM_THREADS=0"}, {"0?"}, "3 "},
        Case{"empty", {fixed, omp3, "NXL_NUM_THREADS="}, {"0?"}, "3 "},
        Case{"word", {fixed, omp3, "NXL_NUM_THREADS=abc"}, {"0?"}, "1 "},
        Case{"negative", {fixed, omp3, "NXL_NUM_THREADS=-3"}, {"0?"}, "1 "},
        Case{"domains", {fixed, omp3, domains}, {"0?", "1?", "2?", "3?"}, "4 2 4 4 "},
        Case{"count_beats_all", {fixed, domains, five}, {"0?", "1?", "2?", "7?"}, "5 2 5 5 "},
        // The program beats the environment, before the first query and after.
        Case{"set_before", {fixed, five}, {"set 6", "0?"}, "6 "},
        Case{"set_after", {fixed, five}, {"0?", "set 6", "0?", "set 0", "set -1", "0?"}, "5 6 6 "},
        Case{"domain_set_before", {fixed, domains}, {"domain 1 7", "1?", "0?"}, "1 7 4 "},
        Case{"domain_zero_stays", {fixed, domains, five}, {"domain 1 0", "1?"}, "1 5 "},
        Case{"all_zero_stays", {fixed, omp3, five}, {"domain 0 0", "0?"}, "1 3 "},
        Case{"domain_back_to_zero", {fixed, domains}, {"1?", "domain 1 0", "1?"}, "2 1 4 "},
        Case{"bad_domain_settings",
             {fixed, domains},
             {"domain 4 3", "domain -1 3", "domain 1 -1", "0?", "1?", "2?", "3?"},
             "0 0 0 4 2 4 4 "},
        Case{"race", {fixed, five}, {"race?"}, "5 9 "},
        // Dynamic adjustment.
        Case{"dynamic_by_default", {}, {"dynamic?"}, "1 "},
        Case{"dynamic_FALSE", {"NXL_DYNAMIC=FALSE"}, {"dynamic?"}, "0 "},
        Case{"dynamic_quoted", {"NXL_DYNAMIC= \"'false' of course"}, {"dynamic?"}, "0 "},
        Case{"dynamic_False", {"NXL_DYNAMIC=False"}, {"dynamic?"}, "1 "},
        Case{"dynamic_0", {"NXL_DYNAMIC=0"}, {"dynamic?"}, "1 "},
        Case{"dynamic_falsehood", {"NXL_DYNAMIC=falsehood"}, {"dynamic?"}, "1 "},
        Case{"dynamic_set_before", {fixed}, {"dynamic -7", "dynamic?"}, "1 "},
        Case{"dynamic_set_after", {fixed}, {"dynamic?", "dynamic 1", "dynamic?", "dynamic 0", "dynamic?"}, "0 1 0 "},
        Case{"held_to_cores",
             {},
             {"set 8", "0?", "domain 1 100000", "1?"},
             held_to_cores(8) + "1 " + held_to_cores(100000)},
        Case{"beyond_cores", {fixed}, {"set 8", "0?", "1?"}, "8 8 "},
        Case{"region_dynamic", {five}, {"region 0?", "region 1?"}, "1 1 1 1 "},
        Case{"region_fixed", {fixed, five, domains}, {"region 0?", "region 1?"}, "5 5 2 2 "},
        // A call that does not repay other threads.
        Case{"little_work", {five}, {"work 9 of 10?", "work 10 of 10?"}, "1 " + held_to_cores(5)},
        Case{"little_work_fixed", {fixed, five}, {"work 9 of 10?"}, "5 "},
        // A process that is kept from part of the machine.
        Case{"narrowed", {five}, {"narrow", "0?", "set 8", "0?", "1?"}, "1 1 1 "},
        Case{"narrowed_fixed", {fixed, five}, {"narrow", "0?"}, "5 "}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(Blocktime, ReachesTheRuntime) {
    const int before = kmp_get_blocktime();
    okmp_set_blocktime(37);
    EXPECT_EQ(kmp_get_blocktime(), 37);
    kmp_set_blocktime(before);
}

// ---- Cores ----

/// A made-up machine: what the kernel would say of its processors, in a folder of its own.
class PhysicalCores : public ::testing::Test {
  protected:
    void SetUp() override {
        char name[] = "/tmp/nxl-cores-XXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        sysfs = name;
    }
    void TearDown() override { std::filesystem::remove_all(sysfs); }

    void online(const char* list) { std::ofstream(sysfs / "online") << list << '\n'; }
    void siblings(int processor, const char* list) {
        const auto topology = sysfs / ("cpu" + std::to_string(processor)) / "topology";
        std::filesystem::create_directories(topology);
        std::ofstream(topology / "thread_siblings_list") << list << '\n';
    }
    int cores(const char* allowed) const { return count_physical_cores(ProcessorSet::of_list(allowed), sysfs.c_str()); }

    std::filesystem::path sysfs;
};

TEST_F(PhysicalCores, ThreadsOfACoreCountOnce) {
    online("0-3,2000-2001"); // beyond the 1024 of a cpu_set_t too
    for (const int p : {0, 2}) siblings(p, "0,2");
    for (const int p : {1, 3}) siblings(p, "1,3");
    for (const int p : {2000, 2001}) siblings(p, "2000-2001");
    EXPECT_EQ(cores("0-3,2000-2001"), 3);
    EXPECT_EQ(cores("0-3"), 1); // kept from part of the machine
    EXPECT_EQ(cores("0-3,2000-2002"), 1);
    EXPECT_EQ(cores(""), 1);
}

TEST_F(PhysicalCores, WithoutDescriptionEachProcessorIsACore) {
    online("0-2,5");
    EXPECT_EQ(cores("0-2,5"), 4);
}

TEST_F(PhysicalCores, WithoutListOfProcessorsTheSystemsCountDecides) {
    const long processors = sysconf(_SC_NPROCESSORS_ONLN);
    EXPECT_EQ(cores(("1-" + std::to_string(processors)).c_str()), processors);
    EXPECT_EQ(cores(("0-" + std::to_string(processors)).c_str()), 1);
}

TEST(ProcessorSets, ListsAreReadAsFarAsTheyMakeSense) {
    EXPECT_EQ(ProcessorSet::of_list("0-3,8,10-11\n").size(), 7);
    EXPECT_TRUE(ProcessorSet::of_list("0-3,8").has(8));
    EXPECT_EQ(ProcessorSet::of_list("3,x,5").size(), 1);
    EXPECT_EQ(ProcessorSet::of_list("5-2,-7").size(), 0);
    EXPECT_EQ(ProcessorSet::of_list("65534-99999999999").size(), 2);
}

} // namespace
} // namespace nxl

int main(int argc, char** argv) {
    if (argc > 1 && argv[1][0] != '-') {
        for (int i = 1; i < argc; ++i) nxl::obey(argv[i]);
        return 0;
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
