// CG and CGS with the factor of another matrix for preconditioner.
#pragma once
#include "solvers_ds/kernel/default/pardiso/solve/amuxy.hpp"
#include <algorithm>
#include <cmath>

namespace nxl::pardiso {

/// How an iteration ends.
enum class IterationEnd : i32 { converged = 0, diverged = -1, stagnated = -2, too_slow = -3, no_workspace = -4 };

struct IterationLimits {
    i32 most, half; ///< it_max, it_min
    double tolerance, divergence;
};

struct IterationResult {
    IterationEnd end;
    i32 steps;
    bool solved = true; ///< false: a solve had no memory
};

/// The right-hand sides of an iteration side by side, and what it does with all of them. Vectors are n nb long.
template <class T, class Solve> class Preconditioned {
    const CallerMatrix<T>& matrix_;
    const i64 nb_;
    const Solve& solve_;

  public:
    Preconditioned(const CallerMatrix<T>& matrix, i64 nb, const Solve& solve)
        : matrix_(matrix),
          nb_(nb),
          solve_(solve) {}

    i64 n() const { return matrix_.n; }
    i64 columns() const { return nb_; }
    i64 length() const { return n() * nb_; }

    void multiply(const T* x, T* y) const {
        for (i64 c = 0; c < length(); c += n()) amuxy(matrix_, x + c, y + c);
    }
    /// y := M^-1 x
    bool precondition(const T* x, T* y) const {
        std::copy_n(x, length(), y);
        return solve_(y);
    }
    /// The product of column c of both, the first one conjugated.
    T dot(i64 c, const T* x, const T* y) const {
        T sum{};
        for (i64 i = c * n(); i < (c + 1) * n(); ++i) sum += conj_if<is_complex_scalar<T>>(x[i]) * y[i];
        return sum;
    }
    /// The largest |r_j| / |reference_j|, the latter squared.
    double largest_ratio(const T* r, const double* reference) const {
        double largest = 0.0;
        for (i64 c = 0; c < nb_; ++c) {
            const double size = real_part(dot(c, r, r)), ratio = size == 0.0 ? 0.0 : size / reference[c];
            if (std::isnan(ratio)) return ratio;
            largest = std::max(largest, ratio);
        }
        return std::sqrt(largest);
    }
};

/// quotient, or 0 for a column that is done.
template <class T> T safe_quotient(const T& a, const T& b) { return b == T{} ? T{} : a / b; }

/// Preconditioned conjugate gradients from x = 0; M. R. Hestenes and E. Stiefel, J. Res. NBS 49 (1952). `work` holds 4
/// vectors, `scalars` 2 nb. A step is preconditioned, measured, and then taken.
template <class T, class Solve>
IterationResult cg(const Preconditioned<T, Solve>& system, const T* b, T* x, T* work, T* scalars, double* reference,
                   const IterationLimits& limits) {
    const i64 n = system.n(), length = system.length();
    T *const r = work, *const z = r + length, *const p = z + length, *const q = p + length;
    std::fill_n(x, length, T{});
    std::fill_n(p, length, T{});
    std::copy_n(b, length, r);
    for (i64 c = 0; c < system.columns(); ++c) {
        reference[c] = real_part(system.dot(c, r, r));
        scalars[c] = T{};
    }
    double best = system.largest_ratio(r, reference);
    if (best < limits.tolerance) return {IterationEnd::converged, 0};
    for (i32 step = 1;; ++step) {
        if (!system.precondition(r, z)) return {IterationEnd::too_slow, step, false};
        for (i64 c = 0; c < system.columns(); ++c) {
            const T rho = system.dot(c, r, z), beta = safe_quotient(rho, scalars[c]);
            scalars[c] = rho;
            for (i64 i = c * n; i < (c + 1) * n; ++i) p[i] = z[i] + beta * p[i];
        }
        system.multiply(p, q);
        for (i64 c = 0; c < system.columns(); ++c) {
            const T alpha = safe_quotient(scalars[c], system.dot(c, p, q));
            for (i64 i = c * n; i < (c + 1) * n; ++i) {
                x[i] += alpha * p[i];
                r[i] -= alpha * q[i];
            }
        }
        const double ratio = system.largest_ratio(r, reference);
        if (ratio < limits.tolerance) return {IterationEnd::converged, step};
        if (!(ratio <= limits.divergence)) return {IterationEnd::diverged, step};
        best = std::min(best, ratio);
        if (step >= limits.half && std::sqrt(limits.tolerance) < best) return {IterationEnd::stagnated, step};
        if (step >= limits.most) return {IterationEnd::too_slow, step};
    }
}

/// The vectors of CGS. P. Sonneveld, SIAM J. Sci. Stat. Comput. 10 (1989) 36-52.
template <class T> struct CgsVectors {
    T *r, *shadow, *u, *p, *q, *v, *direction;
};

/// The state of one right-hand side.
template <class T> struct CgsState {
    T rho, alpha;
};

/// First half of a step: u and p from the residual.
template <class T, class Solve>
void cgs_a(const Preconditioned<T, Solve>& system, const CgsVectors<T>& w, CgsState<T>* state) {
    for (i64 c = 0; c < system.columns(); ++c) {
        const T rho = system.dot(c, w.shadow, w.r), beta = safe_quotient(rho, state[c].rho);
        state[c].rho = rho;
        for (i64 i = c * system.n(); i < (c + 1) * system.n(); ++i) {
            w.u[i] = w.r[i] + beta * w.q[i];
            w.p[i] = w.u[i] + beta * (w.q[i] + beta * w.p[i]);
        }
    }
}

/// Second half, with v = A M^-1 p: q, and in `direction` the sum of u and q.
template <class T, class Solve>
void cgs_b(const Preconditioned<T, Solve>& system, const CgsVectors<T>& w, CgsState<T>* state) {
    for (i64 c = 0; c < system.columns(); ++c) {
        const T alpha = state[c].alpha = safe_quotient(state[c].rho, system.dot(c, w.shadow, w.v));
        for (i64 i = c * system.n(); i < (c + 1) * system.n(); ++i) {
            w.q[i] = w.u[i] - alpha * w.v[i];
            w.direction[i] = w.u[i] + w.q[i];
        }
    }
}

/// One step: x and the residual. False when a solve had no memory.
template <class T, class Solve>
bool cgs_step(const Preconditioned<T, Solve>& system, const CgsVectors<T>& w, CgsState<T>* state, T* x) {
    cgs_a(system, w, state);
    if (!system.precondition(w.p, w.direction)) return false;
    system.multiply(w.direction, w.v);
    cgs_b(system, w, state);
    if (!system.precondition(w.direction, w.u)) return false;
    system.multiply(w.u, w.v);
    for (i64 c = 0; c < system.columns(); ++c)
        for (i64 i = c * system.n(); i < (c + 1) * system.n(); ++i) {
            x[i] += state[c].alpha * w.u[i];
            w.r[i] -= state[c].alpha * w.v[i];
        }
    return true;
}

/// Preconditioned CGS from the x that is given. `work` holds 7 vectors.
template <class T, class Solve>
IterationResult cgs(const Preconditioned<T, Solve>& system, const T* b, T* x, T* work, CgsState<T>* state,
                    double* reference, const IterationLimits& limits) {
    const i64 length = system.length();
    const CgsVectors<T> w = {work,
                             work + length,
                             work + 2 * length,
                             work + 3 * length,
                             work + 4 * length,
                             work + 5 * length,
                             work + 6 * length};
    system.multiply(x, w.r);
    for (i64 i = 0; i < length; ++i) w.r[i] = b[i] - w.r[i];
    for (i64 c = 0; c < system.columns(); ++c) {
        reference[c] = real_part(system.dot(c, b, b));
        state[c] = {T(1.0), T(1.0)};
    }
    double best = system.largest_ratio(w.r, reference);
    if (best < limits.tolerance) return {IterationEnd::converged, 1};
    std::copy_n(w.r, length, w.shadow);
    std::fill_n(w.p, length, T{});
    std::fill_n(w.q, length, T{});
    for (i32 step = 1;; ++step) {
        if (!cgs_step(system, w, state, x)) return {IterationEnd::too_slow, step, false};
        const double ratio = system.largest_ratio(w.r, reference);
        if (ratio < limits.tolerance) return {IterationEnd::converged, step};
        if (!(ratio <= limits.divergence)) return {IterationEnd::diverged, step};
        best = std::min(best, ratio);
        if (step == limits.half && std::sqrt(limits.tolerance) < best) return {IterationEnd::stagnated, step};
        if (step >= limits.most) return {IterationEnd::too_slow, step};
    }
}

} // namespace nxl::pardiso
