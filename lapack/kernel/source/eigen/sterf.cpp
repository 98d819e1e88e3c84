// dsterf: QL without square roots, on the squares of the off-diagonal. Variant of Pal, Walker and Kahan: Parlett, The
// Symmetric Eigenvalue Problem, SIAM 1998, section 8.15.
#include "lapack/kernel/source/eigen/sterf.hpp"
#include "lapack/kernel/source/eigen/laev2.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

/// One block, whose e holds squares.
class SquareFreeQl {
    const BlockView t_;

  public:
    explicit SquareFreeQl(const BlockView& t) : t_(t) {}

    /// The last element of the part that starts at l and does not split.
    i64 end_of_part(i64 l) const {
        i64 m = l;
        while (m + 1 < t_.n && t_.e(m) != 0.0 && !(t_.e(m) <= roundoff_squared * std::fabs(t_.d(m) * t_.d(m + 1)))) ++m;
        return m;
    }
    /// The eigenvalue of the leading 2 by 2 part that is closer to its first element.
    double shift(i64 l) const {
        const double first = t_.d(l), off = std::sqrt(t_.e(l)), half = (t_.d(l + 1) - first) / (2.0 * off);
        return first - off / (half + std::copysign(std::sqrt(half * half + 1.0), half));
    }
    void sweep(i64 l, i64 m, double sigma) const {
        double cosine = 1.0, sine = 0.0, gamma = t_.d(m) - sigma, p = gamma * gamma; // squares of cosine and sine
        for (i64 i = m - 1; i >= l; --i) {
            const double square = t_.e(i), sum = p + square, before = gamma, cosine_before = cosine;
            if (i != m - 1) t_.e(i + 1) = sine * sum;
            // p becomes gamma^2 / cosine. The quotient that is not waited for shortens the chain of operations.
            const double reciprocal = sum / p, alpha = t_.d(i);
            cosine = p / sum;
            sine = square / sum;
            gamma = cosine * (alpha - sigma) - sine * before;
            t_.d(i + 1) = before + (alpha - gamma);
            if (reciprocal < 1.0 / safe_minimum) p = gamma * gamma * reciprocal;
            else p = cosine != 0.0 ? gamma * gamma / cosine : cosine_before * square;
        }
        t_.e(l) = sine * p;
        t_.d(l) = sigma + gamma;
    }

    void split_two(i64 l) const {
        double cosine, sine;
        laev2(t_.d(l), std::sqrt(t_.e(l)), t_.d(l + 1), t_.d(l), t_.d(l + 1), cosine, sine);
        t_.e(l) = 0.0;
    }
};

} // namespace

void nxl_lapack_dsterf(const i64& n, double* d, double* e, i64& info) {
    if (Arguments(routine<double>("STERF")).size(1, n).refused(info)) return;
    constexpr i64 steps_for_one = 30;
    i64 steps_left = n * steps_for_one;
    iterate_on_blocks(n, d, e, [&](double* diagonal, double* off, const Slice& block) {
        for (i64 i = 0; i < block.count - 1; ++i) off[i] *= off[i];
        const bool from_end = std::fabs(diagonal[block.count - 1]) < std::fabs(diagonal[0]);
        const BlockView view(diagonal, off, block.count, from_end);
        const bool done = run_ql(view, SquareFreeQl(view), steps_left);
        for (i64 i = 0; i < block.count - 1; ++i) off[i] = std::sqrt(off[i]); // for the scale
        return done;
    });
    info = count_nonzeros(n, e);
    if (info == 0) sort_ascending(n, d);
}

} // namespace nxl
