// The direct methods of nxl-solve and the choice among all: every kind of matrix, sparse and dense, and what is
// refused.
#include "program.hpp"

#include "common/line_reader.hpp"
#include "matrix_market.hpp"
#include "method.hpp"

#include <numbers>
#include <random>

namespace {

using solve::Complex;
using solve_test::number_after;
using solve_test::Program;

const std::string kBanner = "%%MatrixMarket matrix ";

/// A file of random values in -1 to 1, all entries stored; the diagonal of a symmetric or Hermitian one outweighs them.
std::string random_matrix(const std::string& format, const std::string& field, const std::string& symmetry, int n) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    const bool whole = symmetry == "general", skew = symmetry == "skew-symmetric", coordinate = format == "coordinate";
    const auto size = std::to_string(n);
    std::string lines;
    int count = 0;
    for (int j = 1; j <= n; ++j) {
        for (int i = whole ? 1 : j + skew; i <= n; ++i, ++count) {
            if (coordinate) lines += std::to_string(i) + " " + std::to_string(j) + " ";
            lines += std::to_string(uniform(random) + (i == j && !whole ? 2.0 * n : 0.0));
            if (field == "complex")
                lines += " " + std::to_string(i == j && symmetry == "hermitian" ? 0.0 : uniform(random));
            lines += "\n";
        }
    }
    return kBanner + format + " " + field + " " + symmetry + "\n" + size + " " + size +
           (coordinate ? " " + std::to_string(count) : "") + "\n" + lines;
}

/// A matrix of order 40 with so much on the diagonals -1, 0 and 1.
std::string tridiagonal(double below, double diagonal, double above) {
    std::string lines;
    for (int i = 1; i <= 40; ++i)
        for (int j = std::max(1, i - 1); j <= std::min(40, i + 1); ++j)
            lines += std::to_string(i) + " " + std::to_string(j) + " " +
                     std::to_string(j < i    ? below
                                    : j == i ? diagonal
                                             : above) +
                     "\n";
    return kBanner + "coordinate real general\n40 40 118\n" + lines;
}

struct Kind {
    const char *field, *symmetry, *choice;
};

TEST_F(Program, SolvesEveryKindOfMatrixDirectly) {
    const Kind kinds[] = {
        {"real", "general", "lu (auto: not symmetric)"},
        {"real", "symmetric", "cholesky (auto: positive definite)"},
        {"real", "skew-symmetric", "lu (auto: not symmetric)"},
        {"complex", "general", "lu (auto: not Hermitian)"},
        {"complex", "symmetric", "lu (auto: not Hermitian)"},
        {"complex", "skew-symmetric", "lu (auto: not Hermitian)"},
        {"complex", "hermitian", "cholesky (auto: positive definite)"},
    };
    for (const auto& [field, symmetry, choice] : kinds) {
        for (const std::string format : {"array", "coordinate"}) {
            write("a.mtx", random_matrix(format, field, symmetry, 130));
            for (const std::string options : {" --nrhs 3", " --method lu"}) {
                const auto run = this->run("a.mtx" + options);
                EXPECT_EQ(run.status, 0) << run.err;
                EXPECT_LE(number_after(run.out, "\nerror "), number_after(run.out, "\nbounds ")) << run.out;
                const std::string method = options == " --method lu" ? "lu" : choice;
                EXPECT_NE(run.out.find("method       " + method + "\n"), std::string::npos) << run.out;
                EXPECT_LT(number_after(run.out, "residual     "), 1e-14) << run.out;
                EXPECT_LT(number_after(run.out, "error "), 1e-10) << run.out;
            }
        }
    }
}

// The inverse of [2 1-i; 1+i 3] is [3 i-1; -1-i 2] / 4; a matrix taken for its transpose would solve another system.
TEST_F(Program, SolvesTheHermitianSystemAndNotItsConjugate) {
    write("a.mtx", kBanner + "array complex hermitian\n2 2\n2 0\n1 1\n3 0\n");
    write("b.mtx", kBanner + "array complex general\n2 2\n1 0\n0 1\n0 0\n4 0\n");
    for (const std::string method : {"cholesky", "lu", "ldl"}) {
        ASSERT_EQ(run("a.mtx --rhs b.mtx --output x.mtx --method " + method).status, 0);
        const auto x = solve::read_block<Complex>(common::open_lines((folder_ / "x.mtx").string()), 2);
        const Complex expected[] = {{0.5, -0.25}, {-0.25, 0.25}, {-1.0, 1.0}, {2.0, 0.0}};
        ASSERT_EQ(x.count, 2);
        for (int k = 0; k < 4; ++k) EXPECT_LT(std::abs(x.value.data()[k] - expected[k]), 1e-15) << method << k;
    }
}

// Inside, the flow that the sources cause is uniform, k times the stream for half axes in the ratio k: Lamb,
// Hydrodynamics, article 71. So their strength, the jump of the normal velocity, is -(1 + k) times the normal along it.
TEST_F(Program, SourcesOfTheEllipticCylinderAreThoseOfPotentialTheory) {
    constexpr int n = 400; // the error is of the order of the panels' length
    ASSERT_EQ(run("--generate panels:400 --rhs load --output x.mtx").status, 0);
    const auto x = solve::read_block<double>(common::open_lines((folder_ / "x.mtx").string()), n);
    for (int k = 0; k < n; ++k) {
        const double angle = 2.0 * std::numbers::pi * (k + 0.5) / n;
        const double normal_x = std::cos(angle) / std::hypot(std::cos(angle), 2.0 * std::sin(angle));
        EXPECT_NEAR(x.value.data()[k], -1.5 * normal_x, 0.01) << k;
    }
}

TEST_F(Program, AutoTakesWhatTheMatrixAllows) {
    write("indefinite.mtx", kBanner + "array real symmetric\n2 2\n1\n2\n1\n");
    write("negative.mtx", kBanner + "array real symmetric\n2 2\n1\n0\n-1\n");
    write("values.mtx", kBanner + "array complex general\n2 2\n2 0\n1 1\n1 -1\n3 0\n");
    write("shift.mtx", kBanner + "coordinate real general\n3 3 3\n1 2 1\n2 3 1\n3 1 1\n");
    write("symmetric.mtx", kBanner + "array complex symmetric\n2 2\n1 1\n2 0\n1 3\n");
    write("band.mtx", tridiagonal(-2.0, 0.5, 1.0));
    write("definite.mtx", tridiagonal(-1.0, 2.5, -1.0));
    write("rest.mtx", tridiagonal(-1.0, 0.5, -1.0));
    const std::pair<std::string, std::string> choices[] = {
        {"symmetric.mtx --method ldl", "ldl"},
        {"band.mtx", "band lu, width 1 below and 1 above (auto: narrow band)"},
        {"definite.mtx", "band cholesky, width 1 (auto: narrow band, positive definite)"},
        {"rest.mtx",
         "band lu, width 1 below and 1 above (auto: narrow band, the leading minor of order 2 is not positive)"},
        {"indefinite.mtx", "lu (auto: method cholesky needs a positive definite matrix, but the leading minor of order "
                           "2 is not positive)"},
        {"negative.mtx", "lu (auto: diagonal entry 2 is not positive)"},
        {"values.mtx", "cholesky (auto: positive definite)"},
        {"--generate kriging:100", "cholesky (auto: positive definite)"},
        {"--generate poisson2d:71", "direct, symmetric positive definite, nested-dissection (auto: sparse)"},
        {"--generate convection2d:71 --ordering constrained", "direct, unsymmetric, constrained"},
        {"--generate kriging:100 --precond jacobi",
         "cg, preconditioner jacobi, tolerance 1e-08 (auto: symmetric, positive diagonal)"},
        {"--generate kriging:100 --max-iterations 500",
         "cg, preconditioner none, tolerance 1e-08 (auto: symmetric, positive diagonal)"},
        {"indefinite.mtx --precond ilu0",
         "fgmres, restart 2, preconditioner ilu0, tolerance 1e-08 (auto: method cg needs a positive definite "
         "preconditioner, but ilu0 has a pivot that is not positive)"},
        {"negative.mtx --tolerance 1e-6",
         "fgmres, restart 2, preconditioner ilu0, tolerance 1e-06 (auto: diagonal entry 2 is not positive)"},
        {"shift.mtx --max-iterations 5",
         "fgmres, restart 3, preconditioner ilu0 (rows permuted), tolerance 1e-08 (auto: not symmetric)"},
        {"--generate panels:600 --max-iterations 300",
         "fgmres, restart 30, preconditioner none, tolerance 1e-08 (auto: not symmetric)"},
        {"--generate convection2d:71 --precond ilu0",
         "fgmres, restart 30, preconditioner ilu0, tolerance 1e-08 (auto: not symmetric)"},
        {"--generate convection2d:9 --restart 7", "fgmres, restart 7, preconditioner none, tolerance 1e-08"},
        {"--generate poisson2d:9 --precond ilut --fill 5",
         "fgmres, restart 30, preconditioner ilut (fill 5, drop 0.001), tolerance 1e-08"},
    };
    for (const auto& [arguments, method] : choices) {
        const auto run = this->run(arguments);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_NE(run.out.find("method       " + method + "\n"), std::string::npos) << run.out;
        EXPECT_LT(number_after(run.out, "error "), 1e-4) << run.out;
    }
    EXPECT_NE(run("values.mtx").out.find("complex hermitian by its values"), std::string::npos);
}

/// Random sparse rows, some 4 entries each beside the diagonal of the given text.
std::string sparse_matrix(const std::string& field, const std::string& symmetry, int n, const std::string& diagonal,
                          double scale = 1.0) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> uniform(-scale, scale);
    const bool general = symmetry == "general", complex = field == "complex";
    std::string lines;
    int count = 0;
    const auto add = [&](int i, int j, const std::string& value) {
        lines += std::to_string(i) + " " + std::to_string(j) + " " + value + "\n";
        ++count;
    };
    for (int i = 1; i <= n; ++i) {
        if (!diagonal.empty()) add(i, i, complex ? diagonal + " 0" : diagonal);
        for (const int step : {1, 7, 31, 60}) {
            const int j = i - step + (general && i <= step ? n : 0);
            if (j >= 1)
                add(i, j, std::to_string(uniform(random)) + (complex ? " " + std::to_string(uniform(random)) : ""));
        }
    }
    const auto size = std::to_string(n);
    return kBanner + "coordinate " + field + " " + symmetry + "\n" + size + " " + size + " " + std::to_string(count) +
           "\n" + lines;
}

// The type is by symmetry and by the signs of the diagonal, and the trial Cholesky decides on what is left.
TEST_F(Program, FactorsEveryKindOfSparseMatrix) {
    const struct {
        const char *field, *symmetry, *diagonal, *kind, *pivots;
    } kinds[] = {
        {"real", "symmetric", "9", "symmetric positive definite", "all positive"},
        {"real", "symmetric", "0.5", "symmetric indefinite", " positive, "},
        {"real", "symmetric", "-9", "symmetric indefinite", "0 positive, 300 negative, 0 replaced"},
        {"real", "symmetric", "0", "symmetric indefinite", " negative, "},
        {"real", "skew-symmetric", "", "unsymmetric", "0 replaced"},
        {"real", "general", "", "unsymmetric", "0 replaced"},
        {"complex", "hermitian", "9", "Hermitian positive definite", "all positive"},
        {"complex", "hermitian", "0.5", "Hermitian indefinite", " positive, "},
        {"complex", "symmetric", "0.5", "complex symmetric", " replaced"},
        {"complex", "general", "0.1", "unsymmetric", "0 replaced"},
    };
    for (const auto& [field, symmetry, diagonal, kind, pivots] : kinds) {
        write("a.mtx", sparse_matrix(field, symmetry, 300, diagonal));
        for (const std::string options : {"", " --method direct --ordering minimum-degree --refine 5 --nrhs 3"}) {
            const auto run = this->run("a.mtx" + options);
            EXPECT_EQ(run.status, 0) << run.err;
            EXPECT_NE(run.out.find("direct, " + std::string(kind) + ", "), std::string::npos) << run.out;
            EXPECT_NE(run.out.find(pivots), std::string::npos) << run.out;
            EXPECT_LT(number_after(run.out, "backward     "), 1e-12) << run.out;
            EXPECT_LT(number_after(run.out, "error "), 1e-9) << run.out;
            EXPECT_GE(number_after(run.out, "fill "), 1.0) << run.out;
        }
    }
}

TEST_F(Program, KeepsFactorsOnFiles) {
    std::filesystem::create_directory(folder_ / "scratch");
    const auto run = this->run("--generate poisson2d:90 --nrhs 2 --out-of-core 4", "TMPDIR=scratch");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find(" MB of factors through 4 MB of memory\n"), std::string::npos) << run.out;
    EXPECT_LT(number_after(run.out, "error "), 1e-10) << run.out;
    EXPECT_TRUE(std::filesystem::is_empty(folder_ / "scratch"));
    EXPECT_EQ(this->run("--generate poisson2d:90 --out-of-core 1").status, 1);
    EXPECT_EQ(this->run("--generate poisson2d:9 --out-of-core", "TMPDIR=/nowhere").status, 1);
}

// As many entries as rows: not to be taken for a diagonal matrix.
TEST_F(Program, SolvesAPermutation) {
    write("a.mtx", kBanner + "coordinate real general\n5 5 5\n1 2 2\n2 3 4\n3 1 8\n4 5 2\n5 4 4\n");
    write("b.mtx", kBanner + "array real general\n5 2\n1\n2\n3\n4\n5\n2\n4\n8\n2\n4\n");
    ASSERT_EQ(run("a.mtx --rhs b.mtx --output x.mtx --method direct").status, 0);
    const auto x = solve::read_block<double>(common::open_lines((folder_ / "x.mtx").string()), 5);
    ASSERT_EQ(x.count, 2);
    const double expected[] = {0.375, 0.5, 0.5, 1.25, 2.0, 1.0, 1.0, 1.0, 1.0, 1.0};
    for (int k = 0; k < 10; ++k) EXPECT_DOUBLE_EQ(x.value.data()[k], expected[k]) << k;
}

// Pivots of 1e-20 in columns of 1e12: what replaces them is too small for the refinement to repair.
TEST_F(Program, AutoTurnsToLuWherePivotsInsideFewColumnsDoNotDo) {
    write("a.mtx", sparse_matrix("real", "symmetric", 300, "1e-20", 1e12));
    const auto direct = run("a.mtx --method direct");
    EXPECT_EQ(direct.status, 3) << direct.out;
    EXPECT_TRUE(direct.err.ends_with("not solved: the pivots are too small: the matrix is singular, or close to it\n"));
    const auto run = this->run("a.mtx");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("method       lu (auto: method direct met pivots too small)\n"), std::string::npos)
        << run.out;
    EXPECT_LT(number_after(run.out, "error "), 1e-10) << run.out;
}

TEST_F(Program, DirectMethodsRefuseInOneLine) {
    // A million unknowns, real or complex: dense, they take 7451 GiB or twice that.
    const std::string large = "1000000 1000000 1000000";
    const auto diagonal = [](const std::string& value) {
        std::string lines;
        for (int i = 1; i <= 1000000; ++i) lines += std::to_string(i) + " " + std::to_string(i) + value;
        return lines;
    };
    write("large.mtx", kBanner + "coordinate real general\n" + large + "\n" + diagonal(" 1\n"));
    write("wide.mtx", kBanner + "coordinate complex hermitian\n1000000 1000000 1000000\n" + diagonal(" 1 0\n"));
    write("singular.mtx", kBanner + "array real general\n3 3\n1\n2\n4\n2\n4\n8\n1\n0\n1\n");
    write("zero.mtx", kBanner + "array complex general\n2 2\n1 1\n0 1\n0 0\n0 0\n");
    write("indefinite.mtx", kBanner + "array real symmetric\n3 3\n4\n2\n0\n1\n0\n1\n");
    write("symmetric.mtx", kBanner + "array complex symmetric\n2 2\n4 0\n0 1\n4 0\n");
    write("rows.mtx", kBanner + "array real general\n3 2\n1\n2\n3\n2\n4\n6\n");
    write("empty.mtx", kBanner + "coordinate real general\n3 3 4\n1 1 1\n2 1 1\n3 1 1\n3 3 1\n");
    write("tiny.mtx", kBanner + "array real general\n1 1\n1e-300\n");
    write("b.mtx", kBanner + "array real general\n1 1\n1e300\n");
    const std::string dense = " GiB for the dense matrix, more than half of this machine's memory";
    const std::string singular =
        "the matrix is singular: column 2 depends on the columns before it, as method lu finds";
    expect_refused({
        {"singular.mtx", 1, "singular.mtx: " + singular},
        {"zero.mtx --method lu", 1, "zero.mtx: " + singular},
        {"indefinite.mtx --method cholesky", 1,
         "...method cholesky needs a positive definite matrix, but the leading minor of order 2 is not positive"},
        {"singular.mtx --method cholesky", 1, "...method cholesky needs a symmetric matrix, this one is not"},
        {"symmetric.mtx --method cholesky", 1, "...method cholesky needs a Hermitian matrix, this one is not"},
        {"rows.mtx --method lu", 1, "rows.mtx:2: the matrix is not square: 3 by 2"},
        {"large.mtx --method lu", 1, "large.mtx: method lu needs 7450.6" + dense},
        {"wide.mtx --method cholesky", 1, "wide.mtx: method cholesky needs 14901.2" + dense},
        {"empty.mtx --method direct", 1, "...the matrix is singular: no order of its rows fills the diagonal"},
        {"singular.mtx --method direct --tolerance 1e-3", 2, "--tolerance belongs to methods cg and fgmres"},
        {"singular.mtx --method lu --refine 2", 2, "--refine belongs to method direct"},
        {"singular.mtx --precond ilu0 --ordering constrained", 2, "--ordering belongs to method direct"},
        {"zero.mtx --precond jacobi", 1, "zero.mtx: methods cg and fgmres need a real matrix, this one is complex"},
        {"singular.mtx --method lu --plot h.svg", 2, "--plot belongs to methods cg and fgmres"},
        {"singular.mtx --method cholesky --tolerance 1e-3", 2, "--tolerance belongs to methods cg and fgmres"},
        {"tiny.mtx --rhs b.mtx", 3, "...not solved: the numbers left the range of doubles"},
    });
}

} // namespace
