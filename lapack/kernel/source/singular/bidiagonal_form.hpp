// A matrix with no fewer rows than columns, brought to bidiagonal form: directly, or by way of its triangle.
#pragma once
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "service/scratch.hpp"

namespace nxl {

/// A = Q B P^H, where Q = Q1 [Q2 0; 0 I] and Q1 R is the QR factorisation of a tall A, R = Q2 B P^H, else Q1 = I.
template <class T> class BidiagonalForm {
    const Matrix<T> a_;
    const bool by_triangle_;
    const Scratch<T> memory_;
    const Scratch<double> values_;

    i64 n() const { return a_.columns; }
    T* tau() const { return memory_.data(); } // of Q1, Q2 and P, n each; then R
    T* tauq() const { return tau() + n(); }
    T* taup() const { return tauq() + n(); }
    Matrix<T> reduced() const { return by_triangle_ ? Matrix<T>{taup() + n(), n(), n(), n()} : a_; }
    Reflectors<T> vectors_of_q1() const { return {a_, Order::forward, Storage::columns}; }
    Reflectors<T> vectors_of_q2() const { return {reduced(), Order::forward, Storage::columns}; }
    Reflectors<T> vectors_of_p() const {
        return {reduced().block(0, 1, n() - 1, n() - 1), Order::forward, Storage::rows};
    }

  public:
    /// A view that is kept: the reflectors take the place of the matrix.
    explicit BidiagonalForm(const Matrix<T>& a);

    /// Everything here is false when there was no memory. With `values_alone` Q and P may not come of it.
    bool reduce(bool values_alone = false) const;
    /// B, upper: its diagonal, and its superdiagonal behind.
    double* d() const { return values_.data(); }
    double* e() const { return values_.data() + n(); }

    /// C := Q C, or Q^H C; C has as many rows as A.
    bool multiply_left(bool adjoint, const Matrix<T>& c) const;
    /// C := P C, or P^H C; C has as many rows as A has columns.
    bool multiply_right(bool adjoint, const Matrix<T>& c) const;

    /// How many rows of the left vectors have to be turned when B is made diagonal: those of Q2.
    i64 left_rows() const { return reduced().rows; }
    /// The first columns of Q2 in the first rows of u, as many as u has, at most left_rows().
    bool form_left(const Matrix<T>& u) const;
    /// What has become of Q2 in u, times Q1.
    bool complete_left(const Matrix<T>& u) const;
    /// P, n by n.
    bool form_right(const Matrix<T>& v) const;
};

} // namespace nxl
