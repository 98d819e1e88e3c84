// Blocks of b columns are factored below the band, and their reflectors applied from both sides to what remains, all by
// matrix products:
//
//     A := (I - V T V^H)^H A (I - V T V^H) = A - V Y^H - Y V^H,   Y = X - V (T^H V^H X) / 2,   X = A V T
#include "lapack/kernel/source/eigen/full_to_band.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/eigen/latrd.hpp"
#include "lapack/kernel/source/orthogonal/panel.hpp"
#include "service/scalars.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"
#include "service/workspace.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// Rows and columns of the pieces of a product: one stays in the second cache for its second use, mirrored.
constexpr i64 piece = 256;

/// x := x + the part of A v that columns strip.start .. strip.end - 1 of the triangle have a share in. Each piece is
/// read down its columns first, as memory delivers it.
template <class T>
void multiply_strip(char uplo, const TriangleStrip& strip, const Matrix<T>& a, const Matrix<T>& v, const Matrix<T>& x) {
    for (i64 j = strip.start; j < strip.end; j += piece) {
        const i64 width = std::min(piece, strip.end - j);
        const Matrix<T> v_here = v.rows_from(j, width), x_here = x.rows_from(j, width);
        hemm('L', uplo, 1.0, a.block(j, j, width, width), v_here, 1.0, x_here);
        const i64 end = uplo == 'U' ? j : a.rows;
        for (i64 i = uplo == 'U' ? 0 : j + width; i < end; i += piece) {
            const i64 rows = std::min(piece, end - i);
            const Matrix<T> block = a.block(i, j, rows, width);
            gemm('C', 'N', 1.0, block, v.rows_from(i, rows), 1.0, x_here);
            gemm('N', 'N', 1.0, block, v_here, 1.0, x.rows_from(i, rows));
        }
    }
}

/// x := A v. `parts`: as many elements as x has, for each strip.
template <class T>
void multiply(char uplo, const Matrix<T>& a, const Matrix<T>& v, const Matrix<T>& x, i64 strips, T* parts) {
    const i64 size = x.rows * x.columns;
    parallel_blocks(static_cast<int>(strips), static_cast<int>(strips), [&](int part) {
        const Matrix<T> own{parts + part * size, x.rows, x.columns, x.rows};
        std::fill(own.data, own.data + size, T{});
        multiply_strip(uplo, triangle_strip(uplo, a.rows, part, strips), a, v, own);
    });
    for (i64 i = 0; i < size; ++i) {
        T sum = parts[i];
        for (i64 part = 1; part < strips; ++part) sum += parts[part * size + i];
        x.data[i] = sum;
    }
}

/// Threads for the product of a matrix of order n.
i64 strips_of(i64 n) {
    return region_would_be_serial() ? 1 : std::clamp(n / (2 * piece), i64{1}, i64{max_threads(domain_all)});
}

template <class T> class Blocks {
    const char uplo_;
    const Matrix<T> a_, band_;
    const i64 b_;
    T* const tau_;
    const i64 strips_; // at most: the threads may become more meanwhile

    /// Element (i, j), i >= j, of the matrix.
    T lower(i64 i, i64 j) const { return uplo_ == 'L' ? a_(i, j) : conj_if<true>(a_(j, i)); }
    void store(i64 i, i64 j, const T& value) const {
        if (uplo_ == 'L') a_(i, j) = value;
        else a_(j, i) = conj_if<true>(value);
    }

    void copy_diagonal_block(i64 first, i64 width) const {
        for (i64 j = first; j < first + width; ++j) {
            band_(j, j) = real_part(a_(j, j));
            for (i64 i = j + 1; i < first + width; ++i) band_(i, j) = lower(i, j);
        }
    }

    /// The block below the band, from column j: R goes to the band, the vectors to A and, with their zeros and ones, to
    /// v, whose first columns, as many as it has rows, they are.
    void factor(i64 j, const Matrix<T>& v, const Matrix<T>& t, const Matrix<T>& w) const {
        const i64 below = j + b_, k = t.rows;
        for (i64 c = 0; c < b_; ++c)
            for (i64 r = 0; r < v.rows; ++r) v(r, c) = lower(below + r, j + c);
        const Matrix<T> panel = v.columns_from(0, k);
        factor_panel(panel, tau_ + j, t);
        apply_block('L', 'C', Reflectors<T>{panel, Order::forward, Storage::columns}, t, v.columns_from(k, b_ - k), w);
        for (i64 c = 0; c < b_; ++c) {
            for (i64 r = 0; r <= std::min(c, v.rows - 1); ++r) {
                band_(below + r, j + c) = v(r, c);
                v(r, c) = r == c ? T(1.0) : T{};
            }
            for (i64 r = c + 1; r < v.rows; ++r) store(below + r, j + c, v(r, c));
        }
    }

    /// What remains, from both sides, by one product of [V Y] and [Y V]^H. x becomes Y; v follows it in memory, and as
    /// many columns again are free.
    void update(const Matrix<T>& rest, const Matrix<T>& v, const Matrix<T>& t, const Matrix<T>& x, const Matrix<T>& s,
                T* parts) const {
        const i64 rows = rest.rows, pair = 2 * v.columns;
        multiply(uplo_, rest, v, x, std::min(strips_of(rest.rows), strips_), parts);
        trmm('R', 'U', 'N', 'N', 1.0, t, x);
        gemm('C', 'N', 1.0, v, x, 0.0, s);
        trmm('L', 'U', 'C', 'N', -0.5, t, s);
        gemm('N', 'N', 1.0, v, s, 1.0, x);
        std::copy_n(x.data, rows * x.columns, v.data + rows * v.columns);
        gemmt(uplo_, 'N', is_complex_scalar<T> ? 'C' : 'T', -1.0, {v.data, rows, pair, rows},
              {x.data, rows, pair, rows}, 1.0, rest);
    }

  public:
    Blocks(char uplo, const Matrix<T>& a, i64 b, T* tau, const Matrix<T>& band)
        : uplo_(uplo),
          a_(a),
          band_(band),
          b_(b),
          tau_(tau),
          strips_(strips_of(a.rows)) {}

    i64 room() const { return b_ * ((3 + strips_) * std::max(a_.rows - b_, i64{0}) + 2 * b_); }
    /// `memory`: room()
    void reduce(T* memory) const {
        Sections<T> sections(memory);
        const i64 n = a_.rows, tallest = std::max(n - b_, i64{0});
        T* const panels = sections.take(3 * tallest * b_);
        T *const factor_of_v = sections.take(b_ * b_), *const square = sections.take(b_ * b_);
        T* const parts = sections.take(strips_ * tallest * b_);
        for (i64 j = 0; j < n; j += b_) {
            const i64 rows = std::max(n - j - b_, i64{0}), k = std::min(rows, b_);
            copy_diagonal_block(j, std::min(b_, n - j));
            if (rows == 0) return;
            const Matrix<T> v{panels + rows * b_, rows, b_, rows}, x{v.data - rows * k, rows, k, rows};
            const Matrix<T> t{factor_of_v, k, k, b_}, s{square, k, k, b_};
            factor(j, v, t, {square, k, b_ - k, b_});
            update(a_.from(j + b_, j + b_), v.columns_from(0, k), t, x, s, parts);
        }
    }
};

} // namespace

template <class T> bool full_to_band(char uplo, const Matrix<T>& a, i64 b, T* tau, const Matrix<T>& band) {
    const Blocks<T> blocks(uplo, a, b, tau, band);
    const Scratch<T> memory(blocks.room());
    if (!memory.data()) return false;
    blocks.reduce(memory.data());
    return true;
}

template bool full_to_band<double>(char, const Matrix<double>&, i64, double*, const Matrix<double>&);
template bool full_to_band<zcomplex>(char, const Matrix<zcomplex>&, i64, zcomplex*, const Matrix<zcomplex>&);

} // namespace nxl
