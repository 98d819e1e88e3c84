// Both stages. A block of columns is factored as Q R, and the rows of R beside it as L P^H; what remains takes both
// factors in one product:
//
//     A := (I - V T V^H)^H A (I - W S W^H) = A - V Z - X W^H,   Z = T^H V^H A,   X = (A W - V (Z W)) S
//
// Then the rows of the band are annihilated beyond the superdiagonal, one after the other:
//
//     s           columns s + 1 .. s + b turn with row s: in D they fill the triangle below the diagonal, of which the
//       D E       first column is annihilated from the left, which fills the triangle above the band in E. Of that, the
//         D E     first row is annihilated from the right, b columns further; the rest makes room for the next sweep.
#include "lapack/kernel/source/singular/two_stage_values.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/eigen/chase_pipeline.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "lapack/kernel/source/orthogonal/panel.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"
#include "service/scalars.hpp"
#include "service/workspace.hpp"

namespace nxl {
namespace {

/// The band, elements (i, j), 0 <= j - i <= b, with room for what is filled: b more above and b - 1 below, and for what
/// kernels touch below that.
template <class T> class FilledBand {
    const i64 n_, b_;
    const Scratch<T> memory_;

    i64 height() const { return 3 * b_ + chase_rest; }

  public:
    FilledBand(i64 n, i64 b) : n_(n), b_(b), memory_(n * height()) {
        if (memory_.data()) std::fill(memory_.data(), memory_.data() + n * height(), T{});
    }
    bool is_ready() const { return memory_.data(); }
    Matrix<T> view() const { return {memory_.data() + 2 * b_, n_, n_, height() - 1}; }
};

template <class T> class BlocksToBand {
    const Matrix<T> a_, band_;
    const i64 b_;

    /// Columns become R, whose elements, r <= c, go to take(r, c, value), and the vectors of Q with their zeros and
    /// ones, as many columns as there are rows.
    template <class Take>
    static void factor(const Matrix<T>& v, const Matrix<T>& t, T* tau, const Matrix<T>& w, const Take& take) {
        const i64 k = t.rows, rest = v.columns - k;
        const Matrix<T> panel = v.columns_from(0, k);
        factor_panel(panel, tau, t);
        if (rest > 0)
            apply_block('L', 'C', Reflectors<T>{panel, Order::forward, Storage::columns}, t, v.columns_from(k, rest),
                        w.block(0, 0, k, rest));
        for (i64 c = 0; c < v.columns; ++c)
            for (i64 r = 0; r <= std::min(c, v.rows - 1); ++r) {
                take(r, c, v(r, c));
                v(r, c) = r == c ? T(1.0) : T{};
            }
    }

  public:
    BlocksToBand(const Matrix<T>& a, i64 b, const Matrix<T>& band) : a_(a), band_(band), b_(b) {}

    i64 room() const { return b_ * (2 * (a_.rows + a_.columns) + 3 * b_ + 1); }
    /// `memory`: room()
    void reduce(T* memory) const {
        Sections<T> sections(memory);
        const i64 m = a_.rows, n = a_.columns;
        T *const of_left = sections.take(2 * b_ * m), *const of_right = sections.take(2 * b_ * n);
        T *const factor_of_v = sections.take(b_ * b_), *const factor_of_w = sections.take(b_ * b_);
        T *const square = sections.take(b_ * b_), *const tau = sections.take(b_);
        for (i64 j = 0; j < n; j += b_) {
            const i64 width = std::min(b_, n - j), next = j + width, columns = n - next, k = std::min(columns, width);
            const Matrix<T> left{of_left, m - j, width + k, m - j}, right{of_right, columns, 2 * width, columns};
            const Matrix<T> v = left.columns_from(0, width), z = right.columns_from(0, width); // z: Z^H
            const Matrix<T> t{factor_of_v, width, width, b_}, s{factor_of_w, k, k, b_}, w_square{square, b_, b_, b_};
            for (i64 c = 0; c < width; ++c) std::copy_n(a_.at(j, j + c), m - j, v.at(0, c));
            factor(v, t, tau, w_square, [&](i64 r, i64 c, const T& value) { band_(j + r, j + c) = value; });
            if (columns == 0) return;
            const Matrix<T> rest = a_.from(j, next), below = rest.rows_from(width, m - next);
            gemm('C', 'N', 1.0, rest, v, 0.0, z);
            trmm('R', 'U', 'N', 'N', 1.0, t, z);
            gemm('N', 'C', -1.0, v.rows_from(0, width), z, 1.0, rest.rows_from(0, width));
            turn_rows(rest.rows_from(0, width), next, right.columns_from(width, width), s, tau, w_square);
            update(below, left.rows_from(width, m - next), right, width, s, w_square);
        }
    }

  private:
    /// The rows beside a block, from column `next` of the matrix, become L and vectors, the first columns of w.
    void turn_rows(const Matrix<T>& rows, i64 next, const Matrix<T>& w, const Matrix<T>& s, T* tau,
                   const Matrix<T>& square) const {
        const i64 first = next - rows.rows;
        for (i64 c = 0; c < w.columns; ++c)
            for (i64 r = 0; r < w.rows; ++r) w(r, c) = conj_if(true, rows(c, r));
        factor(w, s, tau, square,
               [&](i64 r, i64 c, const T& value) { band_(first + c, next + r) = conj_if(true, value); });
    }
    /// What remains.
    void update(const Matrix<T>& below, const Matrix<T>& left, const Matrix<T>& right, i64 width, const Matrix<T>& s,
                const Matrix<T>& square) const {
        const i64 k = s.rows;
        const Matrix<T> w = right.columns_from(width, k), x = left.columns_from(width, k);
        const Matrix<T> product{square.data, width, k, square.ld};
        gemm('N', 'N', 1.0, below, w, 0.0, x);
        gemm('C', 'N', 1.0, right.columns_from(0, width), w, 0.0, product);
        gemm('N', 'N', -1.0, left.columns_from(0, width), product, 1.0, x);
        trmm('R', 'U', 'N', 'N', 1.0, s, x);
        gemm('N', 'C', -1.0, left, right.columns_from(0, width + k), 1.0, below);
    }
};

template <class T> class Chase {
    const Matrix<T> a_;
    const i64 b_;
    const ChasedVectors<T> chased_;

    Slice block(i64 sweep, i64 k) const {
        const i64 start = std::min(sweep + 1 + k * b_, a_.rows);
        return {start, std::min(b_, a_.rows - start)};
    }
    /// Annihilates row `sweep` beyond its superdiagonal.
    void start(i64 sweep, const Slice& columns, i64 place) const {
        T* const v = chased_.vector(place, 0);
        for (i64 c = 0; c < columns.count; ++c) {
            T& element = a_(sweep, columns.start + c);
            v[c] = conj_if(true, element);
            element = T{};
        }
        chased_.tau(place, 0) = make_reflector(columns.count - 1, v[0], v + 1, 1);
        a_(sweep, columns.start) = v[0];
        v[0] = 1.0;
        chased_.clear_rest(place, 0, columns.count);
    }

  public:
    Chase(const Matrix<T>& band, i64 b, const ChasedVectors<T>& chased) : a_(band), b_(b), chased_(chased) {}

    void step(i64 sweep, i64 k, i64 place) const {
        const Slice here = block(sweep, k), next = block(sweep, k + 1);
        if (k == 0) start(sweep, here, place);
        T tau{}, *const u = chased_.other();
        slot_of<T, &KernelTable::dchase_column, &KernelTable::zchase_column>()(
            here.count, here.count, a_.at(here.start, here.start), a_.ld, chased_.vector(place, k),
            chased_.tau(place, k), u, tau, chased_.work());
        if (next.count == 0) return;
        slot_of<T, &KernelTable::dchase_row, &KernelTable::zchase_row>()(
            here.count, next.count, a_.at(here.start, next.start), a_.ld, u, tau, chased_.vector(place, k + 1),
            chased_.tau(place, k + 1), chased_.work());
    }
};

} // namespace

template <class T> bool bidiagonalise_in_two_stages(const Matrix<T>& a, i64 b, double* d, double* e) {
    const i64 n = a.columns, room = ChasedVectors<T>::room(b);
    const FilledBand<T> filled(n, b);
    const ChasePipeline pipeline(n, b);
    const Scratch<T> vectors(pipeline.threads() * room);
    const BlocksToBand<T> blocks(a, b, filled.view());
    const Scratch<T> memory(blocks.room());
    if (!filled.is_ready() || !pipeline.is_ready() || !vectors.data() || !memory.data()) return false;
    const Matrix<T> band = filled.view();
    blocks.reduce(memory.data());
    pipeline.run([&](int thread, i64 sweep, i64 k, i64 place) {
        Chase<T>(band, b, ChasedVectors<T>(b, vectors.data() + thread * room)).step(sweep, k, place);
    });
    for (i64 j = 0; j < n; ++j) {
        d[j] = real_part(band(j, j));
        if (j + 1 < n) e[j] = real_part(band(j, j + 1));
    }
    return true;
}

template bool bidiagonalise_in_two_stages(const Matrix<double>&, i64, double*, double*);
template bool bidiagonalise_in_two_stages(const Matrix<zcomplex>&, i64, double*, double*);

} // namespace nxl
