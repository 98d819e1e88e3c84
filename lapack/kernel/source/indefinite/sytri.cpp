// dsytri, zsytri, zhetri: the inverse grows block by block from the end of the elimination. With Z the inverse of what
// was left after a block (L11; L21) with pivots D, and X = L21 L11^-1, the next one is
//
//     ( L11^-T D^-1 L11^-1 + X^T Z X    -X^T Z )
//     (            -Z X                    Z   )
//
// with the block's interchanges made in rows and columns. Published routines do this pivot by pivot; Du Croz and
// Higham, IMA J. Numer. Anal. 12 (1992), on the stability of such methods.
#include "lapack/kernel/source/indefinite/sytri.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/indefinite/pivot_block.hpp"
#include "lapack/kernel/source/triangular/trtri.hpp"
#include "service/scratch.hpp"
#include <algorithm>
#include <utility>

namespace nxl {
namespace {

template <class T, Symmetry kind> class Inverse {
    static constexpr char transposed = adjoint_letter<T, kind>;
    using Block = PivotBlock<T>;

    const char uplo_;
    const PivotOrder order_;
    const Matrix<T> a_;
    const i64* const ipiv_;
    const Scratch<T> room_, x_;
    const Scratch<i64> rows_;

    /// X, the stored rows with the moved ones in their places.
    Matrix<T> multipliers(const Block& block) const {
        const Slice rest = block.rest(), own = block.columns();
        const Matrix<T> x{x_.data(), rest.count, own.count, std::max(a_.rows, i64{1})}, moved = block.moved();
        for (i64 c = 0; c < own.count; ++c) {
            std::copy_n(a_.at(rest.start, own.start + c), rest.count, x.at(0, c));
            for (i64 i = 0; i < moved.rows; ++i) x(block.moved_row(i) - rest.start, c) = moved(i, c);
        }
        if (rest.count > 0) trsm('R', uplo_, 'N', 'U', 1.0, block.corner(), x);
        return x;
    }

    /// The inverse of the corner, written out as a whole square.
    void invert(const Matrix<T>& corner) const {
        i64 info = 0;
        trtri(uplo_, 'U', corner.rows, corner.data, corner.ld, info);
        for (i64 c = 0; c < corner.columns; ++c) {
            const i64 start = order_.upper ? c + 1 : 0, end = order_.upper ? corner.rows : c;
            std::fill(corner.at(start, c), corner.at(end, c), T{});
            corner(c, c) = 1.0;
        }
    }

    /// D^-1 times the corner, D being on the diagonal of A still.
    void divide_by_pivots(const Slice& steps, const Matrix<T>& corner, const Matrix<T>& quotient) const {
        const i64 first = order_.columns(steps).start;
        for_pivots(order_, steps, ipiv_, [&](i64 step, i64 size, i64) {
            const i64 j = order_.at(step), k = order_.at(step + size - 1);
            const T* const one = corner.at(j - first, 0);
            const T* const other = corner.at(k - first, 0);
            T *const to_one = quotient.at(j - first, 0), *const to_other = quotient.at(k - first, 0);
            if (size == 1) {
                const T d = on_diagonal<kind>(a_(j, j));
                for (i64 c = 0; c < corner.columns; ++c) to_one[c * quotient.ld] = one[c * corner.ld] / d;
                return;
            }
            const PivotPair<T, kind> pair(a_(j, j), a_(k, j), a_(k, k));
            for (i64 c = 0; c < corner.columns; ++c) {
                to_one[c * quotient.ld] = one[c * corner.ld];
                to_other[c * quotient.ld] = other[c * corner.ld];
                pair.divide(to_one[c * quotient.ld], to_other[c * quotient.ld]);
            }
        });
    }

    /// Rows and columns k and p change places in the part of the matrix that `part` is the range of.
    void interchange(i64 k, i64 p, const Slice& part) const {
        if (k == p) return;
        const i64 low = std::min(k, p), high = std::max(k, p);
        std::swap(a_(k, k), a_(p, p));
        for (i64 i = low + 1; i < high; ++i) {
            const T kept = a_(i, k);
            a_(i, k) = mirrored<kind>(a_(p, i));
            a_(p, i) = mirrored<kind>(kept);
        }
        a_(p, k) = mirrored<kind>(a_(p, k));
        const Slice before{part.start, low - part.start}, after{high + 1, part.end() - high - 1};
        const Slice& as_rows = order_.upper ? after : before;
        const Slice& as_columns = order_.upper ? before : after;
        swap(as_rows.count, a_.at(k, as_rows.start), a_.ld, a_.at(p, as_rows.start), a_.ld);
        swap(as_columns.count, a_.at(as_columns.start, k), 1, a_.at(as_columns.start, p), 1);
    }

    void extend(const Slice& steps) const {
        const Block block(order_, steps, a_, ipiv_, room_.data(), rows_.data());
        const Slice own = block.columns(), rest = block.rest();
        const Matrix<T> x = multipliers(block), corner = block.corner();
        const Matrix<T> quotient{block.moved().data, own.count, own.count, Block::most}; // X has taken what was there
        invert(corner);
        divide_by_pivots(steps, corner, quotient);
        const Matrix<T> diagonal = a_.block(own.start, own.start, own.count, own.count);
        gemmt(uplo_, transposed, 'N', 1.0, corner, quotient, 0.0, diagonal);
        if (rest.count > 0) {
            const Matrix<T> z = a_.block(rest.start, rest.start, rest.count, rest.count);
            const Matrix<T> beside = a_.block(rest.start, own.start, rest.count, own.count);
            if constexpr (kind == Symmetry::hermitian) hemm('L', uplo_, -1.0, z, x, 0.0, beside);
            else symm('L', uplo_, -1.0, z, x, 0.0, beside);
            gemmt(uplo_, transposed, 'N', -1.0, x, beside, 1.0, diagonal);
        }
        for_pivots_backward(order_, steps, ipiv_, [&](i64 step, i64 size, i64 p) {
            interchange(order_.at(step + size - 1), p, order_.rest(steps.start));
        });
    }

  public:
    Inverse(char uplo, const Matrix<T>& a, const i64* ipiv)
        : uplo_(uplo),
          order_{uplo == 'U', a.rows},
          a_(a),
          ipiv_(ipiv),
          room_(Block::room_needed),
          x_(a.rows * Block::most),
          rows_(Block::most) {}

    bool has_memory() const { return room_.data() && x_.data() && rows_.data(); }
    void run() const {
        for (Slice steps{order_.n, 0}; steps.start > 0;) {
            steps = pivots_before(order_, ipiv_, steps.start, Block::width);
            extend(steps);
        }
    }
};

} // namespace

template <class T, Symmetry kind>
void sytri(const char& uplo, const i64& n, T* a, const i64& lda, const i64* ipiv, T*, i64& info, int) {
    constexpr RoutineLetters name = routine_of<T, kind>("TRI");
    if (Arguments(name).letter(1, uplo, "UL").size(2, n).leading(4, lda, n).refused(info) || n == 0) return;
    const Matrix<T> whole{a, n, n, lda};
    info = zero_pivot_of<T>({uplo == 'U', n}, whole, ipiv);
    if (info != 0) return;
    const Inverse<T, kind> inverse(uplo, whole, ipiv);
    if (!inverse.has_memory()) return refuse_for_memory(name, info);
    inverse.run();
}
template decltype(sytri<double, Symmetry::symmetric>) sytri<double, Symmetry::symmetric>;
template decltype(sytri<zcomplex, Symmetry::symmetric>) sytri<zcomplex, Symmetry::symmetric>;
template decltype(sytri<zcomplex, Symmetry::hermitian>) sytri<zcomplex, Symmetry::hermitian>;

} // namespace nxl
