// Column loops and the hard case of the trust-region step.
#include "solvers_tr/kernel/d_tr_trialstep_utils.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/trtrs.hpp"
#include "service/parallel.hpp"
#include "service/slice.hpp"
#include <cmath>

namespace nxl::tr {
namespace {

constexpr i64 fork_pays_from = 65536; // elements streamed: tens of microseconds, several forks
constexpr i64 cost_of_diagonal = 64;  // elements streamed in the time of one far from its neighbours

/// body(j) for each column j < n. `cost`: elements a column costs.
template <class Body> void for_each_column(i64 n, i64 cost, int threads, const Body& body) {
    const int blocks = n * cost < fork_pays_from ? 1 : static_cast<int>(std::min(n, i64{threads}));
    const auto run = [&](i64 block) {
        const Slice own = balanced_slice(n, 1, block, blocks);
        for (i64 j = own.start; j < own.end(); ++j) body(j);
    };
    if (blocks < 2) return run(0);
    parallel_blocks(threads, blocks, run);
}

/// u(i) = 1 or -1, whichever gives the larger quotient, by sign, in row i; the sum is over the signs chosen before.
void choose_signs(i64 n, const double* factor, double* u) {
    for (i64 i = 0; i < n; ++i) {
        double sum = 0.0;
        for (i64 j = 0; j < i; ++j) sum += factor[i + j * n] * u[j];
        const double pivot = factor[i + i * n];
        u[i] = pivot != 0.0 && (1.0 - sum) / pivot <= (-1.0 - sum) / pivot ? -1.0 : 1.0;
    }
}

/// v(j) = 1 / (largest value in row j of L, by sign and not below 0); u(j) *= v(j), L(j,k) *= v(j) v(k).
void equilibrate(i64 n, double* factor, double* u, double* v) {
    for (i64 j = 0; j < n; ++j) {
        double largest = 0.0;
        for (i64 k = 0; k <= j; ++k) largest = std::max(largest, factor[j + k * n]);
        v[j] = 1.0 / largest;
    }
    for (i64 j = 0; j < n; ++j) u[j] *= v[j];
    for (i64 k = 0; k < n; ++k)
        for (i64 j = k; j < n; ++j) factor[j + k * n] *= v[j] * v[k];
}

/// The root of |s + tau v| = radius that counts: the smaller one.
double boundary_distance(i64 n, double radius, const double* s, const double* v) {
    const double a = dot(n, s, 1, v, 1);
    const double b = dot(n, s, 1, s, 1);
    const double c = dot(n, v, 1, v, 1);
    const double root = std::sqrt(4.0 * a * a - 4.0 * c * (b - radius * radius));
    return std::min((-2.0 * a - root) / (2.0 * c), (root - 2.0 * a) / (2.0 * c));
}

} // namespace

void column_norms(i64 m, i64 n, const double* a, double* norms, int threads) {
    for_each_column(n, m, threads, [=](i64 j) { norms[j] = norm(m, a + j * m); });
}

void copy_lower(i64 n, const double* h, double* copy, int threads) {
    for_each_column(n, n / 2, threads, [=](i64 j) { nxl::copy(n - j, h + j + j * n, 1, copy + j + j * n, 1); });
}

void ADD_TO_DIAGONAL(i64 n, double value, double* h, int threads) {
    for_each_column(n, cost_of_diagonal, threads, [=](i64 j) { h[j + j * n] += value; });
}

int step_in_hard_case(i64 n, double radius, double* factor, double* s, double* u, double* v) {
    constexpr double tolerance = 0.02;
    choose_signs(n, factor, u);
    equilibrate(n, factor, u, v);
    i64 info = 0;
    trtrs('L', 'T', 'N', n, 1, factor, n, u, n, info);
    if (info < 0) return static_cast<int>(info);
    for (i64 j = 0; j < n; ++j) u[j] /= v[j];
    const double length = norm(n, u);
    for (i64 j = 0; j < n; ++j) v[j] = u[j] / length;
    const double tau = boundary_distance(n, radius, s, v);
    for (i64 j = 0; j < n; ++j) v[j] = s[j] + tau * v[j];
    if (!(std::fabs(norm(n, v) - radius) < radius * tolerance)) return undecided;
    copy(n, v, 1, s, 1);
    return hard_case;
}

} // namespace nxl::tr
