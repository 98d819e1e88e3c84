// Out-of-core work: the same solutions through every window, its configuration, and files that fail.
#include "solvers_ds/kernel/default/pardiso/out_of_core/files.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/window.hpp"
#include "tests/solvers_ds/systems.hpp"
#include "tests/support/captured.hpp"
#include "tests/support/catalogue.hpp"
#include "tests/support/host_files.hpp"
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <omp.h>
#include <regex>
#include <sys/mount.h>
#include <unistd.h>

namespace {

using namespace nxl_test;
namespace pardiso = nxl::pardiso;
using pardiso::OocFileKind;
using pardiso::OocStatus;

constexpr int all_types[] = {1, 2, -2, 3, 4, -4, 6, 11, 13};

/// A folder of its own, a stem in it, and no variables from outside.
class OutOfCore : public testing::Test {
    TemporaryDirectory folder_;

  protected:
    OutOfCore() {
        for (const char* name : {"CFG_PATH", "CFG_FILE_NAME", "PATH", "MAX_CORE_SIZE", "KEEP_FILE"}) set(name, "");
        host_files = {};
    }
    void TearDown() override { host_files = {}; }

    static void set(const std::string& name, const std::string& value) {
        setenv(("NXL_PARDISO_OOC_" + name).c_str(), value.c_str(), 1);
    }
    static System system(int type, int right_hand_sides = 1, int side = 8) {
        System made(type, grid(side, side), 7, right_hand_sides);
        made.parameter(1) = 1;
        made.parameter(2) = 2;
        made.parameter(10) = 13;
        made.parameter(21) = 1;
        made.parameter(60) = 2;
        return made;
    }
    static bool there(const std::string& file) { return std::filesystem::exists(file); }
};

class OutOfCoreTypes : public OutOfCore, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(, OutOfCoreTypes, testing::ValuesIn(all_types), [](const auto& info) {
    return (info.param < 0 ? "minus_" : "") + std::to_string(std::abs(info.param));
});

// From the smallest window on; where it holds everything the order of updates is that in core, and so are all bits.
TEST_P(OutOfCoreTypes, SolvesThroughEveryWindow) {
    const System made = system(GetParam(), 3, 60);
    System in_core = made;
    in_core.parameter(60) = 0;
    omp_set_num_threads(1);
    ASSERT_EQ(in_core.run(13), 0);
    int windows = 0;
    for (const int megabytes : {1, 2, 3, 4, 64}) {
        set("MAX_CORE_SIZE", std::to_string(megabytes));
        System out = made;
        const int error = out.run(12);
        EXPECT_EQ(out.parameter(3), 1);
        if (error == -9) {
            EXPECT_LT(megabytes, 4);
        } else {
            ++windows;
            ASSERT_EQ(error, 0) << megabytes;
            ASSERT_EQ(out.run(33), 0);
            EXPECT_LT(out.backward_error(made.b, out.x), 1e-10) << megabytes;
            if (megabytes == 64) EXPECT_EQ(out.x, in_core.x);
            EXPECT_EQ(out.parameter(22), in_core.parameter(22));
            EXPECT_EQ(out.parameter(23), in_core.parameter(23));
        }
        EXPECT_EQ(out.run(-1), 0);
        EXPECT_FALSE(there("ooc_temp.ind") || there("ooc_temp.lnz") || there("ooc_temp.unz"));
    }
    EXPECT_GE(windows, 2);
    EXPECT_EQ(in_core.run(-1), 0);
}

TEST_F(OutOfCore, MatricesOfOnePatternStandSideBySideInTheFiles) {
    System first = system(11), second = system(11);
    for (double& v : second.a) v *= 3.0;
    first.max_fac_store = 2;
    ASSERT_EQ(first.run(12), 0);
    std::swap(first.a, second.a);
    first.matrix_number = 2;
    ASSERT_EQ(first.run(23), 0);
    std::vector<double> tripled = first.x;
    std::swap(first.a, second.a);
    first.matrix_number = 1;
    ASSERT_EQ(first.run(33), 0);
    EXPECT_LT(first.backward_error(first.b, first.x), 1e-12);
    for (std::size_t i = 0; i < tripled.size(); ++i) EXPECT_NEAR(first.x[i], 3.0 * tripled[i], 1e-9);
    ASSERT_EQ(first.run(11), 0); // anew, over the files
    ASSERT_EQ(first.run(-1), 0);
}

TEST_F(OutOfCore, IsDecidedByTheMemoryThatThereIs) {
    set("MAX_CORE_SIZE", "100");
    System small = system(2);
    small.parameter(60) = 1;
    ASSERT_EQ(small.run(12), 0);
    EXPECT_FALSE(there("ooc_temp.ind"));
    EXPECT_EQ(small.run(-1), 0);
    const pardiso::OocDemand demand{.structure_bytes = 2048, .reduced = 1, .peak = 1024, .numeric = 9 * 1024 - 2};
    EXPECT_EQ(demand.total_megabytes(), 10);
    EXPECT_EQ(demand.peak_megabytes(), 2);
    EXPECT_EQ(decided_mode(pardiso::OocMode::decide, demand, 10), pardiso::OocMode::out_of_core);
    EXPECT_EQ(decided_mode(pardiso::OocMode::decide, demand, 11), pardiso::OocMode::in_core);
    EXPECT_EQ(decided_mode(pardiso::OocMode::in_core, demand, 1), pardiso::OocMode::in_core);
}

// Whatever the sizes: a window holds two supernodes and their lists, and with them stays in what it may take.
TEST(Window, HoldsTwoSupernodesWithinItsMemory) {
    std::mt19937 random(3);
    std::uniform_int_distribution<nxl::i64> number(1, 3000);
    int fitted = 0;
    for (int trial = 0; trial < 2000; ++trial) {
        pardiso::WindowNeed need{};
        need.scalar_words = 1 + trial % 2;
        need.tallest = number(random);
        need.widest = 80;
        need.largest_block = need.tallest * 40;
        need.largest_upper = trial % 3 == 0 ? 0 : need.tallest * 20;
        need.factor = (need.largest_block + need.largest_upper) * number(random);
        need.lists = need.tallest * number(random);
        need.permanent = number(random);
        need.index_arrays = number(random);
        const nxl::i64 megabytes = number(random) / 10;
        const pardiso::OocWindow window = window_for(need, megabytes);
        if (!window.fits) continue;
        ++fitted;
        const nxl::i64 pair = 2 * (need.largest_block + need.largest_upper) * need.scalar_words;
        EXPECT_GE(window.words, window.whole ? need.factor * need.scalar_words : pair);
        EXPECT_GE(window.list_words, window.whole ? need.lists : 2 * need.tallest);
        const nxl::i64 bytes = 8 * window.words + 4 * window.list_words;
        EXPECT_LE(bytes, (megabytes * 1024 - need.permanent - need.index_arrays) * 1024 + 2048);
    }
    EXPECT_GT(fitted, 200);
}

TEST_F(OutOfCore, ReadsItsConfiguration) {
    const struct {
        const char *file, *variable, *stem;
    } cases[] = {
        {"nxl_pardiso_ooc_path = here\n", "", "here"},
        {"  NXL_PARDISO_OOC_PATH\t=  two  words \t# and a comment\n", "", "two words"},
        {"# nxl_pardiso_ooc_path = x\n\n\nother = y\nnxl_pardiso_ooc_path\n", "", "ooc_temp"},
        {"nxl_pardiso_ooc_path = x\n", "variable", "variable"},
        {"", "blanks \t", "blanks"},
    };
    for (const auto& [file, variable, stem] : cases) {
        std::ofstream("pardiso_ooc.cfg") << file << "nxl_pardiso_ooc_keep_file = 0\n";
        set("PATH", variable);
        System made = system(2);
        ASSERT_EQ(made.run(11), 0);
        EXPECT_EQ(made.run(-1), 0);
        for (const char* ending : {".ind", ".lnz", ".unz"})
            EXPECT_TRUE(std::filesystem::remove(std::string(stem) + ending)) << stem << ending;
    }
    std::ofstream("other.cfg") << "nxl_pardiso_ooc_max_core_size = 1";
    set("CFG_FILE_NAME", "other.cfg");
    set("CFG_PATH", std::filesystem::current_path().string());
    System small = system(2);
    EXPECT_EQ(small.run(12), -9);
    EXPECT_EQ(small.run(-1), 0);
}

/// Numbers that are measured become a mark.
std::string without_figures(const std::string& text) {
    return std::regex_replace(text, std::regex("-?[0-9]+\\.[0-9]+|-?[0-9]+ %"), "N");
}

TEST_F(OutOfCore, TellsWhereItsSettingsComeFromAndWhatItDoes) {
    set("PATH", "here");
    set("MAX_CORE_SIZE", "7");
    System made = system(-2);
    made.msglvl = 1;
    const std::string first = printed_by([&] { EXPECT_EQ(made.run(11), 0); });
    EXPECT_TRUE(first.starts_with("ooc_path\t\t\tgot by Env =  here\nooc_max_core_size\tgot by Env =  7\n"
                                  "The file ./pardiso_ooc.cfg was not opened\n"
                                  "=== PARDISO is running in Out-Of-Core mode, because iparam(60)=2 ===\n"))
        << first;
    const std::string solved = without_figures(printed_by([&] { EXPECT_EQ(made.run(23), 0); }));
    EXPECT_NE(solved.find("      Time numfct : N s\n"
                          "      Factorization:\tTime for writing to files : N\n"
                          "      Factorization:\tTime for reading from files : N\n"
                          "      Time solve  : N s\n"
                          "      Solution:\tTime for reading from files : N\n"),
              std::string::npos)
        << solved;
    EXPECT_TRUE(solved.ends_with(" ==============================================================\n"
                                 " ----------- Out of core time (in percent (%)) --------------\n"
                                 "  Factorization step (100 (%)):\n"
                                 "      write to files : N\n"
                                 "      read from files: N\n"
                                 "      factorization - write&read : N\n"
                                 "  Solution step (100 (%)):\n"
                                 "      read from files: N\n"
                                 "      solve - write&read: N\n"
                                 "  Total time (100 (%)):\n"
                                 "      read from files: N\n"
                                 "      total - write&read: N\n"
                                 " ----------- Out of core Mb --------------\n"
                                 "  Factorization step:\n"
                                 "      write to files :      N Mb \n"
                                 "      read from files:      N Mb \n"
                                 "  Solution step:\n"
                                 "      read from files:      N Mb \n"
                                 "  Total size of data transferred :\n"
                                 "      write&read        :      N Mb \n"
                                 " ==============================================================\n"))
        << solved;
    ASSERT_TRUE(std::filesystem::remove("here.lnz"));
    const std::string refused = printed_by([&] { EXPECT_EQ(made.run(331), -10); });
    EXPECT_TRUE(refused.starts_with(" PARDISO_OOC_OPEN_FILE_ERROR occured: solution step: open lnz\n" +
                                    catalogue(869, 1).substr(0, 60)))
        << refused;
    printed_by([&] { EXPECT_EQ(made.run(-1), 0); });
}

TEST_F(OutOfCore, FilesOfALiveHandleAreRefused) {
    System first = system(2), second = system(2);
    ASSERT_EQ(first.run(12), 0);
    set("PATH", "../" + std::filesystem::current_path().filename().string() + "/ooc_temp"); // the same by another name
    EXPECT_EQ(second.run(11), -10);
    ASSERT_EQ(first.run(33), 0);
    EXPECT_LT(first.backward_error(first.b, first.x), 1e-12);
    ASSERT_EQ(first.run(-1), 0);
    EXPECT_EQ(second.run(13), 0);
    EXPECT_EQ(second.run(-1), 0);
}

void expect_end(const std::function<void()>& step) { EXPECT_EXIT(step(), testing::ExitedWithCode(2), ""); }

TEST_F(OutOfCore, HostileFileSystemsGiveErrors) {
    set("PATH", "nowhere/x");
    expect_end([] { system(2).run(13); });
    set("PATH", "x");
    std::filesystem::create_directory("x.lnz");
    EXPECT_EQ(system(2).run(11), -10);
    std::filesystem::remove("x.lnz");

    System full = system(11);
    ASSERT_EQ(full.run(11), 0);
    std::filesystem::remove("x.unz");
    std::filesystem::create_symlink("/dev/full", "x.unz");
    EXPECT_EQ(full.run(22), -11);
    EXPECT_EQ(full.run(-1), 0);

    System cut = system(2);
    ASSERT_EQ(cut.run(12), 0);
    std::filesystem::resize_file("x.lnz", std::filesystem::file_size("x.lnz") - 8);
    EXPECT_EQ(cut.run(331), -11);
    EXPECT_EQ(cut.run(33), 0); // which tells no error; the solution does
    for (const double x : cut.x) EXPECT_TRUE(std::isnan(x));
    EXPECT_EQ(cut.run(23), 0); // written anew
    EXPECT_LT(cut.backward_error(cut.b, cut.x), 1e-12);
    EXPECT_EQ(cut.run(-1), 0);
}

TEST_F(OutOfCore, AFullDiskIsAnError) {
    std::filesystem::create_directory("disk");
    if (mount("tmpfs", "disk", "tmpfs", 0, "size=64k") != 0) GTEST_SKIP() << "needs root";
    set("PATH", "disk/x");
    System made = system(13, 1, 40);
    EXPECT_EQ(made.run(12), -11);
    EXPECT_EQ(made.run(-1), 0);
    expect_end([] { system(13, 1, 200).run(11); }); // the row lists are too long themselves
    EXPECT_EQ(umount("disk"), 0);
}

TEST_F(OutOfCore, AnAnalysisThatCannotSaveEndsTheProcess) {
    host_files = {.operations = 0, .fail_at = 0};
    System counted = system(2);
    ASSERT_EQ(counted.run(11), 0);
    const int closing = host_files.operations - 4; // two files are opened and closed after the one that is written
    counted.run(-1);
    for (const int fail_at : {closing - 1, closing}) {
        expect_end([&] {
            host_files = {.operations = 0, .fail_at = fail_at};
            system(2).run(11);
        });
    }
}

// The n-th of all file operations after the analysis fails: there is an error, or nothing depended on it, and the
// handle can be cleaned.
TEST_F(OutOfCore, EveryFileOperationMayFail) {
    for (const int type : {2, 11}) {
        int failures = 0;
        for (int n = 1;; ++n) {
            System made = system(type);
            ASSERT_EQ(made.run(11), 0);
            host_files = {.operations = 0, .fail_at = n};
            int error = made.run(22);
            for (const int step : {331, 332, 333}) {
                if (error != 0) break;
                made.b = step == 331 ? made.b : made.x;
                error = made.run(step);
            }
            const bool reached = host_files.operations >= n;
            host_files.fail_at = 0;
            made.run(-1);
            if (!reached) break;
            EXPECT_TRUE(error == 0 || error == -10 || error == -11) << n << ": " << error;
            failures += error != 0;
        }
        EXPECT_GT(failures, 25) << type;
    }
}

TEST_F(OutOfCore, TheFileLayerTellsItsStatuses) {
    const auto opened = [](char mode, OocStatus status = OocStatus::done) {
        std::FILE* const file = pardiso::ooc_open("f  \t\r\n", OocFileKind::lower, mode, false, status);
        if (file) std::fclose(file);
        return status;
    };
    EXPECT_EQ(opened('r'), OocStatus::open);
    EXPECT_EQ(opened('a'), OocStatus::open_mode);
    EXPECT_EQ(opened('w', OocStatus::open), OocStatus::input);
    EXPECT_EQ(opened('w'), OocStatus::done);
    EXPECT_EQ(opened('R'), OocStatus::done);

    OocStatus status = OocStatus::done;
    std::FILE* const file = pardiso::ooc_open("f", OocFileKind::lower, 'r', false, status);
    const double values[] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    double back[6] = {};
    const auto write = [&](const pardiso::OocItems& items) {
        OocStatus result = OocStatus::done;
        pardiso::pardiso_write_ooc_file(file, items, values, 0, result);
        return result;
    };
    const auto read = [&](const pardiso::OocItems& items) {
        OocStatus result = OocStatus::done;
        pardiso::pardiso_read_ooc_file(file, items, back, 0, result);
        return result;
    };
    const pardiso::OocItems records{8, 2, 2, 4, 3}; // items 2, 3, 6, 7, 10, 11
    EXPECT_EQ(write(records), OocStatus::done);
    EXPECT_EQ(std::filesystem::file_size("f.lnz"), 11U * 8U);
    EXPECT_EQ(read(records), OocStatus::done);
    EXPECT_TRUE(std::equal(values, values + 6, back));
    EXPECT_EQ(read({8, 6, 1}), OocStatus::done);
    EXPECT_EQ(back[0], 3.0);
    EXPECT_EQ(write({8, 1, 3, 2, 2}), OocStatus::write_parameters);
    EXPECT_EQ(read({8, 1, 3, 2, 2}), OocStatus::read_parameters);
    EXPECT_EQ(write({8, 1, 3, 2, 0}), OocStatus::done);
    EXPECT_EQ(read({8, 11, 2}), OocStatus::not_all_read);
    EXPECT_EQ(read({8, 12, 1}), OocStatus::nothing_read);
    EXPECT_EQ(read({8, -1, 1}), OocStatus::read_seek);
    host_files = {.operations = 0, .fail_at = 2}; // the seek after that for the size
    EXPECT_EQ(write({8, 1, 1}), OocStatus::write_seek);
    const std::string told = printed_by([&] {
        OocStatus result = OocStatus::done;
        pardiso::pardiso_read_ooc_file(file, {8, 2, 2}, back, 2, result);
        pardiso::pardiso_write_ooc_file(file, {8, 2, 2}, values, 2, result);
        pardiso::ooc_report(OocStatus::write_parameters, false, "here");
        pardiso::ooc_report(OocStatus::input, false, "there");
        pardiso::ooc_close(file, true, result);
        pardiso::ooc_close(nullptr, true, result = OocStatus::close);
    });
    EXPECT_EQ(told, "Read type = 8\nNumber of items read = 2\nWrite type = 8\nWrote 2 items\n"
                    " PARDISO_OOC_WRITE_INPUT_PARAMETERS_INCORRECT occured: here\n"
                    "Error is not in the area of OOC I/O, please check it manualy, error = 15 , there\n"
                    "Input error is not equal to ZERO, error = 3\n");
}

} // namespace
