// What the elements of an operand are: routines want triangles, definite matrices, factors that are well conditioned.
#pragma once
#include "service/types.hpp"

namespace nxl::bench {

/// What the matrix a is.
enum class Shape {
    random,
    own_inverse, // a triangle to which repeated products and solutions return
    dominated,   // one large entry in each row and column, in random places: well conditioned, and rows have to move
    positive_definite,  // Hermitian
    near_one,           // so that a product over all elements stays near 1 too
    factors,            // either triangle, with its diagonal or with ones, is well conditioned
    indefinite,         // as dominated, with places that are symmetric to the diagonal: pivots of every kind
    indefinite_factors, // either triangle of `factors`, every other two pivots being a block of two
    hessenberg,         // as of random numbers
    schur_form,         // upper triangular, of a real matrix with most rows in blocks of two; eigenvalues right of zero
    product_of_factors, // of those that the matrix c becomes: L U, lower triangle of L L^H, upper one of U^H U
    // In band storage, as many diagonals below the main one as above it.
    band_dominated,         // for LU, with room for what interchanges fill in
    band_factors,           // of LU
    band_positive_definite, // one triangle
    band_triangle           // one triangle, well conditioned
};

/// A matrix of real or complex elements, as doubles; the first of an element is its real part.
struct Elements {
    double* data;
    i64 rows, columns, step;

    double* entry(i64 i, i64 j) const { return data + (i + j * rows) * step; }
    void set_real(i64 i, i64 j, double value) const;
    void scale(double factor) const;
};

/// Makes of random elements in (-1, 1) what `shape` says; `triangle`: L, U or neither; c: for product_of_factors.
void give_shape(Shape shape, char triangle, const Elements& a, const Elements& c);

} // namespace nxl::bench
