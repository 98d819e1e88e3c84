// nxl-solve from outside: what it solves, what it writes, and what it says and returns when something is wrong.
#include "program.hpp"

#include "common/line_reader.hpp"
#include "matrix_market.hpp"

#include <algorithm>
#include <cmath>

namespace {

using solve_test::number_after;
using solve_test::Program;

const std::string kHeader = "%%MatrixMarket matrix coordinate real general\n";

TEST_F(Program, SolvesEveryKindOfProblemToItsTolerance) {
    for (const std::string problem :
         {"poisson2d:20", "heat3d:12", "anisotropic2d:20", "layers3d:10", "truss:8", "random:300"}) {
        for (const std::string options : {"", " --precond jacobi", " --nrhs 3", " --nrhs 3 --precond jacobi"}) {
            const auto run = this->run("--tolerance 1e-11 --generate " + problem + options);
            EXPECT_EQ(run.status, 0) << problem << options << run.err;
            EXPECT_LT(number_after(run.out, "residual reduced to"), 1e-11) << problem << options;
            EXPECT_LT(number_after(run.out, "residual     "), 1e-11) << problem << options;
            EXPECT_LT(number_after(run.out, "error "), 1e-6) << problem << options;
        }
    }
}

TEST_F(Program, JacobiPaysWhereTheDiagonalVaries) {
    const auto plain = run("--generate layers3d:12 --method cg"),
               jacobi = run("--generate layers3d:12 --precond jacobi");
    EXPECT_LT(3.0 * number_after(jacobi.out, "iterations "), number_after(plain.out, "iterations "));
}

TEST_F(Program, EveryColumnCountsHoweverSmall) { // scales apart by 1e-150, and a column of zeros
    write("b.mtx", "%%MatrixMarket matrix array real general\n4 3\n1e-150\n0\n0\n2e-150\n0\n0\n0\n0\n3\n1\n4\n1\n");
    ASSERT_EQ(run("--generate poisson2d:2 --rhs b.mtx --output x.mtx --tolerance 1e-12").status, 0);
    const auto x = solve::read_block<double>(common::open_lines((folder_ / "x.mtx").string()), 4);
    ASSERT_EQ(x.count, 3);
    // The inverse of the 4 by 4 matrix is [7 2 2 1; 2 7 1 2; 2 1 7 2; 1 2 2 7] / 24.
    EXPECT_NEAR(x.value[0] / 1e-150, (7.0 + 2.0 * 1.0) / 24.0, 1e-11);
    EXPECT_NEAR(x.value[1] / 1e-150, (2.0 + 2.0 * 2.0) / 24.0, 1e-11);
    EXPECT_EQ(std::count(x.column(1), x.column(1) + 4, 0.0), 4);
    EXPECT_NEAR(x.value[10], (2.0 * 3.0 + 1.0 + 7.0 * 4.0 + 2.0) / 24.0, 1e-11);
}

TEST_F(Program, ASeedThatMeetsItsSolutionExactlyLeavesNoneUnsolved) {
    write("diagonal.mtx", "%%MatrixMarket matrix coordinate real symmetric\n3 3 3\n1 1 2\n2 2 2\n3 3 2\n");
    const auto run = this->run("diagonal.mtx --nrhs 4 --method cg");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_LT(number_after(run.out, "error "), 1e-14);
}

TEST_F(Program, ZeroRightHandSideIsSolvedAtOnce) {
    write("b.mtx", "%%MatrixMarket matrix array integer general\n4 1\n0\n0\n0\n0\n");
    for (const std::string options : {"", " --precond jacobi"}) {
        const auto run = this->run("--generate poisson2d:2 --method cg --rhs b.mtx" + options);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(number_after(run.out, "iterations "), 0.0);
    }
}

TEST_F(Program, BridgeSagsMostAtMidSpan) {
    ASSERT_EQ(run("--generate truss:10 --rhs load --precond jacobi --tolerance 1e-10 --output x.mtx").status, 0);
    const auto x = solve::read_block<double>(common::open_lines((folder_ / "x.mtx").string()), 124);
    const auto lowest = std::min_element(x.value.begin(), x.value.end()) - x.value.begin();
    EXPECT_EQ((lowest + 5) / 12, 5) << "frame of the lowest joint, of 0 to 10"; // 5 displacements are held in frame 0
    EXPECT_LT(x.value[static_cast<std::size_t>(lowest)], -0.001);
    EXPECT_GT(x.value[static_cast<std::size_t>(lowest)], -0.25); // metres on 50 m: a bridge, not a rope
}

TEST_F(Program, SymmetricValuesMayStandInAGeneralFileAndDuplicatesAreTold) {
    write("a.mtx", kHeader + "2 2 5\n1 1 3\n1 2 1\n2 1 1\n2 2 1\n2 2 1\n");
    const auto run = this->run("a.mtx");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "nxl-solve: a.mtx: note: duplicate entries were summed: 1\n");
    EXPECT_NE(run.out.find("n = 2, 4 entries, real symmetric by its values, norm 4"), std::string::npos) << run.out;
}

TEST_F(Program, HistoryPlotAndQuiet) {
    const auto verbose = run("--generate poisson2d:10 --nrhs 2 --verbose --plot \"it's.svg\"");
    const bool has_gnuplot = std::system("gnuplot --version >/dev/null 2>&1") == 0;
    EXPECT_EQ(verbose.status, has_gnuplot ? 0 : 1);
    EXPECT_NE(verbose.out.find("    2          1  "), std::string::npos) << verbose.out;
    EXPECT_EQ(read("it's.svg").find("</svg>") != std::string::npos, has_gnuplot);
    const auto quiet = run("--generate poisson2d:10 --quiet");
    EXPECT_EQ(quiet.out + quiet.err, "");
    const auto no_gnuplot = run("--generate poisson2d:10 --quiet --plot h.svg", "PATH=/nonexistent");
    EXPECT_EQ(no_gnuplot.status, 1);
    EXPECT_EQ(no_gnuplot.err, "nxl-solve: h.svg: no plot: gnuplot is not installed\n");
}

TEST_F(Program, ReadsGzipAndNoticesItsDamage) {
    std::string text = kHeader + "3000 3000 3000\n";
    for (int i = 1; i <= 3000; ++i)
        text += std::to_string(i) + " " + std::to_string(i) + " 0." + std::to_string(i * i) + "\n";
    write("a.mtx", text);
    ASSERT_EQ(std::system(("gzip '" + (folder_ / "a.mtx").string() + "'").c_str()), 0);
    EXPECT_EQ(run("a.mtx.gz --precond jacobi").status, 0);
    std::filesystem::resize_file(folder_ / "a.mtx.gz", std::filesystem::file_size(folder_ / "a.mtx.gz") / 2);
    const auto cut = run("a.mtx.gz");
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(cut.err, "nxl-solve: a.mtx.gz: damaged gzip data\n");
}

TEST_F(Program, FaultsGetOneLineAndTheirStatus) {
    write("late.mtx", kHeader + "2 2 2\n1 1 1\n3 1 1\n");
    write("negative.mtx", kHeader + "2 2 2\n1 1 1\n2 2 -1\n");
    write("huge.mtx", kHeader + "2 2 4\n1 1 1e308\n1 2 9e307\n2 1 9e307\n2 2 1e308\n");
    write("b.mtx", "%%MatrixMarket matrix array real general\n2 1\n1\n-2\n");
    write("complex.mtx", "%%MatrixMarket matrix coordinate complex general\n1 1 1\n1 1 1 0\n");
    expect_refused({
        {"late.mtx", 1, "late.mtx:4: row 3 is not in 1 to 2"},
        {"none.mtx", 1, "none.mtx: No such file or directory"},
        {".", 1, ".: Is a directory"},
        {"complex.mtx --method cg", 1, "complex.mtx: method cg needs a real matrix, this one is complex"},
        {"--generate convection2d:4 --method cg", 1,
         "convection2d:4: method cg needs a symmetric matrix, this one is not"},
        {"negative.mtx --method cg", 1,
         "negative.mtx: method cg needs a positive definite matrix, but diagonal entry 2 is not positive"},
        {"--generate poisson2d:2 --rhs none.mtx", 1, "none.mtx: No such file or directory"},
        {"--generate poisson2d:2 --rhs b.mtx", 1, "b.mtx:2: the right-hand side has 2 rows, the matrix 4"},
        {"late.mtx --output none/x.mtx", 1, "none/x.mtx: No such file or directory"}, // before anything is read
        {"late.mtx --output .", 1, ".: Is a directory"},
        {"late.mtx --output new.mtx", 1, "late.mtx:4: row 3 is not in 1 to 2"},
        {"late.mtx --output b.mtx", 1, "late.mtx:4: row 3 is not in 1 to 2"},
        {"--generate poisson2d:2 --output /dev/full", 1, "/dev/full: No space left on device"},
        {"--generate poisson2d:2 --plot none/x.svg", 1, "none/x.svg: No such file or directory"},
        {"--generate poisson2d:2 --plot /dev/full/x.svg", 1, "/dev/full/x.svg: Not a directory"},
        {"", 2, "one matrix is expected: a FILE or --generate KIND:SIZE"},
        {"late.mtx --generate heat3d:3", 2, "one matrix is expected: a FILE or --generate KIND:SIZE"},
        {"--generate heat4d:3", 2, "no problem of the name 'heat4d'; --help lists them"},
        {"--generate heat3d:2000", 2, "'heat3d:2000' has more entries than 32-bit positions reach"},
        {"late.mtx --tolerance 1", 2, "--tolerance: '1' is not between 0 and 1"},
        {"late.mtx --precond ilu", 2, "--precond: ilu not in {none,jacobi,ilu0,ilut}"},
        {"negative.mtx --rhs load", 2, "--rhs load belongs to --generate: a file has no load of its own"},
        {"huge.mtx --rhs b.mtx --nrhs 3", 2, "--nrhs 3, but 'b.mtx' holds 1"},
        {"huge.mtx --method cg", 3,
         "not converged after 0 iterations, residual reduced to inf: the numbers left the range of doubles"},
    });
    EXPECT_FALSE(std::filesystem::exists(folder_ / "new.mtx"));
    EXPECT_TRUE(read("b.mtx").ends_with("1\n-2\n"));
}

TEST_F(Program, FailsTheSameWithOneAndWithSeveralRightHandSides) {
    write("indefinite.mtx", kHeader + "2 2 4\n1 1 1\n1 2 2\n2 1 2\n2 2 1\n");
    write("1.mtx", "%%MatrixMarket matrix array real general\n2 1\n1\n-2\n");
    write("2.mtx", "%%MatrixMarket matrix array real general\n2 2\n1\n-2\n1\n-2\n");
    for (const std::string systems : {"1", "2"}) {
        const auto indefinite = run("indefinite.mtx --method cg --rhs " + systems + ".mtx");
        EXPECT_EQ(indefinite.status, 3);
        EXPECT_TRUE(indefinite.err.ends_with(": the matrix is not positive definite\n")) << indefinite.err;
        for (const int limit : {1, 4}) {
            const auto limited =
                run("--generate heat3d:9 --max-iterations " + std::to_string(limit) + " --nrhs " + systems);
            EXPECT_EQ(limited.status, 3);
            EXPECT_EQ(number_after(limited.err, "not converged after "), limit * std::stoi(systems)) << limited.err;
        }
    }
}

} // namespace
