// What the incomplete LU routines make of bad arguments: ierr, warnings policy, and reports to the byte, on standard
// output and in the log files.
#include "solvers_rci/dcsrilu0.hpp"
#include "solvers_rci/dcsrilut.hpp"
#include "tests/solvers_rci/ilu_support.hpp"
#include <functional>

namespace {

using namespace nxl_test;

using Texts = std::map<int, std::string>;

const std::string stuck = "Cannot proceed with calculations as";
const Texts ilu0_texts{
    {-101, stuck + "\nMatrix has no diagonal in CSR format."},
    {-102, stuck + "\nMatrix has zero diagonal."},
    {-103, stuck + "\nDivision by a small diagonal value will happen."},
    {-104, "Cannot proceed as the system failed to provide\nmemory for inner temporary integer array of size N."},
    {-105, stuck + "\ninput matrix size is negative or zero."},
    {-106, stuck + " input\nmatrix column indexes are not in increasing order."},
};
const Texts ilut_texts{
    {101, "Maximum fill-in input parameter is greater or equals\nmatrix size. Trying to proceed with the parameter\n"
          "equals (matrix size - 1) ..."},
    {102, "The value of tolerance input parameter is negative.\nTrying to proceed with (-value) ..."},
    {103, "Input absolute value of tolerance is greater than\ninput value set in DPAR(31) which might result\n"
          "in instability of calculations."},
    {104, "Input value of DPAR(31) equals zero. Its possible\nfuture usage for replacement of small diagonal\n"
          "values might lead to failure to compute LU factors."},
    {-101, stuck + " matrix has either\nwrong integer array of row positions in its CSR\n"
                   "format or the matrix is degenerate with zero row."},
    {-102, stuck + " small diagonal\nvalue has appeared (small with respect to the input\n"
                   "tolerance multiplied by the matrix row L_2 norm)\nthat should be discarded according to the "
                   "threshold\ncriterion, but it cannot be replaced as IPAR(31)=0."},
    {-103, stuck + " input matrix has\nwrong row indexes in CSR format."},
    {-104, stuck + " the system failed\nto provide memory for temporary data structures."},
    {-105, stuck + " input maximum\nfill-in parameter is negative."},
    {-106, stuck + " input size\nof the matrix is negative."},
    {-107, stuck + " input matrix has\nwrong column indexes in CSR format."},
};

std::string framed(const std::string& routine, const std::string& level, const std::string& text) {
    return "\n" + std::string(78, '-') + "\nNXL " + routine + " " + level + ": \n" + text + "\n";
}

std::string ilu0_report(int code) { return framed("DCSRILU0", "ERROR", ilu0_texts.at(code)); }
std::string ilut_report(int code) { return framed("DCSRILUT", code > 0 ? "WARNING" : "ERROR", ilut_texts.at(code)); }

const Rows identity{{{0, 1.0}}, {{1, 1.0}}, {{2, 1.0}}};

TEST(IluReports, EveryTextAndWhatHasNone) {
    IluCase run(identity);
    const auto ilu0 = [&](int code) { return printed_by([&] { nxl::rci::report_ilu0(code, run.ipar.data()); }); };
    const auto ilut = [&](int code) { return printed_by([&] { nxl::rci::report_ilut(code, run.ipar.data()); }); };
    const std::string wrong = "Wrong message request. This should never happen in a normal situation...";
    for (const auto& entry : ilu0_texts) EXPECT_EQ(ilu0(entry.first), ilu0_report(entry.first));
    for (const auto& entry : ilut_texts) EXPECT_EQ(ilut(entry.first), ilut_report(entry.first));
    for (const int code : {0, -100, -107}) EXPECT_EQ(ilu0(code), framed("DCSRILU0", "WARNING", wrong));
    for (const int code : {0, 100, 105, -100, -108}) EXPECT_EQ(ilut(code), framed("DCSRILUT", "WARNING", wrong));
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

TEST(IluReports, LogsThatCannotBeOpenedCostTheReportAlone) {
    const TemporaryDirectory here;
    std::filesystem::create_directory("NXL_PREC_log.txt");
    std::filesystem::create_directory("NXL_PREC_DILUT_log.txt");
    const auto lost = [](const std::string& file) {
        return "\nCannot create file " + file + " ...\nAn error/warning message cannot be saved in the file.\n";
    };
    IluCase run = sound_ilut();
    run.ip(2) = 0, run.ip(1) = 3;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(ilut(run), 101); }), lost("NXL_PREC_DILUT_log.txt"));
    EXPECT_EQ(run.lu[2], 1.0);
    run.n = 0;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(run.ilu0(), -105); }), lost("NXL_PREC_log.txt"));
}

} // namespace
