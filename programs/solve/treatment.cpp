// The list of treatments, the treated matrix, and its preconditioner as one of the matrix itself.
#include "treatment.hpp"

#include "transversal.hpp"

#include <algorithm>
#include <cmath>

namespace solve {
namespace {

/// Factors M of B = D P A serve A as (D P)^-1 M: what they are applied to is permuted and divided first.
class Treated final : public Preconditioner {
  public:
    Treated(std::vector<int> row, std::vector<double> divisor, std::unique_ptr<Preconditioner> factors)
        : row_(std::move(row)),
          divisor_(std::move(divisor)),
          factors_(std::move(factors)),
          right_(row_.size()) {}

    void apply(const double* r, double* z) const override {
        for (std::size_t i = 0; i < row_.size(); ++i) right_[i] = r[row_[i]] / divisor_[i];
        factors_->apply(right_.data(), z);
    }

  private:
    const std::vector<int> row_;
    const std::vector<double> divisor_;
    const std::unique_ptr<Preconditioner> factors_;
    mutable std::vector<double> right_;
};

double largest_of_row(const SparseMatrix<double>& a, int i) {
    double largest = 0.0;
    for (const double value : a.row(i).value) largest = std::max(largest, std::abs(value));
    return largest;
}

/// Row i of the result is row row[i] of `a`, divided by divisor[i].
SparseMatrix<double> treated_rows(const SparseMatrix<double>& a, const std::vector<int>& row,
                                  const std::vector<double>& divisor) {
    SparseMatrix<double> b{.n = a.n, .row_start = {0}, .column = {}, .value = {}};
    b.row_start.reserve(a.row_start.size());
    b.column.reserve(a.column.size());
    b.value.reserve(a.value.size());
    for (std::size_t i = 0; i < row.size(); ++i) {
        const auto [columns, values] = a.row(row[i]);
        b.column.insert(b.column.end(), columns.begin(), columns.end());
        for (const double value : values) b.value.push_back(value / divisor[i]);
        b.row_start.push_back(b.entries());
    }
    return b;
}

bool has_holes(const SparseMatrix<double>& a) {
    const auto d = diagonal(a);
    return std::ranges::find(d, 0.0) != d.end();
}

/// ILU(0) of scaled rows are the scaled factors, so scaling alone changes nothing there; but the pivots that take the
/// place of zeros are of a size, and so rows have to be.
std::vector<Treatment> treatments(const std::string& preconditioner, const SparseMatrix<double>& a) {
    if (preconditioner != "ilu0" && preconditioner != "ilut") return {{}};
    const bool holes = has_holes(a);
    std::vector<Treatment> list{{}};
    if (holes) list.push_back({.permuted = true});
    if (preconditioner == "ilut") {
        list.push_back({.permuted = holes, .replaced = true});
        list.push_back({.permuted = holes, .scaled = true});
    }
    list.push_back({.permuted = holes, .scaled = true, .replaced = true});
    return list;
}

std::string text_of(const Treatment& treatment) {
    std::string text;
    const auto add = [&text](bool done, const char* what) {
        if (done) text += (text.empty() ? "" : ", ") + std::string(what);
    };
    add(treatment.permuted, "rows permuted");
    add(treatment.scaled, "rows scaled");
    add(treatment.replaced, "small pivots replaced");
    return text;
}

} // namespace

Candidates::Candidates(const Settings& settings, const SparseMatrix<double>& a)
    : settings_(settings),
      a_(a),
      list_(treatments(settings.preconditioner, a)) {
    if (!advance()) throw Refusal(refusal_);
}

bool Candidates::advance() {
    while (more()) {
        const Treatment treatment = list_.data()[next_++];
        // Where no pivot was refused, none would be replaced.
        if (treatment.replaced && !refused_) continue;
        try {
            current_ = make(treatment);
            note_ = text_of(treatment);
            refused_ = false;
            return true;
        } catch (const Singular& singular) {
            next_ = list_.size(); // nothing helps
            refusal_ = singular.what();
        } catch (const Refusal& refusal) {
            refused_ = true;
            if (refusal_.empty()) refusal_ = refusal.what();
        }
    }
    return false;
}

const std::vector<int>& Candidates::order_of_rows() {
    if (order_.empty()) order_ = transversal(a_);
    if (order_.empty())
        throw Singular("the matrix is singular: no order of its rows leaves the diagonal without zeros");
    return order_;
}

std::unique_ptr<Preconditioner> Candidates::make(const Treatment& treatment) {
    if (!treatment.permuted && !treatment.scaled) return make_preconditioner(settings_, a_, treatment.replaced);
    const auto n = static_cast<std::size_t>(a_.n);
    std::vector<int> row(n);
    for (int i = 0; i < a_.n; ++i) row.data()[i] = treatment.permuted ? order_of_rows().data()[i] : i;
    std::vector<double> divisor(n, 1.0);
    for (std::size_t i = 0; treatment.scaled && i < n; ++i) {
        divisor[i] = largest_of_row(a_, row[i]);
        if (divisor[i] == 0.0) throw Singular("the matrix is singular: row " + std::to_string(row[i] + 1) + " is 0");
    }
    auto factors = make_preconditioner(settings_, treated_rows(a_, row, divisor), treatment.replaced);
    return std::make_unique<Treated>(std::move(row), std::move(divisor), std::move(factors));
}

} // namespace solve
