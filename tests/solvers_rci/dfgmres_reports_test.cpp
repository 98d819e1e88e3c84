// The reports of FGMRES, the order of its guards, the findings of its check, the log file.
#include "tests/solvers_rci/fgmres_support.hpp"
#include <map>

namespace {

using namespace nxl_test;

/// Three unknowns, cycles of two, every stored value in its range.
FgmresCase healthy(int inner) {
    FgmresCase run(3, 2);
    run.ip(15) = 2;
    run.check();
    std::fill(run.tmp.begin(), run.tmp.end(), 1.0);
    run.ip(14) = inner;
    run.ip(22) = run.ip(23) = 4;
    run.dp(5) = run.dp(7) = 1.0;
    return run;
}

/// The report on an entry of ipar that a guard rejects.
std::string rejection(int entry, int value) {
    static const std::map<int, int> first = {{1, 597},  {14, 573}, {15, 570}, {16, 606}, {17, 609},
                                             {18, 612}, {19, 600}, {20, 618}, {21, 615}, {23, 603}};
    return catalogue(first.at(entry), 3,
                     entry == 14 ? std::vector{std::to_string(value), std::string("2")}
                                 : std::vector{std::to_string(value)});
}

constexpr int get_to_x = 0, get_to_b = -1; // in place of a stage

/// Guards in the order in which they report, each with the value that it rejects.
struct Guarded {
    const char* name;
    int stage, inner;
    std::vector<std::pair<int, int>> bad;
};

class FgmresGuards : public testing::TestWithParam<Guarded> {};

TEST_P(FgmresGuards, ReportInOrder) {
    const auto& [name, stage, inner, bad] = GetParam();
    FgmresCase run = healthy(inner);
    const std::vector<int> good = run.ipar;
    const auto call = [&] { stage > 0 ? void(run.step()) : void(run.get(&run.request)); };
    run.ip(3) = stage > 0 ? stage : 1;
    run.ip(11) = 1;
    run.ip(13) = stage == get_to_b ? 1 : 0;
    for (const auto& [entry, value] : bad) run.ip(entry) = value;
    for (const auto& [entry, value] : bad) {
        const FgmresCase before = run;
        const std::string expected = stage == 11 && entry == 21 ? rejection(23, 4) : rejection(entry, value);
        EXPECT_EQ(printed_by(call), fgmres_error(expected));
        EXPECT_EQ(run.request, -12);
        EXPECT_EQ(run.ipar, before.ipar);
        EXPECT_EQ(std::pair(run.x, run.b), std::pair(before.x, before.b));
        run.ip(entry) = good[static_cast<std::size_t>(entry) - 1];
    }
    EXPECT_EQ(printed_by(call), "");
    EXPECT_NE(run.request, -12);
}

INSTANTIATE_TEST_SUITE_P(
    , FgmresGuards,
    testing::Values(
        Guarded{"start", 1, 0, {{1, 0}}}, Guarded{"residual", 2, 0, {{1, -1}}}, Guarded{"restart", 3, 0, {{1, -1}}},
        Guarded{"restart_residual", 4, 0, {{1, -2147483647 - 1}}}, Guarded{"cycle", 5, 0, {{19, 1}}},
        Guarded{"plain_step", 7, 0, {{15, 0}, {14, -1}, {1, 0}}}, Guarded{"plain_step_above", 7, 1, {{14, 3}}},
        Guarded{"full_cycle", 7, 2, {{1, 0}, {16, 0}, {19, 0}, {20, 0}, {21, -1}}},
        Guarded{"no_cycle", 11, 1, {{1, 0}, {15, -2}, {14, -2}}}, // k = m, but not a full cycle
        Guarded{"plain_product", 8, 1, {{15, 0}, {14, -1}, {1, 0}, {16, 0}, {17, -5}, {18, 0}, {23, 0}}},
        Guarded{"plain_product_above", 8, 1, {{14, 2}}},
        Guarded{"plain_rotation", 9, 1, {{15, 0}, {14, 0}, {1, 0}, {16, 0}, {17, 0}, {18, 0}, {19, 0}, {23, 0}}},
        Guarded{"plain_rotation_above", 9, 1, {{14, 3}}}, Guarded{"step", 11, 0, {{15, 0}, {14, -1}, {1, 0}, {21, 0}}},
        Guarded{"step_above", 11, 1, {{14, 3}}}, Guarded{"preconditioned", 12, 0, {{15, 0}, {14, -1}, {1, 0}, {21, 0}}},
        Guarded{"preconditioned_above", 12, 0, {{14, 2}}},
        Guarded{"product", 13, 1, {{15, 0}, {14, -1}, {1, 0}, {16, 0}, {17, 0}, {18, 0}, {23, 0}}},
        Guarded{"rotation", 14, 2, {{15, 0}, {14, 0}, {1, 0}, {16, 0}, {17, 0}, {18, 0}, {19, 0}, {23, 0}}},
        Guarded{"solution_in_x", get_to_x, 1, {{1, 0}, {15, 0}, {14, -1}, {16, 0}, {19, 0}, {20, 0}, {21, 0}}},
        Guarded{"solution_in_b", get_to_b, 2, {{15, 0}, {14, 3}, {1, 0}, {16, 0}, {19, 0}, {20, 0}, {21, 0}}}),
    [](const auto& info) { return std::string(info.param.name); });

/// Values that no operation can go on with.
struct Failure {
    const char* name;
    int stage, inner;
    std::function<void(FgmresCase&)> change;
    int request;
    std::string text;
};

class FgmresFailure : public testing::TestWithParam<Failure> {};

TEST_P(FgmresFailure, IsReportedUnlessSilenced) {
    const Failure& failure = GetParam();
    FgmresCase run = healthy(failure.inner);
    run.ip(3) = failure.stage;
    failure.change(run);
    FgmresCase silent = run;
    EXPECT_EQ(printed_by([&] { run.step(); }), fgmres_error(failure.text));
    EXPECT_EQ(run.request, failure.request);
    EXPECT_EQ(run.ip(3), failure.stage);
    silent.ip(6) = 0;
    EXPECT_EQ(printed_by([&] { silent.step(); }), "");
    EXPECT_EQ(silent.request, failure.request);
}

INSTANTIATE_TEST_SUITE_P(
    , FgmresFailure,
    testing::Values(Failure{"zero_residual", 5, 0, [](FgmresCase& run) { run.dp(5) = 0.0; }, -10,
                            catalogue(566, 4, {"0.000000e+00"})},
                    Failure{"negative_residual", 5, 0, [](FgmresCase& run) { run.dp(5) = -2.5e-7; }, -12,
                            catalogue(576, 2, {"-2.500000e-07"})},
                    Failure{"negative_new_norm", 9, 1, [](FgmresCase& run) { run.dp(7) = -1.0, run.ip(15) = 0; }, -12,
                            catalogue(578, 3, {"-1.000000e+00"})},
                    Failure{"zero_new_norm", 14, 1, [](FgmresCase& run) { run.dp(7) = 0.0, run.ip(15) = 0; }, -10,
                            catalogue(582, 4, {"0.000000e+00"})},
                    Failure{"endless", 6, 0, [](FgmresCase& run) { run.ip(8) = run.ip(9) = run.ip(10) = 0; }, -11,
                            catalogue(586, 3)},
                    Failure{"rotation", 9, 1,
                            [](FgmresCase& run) { run.dp(7) = 1e-200, *run.element(run.ip(16)) = 0.0; }, -10,
                            catalogue(589, 4)},
                    Failure{"triangle", 9, 1, [](FgmresCase& run) { run.ip(4) = 17, *run.element(run.ip(16)) = 1e200; },
                            -10, catalogue(621, 3, {"17"})}),
    [](const auto& info) { return std::string(info.param.name); });

/// A change to the defaults for 20 unknowns, and what the check makes of it.
struct Finding {
    const char* name;
    std::function<void(FgmresCase&)> change;
    int request;
    std::vector<std::string> reports; // an error comes last
    std::function<void(FgmresCase&)> mended = [](FgmresCase&) {};
};

std::string warning(int first, int count, const std::vector<std::string>& values = {}) {
    return fgmres_warning(catalogue(first, count, values));
}
const std::string zero = "0.000000e+00";
std::string relative(const std::string& value) { return warning(628, 2, {value, "1.000000e-06"}); }
std::string absolute(const std::string& value) { return warning(630, 2, {value, zero}); }
std::string size_differs(const std::string& size) { return warning(639, 2, {size, "20"}); }
std::string no_iterations(const std::string& limit, const std::string& count) {
    return warning(649, 3, {limit, count});
}
const std::string no_test = warning(624, 4), both_zero = warning(632, 3, {zero, zero}),
                  norm_tolerance = warning(635, 2, {"-3.000000e+00", "1.000000e-12"}),
                  norm_tolerance_zero = warning(637, 2, {zero}), started = warning(641, 2, {"2"}),
                  negative_limit = warning(643, 3, {"-2147483648", "2147483646"}),
                  counted = warning(646, 3, {"2", "2147483646"}), mid_cycle = warning(652, 2, {"-1"}),
                  no_size = fgmres_error(catalogue(581, 1, {"0"})),
                  no_cycle = fgmres_error(catalogue(593, 4, {"0", "17"}));

const std::vector<Finding> findings{
    {"defaults", [](FgmresCase&) {}, 0, {}},
    {"tests_off",
     [](FgmresCase& run) { run.ip(8) = run.ip(10) = 0, run.dp(1) = 1.5; },
     -1010,
     {no_test, relative("1.500000e+00")},
     [](FgmresCase& run) { run.ip(8) = run.ip(9) = 1, run.dp(1) = 1e-6; }},
    {"tests_cancel", [](FgmresCase& run) { run.ip(8) = -1; }, 0, {}},
    {"unread", [](FgmresCase& run) { run.dp(1) = 2.0, run.dp(2) = -1.0, run.dp(8) = -1.0, run.ip(12) = 0; }, 0, {}},
    {"nan",
     [](FgmresCase& run) { run.ip(9) = 1, run.dp(1) = run.dp(2) = NAN; },
     -1010,
     {relative("nan"), absolute("nan")},
     [](FgmresCase& run) { run.dp(1) = 1e-6, run.dp(2) = 0.0; }},
    {"ends_of_the_interval", [](FgmresCase& run) { run.ip(9) = 1, run.dp(1) = 1.0; }, 0, {}},
    {"becomes_zero",
     [](FgmresCase& run) { run.ip(9) = 1, run.dp(1) = 0.0, run.dp(2) = -0.5; },
     -1011,
     {absolute("-5.000000e-01"), both_zero},
     [](FgmresCase& run) { run.dp(2) = 0.0; }},
    {"norm_tolerance",
     [](FgmresCase& run) { run.ip(12) = 1, run.dp(8) = -3.0; },
     -1010,
     {norm_tolerance},
     [](FgmresCase& run) { run.dp(8) = 1e-12; }},
    {"norm_tolerance_zero", [](FgmresCase& run) { run.ip(12) = 2, run.dp(8) = 0.0; }, -1001, {norm_tolerance_zero}},
    {"other_size", [](FgmresCase& run) { run.ip(1) = 19; }, -1001, {size_differs("19")}},
    {"no_size", [](FgmresCase& run) { run.ip(1) = 0, run.ip(3) = 2; }, -1100, {size_differs("0"), no_size}},
    {"started", [](FgmresCase& run) { run.ip(3) = 2; }, -1001, {started}},
    {"limits",
     [](FgmresCase& run) { run.ip(5) = -2147483647 - 1, run.ip(4) = 2; },
     -1001,
     {negative_limit, counted, no_iterations("-2147483648", "2")}},
    {"limit_zero", [](FgmresCase& run) { run.ip(5) = 0; }, -1001, {no_iterations("0", "0")}},
    {"limit_unread", [](FgmresCase& run) { run.ip(5) = -1, run.ip(4) = 2, run.ip(8) = 0; }, 0, {}},
    {"no_cycle", [](FgmresCase& run) { run.ip(15) = 0, run.ip(5) = 17, run.ip(14) = 1; }, -1100, {no_cycle}},
    {"mid_cycle", [](FgmresCase& run) { run.ip(14) = -1; }, -1001, {mid_cycle}},
};

class FgmresCheck : public testing::TestWithParam<Finding> {};
INSTANTIATE_TEST_SUITE_P(, FgmresCheck, testing::ValuesIn(findings),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(FgmresCheck, ReportsAndMends) {
    const auto& [name, change, request, reports, mended] = GetParam();
    std::string text;
    for (const std::string& report : reports) text += report;
    FgmresCase run(20, 1);
    change(run);
    FgmresCase silent = run, expected = run;
    mended(expected);

    EXPECT_EQ(printed_by([&] { run.check(); }), text);
    EXPECT_EQ(run.request, request);
    EXPECT_EQ(Vector(run.dpar), expected.dpar);
    if (request == -1100) EXPECT_EQ(run.ipar, expected.ipar); // no layout
    else
        EXPECT_EQ(std::vector(run.ipar.begin(), run.ipar.begin() + 15),
                  std::vector(expected.ipar.begin(), expected.ipar.begin() + 15));

    silent.ip(6) = silent.ip(7) = 0;
    EXPECT_EQ(printed_by([&] { silent.check(); }), "");
    EXPECT_EQ(silent.request, request);
}

TEST(FgmresLog, TakesErrorsAndWarningsSilently) {
    const TemporaryDirectory here;
    FgmresCase run(20, 1);
    run.ip(2) = 7;
    run.ip(1) = 0;
    EXPECT_EQ(printed_by([&] { run.check(); }), "");
    run.ip(2) = 0;
    EXPECT_EQ(printed_by([&] { run.step(); }), "");
    EXPECT_EQ(contents("NXL_RCI_FGMRES_Log.txt"), size_differs("0") + no_size + fgmres_error(rejection(1, 0)));
}

} // namespace
