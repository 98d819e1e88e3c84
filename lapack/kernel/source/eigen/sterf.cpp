// dsterf: QL without square roots, on the squares of the off-diagonal; see ql_sweeps.cpp.
#include "lapack/kernel/source/eigen/sterf.hpp"
#include "lapack/kernel/source/eigen/laev2.hpp"
#include "lapack/kernel/source/eigen/ql_sweeps.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

/// One block, whose e holds squares.
class SquareFreeQl {
    const BlockView t_;
    const i64 together_; // sweeps, at most

  public:
    static constexpr i64 steps_for_one = 30;

    SquareFreeQl(const BlockView& t, i64 together) : t_(t), together_(together) {}

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
    /// Shifts for so many sweeps: the eigenvalues of the leading part with as many rows, to all digits: with fewer,
    /// glued blocks hardly part. False when QL does not find them.
    bool find_shifts(i64 l, i64 many, double* shifts) const {
        double squares[most_sweeps];
        for (i64 i = 0; i < many; ++i) shifts[i] = t_.d(l + i);
        for (i64 i = 0; i + 1 < many; ++i) squares[i] = t_.e(l + i);
        const BlockView leading(shifts, squares, many, false);
        i64 steps_left = many * steps_for_one;
        return run_ql(leading, SquareFreeQl(leading, 1), steps_left);
    }
    i64 advance(i64 l, i64 m) const {
        double shifts[most_sweeps];
        i64 many = std::min(sweeps_for(m - l + 1), together_);
        if (many > 1 && !find_shifts(l, many, shifts)) many = 1;
        if (many == 1) shifts[0] = shift(l);
        if (std::isnan(shifts[0])) return 0;
        square_free_ql(t_, l, m, many, shifts);
        return many;
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
    i64 steps_left = n * SquareFreeQl::steps_for_one;
    iterate_on_blocks(n, d, e, [&](double* diagonal, double* off, const Slice& block) {
        for (i64 i = 0; i < block.count - 1; ++i) off[i] *= off[i];
        const bool from_end = std::fabs(diagonal[block.count - 1]) < std::fabs(diagonal[0]);
        const BlockView view(diagonal, off, block.count, from_end);
        i64 steps_together = block.count * 8; // they take some 2.5 of them; single sweeps go on where they do not
        const bool done = run_ql(view, SquareFreeQl(view, most_sweeps), steps_together) ||
                          run_ql(view, SquareFreeQl(view, 1), steps_left);
        for (i64 i = 0; i < block.count - 1; ++i) off[i] = std::sqrt(off[i]); // for the scale
        return done;
    });
    info = count_nonzeros(n, e);
    if (info == 0) sort_ascending(n, d);
}

} // namespace nxl
