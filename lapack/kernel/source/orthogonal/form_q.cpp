// Backward accumulation: the block of reflectors that touches the fewest elements first. The columns that are there
// already are zero in the elements of the next block's triangle, which need not be cleared, nor multiplied with.
// Golub and Van Loan, Matrix Computations, 4th ed., section 5.1.6.
#include "lapack/kernel/source/orthogonal/form_q.hpp"
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scratch.hpp"
#include "service/workspace.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// The array of vectors as it is written to. In the words for columns: n of m elements.
template <class T> struct Formation {
    const Order order;
    const Storage storage;
    const Matrix<T>& a;
    const i64 k;

    bool forward() const { return order == Order::forward; }
    bool by_columns() const { return storage == Storage::columns; }
    i64 length() const { return by_columns() ? a.rows : a.columns; }
    i64 count() const { return by_columns() ? a.columns : a.rows; }

    Matrix<T> part(const Slice& elements, const Slice& vectors) const {
        return by_columns() ? a.block(elements.start, vectors.start, elements.count, vectors.count)
                            : a.block(vectors.start, elements.start, vectors.count, elements.count);
    }
    Slice columns_of_vectors() const { return {forward() ? 0 : count() - k, k}; }
    Reflectors<T> reflectors() const { return {part({0, length()}, columns_of_vectors()), order, storage}; }

    /// Columns of the identity where there are no vectors. Their elements in the rows of triangles come later.
    void start() const {
        const i64 others = count() - k;
        const Matrix<T> rest = forward() ? part({k, length() - k}, {k, others}) : part({0, length() - k}, {0, others});
        for (i64 j = 0; j < rest.columns; ++j) std::fill_n(rest.at(0, j), rest.rows, T{});
        const i64 first = forward() ? 0 : length() - count();
        for (i64 i = 0; i < others; ++i) (by_columns() ? rest(first + i, i) : rest(i, first + i)) = T(1.0);
    }

    /// Brings in vectors first .. first + width - 1. `w`: width elements for each column of a.
    void add_block(i64 first, i64 width, const T* tau, const Matrix<T>& t, T* w) const {
        const auto [vectors, elements] = block_of_reflectors(reflectors(), first, width);
        make_factor(vectors, tau + first, t);
        const i64 own = columns_of_vectors().start + first;
        const Slice there = forward() ? Slice{own + width, count() - own - width} : Slice{0, own};
        const Matrix<T> target = part(elements, there);
        if (by_columns()) apply_block_to_zeros('L', 'N', vectors, t, target, Matrix<T>{w, width, there.count, width});
        else apply_block_to_zeros('R', 'C', vectors, t, target, Matrix<T>{w, there.count, width, there.count});
        form_block(vectors, t, part(elements, {own, width}), Matrix<T>{w, width, width, width});
    }
};

} // namespace

template <class T> bool form_q(Order order, Storage storage, i64 k, const Matrix<T>& a, const T* tau) {
    const Formation<T> formation{order, storage, a, k};
    const i64 nb = std::clamp(qr_panel(k), i64{1}, std::max(k, i64{1}));
    const Scratch<T> memory(nb * (nb + formation.count()));
    if (!memory.data()) return false;
    Sections<T> sections(memory.data());
    T* const factor = sections.take(nb * nb);
    T* const work = sections.take(nb * formation.count());
    formation.start();
    const i64 blocks = (k + nb - 1) / nb;
    for (i64 step = 0; step < blocks; ++step) {
        const i64 first = nb * (formation.forward() ? blocks - 1 - step : step), width = std::min(nb, k - first);
        formation.add_block(first, width, tau, Matrix<T>{factor, width, width, nb}, work);
    }
    return true;
}
template bool form_q(Order, Storage, i64, const Matrix<double>&, const double*);
template bool form_q(Order, Storage, i64, const Matrix<zcomplex>&, const zcomplex*);

} // namespace nxl
