// Products of reflectors as one matrix I - V T V^H: the compact WY form, which is applied by matrix products.
// Schreiber and Van Loan, SIAM J. Sci. Stat. Comput. 10 (1989).
#pragma once
#include "service/matrix.hpp"
#include "service/slice.hpp"

namespace nxl {

/// H1 H2 ... Hk, the first element of vector i being element i (QR and LQ), or Hk ... H2 H1, its last element being
/// that of the length less k - i (QL and RQ).
enum class Order { forward, backward };
/// Whether the vectors are the columns of the array or, conjugated, its rows.
enum class Storage { columns, rows };

/// k vectors of n elements as a factorisation leaves them. V is n by k; the array holds V, or V^H by rows:
///
///     columns, forward    1              columns, backward   v v       V has a triangle with ones on its diagonal,
///                         v 1                                v v       which are not stored, and zeros beyond, where
///                         v v                                1 v       something else stands; the rest is full.
///                         v v                                  1
template <class T> struct Reflectors {
    Matrix<const T> v;
    Order order;
    Storage storage;

    bool by_columns() const { return storage == Storage::columns; }
    i64 count() const { return by_columns() ? v.columns : v.rows; }
    i64 length() const { return by_columns() ? v.rows : v.columns; }

    /// How the array is read to have V, and V^H.
    char plain() const { return by_columns() ? 'N' : 'C'; }
    char adjoint() const { return by_columns() ? 'C' : 'N'; }
    /// Which triangle of the array belongs to V, and which one T has.
    char triangle_uplo() const { return (order == Order::forward) == by_columns() ? 'L' : 'U'; }
    char factor_uplo() const { return order == Order::forward ? 'U' : 'L'; }

    /// The elements of the vectors where the triangle is, and the others.
    Slice in_triangle() const { return {order == Order::forward ? 0 : length() - count(), count()}; }
    Slice in_rest() const { return {order == Order::forward ? count() : 0, length() - count()}; }
    Matrix<const T> part(const Slice& elements) const {
        return by_columns() ? v.rows_from(elements.start, elements.count)
                            : v.columns_from(elements.start, elements.count);
    }
    Matrix<const T> triangle() const { return part(in_triangle()); }
    Matrix<const T> rest() const { return part(in_rest()); }
};

/// T, one triangle of k by k; see factor_uplo. What stands in its other triangle afterwards means nothing.
/// T^-1 is the triangle of V^H V with 1/tau on its diagonal, so T = (I + D S)^-1 D for D = diag(tau) and the strict
/// triangle S, which serves for a tau of 0, too. Puglisi, SIAM J. Sci. Stat. Comput. 13 (1992).
template <class T> void make_factor(const Reflectors<T>& v, const T* tau, const Matrix<T>& t);

/// C := op(H) C (side L) or C op(H) (R), H = I - V T V^H; op is N or C. `w` is workspace, k by the columns of C for L,
/// the rows of C by k for R.
template <class T>
void apply_block(char side, char op, const Reflectors<T>& v, Operand<T> t, const Matrix<T>& c, const Matrix<T>& w);

/// Columns of C that side L is best applied to at once on one thread: so many that products read 256 of their rows
/// where they are, without a copy, and that a thousand rows of them stay in the second cache. Complex products gain
/// nothing by it: any number.
template <class T> inline constexpr i64 columns_at_once = sizeof(T) == sizeof(double) ? 128 : i64{1} << 40;

/// Rows of C (side L) or columns (R) that belong to the triangle are zero on entry: op(H) C, or C op(H), without the
/// products with them.
template <class T>
void apply_block_to_zeros(char side, char op, const Reflectors<T>& v, Operand<T> t, const Matrix<T>& c,
                          const Matrix<T>& w);

/// Overwrites the vectors, in the array `v.v` views, by the k columns of H that belong to the triangle or, by rows, by
/// those rows of H^H. `w` is workspace, k by k.
template <class T> void form_block(const Reflectors<T>& v, Operand<T> t, const Matrix<T>& array, const Matrix<T>& w);

} // namespace nxl
