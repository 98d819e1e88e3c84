// The direct methods: the matrix is made dense, factored once, and all right-hand sides are solved together.
// LU with row interchanges is dgetrf and dgetrs, Cholesky dpotrf and dpotrs; zgetrf and so on for complex matrices.
#include "direct_method.hpp"

#include "nxl.h"

namespace solve {
namespace {

template <class T> double dense_bytes(int n) { return static_cast<double>(n) * n * sizeof(T); }

} // namespace

/// Rows are copied 64 columns at a time: so many cache lines and pages stay at hand for the rows that follow.
template <class T> std::vector<T> column_major(const SparseMatrix<T>& a) {
    const auto n = static_cast<std::size_t>(a.n);
    std::vector<T> dense(n * static_cast<std::size_t>(a.columns));
    common::Progress progress("making the matrix dense");
    std::vector<int> next(a.row_start); // of each row, the first entry that is not copied
    for (int end = 64; end < a.columns + 64; end += 64) {
        for (int i = 0; i < a.n; ++i) {
            int& k = next.data()[i];
            for (; k < a.row_start.data()[i + 1] && a.column.data()[k] < end; ++k)
                dense.data()[static_cast<std::size_t>(i) + n * static_cast<std::size_t>(a.column.data()[k])] =
                    a.value.data()[k];
        }
        progress.show(static_cast<double>(end) / a.columns);
    }
    return dense;
}

namespace {

void factor_lu(const int& n, double* a, int* pivots, int& info) { dgetrf(&n, &n, a, &n, pivots, &info); }
void factor_lu(const int& n, Complex* a, int* pivots, int& info) { zgetrf(&n, &n, a, &n, pivots, &info); }
int solve_lu(const int& n, const double* a, const int* pivots, Block<double>& x) {
    int info = 0;
    dgetrs("N", &n, &x.count, a, &n, pivots, x.value.data(), &n, &info);
    return info;
}
int solve_lu(const int& n, const Complex* a, const int* pivots, Block<Complex>& x) {
    int info = 0;
    zgetrs("N", &n, &x.count, a, &n, pivots, x.value.data(), &n, &info);
    return info;
}

template <class T> class Lu final : public Direct<T> {
  public:
    std::string description() const override { return "lu"; }

  private:
    void check(const SparseMatrix<T>& a) const override {
        if (!fits_dense<T>(a.n)) throw Refusal("method lu needs " + dense_need<T>(a.n));
    }
    int factor() override {
        int info = 0;
        pivots_.resize(static_cast<std::size_t>(this->n_));
        factor_lu(this->n_, this->values_.data(), pivots_.data(), info);
        return info;
    }
    [[noreturn]] void refuse(int info) const override {
        throw Refusal("the matrix is singular: column " + std::to_string(info) +
                      " depends on the columns before it, as method lu finds");
    }
    int substitute(Block<T>& x) const override { return solve_lu(this->n_, this->values_.data(), pivots_.data(), x); }
    double reciprocal_condition(double norm) const override {
        double rcond = 0.0;
        int info = 0;
        ConditionSpace<T> space(this->n_);
        routine_of<T>(dgecon, zgecon)("I", &this->n_, this->values_.data(), &this->n_, &norm, &rcond, space.work.data(),
                                      space.spare.data(), &info, 1);
        return rcond;
    }
    double operations() const override { return kRealFlops<T> * 2.0 / 3.0 * cube(this->n_); }

    std::vector<int> pivots_;
};

void factor_cholesky(const int& n, double* a, int& info) { dpotrf("L", &n, a, &n, &info); }
void factor_cholesky(const int& n, Complex* a, int& info) { zpotrf("L", &n, a, &n, &info); }
int solve_cholesky(const int& n, const double* a, Block<double>& x) {
    int info = 0;
    dpotrs("L", &n, &x.count, a, &n, x.value.data(), &n, &info);
    return info;
}
int solve_cholesky(const int& n, const Complex* a, Block<Complex>& x) {
    int info = 0;
    zpotrs("L", &n, &x.count, a, &n, x.value.data(), &n, &info);
    return info;
}

template <class T> class Cholesky final : public Direct<T> {
  public:
    std::string description() const override { return "cholesky"; }

  private:
    void check(const SparseMatrix<T>& a) const override {
        if (!fits_dense<T>(a.n)) throw Refusal("method cholesky needs " + dense_need<T>(a.n));
        if (!is_hermitian(a))
            throw Refusal(std::string("method cholesky needs a ") +
                          (std::is_same_v<T, double> ? "symmetric" : "Hermitian") + " matrix, this one is not");
    }
    int factor() override {
        int info = 0;
        factor_cholesky(this->n_, this->values_.data(), info);
        return info;
    }
    [[noreturn]] void refuse(int info) const override {
        throw Refusal("method cholesky needs a positive definite matrix, but the leading minor of order " +
                      std::to_string(info) + " is not positive");
    }
    int substitute(Block<T>& x) const override { return solve_cholesky(this->n_, this->values_.data(), x); }
    double reciprocal_condition(double norm) const override {
        double rcond = 0.0;
        int info = 0;
        ConditionSpace<T> space(this->n_);
        routine_of<T>(dpocon, zpocon)("L", &this->n_, this->values_.data(), &this->n_, &norm, &rcond, space.work.data(),
                                      space.spare.data(), &info, 1);
        return rcond;
    }
    double operations() const override { return kRealFlops<T> / 3.0 * cube(this->n_); }
};

} // namespace

template <class T> bool fits_dense(int n) { return fits_in_memory(dense_bytes<T>(n)); }
template <class T> std::string dense_need(int n) { return memory_need(dense_bytes<T>(n), "the dense matrix"); }

template <class T> std::unique_ptr<Method<T>> make_lu() { return std::make_unique<Lu<T>>(); }
template <class T> std::unique_ptr<Method<T>> make_cholesky() { return std::make_unique<Cholesky<T>>(); }

template std::vector<double> column_major(const SparseMatrix<double>&);
template std::vector<Complex> column_major(const SparseMatrix<Complex>&);
template bool fits_dense<double>(int);
template bool fits_dense<Complex>(int);
template std::string dense_need<double>(int);
template std::string dense_need<Complex>(int);
template std::unique_ptr<Method<double>> make_lu();
template std::unique_ptr<Method<Complex>> make_lu();
template std::unique_ptr<Method<double>> make_cholesky();
template std::unique_ptr<Method<Complex>> make_cholesky();

} // namespace solve
