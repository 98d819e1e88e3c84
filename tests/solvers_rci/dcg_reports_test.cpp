// The checks of both solvers and their reports, on standard output and in the report files.
#include "tests/solvers_rci/cg_support.hpp"
#include <algorithm>
#include <functional>

namespace {

using namespace nxl_test;

const std::string no_test = catalogue(666, 2), relative = catalogue(668, 3), absolute = catalogue(671, 3),
                  both_zero = catalogue(674, 3), size_differs = catalogue(677, 3), not_positive = catalogue(680, 1),
                  started = catalogue(681, 2), negative_limit = catalogue(683, 3), counted = catalogue(686, 3),
                  no_iterations = catalogue(689, 2);

/// A change to the defaults for 20 unknowns and 2 systems, and what the check makes of it.
struct Finding {
    const char* name;
    std::function<void(CgCase&)> change;
    int request;
    std::vector<std::string> warnings;
    std::function<void(CgCase&)> mended = [](CgCase&) {};
};

const std::vector<Finding> findings{
    {"defaults", [](CgCase&) {}, 0, {}},
    {"tests_off",
     [](CgCase& run) { run.ip(8) = run.ip(9) = run.ip(10) = 0; },
     -1010,
     {no_test},
     [](CgCase& run) { run.ip(8) = run.ip(9) = 1; }},
    {"tests_cancel",
     [](CgCase& run) { run.ip(8) = -1, run.dp(1) = 2.0; },
     -1010,
     {no_test, relative},
     [](CgCase& run) { run.ip(8) = run.ip(9) = 1, run.dp(1) = 1e-6; }},
    {"unread_tolerance", [](CgCase& run) { run.dp(1) = 2.0, run.dp(2) = NAN; }, 0, {}},
    {"relative",
     [](CgCase& run) { run.ip(9) = 1, run.dp(1) = 1.0 + 1e-15; },
     -1010,
     {relative},
     [](CgCase& run) { run.dp(1) = 1e-6; }},
    {"relative_at_its_ends", [](CgCase& run) { run.ip(9) = 1, run.dp(1) = 1.0; }, 0, {}},
    {"nan",
     [](CgCase& run) { run.ip(9) = 1, run.dp(1) = run.dp(2) = NAN; },
     -1010,
     {relative, absolute},
     [](CgCase& run) { run.dp(1) = 1e-6, run.dp(2) = 0.0; }},
    {"absolute_becomes_zero",
     [](CgCase& run) { run.ip(9) = 1, run.dp(1) = 0.0, run.dp(2) = -1.0; },
     -1011,
     {absolute, both_zero},
     [](CgCase& run) { run.dp(2) = 0.0; }},
    {"both_zero", [](CgCase& run) { run.ip(9) = 1, run.dp(1) = run.dp(2) = 0.0; }, -1001, {both_zero}},
    {"other_size", [](CgCase& run) { run.ip(1) = 19; }, -1001, {size_differs}},
    {"no_size", [](CgCase& run) { run.n = run.ip(1) = 0; }, -1100, {not_positive}},
    {"no_size_after_others",
     [](CgCase& run) { run.ip(8) = run.ip(10) = 0, run.ip(1) = -1, run.ip(3) = 4; },
     -1100,
     {no_test, size_differs, not_positive},
     [](CgCase& run) { run.ip(8) = run.ip(9) = 1; }},
    {"started", [](CgCase& run) { run.ip(3) = 2; }, -1001, {started}},
    {"limits", [](CgCase& run) { run.ip(5) = -1, run.ip(4) = 1; }, -1001, {negative_limit, counted, no_iterations}},
    {"limit_reached", [](CgCase& run) { run.ip(5) = 0; }, -1001, {no_iterations}},
    {"limit_test_off", [](CgCase& run) { run.ip(5) = -1, run.ip(4) = 1, run.ip(8) = 0; }, 0, {}},
};

std::string joined(const std::vector<std::string>& warnings) {
    std::string text;
    for (const std::string& warning : warnings) text += warning_report(warning);
    return text;
}

/// The run that a finding is about, and the check that it goes through.
struct Checked {
    CgCase run{20, 2};
    int (CgCase::*check)();

    Checked(const Finding& finding, bool many) : check(many ? &CgCase::check_many : &CgCase::check) {
        many ? run.init_many() : run.init();
        finding.change(run);
    }
};

class CgCheck : public testing::TestWithParam<std::tuple<Finding, bool>> {
  protected:
    const Finding& finding_ = std::get<0>(GetParam());
    const bool many_ = std::get<1>(GetParam());
};

TEST_P(CgCheck, WarnsAndMendsUnlessSilenced) {
    Checked checked(finding_, many_), expected(finding_, many_), silent(finding_, many_);
    finding_.mended(expected.run);
    EXPECT_EQ(printed_by([&] { (checked.run.*checked.check)(); }), joined(finding_.warnings));
    EXPECT_EQ(checked.run.request, finding_.request);
    EXPECT_EQ(checked.run.ipar, expected.run.ipar);
    for (const int i : {1, 2})
        EXPECT_TRUE(checked.run.dp(i) == expected.run.dp(i) ||
                    (std::isnan(checked.run.dp(i)) && finding_.request == 0));

    silent.run.ip(7) = 0;
    EXPECT_EQ(printed_by([&] { (silent.run.*silent.check)(); }), "");
    EXPECT_EQ(silent.run.request, finding_.request);
}

INSTANTIATE_TEST_SUITE_P(, CgCheck, testing::Combine(testing::ValuesIn(findings), testing::Bool()),
                         [](const auto& info) {
                             return std::string(std::get<0>(info.param).name) +
                                    (std::get<1>(info.param) ? "_many" : "_one");
                         });

TEST(CgReportFiles, WarningsAccumulate) {
    for (const bool many : {false, true}) {
        const TemporaryDirectory here;
        Checked checked(*std::ranges::find(findings, 3U, [](const Finding& f) { return f.warnings.size(); }), many);
        checked.run.ip(2) = 7;
        const std::string notice = "\nWarning message has been written in Dcg_check_warnings.txt\n";
        EXPECT_EQ(printed_by([&] { (checked.run.*checked.check)(); }), notice + notice + notice);
        EXPECT_EQ(contents("Dcg_check_warnings.txt"), joined({no_test, size_differs, not_positive}));
    }
}

TEST(CgCheckOfMany, NoSystemsReadAsNoSize) {
    CgCase run(20, 0);
    run.init_many();
    EXPECT_EQ(printed_by([&] { run.check_many(); }), warning_report(not_positive));
    EXPECT_EQ(run.request, -1100);
    run.init();
    EXPECT_EQ(run.check(), 0); // one system needs no ipar(33)
}

TEST(CgReportFiles, ErrorsAccumulate) {
    const TemporaryDirectory here;
    CgCase run(1);
    run.init();
    run.tmp.assign(4, 0.0); // the next step divides by 0
    run.ip(3) = 4;
    run.ip(2) = 0;
    const std::string notice = "\nError message has been written in Dcg_errors.txt\n";
    EXPECT_EQ(printed_by([&] { run.step(), run.step(); }), notice + notice);
    EXPECT_EQ(contents("Dcg_errors.txt"), error_report(indefinite_text) + error_report(indefinite_text));
    EXPECT_EQ(run.request, -2);
}

} // namespace
