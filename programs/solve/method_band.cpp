// Factors of a band: what lies between the outermost diagonals is stored, and nothing else. Cholesky is dpbtrf and
// dpbtrs, LU with row interchanges dgbtrf and dgbtrs; zpbtrf and so on for complex matrices.
#include "direct_method.hpp"

#include "nxl.h"

namespace solve {
namespace {

/// Diagonals beside the main one.
struct Width {
    int below = 0, above = 0;
};

template <class T> Width width_of(const SparseMatrix<T>& a) {
    Width width;
    for (int i = 0; i < a.n; ++i)
        if (const auto columns = a.row(i).column; !columns.empty()) {
            width.below = std::max(width.below, i - columns.front());
            width.above = std::max(width.above, columns.back() - i);
        }
    return width;
}

/// Rows of the array for LU; the topmost take what interchanges fill in.
double rows_for_lu(const Width& width) { return 2.0 * width.below + width.above + 1.0; }

/// Entry (i, j) goes to row diagonal + i - j of column j; what would lie below the array is left out.
template <class T> std::vector<T> band_of(const SparseMatrix<T>& a, int rows, int diagonal) {
    const auto height = static_cast<std::size_t>(rows);
    std::vector<T> band(height * static_cast<std::size_t>(a.n));
    for (int i = 0; i < a.n; ++i) {
        const auto [columns, values] = a.row(i);
        for (std::size_t e = 0; e < columns.size(); ++e)
            if (const int row = diagonal + i - columns[e]; row >= 0 && row < rows)
                band[static_cast<std::size_t>(row) + height * static_cast<std::size_t>(columns[e])] = values[e];
    }
    return band;
}

template <class T> class BandLu final : public Direct<T> {
  public:
    std::string description() const override {
        return "band lu, width " + std::to_string(width_.below) + " below and " + std::to_string(width_.above) +
               " above";
    }

  private:
    void check(const SparseMatrix<T>&) const override {}
    std::vector<T> stored(const SparseMatrix<T>& a) override {
        width_ = width_of(a);
        rows_ = static_cast<int>(rows_for_lu(width_));
        return band_of(a, rows_, width_.below + width_.above);
    }
    int factor() override {
        int info = 0;
        pivots_.resize(static_cast<std::size_t>(this->n_));
        routine_of<T>(dgbtrf, zgbtrf)(&this->n_, &this->n_, &width_.below, &width_.above, this->values_.data(), &rows_,
                                      pivots_.data(), &info);
        return info;
    }
    [[noreturn]] void refuse(int info) const override {
        throw Refusal("the matrix is singular: column " + std::to_string(info) + " depends on the columns before it");
    }
    int substitute(Block<T>& x) const override {
        int info = 0;
        routine_of<T>(dgbtrs, zgbtrs)("N", &this->n_, &width_.below, &width_.above, &x.count, this->values_.data(),
                                      &rows_, pivots_.data(), x.value.data(), &this->n_, &info, 1);
        return info;
    }
    double reciprocal_condition(double norm) const override {
        double rcond = 0.0;
        int info = 0;
        ConditionSpace<T> space(this->n_);
        routine_of<T>(dgbcon, zgbcon)("I", &this->n_, &width_.below, &width_.above, this->values_.data(), &rows_,
                                      pivots_.data(), &norm, &rcond, space.work.data(), space.spare.data(), &info, 1);
        return rcond;
    }
    double operations() const override {
        return kRealFlops<T> * 2.0 * this->n_ * (width_.below + 0.5) * (width_.below + width_.above + 1.0);
    }

    Width width_;
    int rows_ = 0;
    std::vector<int> pivots_;
};

template <class T> class BandCholesky final : public Direct<T> {
  public:
    std::string description() const override { return "band cholesky, width " + std::to_string(width_); }

  private:
    void check(const SparseMatrix<T>&) const override {}
    std::vector<T> stored(const SparseMatrix<T>& a) override {
        width_ = width_of(a).below;
        rows_ = width_ + 1;
        return band_of(a, rows_, 0);
    }
    int factor() override {
        int info = 0;
        routine_of<T>(dpbtrf, zpbtrf)("L", &this->n_, &width_, this->values_.data(), &rows_, &info, 1);
        return info;
    }
    [[noreturn]] void refuse(int info) const override {
        throw Refusal("the leading minor of order " + std::to_string(info) + " is not positive");
    }
    int substitute(Block<T>& x) const override {
        int info = 0;
        routine_of<T>(dpbtrs, zpbtrs)("L", &this->n_, &width_, &x.count, this->values_.data(), &rows_, x.value.data(),
                                      &this->n_, &info, 1);
        return info;
    }
    double reciprocal_condition(double norm) const override {
        double rcond = 0.0;
        int info = 0;
        ConditionSpace<T> space(this->n_);
        routine_of<T>(dpbcon, zpbcon)("L", &this->n_, &width_, this->values_.data(), &rows_, &norm, &rcond,
                                      space.work.data(), space.spare.data(), &info, 1);
        return rcond;
    }
    double operations() const override { return kRealFlops<T> * this->n_ * (width_ + 1.0) * (width_ + 1.0); }

    int width_ = 0, rows_ = 0;
};

} // namespace

template <class T> bool pays_band(const SparseMatrix<T>& a) {
    constexpr double kRoom = 4.0; // what other sparse factors fill in is seldom less
    const double rows = rows_for_lu(width_of(a));
    return rows * a.n <= kRoom * a.entries() && rows <= 0.25 * a.n;
}

template <class T> std::unique_ptr<Method<T>> make_band_lu() { return std::make_unique<BandLu<T>>(); }
template <class T> std::unique_ptr<Method<T>> make_band_cholesky() { return std::make_unique<BandCholesky<T>>(); }

template bool pays_band(const SparseMatrix<double>&);
template bool pays_band(const SparseMatrix<Complex>&);
template std::unique_ptr<Method<double>> make_band_lu();
template std::unique_ptr<Method<Complex>> make_band_lu();
template std::unique_ptr<Method<double>> make_band_cholesky();
template std::unique_ptr<Method<Complex>> make_band_cholesky();

} // namespace solve
