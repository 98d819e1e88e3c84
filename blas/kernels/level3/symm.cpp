// Products with a symmetric or Hermitian matrix: the general product, whose packing mirrors the triangle that is
// stored.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level3/gemm_forms.hpp"

namespace nxl::NXL_TARGET {
namespace {

/// A whole matrix (r, p) of which one triangle is stored. Of a Hermitian one, imaginary parts on the diagonal are not
/// looked at. A panel, 4 rows of a matrix stored lower, has up to three pieces along k:
///
///       p               r      r + 4            p + k
///       +---------------+-------+----------------+
///       | stored rows   | cross | columns of the |      left of the diagonal it is read where it stands, right of it
///       | as they stand | ing   | rows below     |      by its mirror image; the crossing goes through a small square
///       +---------------+-------+----------------+
///
/// The product itself never knows: it meets panels like any others.
template <class T> struct Mirrored {
    const T* data;
    i64 ld;
    bool lower, hermitian;
    bool conjugate; // all of it, as the columns of a Hermitian B ask for

    Source<T> stored(i64 r, i64 p) const { return {data + r + p * ld, 1, ld, conjugate}; }
    Source<T> mirrored(i64 r, i64 p) const { return {data + p + r * ld, ld, 1, conjugate != hermitian}; }

    /// Rows r to r + rows - 1, which lie in one group `width` rows high, over k steps from p on.
    void pack(i64 r, i64 rows, i64 width, i64 p, i64 k, double* to, i64 step, const T* alpha) const {
        const i64 end = p + k;
        const i64 diagonal = clamped(r, p, end), behind = clamped(r + rows, p, end);
        pack_piece(lower ? stored(r, p) : mirrored(r, p), rows, width, diagonal - p, to, step, alpha);
        pack_diagonal(r, rows, width, diagonal, behind, to + (diagonal - p) * step, step, alpha);
        pack_piece(lower ? mirrored(r, behind) : stored(r, behind), rows, width, end - behind, to + (behind - p) * step,
                   step, alpha);
    }

  private:
    static void pack_piece(const Source<T>& from, i64 rows, i64 width, i64 k, double* to, i64 step, const T* alpha) {
        if (k < 1) return;
        with_change<T>(from.conjugate, alpha, [&](auto change) {
            if (rows == kPanelRows<T>) pack_full_groups<T>(from, 1, k, to, 0, step, change);
            else pack_ragged<T>(from, static_cast<int>(rows), static_cast<int>(width), k, to, step, change);
        });
    }

    /// The rows' crossing with the diagonal: written out, then packed as any matrix.
    void pack_diagonal(i64 r, i64 rows, i64 width, i64 first, i64 last, double* to, i64 step, const T* alpha) const {
        T square[kPanelRows<T> * kPanelRows<T>];
        for (i64 p = first; p < last; ++p)
            for (i64 row = r; row < r + rows; ++row) square[row - r + (p - first) * kPanelRows<T>] = element(row, p);
        pack_piece({square, 1, kPanelRows<T>, false}, rows, width, last - first, to, step, alpha);
    }

    T element(i64 r, i64 p) const {
        const bool direct = lower ? r >= p : r <= p;
        T value = direct ? data[r + p * ld] : data[p + r * ld];
        if (hermitian && r == p) value = diagonal<true>(value);
        return (direct ? conjugate : conjugate != hermitian) ? conj(value) : value;
    }
};

template <class T> struct MirroredA {
    Mirrored<T> from;
    T alpha;

    void pack(i64 row, i64 rows, i64 p, i64 k, double* to, i64 stride) const {
        constexpr i64 group = kPanelRows<T>;
        for (i64 r = 0; r < up_to(rows, kTallRows<T>); r += group)
            from.pack(row + r, clamped(rows - r, 0, group), group, p, k,
                      to + group_offset<kTallPanel>(r / group, stride), kTallPanel, &alpha);
        for (i64 r = 0; r < rows; r += kTallRows<T>, to += stride) pad_panel<T>(to, k, kTallPanel);
    }
};

template <class T> struct MirroredB {
    Mirrored<T> from;

    void pack(i64 p, i64 k, i64 column, i64 columns, double* to, i64 stride) const {
        for_each_part<T>(k, columns, to, stride, [&](i64 c, i64 wide, double* at, i64 step) {
            from.pack(column + c, wide, wide, p, k, at, step, nullptr);
        });
    }
};

template <class T>
void symm(bool hermitian, char side, char uplo, i64 m, i64 n, const T& alpha, const T* a, i64 lda, const T* b, i64 ldb,
          const T& beta, T* c, i64 ldc) {
    if (m < 1 || n < 1) return;
    const Result<T> to{c, ldc, beta, before_of(beta)};
    if (is_zero(alpha)) return scale_result(m, n, to);
    const bool lower = uplo == 'L';
    if (side == 'L') {
        packed_product(MirroredA<T>{{a, lda, lower, hermitian, false}, alpha}, GeneralB<T>{source_of_b('N', b, ldb)}, m,
                       n, m, to);
    } else { // element (c, p) of the columns is A(p, c)
        packed_product(GeneralA<T>{source_of_a('N', b, ldb), alpha},
                       MirroredB<T>{{a, lda, lower, hermitian, hermitian}}, m, n, n, to);
    }
}

} // namespace

void dsymm(const char& side, const char& uplo, const i64& m, const i64& n, const double& alpha, const double* a,
           const i64& lda, const double* b, const i64& ldb, const double& beta, double* c, const i64& ldc) {
    symm(false, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}

void zsymm(const char& side, const char& uplo, const i64& m, const i64& n, const zcomplex& alpha, const zcomplex* a,
           const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    symm(false, side, uplo, m, n, scalar(alpha), scalars(a), lda, scalars(b), ldb, scalar(beta), scalars(c), ldc);
}

void zhemm(const char& side, const char& uplo, const i64& m, const i64& n, const zcomplex& alpha, const zcomplex* a,
           const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex& beta, zcomplex* c, const i64& ldc) {
    symm(true, side, uplo, m, n, scalar(alpha), scalars(a), lda, scalars(b), ldb, scalar(beta), scalars(c), ldc);
}

} // namespace nxl::NXL_TARGET
