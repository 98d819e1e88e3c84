// nxl-solve on matrices that are not square: what a minimum and a shortest solution fulfil, ranks, and what is refused.
#include "program.hpp"

#include "matrix_market.hpp"

#include <numeric>
#include <random>

namespace {

using solve::Block;
using solve::Complex;
using solve_test::number_after;

class LeastSquares : public solve_test::Program {
  protected:
    template <class T> Block<T> solution(const std::string& name, int n) const {
        return solve::read_block<T>(common::open_lines((folder_ / name).string()), n);
    }
    template <class T> void write_random(const std::string& name, int rows, int columns, unsigned seed) const {
        std::mt19937 random(seed);
        std::normal_distribution<double> normal;
        Block<T> block(rows, columns);
        for (T& value : block.value) {
            value = normal(random);
            if constexpr (std::is_same_v<T, Complex>) value.imag(normal(random));
        }
        solve::write_block((folder_ / name).string(), block);
    }

    /// By every method the gradient vanishes, systems that have solutions are solved, and the solutions are the same:
    /// where there are many, only the shortest is.
    template <class T> void expect_solutions(int rows, int columns) {
        write_random<T>("a.mtx", rows, columns, 7);
        write_random<T>("b.mtx", rows, 3, 8);
        std::vector<Block<T>> found;
        for (const std::string method : {"auto", "qr", "svd"}) {
            SCOPED_TRACE(method + " " + std::to_string(rows) + (std::is_same_v<T, double> ? " real" : " complex"));
            const auto run = this->run("a.mtx --rhs b.mtx --output x.mtx --method " + method);
            ASSERT_EQ(run.status, 0) << run.err;
            EXPECT_LT(number_after(run.out, "gradient "), 1e-14);
            EXPECT_EQ(number_after(run.out, "residual ") < 1e-13, rows <= columns) << run.out;
            EXPECT_EQ(number_after(run.out, "rank "), std::min(rows, columns));
            EXPECT_EQ(run.out.find("error "), std::string::npos);
            const double condition = number_after(run.out, "condition ");
            EXPECT_TRUE(condition > 1.0 && condition < 1e3) << condition;
            found.push_back(solution<T>("x.mtx", columns));
            ASSERT_EQ(found.back().count, 3);
            for (std::size_t k = 0; k < found[0].value.size(); ++k)
                EXPECT_LT(std::abs(found.back().value[k] - found[0].value[k]), 1e-12);
        }
        const auto known = run("a.mtx --nrhs 2");
        EXPECT_EQ(number_after(known.out, "error ") < 1e-12, rows > columns) << "known where it is the only one";
    }
};

TEST_F(LeastSquares, MinimaAndShortestSolutions) {
    for (const auto [rows, columns] : {std::pair{40, 12}, {12, 40}}) {
        expect_solutions<double>(rows, columns);
        expect_solutions<Complex>(rows, columns);
    }
}

/// Heights by differences are known up to a constant: the shortest solution has the mean 0.
TEST_F(LeastSquares, WithoutFullRankThereAreSingularValues) {
    for (const std::string method : {"auto", "svd"}) {
        const auto run = this->run("--generate levelling:5 --rhs load --output x.mtx --method " + method);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(number_after(run.out, "rank "), 24.0);
        EXPECT_LT(number_after(run.out, "gradient "), 1e-14);
        const auto x = solution<double>("x.mtx", 25);
        EXPECT_NEAR(std::accumulate(x.value.begin(), x.value.end(), 0.0), 0.0, 1e-10);
    }
    // Singular values 2 sqrt(sin^2(i pi / 10) + sin^2(j pi / 10)), i and j from 0 to 4: 0, and from 0.6 to 2.7.
    const auto some = run("--generate levelling:5 --rcond 0.5");
    EXPECT_NE(some.out.find("method       svd"), std::string::npos);
    EXPECT_EQ(number_after(some.out, "rank "), 17.0);
    EXPECT_LT(number_after(some.out, "condition "), 2.0);
}

TEST_F(LeastSquares, RefusedInOneLine) {
    const std::string banner = "%%MatrixMarket matrix array ";
    write("tall.mtx", banner + "real general\n3 2\n1\n2\n3\n2\n4\n6.0000001\n");
    write("flat.mtx", banner + "complex general\n3 2\n1 1\n2 0\n0 0\n0 0\n0 0\n0 0\n");
    write("b.mtx", banner + "real general\n2 1\n1\n1\n");
    expect_refused({
        {"tall.mtx --method ldl", 1, "tall.mtx:2: the matrix is not square: 3 by 2"},
        {"tall.mtx --rhs b.mtx", 1, "b.mtx:2: the right-hand side has 2 rows, the matrix 3"},
        {"tall.mtx --precond jacobi", 1, "tall.mtx: methods cg and fgmres need a square matrix, this one is 3 by 2"},
        {"flat.mtx --method qr", 1,
         "flat.mtx: method qr needs a matrix of full rank, but element 2 on the diagonal of the triangle is 0"},
        {"--generate surface:50 --method lu", 1, "surface:50: method lu needs a square matrix, this one is 50 by 36"},
        {"--generate levelling:1", 2, "a single point has no differences of height"},
        {"tall.mtx --method qr --tolerance 0.1", 2, "--tolerance belongs to methods cg and fgmres"},
        {"tall.mtx --method qr --rcond 0.1", 2, "--rcond belongs to method svd"},
        {"tall.mtx --rcond 1.5", 2, "--rcond: '1.5' is not between 0 and 1"},
    });
    EXPECT_EQ(run("tall.mtx --rhs ones").status, 0) << "of full rank, if not by much";
}

} // namespace
