// Compact WY: the factor T, and products with I - V T V^H. V is cut into its triangle V1 and the full rest V2, C
// likewise:
//
//     W := V1^H C1 + V2^H C2        C2 := C2 - V2 W
//     W := op(T) W                  C1 := C1 - V1 W
//
// Storage by rows exchanges the letters of V and V^H, the backward order the triangles: there are no further cases.
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/triangular/trtri.hpp"
#include "service/scalars.hpp"
#include <algorithm>

namespace nxl {
namespace {

template <class T> void copy_matrix(const Operand<T>& from, const Matrix<T>& to) {
    for (i64 j = 0; j < to.columns; ++j) std::copy_n(from.at(0, j), to.rows, to.at(0, j));
}
template <class T> void subtract(const Operand<T>& from, const Matrix<T>& to) {
    for (i64 j = 0; j < to.columns; ++j) {
        T* const column = to.at(0, j);
        const T* const taken = from.at(0, j);
        for (i64 i = 0; i < to.rows; ++i) column[i] -= taken[i];
    }
}
template <class T> void store_negative(const Operand<T>& from, const Matrix<T>& to) {
    for (i64 j = 0; j < to.columns; ++j)
        for (i64 i = 0; i < to.rows; ++i) to(i, j) = -from(i, j);
}

/// V1^H with its zeros and ones.
template <class T> void copy_adjoint_triangle(const Reflectors<T>& v, const Matrix<T>& to) {
    const Matrix<const T> v1 = v.triangle();
    const bool upper = v.factor_uplo() == 'U', transposed = v.by_columns();
    for (i64 j = 0; j < to.columns; ++j)
        for (i64 i = 0; i < to.rows; ++i) {
            if (i == j) to(i, j) = T(1.0);
            else if ((i < j) != upper) to(i, j) = T{};
            else to(i, j) = transposed ? conj_if<true>(v1(j, i)) : v1(i, j);
        }
}

/// C1 and C2.
template <class T> struct Parts {
    Matrix<T> in_triangle, in_rest;
    Parts(char side, const Reflectors<T>& v, const Matrix<T>& c)
        : in_triangle(part(side, c, v.in_triangle())),
          in_rest(part(side, c, v.in_rest())) {}

  private:
    static Matrix<T> part(char side, const Matrix<T>& c, const Slice& elements) {
        return side == 'L' ? c.rows_from(elements.start, elements.count)
                           : c.columns_from(elements.start, elements.count);
    }
};

/// W := V2^H C2 + beta W, or C2 V2 + beta W.
template <class T>
void multiply_rest(char side, const Reflectors<T>& v, const Matrix<T>& c2, Factor<T> beta, const Matrix<T>& w) {
    if (side == 'L') gemm(v.adjoint(), 'N', 1.0, v.rest(), c2, beta, w);
    else gemm('N', v.plain(), 1.0, c2, v.rest(), beta, w);
}

/// C2 := C2 - V2 W, or C2 - W V2^H.
template <class T>
void update_rest(char side, const Reflectors<T>& v, const Matrix<T>& w, const Matrix<T>& c2) {
    if (c2.rows == 0 || c2.columns == 0) return;
    if (side == 'L') gemm(v.plain(), 'N', -1.0, v.rest(), w, 1.0, c2);
    else gemm('N', v.adjoint(), -1.0, w, v.rest(), 1.0, c2);
}

/// The letter of V for products with its triangle from this side: V^H before T and V after it from the left, the other
/// way about from the right.
template <class T> char letter_before(char side, const Reflectors<T>& v) {
    return side == 'L' ? v.adjoint() : v.plain();
}
template <class T> char letter_after(char side, const Reflectors<T>& v) {
    return side == 'L' ? v.plain() : v.adjoint();
}

} // namespace

template <class T> void make_factor(const Reflectors<T>& v, const T* tau, const Matrix<T>& t) {
    const i64 k = v.count();
    const char uplo = v.factor_uplo();
    copy_adjoint_triangle(v, t);
    trmm('R', v.triangle_uplo(), v.plain(), 'U', 1.0, v.triangle(), t);
    if (v.length() > k) herk(uplo, v.adjoint(), 1.0, v.rest(), 1.0, t);
    const auto strict_rows = [&](i64 j) { return uplo == 'U' ? Slice{0, j} : Slice{j + 1, k - j - 1}; };
    for (i64 j = 0; j < k; ++j)
        for (i64 i = strict_rows(j).start; i < strict_rows(j).end(); ++i) t(i, j) *= tau[i];
    i64 info;
    trtri(uplo, 'U', k, t.data, t.ld, info);
    for (i64 j = 0; j < k; ++j) {
        t(j, j) = tau[j];
        for (i64 i = strict_rows(j).start; i < strict_rows(j).end(); ++i) t(i, j) *= tau[j];
    }
}

template <class T>
void apply_block(char side, char op, const Reflectors<T>& v, Operand<T> t, const Matrix<T>& c, const Matrix<T>& w) {
    if (c.rows == 0 || c.columns == 0) return;
    const Parts<T> parts(side, v, c);
    copy_matrix(parts.in_triangle, w);
    trmm(side, v.triangle_uplo(), letter_before(side, v), 'U', 1.0, v.triangle(), w);
    if (v.in_rest().count > 0) multiply_rest(side, v, parts.in_rest, 1.0, w);
    trmm(side, v.factor_uplo(), op, 'N', 1.0, t, w);
    update_rest(side, v, w, parts.in_rest);
    trmm(side, v.triangle_uplo(), letter_after(side, v), 'U', 1.0, v.triangle(), w);
    subtract(w, parts.in_triangle);
}

template <class T>
void apply_block_to_zeros(char side, char op, const Reflectors<T>& v, Operand<T> t, const Matrix<T>& c,
                          const Matrix<T>& w) {
    if (c.rows == 0 || c.columns == 0) return;
    const Parts<T> parts(side, v, c);
    multiply_rest(side, v, parts.in_rest, 0.0, w);
    trmm(side, v.factor_uplo(), op, 'N', 1.0, t, w);
    update_rest(side, v, w, parts.in_rest);
    trmm(side, v.triangle_uplo(), letter_after(side, v), 'U', 1.0, v.triangle(), w);
    store_negative(w, parts.in_triangle);
}

template <class T> void form_block(const Reflectors<T>& v, Operand<T> t, const Matrix<T>& array, const Matrix<T>& w) {
    // H E = E - V W with W = T V1^H, a triangle as T is; by rows the adjoint of it all.
    const bool by_columns = v.by_columns();
    const Parts<T> parts(by_columns ? 'L' : 'R', v, array);
    const Matrix<T>& first = parts.in_triangle;
    copy_adjoint_triangle(v, w);
    trmm('L', v.factor_uplo(), 'N', 'N', 1.0, t, w);
    trmm(by_columns ? 'R' : 'L', v.factor_uplo(), v.plain(), 'N', -1.0, w, parts.in_rest);
    trmm('L', v.triangle_uplo(), v.plain(), 'U', -1.0, first, w);
    for (i64 j = 0; j < first.columns; ++j)
        for (i64 i = 0; i < first.rows; ++i) first(i, j) = by_columns ? w(i, j) : conj_if<true>(w(j, i));
    for (i64 i = 0; i < first.rows; ++i) first(i, i) += T(1.0);
}

#define NXL_INSTANTIATE(T)                                                                                             \
    template void make_factor(const Reflectors<T>&, const T*, const Matrix<T>&);                                       \
    template void apply_block(char, char, const Reflectors<T>&, Operand<T>, const Matrix<T>&, const Matrix<T>&);       \
    template void apply_block_to_zeros(char, char, const Reflectors<T>&, Operand<T>, const Matrix<T>&,                 \
                                       const Matrix<T>&);                                                              \
    template void form_block(const Reflectors<T>&, Operand<T>, const Matrix<T>&, const Matrix<T>&)
NXL_INSTANTIATE(double);
NXL_INSTANTIATE(zcomplex);
#undef NXL_INSTANTIATE

} // namespace nxl
