// nxl from C++: level 1 on vectors, and preconditioned conjugate gradients with a stopping test of our own.
#include <array>
#include <cmath>
#include <cstdio>
#include <nxl.h>
#include <vector>

namespace {

using Vector = std::vector<double>;

// A chain of springs between two walls; spring i, of stiffness 1 + i, lies before mass i.
void product(int n, const double* x, double* y) {
    const auto at = [&](int i) { return i < 0 || i == n ? 0.0 : x[i]; };
    for (int i = 0; i < n; ++i) y[i] = (1 + i) * (at(i) - at(i - 1)) + (2 + i) * (at(i) - at(i + 1));
}

// z = r divided by the diagonal.
void precondition(int n, const double* r, double* z) {
    for (int i = 0; i < n; ++i) z[i] = r[i] / (3 + 2 * i);
}

} // namespace

int main() {
    const int n = 200, one = 1;
    const Vector ones(n, 1.0);
    Vector b(n), x(n, 0.0), tmp(4 * n);
    product(n, ones.data(), b.data());

    std::array<int, 128> ipar{};
    std::array<double, 128> dpar{};
    double *p = tmp.data(), *ap = p + n, *r = ap + n, *z = r + n; // the columns that the solver and we share
    int request = 0;
    DCG_INIT(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data());
    ipar[4] = 1000; // at most so many iterations; the solver asks us for a test after each, its own default
    ipar[10] = 1;   // and for the preconditioner
    const double target = 1e-10 * dnrm2(&n, b.data(), &one);
    bool solved = false;
    while (!solved) {
        DCG(&n, x.data(), b.data(), &request, ipar.data(), dpar.data(), tmp.data());
        if (request == 1) product(n, p, ap);
        if (request == 2) solved = dnrm2(&n, r, &one) <= target; // leaving the loop is all it takes to stop
        if (request == 3) precondition(n, r, z);
        if (request <= 0) break;
    }

    const double minus_one = -1.0;
    daxpy(&n, &minus_one, ones.data(), &one, x.data(), &one); // x becomes the error
    const double error = std::sqrt(ddot(&n, x.data(), &one, x.data(), &one) / n);
    std::printf("C++: %s after %d iterations, error %.0e\n", solved ? "solved" : "failed", ipar[3], error);
    return solved && error < 1e-6 ? 0 : 1;
}
