// dpbtrf, zpbtrf: the block on the diagonal is factored in its place, what is beside it solved in a copy with zeros
// around the band, and its square taken off the triangle that follows, which again lies in the band. For U the picture
// is transposed. Golub and Van Loan, Matrix Computations, 4th ed., section 4.3.
//
//     j     \                \ : factored
//           #\               # : the copy, solved with it
//           ##*              * : # #^H is taken off
//            #**
#include "lapack/kernel/source/band/pbtrf.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/band/band_triangle.hpp"
#include "lapack/kernel/source/band/narrow_columns.hpp"
#include "lapack/kernel/source/cholesky/xpotrf.hpp"
#include "service/arguments.hpp"
#include "service/scratch.hpp"

namespace nxl {
namespace {

template <class T> struct BandCholesky {
    bool lower;
    i64 n, kd;
    Columns<T> band;

    /// False when the leading minor that ends with row j is not positive.
    bool eliminate(i64 j) const {
        const double pivot = std::real(band.a(j, j));
        band.a(j, j) = pivot;
        if (!(pivot > 0.0)) return false;
        const double root = std::sqrt(pivot), reciprocal = 1.0 / root;
        const i64 count = std::min(kd, n - j - 1), stride = lower ? 1 : band.a.ld;
        T* const beside = lower ? band.a.at(j + 1, j) : band.a.at(j, j + 1);
        band.a(j, j) = root;
        for (i64 i = 0; i < count; ++i) beside[i * stride] *= reciprocal;
        for (i64 k = 0; k < count; ++k) {
            const T factor = conj_if(lower, beside[k * stride]);
            T* const column = band.a.at(j + 1, j + 1 + k);
            if (lower) subtract_multiple(count - k, factor, beside + k, column + k);
            else
                for (i64 i = 0; i <= k; ++i) column[i] -= conj_if(true, beside[i * stride]) * factor;
            column[k] = std::real(column[k]);
        }
        return true;
    }

    i64 by_columns() const {
        for (i64 j = 0; j < n; ++j)
            if (!eliminate(j)) return j + 1;
        return 0;
    }

    i64 eliminate_block(i64 j, i64 width, T* space) const {
        const i64 after = j + width, rest = std::min(kd, n - after);
        const Matrix<T> diagonal = band.a.block(j, j, width, width), following = band.a.block(after, after, rest, rest);
        const char uplo = lower ? 'L' : 'U';
        i64 failed = 0;
        potf2(uplo, diagonal, failed);
        if (failed != 0 || rest == 0) return failed;
        const Matrix<T> beside = lower ? Matrix<T>{space, rest, width, rest} : Matrix<T>{space, width, rest, width};
        pack<T>(band, lower ? after : j, lower ? j : after, beside);
        trsm(lower ? 'R' : 'L', uplo, 'C', 'N', 1.0, diagonal, beside);
        unpack(beside, band, lower ? after : j, lower ? j : after);
        herk(uplo, lower ? 'N' : 'C', -1.0, beside, 1.0, following);
        return 0;
    }

    i64 by_blocks(T* space) const {
        for (i64 j = 0; j < n; j += BandSizes::panel)
            if (const i64 failed = eliminate_block(j, std::min(BandSizes::panel, n - j), space); failed != 0)
                return j + failed;
        return 0;
    }

    i64 factor() const {
        if (kd >= BandSizes::panel)
            if (const Scratch<T> space(kd * BandSizes::panel); space.data()) return by_blocks(space.data());
        return by_columns();
    }
};

} // namespace

template <class T> void pbtrf(const char& uplo, const i64& n, const i64& kd, T* ab, const i64& ldab, i64& info, int) {
    Arguments arguments(routine<T>("PBTRF"));
    arguments.letter(1, uplo, "UL").size(2, n).size(3, kd).leading(5, ldab, kd + 1);
    if (arguments.refused(info) || n == 0) return;
    info = BandCholesky<T>{uplo == 'L', n, kd, triangular_band_of(uplo, ab, ldab, n, kd)}.factor();
}
template decltype(pbtrf<double>) pbtrf<double>;
template decltype(pbtrf<zcomplex>) pbtrf<zcomplex>;

} // namespace nxl
