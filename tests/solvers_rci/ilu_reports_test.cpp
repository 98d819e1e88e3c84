// What the incomplete LU routines make of bad arguments: ierr, warnings policy, and reports, on standard
// output and in the log files.
#include "solvers_rci/dcsrilu0.hpp"
#include "solvers_rci/dcsrilut.hpp"
#include "tests/solvers_rci/ilu_support.hpp"
#include "tests/support/catalogue.hpp"
#include <functional>

namespace {

using namespace nxl_test;

/// The place of each code's lines in the catalogue.
using Lines = std::map<int, std::pair<int, int>>;
const Lines ilu0_lines{{-101, {693, 2}}, {-102, {695, 2}}, {-103, {697, 2}},
                       {-104, {699, 2}}, {-105, {701, 2}}, {-106, {703, 2}}};
const Lines ilut_lines{{101, {705, 3}},  {102, {708, 2}},  {103, {710, 3}},  {104, {713, 3}},
                       {-101, {716, 3}}, {-102, {719, 5}}, {-103, {724, 2}}, {-104, {726, 2}},
                       {-105, {728, 2}}, {-106, {730, 2}}, {-107, {732, 2}}};

std::string report_of(const Lines& lines, int header, int code) {
    const auto [first, count] = lines.at(code);
    return report(header, catalogue(first, count));
}
std::string ilu0_report(int code) { return report_of(ilu0_lines, 403, code); }
std::string ilut_report(int code) { return report_of(ilut_lines, code > 0 ? 406 : 405, code); }

const Rows identity{{{0, 1.0}}, {{1, 1.0}}, {{2, 1.0}}};

TEST(IluReports, EveryTextAndWhatHasNone) {
    IluCase run(identity);
    const auto ilu0 = [&](int code) { return printed_by([&] { nxl::rci::report_ilu0(code, run.ipar.data()); }); };
    const auto ilut = [&](int code) { return printed_by([&] { nxl::rci::report_ilut(code, run.ipar.data()); }); };
    const std::string wrong = catalogue(407, 1);
    for (const auto& entry : ilu0_lines) EXPECT_EQ(ilu0(entry.first), ilu0_report(entry.first));
    for (const auto& entry : ilut_lines) EXPECT_EQ(ilut(entry.first), ilut_report(entry.first));
    for (const int code : {0, -100, -107}) EXPECT_EQ(ilu0(code), report(404, wrong));
    for (const int code : {0, 100, 105, -100, -108}) EXPECT_EQ(ilut(code), report(406, wrong));
}

/// A change to a sound call on the identity, and what it leads to.
struct Fault {
    int code;
    std::function<void(IluCase&)> change;
};

TEST(IluReports, ErrorsOfIlu0) {
    const TemporaryDirectory here;
    std::string log;
    for (const Fault& fault :
         {Fault{-101, [](IluCase& run) { run.ja[1] = 1; }}, Fault{-102, [](IluCase& run) { run.a[1] = 0.0; }},
          Fault{-103, [](IluCase& run) { run.a[2] = -0.25; }}, Fault{-105, [](IluCase& run) { run.n = 0; }},
          Fault{-105, [](IluCase& run) { run.n = -4; }}, Fault{-106, [](IluCase& run) { run.ja[0] = -2; }}}) {
        IluCase run(identity);
        run.dp(31) = 0.5;
        fault.change(run);
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(run.ilu0(), fault.code); }), ilu0_report(fault.code));
        run.ip(6) = 0;
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(run.ilu0(), fault.code); }), "");
        run.ip(6) = -1, run.ip(2) = 5;
        EXPECT_EQ(printed_by([&] { run.ilu0(); }), "\nError message has been written in NXL_PREC_log.txt\n");
        EXPECT_EQ(contents("NXL_PREC_log.txt"), log += ilu0_report(fault.code));
    }
}

/// tol and maxfil travel in dpar(1) and ipar(1), which the routine does not read.
int ilut(IluCase& run) { return run.ilut(run.dp(1), run.ip(1)); }

IluCase sound_ilut() {
    IluCase run(identity);
    run.dp(1) = 0.5, run.ip(1) = 1, run.dp(31) = -0.5;
    return run;
}

TEST(IluReports, ErrorsOfIlut) {
    const TemporaryDirectory here;
    std::string log;
    for (const Fault& fault :
         {Fault{-102, [](IluCase& run) { run.a[1] = 0.0; }},
          Fault{-103, [](IluCase& run) { run.ia[1] = 3, run.ia[2] = 2; }},
          Fault{-103, [](IluCase& run) { run.ia[0] = 0; }}, Fault{-105, [](IluCase& run) { run.ip(1) = -1; }},
          Fault{-106, [](IluCase& run) { run.n = -1, run.dp(1) = -1.0; }},
          Fault{-107, [](IluCase& run) { run.ja[1] = 0; }}, Fault{-107, [](IluCase& run) { run.ja[2] = 4; }}}) {
        IluCase run = sound_ilut();
        run.ip(7) = 0; // says nothing about errors
        fault.change(run);
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), fault.code); }), ilut_report(fault.code));
        run.ip(6) = 0, run.ip(7) = 1;
        EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), fault.code); }), "");
        run.ip(6) = 1, run.ip(2) = 7;
        EXPECT_EQ(printed_by([&] { ilut(run); }), "\nWarning message has been written in NXL_PREC_DILUT_log.txt\n");
        EXPECT_EQ(contents("NXL_PREC_DILUT_log.txt"), log += ilut_report(fault.code));
    }
}

TEST(IluReports, WarningsGoByTheirPolicy) {
    for (const Fault& fault :
         {Fault{101, [](IluCase& run) { run.ip(1) = 3; }}, Fault{102, [](IluCase& run) { run.dp(1) = -0.25; }},
          Fault{103, [](IluCase& run) { run.dp(1) = 0.75; }}, Fault{103, [](IluCase& run) { run.dp(31) = NAN; }},
          Fault{104, [](IluCase& run) { run.dp(1) = run.dp(31) = 0.0, run.ip(31) = 1; }}}) {
        IluCase run = sound_ilut();
        run.ip(6) = 0; // says nothing about warnings
        fault.change(run);
        for (const int policy : {0, -1, 1}) {
            run.ip(7) = policy;
            EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), fault.code); }),
                      policy == 0 ? "" : ilut_report(fault.code));
            EXPECT_EQ(run.lu[0], policy > 0 ? 1.0 : untouched);
        }
    }
    IluCase run = sound_ilut(); // no warnings: dpar(31) 0 matters with ipar(31) 1 alone
    run.dp(1) = run.dp(31) = 0.0, run.ip(31) = 2;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), 0); }), "");
}

TEST(IluReports, TheLastWarningStaysUnlessAnErrorFollows) {
    IluCase run(Rows{{{0, 1.0}, {1, 2e-3}, {2, 0.5}}, {{1, 1.0}}, {{0, 1e-3}, {2, 1.0}}});
    run.dp(1) = -0.01, run.ip(1) = 4, run.dp(31) = 1e-3;
    const std::string warnings = ilut_report(101) + ilut_report(102) + ilut_report(103);
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), 103); }), warnings);
    EXPECT_EQ(run.ip(1), 4);
    EXPECT_EQ(run.dp(1), -0.01);
    expect_same(run.factors(), {{{0, 1.0}, {2, 0.5}}, {{1, 1.0}}, {{2, 1.0}}}); // dropped by 0.01
    run.ip(7) = -1;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), 101); }), ilut_report(101)); // the first ends the call
    run.ip(7) = 1, run.ja[3] = 9;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), -107); }), warnings + ilut_report(-107));
}

} // namespace
