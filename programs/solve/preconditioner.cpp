// Jacobi; and ILU(0) and ILUT, which DCSRILU0 and DCSRILUT factor, while their triangles are solved here.
#include "preconditioner.hpp"

#include "nxl.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <new>

namespace solve {
namespace {

class Jacobi final : public Preconditioner {
  public:
    explicit Jacobi(const SparseMatrix<double>& a) {
        inverse_pivots_ = diagonal(a);
        for (int i = 0; i < a.n; ++i) {
            double& d = inverse_pivots_.data()[i];
            if (d == 0.0)
                throw Refusal("preconditioner jacobi needs a diagonal without zeros, entry " + std::to_string(i + 1) +
                              " is 0");
            d = 1.0 / d;
        }
    }
    void apply(const double* r, double* z) const override {
        for (std::size_t i = 0; i < inverse_pivots_.size(); ++i) z[i] = inverse_pivots_.data()[i] * r[i];
    }
};

/// Entries of the parameter arrays that the factorisations read, counted from 0. The factor is DCSRILUT's, the new
/// pivot DCSRILU0's.
enum FactorEntry { kReplacePivots = 30, kPivotFactor = 30, kNewPivot = 31 };

/// What takes the place of a small pivot, in the size of its row: tried on matrices with a variety of troubles, 0.01 to
/// 1 serve; less makes factors that are far from the matrix, more a preconditioner that does little.
constexpr double kReplacement = 0.1;

struct Parameters {
    std::array<int, 128> ipar{}; // all 0: no reports, a warning ends the call, bad pivots are errors
    std::array<double, 128> dpar{};
};

/// Both factors in one matrix of compressed rows: in row i first L without its diagonal of ones, then the diagonal of
/// U, then the rest of U. Within these parts columns come in any order.
class Incomplete : public Preconditioner {
  public:
    void apply(const double* r, double* z) const final {
        const int n = static_cast<int>(diagonal_.size());
        const int *start = row_start_.data(), *pivot = diagonal_.data(), *column = column_.get();
        const double *value = value_.get(), *inverse = inverse_pivots_.data();
        for (int i = 0; i < n; ++i) {
            double sum = r[i];
            for (int k = start[i]; k < pivot[i]; ++k) sum -= value[k] * z[column[k]];
            z[i] = sum;
        }
        for (int i = n - 1; i >= 0; --i) {
            double sum = z[i];
            // From the end: where columns ascend, the value that was found last, and is ready last, comes in last.
            for (int k = start[i + 1] - 1; k > pivot[i]; --k) sum -= value[k] * z[column[k]];
            z[i] = sum * inverse[i];
        }
    }

  protected:
    /// Room for so many entries. What is never written costs no memory.
    void reserve(int n, std::size_t entries) {
        row_start_.resize(static_cast<std::size_t>(n) + 1);
        column_ = std::make_unique_for_overwrite<int[]>(entries);
        value_ = std::make_unique_for_overwrite<double[]>(entries);
    }

    /// Takes positions and columns from Fortran's counting to ours, and finds the diagonal.
    void finish() {
        for (int& start : row_start_) --start;
        const int n = static_cast<int>(row_start_.size()) - 1;
        for (int i = 0; i < n; ++i) {
            for (int k = row_start_.data()[i]; k < row_start_.data()[i + 1]; ++k) {
                if (--column_.get()[k] != i) continue;
                diagonal_.push_back(k);
                inverse_pivots_.push_back(1.0 / value_.get()[k]);
            }
        }
        if (!std::ranges::all_of(inverse_pivots_, [](double value) { return std::isfinite(value); }))
            throw Refusal("the incomplete factors of the preconditioner leave the range of doubles");
    }

    std::vector<int> row_start_, diagonal_; // n + 1 and n positions in column and value
    std::unique_ptr<int[]> column_;
    std::unique_ptr<double[]> value_;
};

void expect_memory(int ierr) {
    constexpr int kNoMemory = -104;
    if (ierr == kNoMemory) throw std::bad_alloc();
}

class Ilu0 final : public Incomplete {
  public:
    Ilu0(const SparseMatrix<double>& a, bool replace_pivots) {
        for (int i = 0; i < a.n; ++i) {
            if (!std::ranges::binary_search(a.row(i).column, i))
                throw Refusal("preconditioner ilu0 needs every diagonal entry in the file, that of row " +
                              std::to_string(i + 1) + " is missing");
        }
        reserve(a.n, a.value.size());
        const auto from_one = [](int k) { return k + 1; };
        std::ranges::transform(a.row_start, row_start_.begin(), from_one);
        std::ranges::transform(a.column, column_.get(), from_one);
        Parameters p;
        p.ipar[kReplacePivots] = replace_pivots;
        p.dpar[kNewPivot] = kReplacement;
        int ierr = 0;
        DCSRILU0(&a.n, a.value.data(), row_start_.data(), column_.get(), value_.get(), p.ipar.data(), p.dpar.data(),
                 &ierr);
        expect_memory(ierr);
        if (ierr != 0) throw Refusal("preconditioner ilu0 meets a pivot of 0");
        finish();
    }
};

class Ilut final : public Incomplete {
  public:
    Ilut(const Settings& settings, const SparseMatrix<double>& a, bool replace_pivots) {
        for (int i = 0; i < a.n; ++i) {
            if (a.row(i).column.empty())
                throw Singular("the matrix is singular: row " + std::to_string(i + 1) + " is empty");
        }
        const int fill = std::min(settings.fill, a.n - 1); // more is not in a row
        reserve(a.n, (2 * static_cast<std::size_t>(fill) + 1) * static_cast<std::size_t>(a.n));
        std::vector<int> row_start(a.row_start), column(a.column);
        for (int& k : row_start) ++k;
        for (int& j : column) ++j;
        Parameters p;
        p.ipar[kReplacePivots] = replace_pivots;
        p.dpar[kPivotFactor] = std::max(settings.drop, kReplacement); // below --drop it would be a warning
        int ierr = 0;
        DCSRILUT(&a.n, a.value.data(), row_start.data(), column.data(), value_.get(), row_start_.data(), column_.get(),
                 &settings.drop, &fill, p.ipar.data(), p.dpar.data(), &ierr);
        expect_memory(ierr);
        if (ierr != 0)
            throw Refusal("preconditioner ilut meets a pivot that is 0, or small against its row: a smaller --drop "
                          "or a larger --fill may help");
        finish();
    }
};

std::string short_text(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g", value);
    return text.data();
}

} // namespace

std::unique_ptr<Preconditioner> make_preconditioner(const Settings& settings, const SparseMatrix<double>& a,
                                                    bool replace_pivots) {
    if (settings.preconditioner == "jacobi") return std::make_unique<Jacobi>(a);
    if (settings.preconditioner == "ilu0") return std::make_unique<Ilu0>(a, replace_pivots);
    if (settings.preconditioner == "ilut") return std::make_unique<Ilut>(settings, a, replace_pivots);
    return nullptr;
}

std::string description_of_iteration(const Settings& settings, const std::string& treatment) {
    std::string text = "preconditioner " + settings.preconditioner, details = treatment;
    if (settings.preconditioner == "ilut")
        details = "fill " + std::to_string(settings.fill) + ", drop " + short_text(settings.drop) +
                  (treatment.empty() ? "" : ", ") + treatment;
    if (!details.empty()) text += " (" + details + ")";
    return text + ", tolerance " + short_text(settings.tolerance);
}

} // namespace solve
