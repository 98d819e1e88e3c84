// nxl-bench from outside: what it lists, refuses and writes, and that a library with wrong results gets no figure.
#include "tests/programs/run_program.hpp"

namespace {

class Bench : public program_test::Program {
  protected:
    const std::string wrong_peer_ = " --peer '" NXL_WRONG_BLAS "'",
                      right_peers_ = " --peer /usr/lib/x86_64-linux-gnu/blas/libblas.so.3"
                                     " --peer /usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3";
    Bench() : Program(NXL_BENCH_PROGRAM) {}
};

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST_F(Bench, ListsFamiliesAndWhatEachLibraryOffers) {
    const auto list = run("--list" + wrong_peer_);
    EXPECT_EQ(list.status, 0) << list.err;
    for (const char* part : {"\n  krylov ", "nxl  ", "/libnxl.so.0.", "level1 20 of 20, level2 15 of 15",
                             "libwrong_blas.so\n", "level1 2 of 20, level2 0 of 15, level3 0 of 15, factor 0 of 16, ",
                             ", lapack 0 of 46, eigen 0 of 6, nonsym 0 of 10 routines\n"})
        EXPECT_TRUE(has(list.out, part)) << part << "\n" << list.out;
}

TEST_F(Bench, SelfCheckedRowsOfSeveralFamilies) {
    const auto result = run(
        "level1 factor --self-check --filter '(ddot/30|daxpy/40|dgetrf/40)/' --sizes 30,40 --csv f.csv" + right_peers_);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    for (const char* row : {"\nddot ", "\ndaxpy ", "\ndgetrf ", "of peak"})
        EXPECT_TRUE(has(result.out, row)) << result.out;
    const std::string level1 = read("f-level1.csv"), factor = read("f-factor.csv");
    EXPECT_TRUE(has(level1, "level1,ddot,30,1,nxl,") && has(level1, "level1,daxpy,40,1,libblas,")) << level1;
    EXPECT_TRUE(has(factor, "factor,dgetrf,40,1,liblapack,")) << factor;
}

TEST_F(Bench, SparseSystemsWithAndWithoutAPeer) {
    const auto result = run("sparse --filter '(poisson2d|saddle)/' --sizes 20 --csv f.csv");
    EXPECT_EQ(result.status, 0) << result.err;
    for (const char* row : {"\npoisson2d     20    metis ", "\npoisson2d     20    mindegree ",
                            "\nsaddle        20    metis ", "\nsaddle               20    solve100 "})
        EXPECT_TRUE(has(result.out, row)) << result.out;
    EXPECT_TRUE(has(read("f.csv"), "sparse,poisson2d,20,mindegree,400,nxl,")) << read("f.csv");
    EXPECT_EQ(run("sparse --sizes 1").status, 1);
}

TEST_F(Bench, PlaysManyCores) {
    const auto result = run("scaling --filter cholesky --sizes 300 --csv f.csv");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(has(result.out, "\ncholesky      300   128 ")) << result.out;
    EXPECT_TRUE(has(read("f.csv"), "scaling,cholesky,300,64,")) << read("f.csv");
}

TEST_F(Bench, PlotThatCannotBeDrawnIsAFailure) {
    const auto result = run("level1 --filter ddot/ --sizes 30 --plot f.svg" + right_peers_, "PATH=/nonexistent");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "nxl-bench: f.svg: no plot: gnuplot is not installed\n");
    EXPECT_TRUE(has(result.out, "\nddot ")) << result.out;
}

TEST_F(Bench, WrongResultsGetNoFigure) {
    const auto dot = run("level1 --filter ddot/ --sizes 50 --csv f.csv" + wrong_peer_);
    EXPECT_EQ(dot.status, 3);
    EXPECT_TRUE(has(dot.err, "nxl-bench: level1/ddot/50") && has(dot.err, "libwrong_blas has another result"))
        << dot.err;
    EXPECT_FALSE(has(dot.out, "\nddot ")) << dot.out;
    EXPECT_FALSE(has(read("f.csv"), "ddot"));

    // Right in the calls before the timing: only the check of the timed ones finds it.
    const auto axpy = run("level1 --self-check --filter daxpy/ --sizes 50" + wrong_peer_);
    EXPECT_EQ(axpy.status, 3);
    EXPECT_TRUE(has(axpy.err, "level1/daxpy/50")) << axpy.err;
    EXPECT_FALSE(has(axpy.out, "\ndaxpy ")) << axpy.out;

    const auto library = run("level1 --filter ddot/ --sizes 50 --library '" NXL_WRONG_BLAS "'");
    EXPECT_EQ(library.status, 3);
    EXPECT_TRUE(has(library.err, "nxl has no ddot")) << library.err;
}

TEST_F(Bench, MistakesAreToldBeforeAnythingRuns) {
    expect_refused({
        {"", 2, "...a family is expected"},
        {"gem", 2, "...gem not in"},
        {"krylov --threads 2", 2, "...--threads does not belong to family krylov"},
        {"level1 bandwidth --csv f.csv", 2, "...--csv does not belong to family bandwidth"},
        {"level1 --sizes 0", 2, "...--sizes"},
        {"scaling --threads 2", 2, "...--threads does not belong to family scaling"},
        {"scaling --filter poisson --sizes 1", 2, "...--sizes: the least for poisson3d is 2"},
        {"scaling --filter nothing", 2, "...no case of scaling matches 'nothing'"},
        {"level1 --csv /nowhere/f.csv", 1, ".../nowhere/f.csv: No such file or directory"},
        {"level1 --plot /nowhere/f.svg", 1, ".../nowhere/f.svg: No such file or directory"},
        {"level1 --plot f.pdf", 2, "...'f.pdf' ends neither in .svg nor in .png"},
        {"level1 --library /nowhere.so", 1, "...cannot load the library"},
        {"level1 --peer /nowhere.so", 1, "...cannot load the peer"},
    });
    const auto none = run("level1 --filter nothing"); // which tells the machine first
    EXPECT_EQ(none.status, 2);
    EXPECT_TRUE(has(none.err, "no case of level1 matches 'nothing'")) << none.err;
}

} // namespace
