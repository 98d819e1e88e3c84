// The report writer from inside: values in lines, limits, files without a notice, numbers that no routine asks for.
#include "solvers_rci/cg_run.hpp"
#include "solvers_rci/fgmres_run.hpp"
#include "solvers_rci/report.hpp"
#include "tests/support/captured.hpp"

namespace {

using namespace nxl::rci;
using nxl_test::printed_by;

const std::string frame = "\n" + std::string(78, '-') + "\n";

TEST(Report, IntegersGoIntoTheirLine) {
    Report report(399);
    report.line(408, -2147483647 - 1).lines(656, 2);
    EXPECT_EQ(report.text(), frame + "NXL RCI FGMRES ERROR: \nCannot create file -2147483648 ...\nInfinite loop.\n"
                                     "At least one of the parameters IPAR(8), IPAR(9)  or\n");
}

TEST(Report, WhatDoesNotFitIsLeftOut) {
    Report report(399);
    report.lines(654, 37).lines(654, 37).lines(654, 37);
    const std::string text = report.text();
    EXPECT_LE(text.size(), 3079U);
    EXPECT_GE(text.size(), 3079U - 56U); // the longest line of these
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(printed_by([&] { report.send(6, {"", 0}); }), text);
}

TEST(Report, PercentSignsReachTheReader) {
    EXPECT_EQ(printed_by([] { Report(399).line(408).send(6, {"", 0}); }),
              frame + "NXL RCI FGMRES ERROR: \nCannot create file %s ...\n");
}

TEST(Report, FilesWithoutANoticeGrowSilently) {
    const nxl_test::TemporaryDirectory here;
    Report report(400);
    EXPECT_EQ(printed_by([&] { report.send(7, {"log.txt", 0}), report.send(0, {"log.txt", 0}); }), "");
    EXPECT_EQ(nxl_test::contents("log.txt"), std::string(report.text()) + report.text());
}

TEST(Report, AFileThatCannotBeOpenedIsTold) {
    const nxl_test::TemporaryDirectory here;
    std::filesystem::create_directory("log.txt");
    EXPECT_EQ(printed_by([] { Report(400).send(7, {"log.txt", 0}); }),
              "\nCannot create file log.txt ...\nAn error/warning message cannot be saved in the file.\n");
}

TEST(Report, UnknownNumbersHaveTheirOwnText) {
    int ipar[128] = {};
    double dpar[128] = {};
    const CgRun run(ipar, dpar);
    run.set_defaults(1);
    const std::string line = "Wrong message request. This should never happen in a normal situation...\n";
    std::string text = frame + "NXL RCI CG WARNING: \n" + line;
    for (const int number : {0, 4}) EXPECT_EQ(printed_by([&] { run.report(static_cast<CgError>(number)); }), text);
    for (const int number : {-1, 11}) EXPECT_EQ(printed_by([&] { run.report(static_cast<CgWarning>(number)); }), text);
    const FgmresRun fgmres(nullptr, nullptr, ipar, dpar, nullptr);
    text = frame + "NXL RCI FGMRES WARNING: \n" + line;
    for (const int number : {-1, 19})
        EXPECT_EQ(printed_by([&] { fgmres.report(static_cast<FgmresError>(number)); }), text);
    for (const int number : {299, 312})
        EXPECT_EQ(printed_by([&] { fgmres.report(static_cast<FgmresWarning>(number), 1); }), text);
}

} // namespace
