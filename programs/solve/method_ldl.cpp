// Diagonal pivoting of a dense copy, one triangle of it: dsytrf and dsytrs, zsytrf for complex symmetric and zhetrf for
// Hermitian matrices.
#include "direct_method.hpp"

#include "nxl.h"

namespace solve {
namespace {

template <class T> class Ldl final : public Direct<T> {
  public:
    std::string description() const override { return "ldl"; }

  private:
    void check(const SparseMatrix<T>& a) const override {
        if (!fits_dense<T>(a.n)) throw Refusal("method ldl needs " + dense_need<T>(a.n));
        if (!is_symmetric(a) && !is_hermitian(a))
            throw Refusal(std::string("method ldl needs a symmetric ") +
                          (std::is_same_v<T, double> ? "" : "or Hermitian ") + "matrix, this one is not");
    }
    std::vector<T> stored(const SparseMatrix<T>& a) override {
        hermitian_ = is_hermitian(a);
        return column_major(a);
    }
    int factor() override {
        int info = 0, lwork = -1;
        pivots_.resize(static_cast<std::size_t>(this->n_));
        T best{};
        factor(&best, &lwork, &info);
        lwork = static_cast<int>(std::real(best));
        std::vector<T> work(static_cast<std::size_t>(lwork));
        factor(work.data(), &lwork, &info);
        return info;
    }
    void factor(T* work, const int* lwork, int* info) {
        const auto routine = hermitian_ ? routine_of<T>(dsytrf, zhetrf) : routine_of<T>(dsytrf, zsytrf);
        routine("L", &this->n_, this->values_.data(), &this->n_, pivots_.data(), work, lwork, info, 1);
    }
    [[noreturn]] void refuse(int info) const override {
        throw Refusal("the matrix is singular: pivot " + std::to_string(info) + " is 0, as method ldl finds");
    }
    int substitute(Block<T>& x) const override {
        const auto routine = hermitian_ ? routine_of<T>(dsytrs, zhetrs) : routine_of<T>(dsytrs, zsytrs);
        int info = 0;
        routine("L", &this->n_, &x.count, this->values_.data(), &this->n_, pivots_.data(), x.value.data(), &this->n_,
                &info, 1);
        return info;
    }
    double reciprocal_condition(double norm) const override {
        double rcond = 0.0;
        int info = 0;
        ConditionSpace<T> space(this->n_);
        const auto estimate = [&](auto* routine, auto*... spare) {
            routine("L", &this->n_, this->values_.data(), &this->n_, pivots_.data(), &norm, &rcond, space.work.data(),
                    spare..., &info, 1);
        };
        if constexpr (std::is_same_v<T, double>) estimate(dsycon, space.spare.data());
        else estimate(hermitian_ ? zhecon : zsycon);
        return rcond;
    }
    double operations() const override { return kRealFlops<T> / 3.0 * cube(this->n_); }

    bool hermitian_ = false; // of a complex matrix; else it is symmetric
    std::vector<int> pivots_;
};

} // namespace

template <class T> std::unique_ptr<Method<T>> make_ldl() { return std::make_unique<Ldl<T>>(); }

template std::unique_ptr<Method<double>> make_ldl();
template std::unique_ptr<Method<Complex>> make_ldl();

} // namespace solve
