// The arrays of an FGMRES run, the calls on them, and sparse test matrices.
#pragma once
#include "tests/solvers_rci/cg_support.hpp"
#include <functional>

namespace nxl_test {

/// Convection and diffusion on a square grid, by central differences; without convection the Poisson matrix.
struct Grid {
    int side;
    double convection = 0.0;

    int unknowns() const { return side * side; }
    void multiply(const double* x, double* y) const {
        for (int i = 0; i < side; ++i)
            for (int j = 0; j < side; ++j) {
                const double* at = x + i * side + j;
                double sum = 4.0 * at[0];
                if (j > 0) sum -= (1.0 + convection) * at[-1];
                if (j + 1 < side) sum -= (1.0 - convection) * at[1];
                if (i > 0) sum -= (1.0 + convection) * at[-side];
                if (i + 1 < side) sum -= (1.0 - convection) * at[side];
                y[i * side + j] = sum;
            }
    }
    Vector product(const Vector& x) const {
        Vector y(x.size());
        multiply(x.data(), y.data());
        return y;
    }
};

using Operation = std::function<void(const double* in, double* out)>;

/// Entries count from 1.
struct FgmresCase {
    int n, request = -77;
    Vector x, b, dpar, tmp;
    std::vector<int> ipar;

    /// With room for cycles of `longest` iterations; a margin behind tmp shows writes that go too far.
    explicit FgmresCase(int size, int longest)
        : n(size),
          x(static_cast<std::size_t>(std::max(size, 0)), 0.0),
          b(x.size(), 1.0),
          dpar(128, untouched),
          tmp(work(size, longest) + 8, untouched),
          ipar(128, -77) {
        init();
    }
    static std::size_t work(int n, int m) {
        return n < 1 ? 1 : static_cast<std::size_t>((2 * m + 1) * n + m * (m + 9) / 2 + 1);
    }

    int& ip(int i) { return ipar[static_cast<std::size_t>(i) - 1]; }
    double& dp(int i) { return dpar[static_cast<std::size_t>(i) - 1]; }
    double* element(int first) { return tmp.data() + (first - 1); }

    void init() { DFGMRES_INIT(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data()); }
    int check() {
        DFGMRES_CHECK(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data());
        return request;
    }
    int step() {
        DFGMRES(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data());
        return request;
    }
    int get(int* result = nullptr) {
        int count = -77, outcome = -77;
        DFGMRES_GET(&n, x.data(), b.data(), &outcome, ipar.data(), dpar.data(), tmp.data(), &count);
        if (result) *result = outcome;
        return count;
    }

    /// Does what the last request asks, as far as it is a vector operation.
    void answer(const Operation& matrix, const Operation& preconditioner = {}) {
        if (request == 1) matrix(element(ip(22)), element(ip(23)));
        if (request == 3) preconditioner(element(ip(22)), element(ip(23)));
    }
    int run(const Operation& matrix, const Operation& preconditioner = {}) {
        for (step(); request > 0; step()) answer(matrix, preconditioner);
        return request;
    }
};

inline std::string fgmres_error(const std::string& lines) { return report(399, lines); }
inline std::string fgmres_warning(const std::string& lines) { return report(400, lines); }

} // namespace nxl_test
