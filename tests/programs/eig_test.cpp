// nxl-eig from outside: spectra that are known in closed form, vectors against their matrix, and what is refused.
#include "run_program.hpp"

#include <algorithm>
#include <cmath>
#include <complex>
#include <sstream>
#include <vector>

namespace {

using program_test::number_after;
using Complex = std::complex<double>;

class Eig : public program_test::Program {
  protected:
    Eig() : program_test::Program(NXL_EIG_PROGRAM) {}

    /// The numbers of an array file.
    std::vector<double> numbers(const std::string& name) const {
        std::istringstream text(read(name));
        std::string line;
        while (std::getline(text, line) && line.starts_with('%')) {
        }
        std::vector<double> found; // `line` has the sizes
        for (double value = 0.0; text >> value;) found.push_back(value);
        return found;
    }
    /// The same as complex numbers, whatever the file has.
    std::vector<Complex> complex_numbers(const std::string& name) const {
        const auto parts = numbers(name);
        const bool pairs = read(name).find(" complex ") != std::string::npos;
        std::vector<Complex> found;
        for (std::size_t k = 0; k < parts.size(); k += pairs ? 2 : 1)
            found.emplace_back(parts[k], pairs ? parts[k + 1] : 0.0);
        return found;
    }
    /// An array file of at(i, j).
    template <class At> void write_array(const std::string& field, int m, int n, At at) const {
        std::ostringstream file;
        file.precision(17);
        file << "%%MatrixMarket matrix array " << field << " general\n" << m << " " << n << "\n";
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) {
                const Complex value = at(i, j);
                file << value.real();
                if (field == "complex") file << " " << value.imag();
                file << "\n";
            }
        write("a.mtx", file.str());
    }
    /// A v = value u for vectors that stand from `u` and `v` on.
    template <class At>
    static void expect_pair(At at, int m, int n, const Complex* v, Complex value, const Complex* u) {
        for (int i = 0; i < m; ++i) {
            Complex sum = 0.0;
            for (int j = 0; j < n; ++j) sum += at(i, j) * v[j];
            EXPECT_LT(std::abs(sum - value * u[i]), 1e-13) << i;
        }
    }
    void expect_near(const std::vector<double>& found, const std::vector<double>& expected, const std::string& what) {
        ASSERT_EQ(found.size(), expected.size()) << what;
        for (std::size_t k = 0; k < found.size(); ++k) EXPECT_NEAR(found[k], expected[k], 1e-12) << what << k;
    }
};

/// Of poisson2d:n, ascending.
std::vector<double> laplacian_spectrum(int n) {
    std::vector<double> values;
    const auto line = [n](int k) { return 4.0 * std::pow(std::sin(M_PI * k / (2.0 * (n + 1))), 2); };
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j) values.push_back(line(i) + line(j));
    std::sort(values.begin(), values.end());
    return values;
}

TEST_F(Eig, LaplacianHasItsSpectrumByEveryMethodAndChoice) {
    const auto all = laplacian_spectrum(9);
    const auto below = [&](double bound) { return std::upper_bound(all.begin(), all.end(), bound); };
    const std::pair<std::string, std::vector<double>> choices[] = {
        {"", all},
        {"--values 3:20", {all.begin() + 2, all.begin() + 20}},
        {"--values=-4:-1", {all.end() - 4, all.end()}},
        {"--range 1.5:2.5", {below(1.5), below(2.5)}},
        {"--range=-inf:1", {all.begin(), below(1.0)}},
        {"--range 100:200", {}},
    };
    for (const std::string method : {"dense", "band"})
        for (const auto& [choice, expected] : choices)
            for (const std::string vectors : {"", " --check"}) {
                const std::string line =
                    "--generate poisson2d:9 --output values --method " + method + " " + choice + vectors;
                const auto run = this->run(line);
                EXPECT_EQ(run.status, 0) << line << run.err;
                expect_near(numbers("values"), expected, line);
                if (vectors.empty() || expected.empty()) continue;
                EXPECT_LT(number_after(run.out, "residual"), 1e-14) << line;
                EXPECT_LT(number_after(run.out, "orthogonal"), 1e-13) << line;
            }
}

TEST_F(Eig, HermitianFileHasVectors) {
    constexpr int n = 12;
    std::string text = "%%MatrixMarket matrix coordinate complex hermitian\n12 12 11\n";
    for (int i = 1; i < n; ++i) text += std::to_string(i + 1) + " " + std::to_string(i) + " 0.6 0.8\n";
    write("a.mtx", text);
    std::vector<double> expected;
    for (int k = n; k >= 1; --k) expected.push_back(2.0 * std::cos(M_PI * k / (n + 1)));
    for (const std::string method : {"dense", "band"}) {
        EXPECT_EQ(run("a.mtx --output values --vectors vectors --method " + method).status, 0);
        expect_near(numbers("values"), expected, method);
        const auto v = complex_numbers("vectors");
        ASSERT_EQ(v.size(), std::size_t{n * n});
        const auto at = [](int i, int j) { return std::abs(i - j) == 1 ? Complex(0.6, i > j ? 0.8 : -0.8) : 0.0; };
        for (std::size_t j = 0; j < n; ++j) expect_pair(at, n, n, &v[n * j], expected[j], &v[n * j]);
    }
}

/// Of order 12: `below` and `above` the diagonal, and `corner` at the upper right. With corner = below, above = 0 the
/// eigenvalues are roots of below^12, with corner = 0 those of a band 2 sqrt(below above) cos(k pi / 13).
struct Unsymmetric {
    const char* field;
    Complex below, above, corner;
    static constexpr int n = 12;
    Complex at(int i, int j) const { return j == i - 1 ? below : j == i + 1 ? above : j == i + n - 1 ? corner : 0.0; }
    std::vector<Complex> spectrum() const {
        std::vector<Complex> values;
        for (int k = 1; k <= n; ++k)
            values.push_back(corner == 0.0 ? 2.0 * std::sqrt(below * above) * std::cos(M_PI * k / (n + 1))
                                           : below * std::polar(1.0, 2.0 * M_PI * k / n));
        return values;
    }
};

TEST_F(Eig, UnsymmetricFilesHaveTheirSpectraAndVectors) {
    const Unsymmetric cases[] = {
        {"real", 2.0, 0.0, 2.0}, // pairs
        {"real", 0.5, 2.0, 0.0}, // all real
        {"complex", {1.0, 1.0}, 0.0, {1.0, 1.0}},
        {"complex", {0.5, 0.5}, 2.0, 0.0},
    };
    for (const Unsymmetric& a : cases) {
        const auto at = [&a](int i, int j) { return a.at(i, j); };
        write_array(a.field, a.n, a.n, at);
        const auto run = this->run("a.mtx --output values --vectors vectors --plot spectrum.svg");
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_LT(number_after(run.out, "residual"), 1e-14);
        EXPECT_EQ(run.out.find("orthogonal"), std::string::npos);
        const auto value = complex_numbers("values"), vector = complex_numbers("vectors");
        ASSERT_EQ(value.size(), 12U);
        ASSERT_EQ(vector.size(), 144U);
        for (const Complex exact : a.spectrum())
            EXPECT_TRUE(std::any_of(value.begin(), value.end(), [&](Complex v) { return std::abs(v - exact) < 1e-11; }))
                << exact;
        for (std::size_t k = 0; k < 12; ++k) {
            if (k > 0) EXPECT_LE(value[k - 1].real(), value[k].real());
            expect_pair(at, a.n, a.n, &vector[12 * k], value[k], &vector[12 * k]);
        }
        const auto right = [&] { return complex_numbers("right"); };
        EXPECT_EQ(this->run("a.mtx --output right --values=-2:-1").status, 0);
        EXPECT_NEAR(right().front().real(), value[10].real(), 1e-13);
        EXPECT_EQ(this->run("a.mtx --output right --range=-inf:0.1").status, 0);
        EXPECT_EQ(static_cast<std::ptrdiff_t>(right().size()),
                  std::count_if(value.begin(), value.end(), [](Complex v) { return v.real() <= 0.1; }));
    }
}

/// Of the differences between neighbours of an n by n grid, descending: the last is 0.
std::vector<double> singular_values_of_levelling(int n) {
    std::vector<double> values;
    const auto square = [n](int k) { return 4.0 * std::pow(std::sin(M_PI * k / (2.0 * n)), 2); };
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) values.push_back(std::sqrt(square(i) + square(j)));
    std::sort(values.begin(), values.end(), std::greater<>());
    return values;
}

TEST_F(Eig, SingularValuesByEveryChoice) {
    const auto all = singular_values_of_levelling(6);
    const auto from = [&](double bound) {
        return std::find_if(all.begin(), all.end(), [=](double v) { return v <= bound; });
    };
    const std::pair<std::string, std::vector<double>> choices[] = {
        {"--plot values.svg", all},
        {"--values 2:7 --check", {all.begin() + 1, all.begin() + 7}},
        {"--values=-3:-1", {all.end() - 3, all.end()}},
        {"--range 1.1:2.1 --check", {from(2.1), from(1.1)}},
    };
    for (const auto& [choice, expected] : choices) {
        const auto run = this->run("--generate levelling:6 --svd --output values " + choice);
        EXPECT_EQ(run.status, 0) << run.err;
        expect_near(numbers("values"), expected, choice);
        EXPECT_EQ(number_after(run.out, "rank "), 35.0);
        EXPECT_GT(number_after(run.out, "condition "), 1e14);
        if (choice.find("check") == std::string::npos) continue;
        EXPECT_LT(number_after(run.out, "residual"), 1e-14);
        EXPECT_LT(number_after(run.out, "orthogonal"), 1e-13);
    }
    EXPECT_EQ(number_after(run("--generate levelling:6 --svd --rcond 0.99").out, "rank "), 1.0);
    EXPECT_NE(read("values.svg").find("singular value"), std::string::npos);
}

TEST_F(Eig, SingularVectorsOfWideAndTallFiles) { // element (i, j) is z^(i + 2 j), and one on the diagonal
    for (const auto [m, n] : {std::pair{3, 7}, {7, 3}})
        for (const Complex z : {Complex(0.9, 0.0), Complex(0.6, 0.7)}) {
            const auto at = [z](int i, int j) { return std::pow(z, i + 2 * j) + (i == j ? 1.0 : 0.0); };
            write_array(z.imag() == 0.0 ? "real" : "complex", m, n, at);
            EXPECT_EQ(run("a.mtx --svd --output s --vectors v --left-vectors u").status, 0);
            const auto s = numbers("s");
            const auto u = complex_numbers("u"), v = complex_numbers("v");
            ASSERT_EQ(s.size(), 3U);
            ASSERT_EQ(u.size() + v.size(), 30U);
            for (int k = 0; k < 3; ++k)
                expect_pair(at, m, n, v.data() + n * k, s[static_cast<std::size_t>(k)], u.data() + m * k);
        }
}

/// Halving the span of a beam makes its lowest bending mode about four times as fast.
TEST_F(Eig, BridgeSwingsSlowerTheLongerItIs) {
    const auto lowest = [&](const std::string& bays) {
        const auto run = this->run("--generate vibration:" + bays + " --values 1:1 --modes modes.svg");
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_NE(read("modes.svg").find("Hz"), std::string::npos);
        return std::sqrt(number_after(run.out, "\n          1 "));
    };
    const double ratio = lowest("30") / lowest("60");
    EXPECT_GT(ratio, 3.5);
    EXPECT_LT(ratio, 4.5);
}

TEST_F(Eig, WhatIsRefused) {
    write("general.mtx", "%%MatrixMarket matrix coordinate real general\n2 2 2\n1 2 1\n2 2 1\n");
    expect_refused({
        {"general.mtx --method band", 1, "...needs a symmetric"},
        {"missing.mtx", 1, "...missing.mtx"},
        {"--generate surface:9", 1, "...this one is 9 by 36"},
        {"--generate surface:9 --svd --values 10:12", 1, "...names none"},
        {"--generate poisson2d:4 --svd --method band", 2, "...--svd"},
        {"--generate poisson2d:4 --rcond 0.1", 2, "...--svd"},
        {"--generate poisson2d:4 --left-vectors u", 2, "...--svd"},
        {"--generate poisson2d:4 --values 17:20", 1, "...names none"},
        {"--generate poisson2d:4 --output no/such", 1, "...no/such"},
        {"--generate poisson2d:4 --values 1-5", 2, "...--values"},
        {"--generate poisson2d:4 --range 3:1", 2, "...--range"},
        {"--generate poisson2d:4 --range 1:nan", 2, "...--range"},
        {"--generate poisson2d:4 --values 1:2 --range 1:2", 2, "...--range"},
        {"--generate poisson2d:4 --modes m.svg", 2, "...--modes"},
        {"--generate vibration:0", 2, "...vibration"},
        {"", 2, "...expected"},
    });
}

} // namespace
