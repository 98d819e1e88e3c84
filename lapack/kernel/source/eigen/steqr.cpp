// dsteqr, zsteqr: implicit QL with Wilkinson's shift, from the end of a block at which its elements are smaller. Golub
// and Van Loan, Matrix Computations, 4th ed., section 8.3; Parlett, The Symmetric Eigenvalue Problem, section 8.13.
#include "lapack/kernel/source/eigen/steqr.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/eigen/laev2.hpp"
#include "lapack/kernel/source/eigen/plane_rotation.hpp"
#include "lapack/kernel/source/eigen/rotation_batch.hpp"
#include "lapack/kernel/source/eigen/sterf.hpp"
#include "lapack/kernel/source/eigen/tridiagonal_blocks.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

class ImplicitQl {
    const BlockView t_;
    const i64 column_; // of the view's first element
    RotationBatch& rotations_;

    double* sequence(i64 l, i64 m) const { return rotations_.sequence(column_ + m * t_.step, -t_.step, m - l); }

  public:
    ImplicitQl(const BlockView& t, i64 column, RotationBatch& rotations)
        : t_(t),
          column_(column),
          rotations_(rotations) {}

    i64 end_of_part(i64 l) const {
        i64 m = l;
        for (; m + 1 < t_.n; ++m) {
            const double square = t_.e(m) * t_.e(m);
            if (square <= roundoff_squared * std::fabs(t_.d(m)) * std::fabs(t_.d(m + 1)) + safe_minimum) break;
        }
        return m;
    }
    /// The leading element less the eigenvalue of the leading 2 by 2 part that is closer to it.
    double shift(i64 l) const {
        const double off = t_.e(l), half = (t_.d(l + 1) - t_.d(l)) / (2.0 * off);
        return off / (half + std::copysign(std::sqrt(half * half + 1.0), half));
    }
    void split_two(i64 l) const {
        double cosine, sine;
        laev2(t_.d(l), t_.e(l), t_.d(l + 1), t_.d(l), t_.d(l + 1), cosine, sine);
        t_.e(l) = 0.0;
        double* const turn = sequence(l, l + 1);
        turn[0] = cosine;
        turn[1] = -sine;
    }
    i64 advance(i64 l, i64 m) const {
        const double shifted = shift(l);
        if (std::isnan(shifted)) return 0;
        double* turn = sequence(l, m);
        double g = t_.d(m) - t_.d(l) + shifted, p = 0.0;
        PlaneRotation rotation{1.0, 1.0, 0.0};
        for (i64 i = m - 1; i >= l; --i, turn += 2) {
            const double f = rotation.sine * t_.e(i), b = rotation.cosine * t_.e(i);
            rotation = rotation_to_first(g, f);
            if (i != m - 1) t_.e(i + 1) = rotation.length;
            g = t_.d(i + 1) - p;
            const double r = (t_.d(i) - g) * rotation.sine + 2.0 * rotation.cosine * b;
            p = rotation.sine * r;
            t_.d(i + 1) = g + p;
            g = rotation.cosine * r - b;
            turn[0] = rotation.cosine;
            turn[1] = rotation.sine;
        }
        t_.d(l) -= p;
        t_.e(l) = g;
        return 1;
    }
};

} // namespace

template <class T>
void steqr(const char& compz, const i64& n, double* d, double* e, T* z, const i64& ldz, double*, i64& info, int) {
    Arguments arguments(routine<T>("STEQR"));
    arguments.letter(1, compz, "NVI").size(2, n).leading(6, ldz, compz == 'N' ? 1 : n);
    if (arguments.refused(info)) return;
    if (n == 0) return;
    if (compz == 'N') return nxl_lapack_dsterf(n, d, e, info);
    const Matrix<T> vectors{z, n, n, ldz};
    for (i64 j = 0; j < n && compz == 'I'; ++j) {
        std::fill(vectors.at(0, j), vectors.at(n, j), T{});
        vectors(j, j) = T(1.0);
    }
    RotationBatch rotations(vectors);
    if (!rotations.has_memory()) return refuse_for_memory(routine<T>("STEQR"), info);
    constexpr i64 steps_for_one = 30;
    i64 steps_left = n * steps_for_one;
    iterate_on_blocks(n, d, e, [&](double* diagonal, double* off, const Slice& block) {
        const bool from_end = std::fabs(diagonal[block.count - 1]) < std::fabs(diagonal[0]);
        const BlockView view(diagonal, off, block.count, from_end);
        return run_ql(view, ImplicitQl(view, from_end ? block.end() - 1 : block.start, rotations), steps_left);
    });
    rotations.apply();
    info = count_nonzeros(n, e);
    if (info == 0) sort_ascending(n, d, [&](i64 i, i64 j) { swap(n, vectors.at(0, i), 1, vectors.at(0, j), 1); });
}

template void steqr<double>(const char&, const i64&, double*, double*, double*, const i64&, double*, i64&, int);
template void steqr<zcomplex>(const char&, const i64&, double*, double*, zcomplex*, const i64&, double*, i64&, int);

} // namespace nxl
