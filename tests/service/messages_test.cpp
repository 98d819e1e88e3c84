// Messages to the byte, the second formatting pass, the overflow report, concurrent callers, LSAME.
#include "service/errors.hpp"
#include "service/letters.hpp"
#include "service/messages.hpp"
#include "tests/support/captured.hpp"
#include "tests/support/child.hpp"
#include <climits>
#include <cstdio>
#include <map>
#include <sstream>
#include <stdio_ext.h>
#include <thread>

namespace {

using nxl_test::printed_by;

std::string printed_by_xerbla(const std::string& name, int info, int length) {
    return printed_by([&] { XERBLA(name.data(), &info, length); });
}

struct Report {
    const char* test_name;
    std::string name;
    int info, length;
    std::string text;
};

class Xerbla : public testing::TestWithParam<Report> {};

TEST_P(Xerbla, PrintsOneLine) {
    const Report& report = GetParam();
    EXPECT_EQ(printed_by_xerbla(report.name, report.info, report.length), report.text + "\n");
}

const std::string bad_parameter = "NXL ERROR: Parameter 3 was incorrect on entry to ";
const std::string internal_error = "NXL INTERNAL ERROR: Condition ";

INSTANTIATE_TEST_SUITE_P(
    Info, Xerbla,
    testing::Values(
        Report{"position", "DGEMM garbage", 3, 6, bad_parameter + "DGEMM "},
        Report{"just_below_1000", "DGEMM ", 999, 6, "NXL ERROR: Parameter 999 was incorrect on entry to DGEMM "},
        Report{"no_memory", "DGTHR ", 1000, 6, "NXL INTERNAL ERROR: Not enough work memory in function DGTHR "},
        Report{"options", "DGEEVX", 1001, 6, "NXL ERROR: Incompatible optional parameters on entry to DGEEVX"},
        Report{"above_1001", "DGEMM ", 1002, 6, "NXL ERROR: Parameter 1002 was incorrect on entry to DGEMM "},
        Report{"zero", "DSYMV ", 0, 6, internal_error + "0 detected in function DSYMV "},
        Report{"negative", "DSYMV ", -5, 6, internal_error + "5 detected in function DSYMV "},
        Report{"most_negative", "DSYMV ", INT_MIN, 6, internal_error + "-2147483648 detected in function DSYMV "},
        Report{"long_name", "ABCDEFGHIJKLMNOPQRSTUVWXY", 3, 25, bad_parameter + "ABCDEFGHIJKLMNOPQRST"},
        Report{"no_name", "DGEMM ", 3, 0, bad_parameter}, Report{"negative_length", "DGEMM ", 3, -1, bad_parameter}),
    [](const auto& info) { return info.param.test_name; });

TEST(Xerbla, PercentSignsOfTheNameAreInterpretedAgain) {
    const auto tail = [](const std::string& name) {
        return printed_by_xerbla(name, 3, static_cast<int>(name.size())).substr(bad_parameter.size());
    };
    EXPECT_EQ(tail("A%%B"), "A%B\n");
    EXPECT_EQ(tail("A%sB"), "AB\n"); // finds an empty string
    EXPECT_EQ(tail("%s%s%s%s%s%s%s%s%s%s"), "\n");
    for (int i = 0; i < 3; ++i) EXPECT_NE(tail("%Lf%Lf%Lf%Lf%Lf%Lf%s"), ""); // the most that a name can take
    // Arguments far away, endless output, a write: such a name is printed as it stands.
    for (const std::string kept :
         {"%9$s", "%999999$n", "%999999999d", "%*d", "%.*f", "%-+7d", "% %%999999999d", "A%", "%n", "%hhnA"})
        EXPECT_EQ(tail(kept), kept + "\n");
}

TEST(Messages, LineEndAloneIsNotFlushed) {
    printed_by([] {
        nxl::nxl_msg_print(1, 0, 0);
        EXPECT_EQ(__fpending(stdout), 1U);
        nxl::nxl_msg_print(1, 396, 0);
        EXPECT_EQ(__fpending(stdout), 0U);
    });
}

TEST(Messages, TextsOfAllKindsOfRows) {
    for (const int empty : {0, -1, INT_MIN, 10, 398, 1072, 1073, INT_MAX}) EXPECT_STREQ(nxl::nxl_msg_text(empty), "");
    EXPECT_STREQ(nxl::nxl_msg_text(2), "NXL FATAL ERROR: Cannot load neither %s nor %s");
    EXPECT_EQ(std::string(nxl::nxl_msg_text(396)), std::string(78, '-'));
    EXPECT_STREQ(nxl::nxl_msg_text(407), "Wrong message request. This should never happen in a normal situation...");
}

/// The texts are part of the interface. FNV-1a over all rows: whoever changes one on purpose puts the new value here.
TEST(Messages, NoTextChangesUnnoticed) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (int id = 1; id < 1073; ++id)
        for (const char c : std::to_string(id) + nxl::nxl_msg_text(id) + '\n')
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    EXPECT_EQ(hash, 5493784706857607941U);
}

TEST(Messages, FormatKeepsOneTextPerThread) {
    const char* mine = nxl::nxl_msg_format(408, 1, "mine");
    std::thread([] { EXPECT_STREQ(nxl::nxl_msg_format(408, 1, "theirs"), "Cannot create file theirs ..."); }).join();
    EXPECT_STREQ(mine, "Cannot create file mine ...");
    EXPECT_STREQ(nxl::nxl_msg_format(408, 0), "Cannot create file %s ...");
    EXPECT_STREQ(nxl::nxl_msg_format(408, -1), "Cannot create file %s ...");
    EXPECT_EQ(std::string(nxl::nxl_msg_format(408, 1, std::string(2000, 'x').c_str())).size(), 512U);
}

void print_text_of_length(int length) {
    const std::string name(static_cast<std::size_t>(length) - bad_parameter.size(), 'x');
    nxl::nxl_msg_print(1, 6, 2, 3, name.c_str());
}

TEST(Overflow, TextsUpToTheLimitPrintWhole) {
    for (const int length : {511, 512, 513})
        EXPECT_EQ(printed_by([=] { print_text_of_length(length); }).size(), static_cast<std::size_t>(length) + 1);
}

TEST(Overflow, ALongerTextEndsTheProcessWithStatus8) {
    for (const char* length : {"514", "5000"}) {
        const nxl_test::ChildResult result = nxl_test::run_self({"print", length}, {});
        EXPECT_EQ(result.exit_status, 8);
        EXPECT_EQ(result.output, std::string("\nNXL INTERNAL ERROR: message buffer overflow."
                                             "\n       Message N 6   Lenght: ") +
                                     length + "   Buffer size: 512\n");
    }
}

TEST(Messages, ConcurrentLinesStayWhole) {
    constexpr int threads = 4, each = 300;
    const std::string output = printed_by([] {
        std::vector<std::thread> team;
        team.reserve(threads);
        for (int t = 0; t < threads; ++t)
            team.emplace_back([t] {
                const std::string name(static_cast<std::size_t>(t) + 1, static_cast<char>('A' + t));
                const int info = 3;
                for (int i = 0; i < each; ++i) XERBLA(name.c_str(), &info, t + 1);
            });
        for (std::thread& thread : team) thread.join();
    });
    std::map<std::string, int> count;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) ++count[line];
    const std::map<std::string, int> expected{{bad_parameter + "A", each},
                                              {bad_parameter + "BB", each},
                                              {bad_parameter + "CCC", each},
                                              {bad_parameter + "DDDD", each}};
    EXPECT_EQ(count, expected);
}

TEST(Lsame, OnlyLettersFold) {
    for (int i = 0; i < 256; ++i)
        for (int j = 0; j < 256; ++j) {
            const bool letters = (i ^ j) == 0x20 && ((i | 0x20) >= 'a' && (i | 0x20) <= 'z');
            const char a[2] = {static_cast<char>(i), 'x'}, b[2] = {static_cast<char>(j), 'y'};
            ASSERT_EQ(nxl::LSAME(a, b, 1, 1), i == j || letters ? -1 : 0) << i << " and " << j;
        }
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "print") == 0) {
        print_text_of_length(std::atoi(argv[2]));
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
