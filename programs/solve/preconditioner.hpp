// What the iterative methods divide by instead of the matrix: its diagonal, or incomplete factors L U of it.
#pragma once

#include "method.hpp"

#include <memory>
#include <string>
#include <vector>

namespace solve {

class Preconditioner {
  public:
    virtual ~Preconditioner() = default;
    Preconditioner() = default;
    Preconditioner(const Preconditioner&) = delete;
    Preconditioner& operator=(const Preconditioner&) = delete;

    /// z = M^-1 r; n elements each, not overlapping.
    virtual void apply(const double* r, double* z) const = 0;

    /// Of the diagonal, or of that of U. Where A is symmetric, jacobi and ilu0 are positive definite if all of these
    /// are positive.
    const std::vector<double>& inverse_pivots() const { return inverse_pivots_; }

  protected:
    std::vector<double> inverse_pivots_;
};

/// Null for "none". Throws Refusal when the matrix has no such preconditioner. The matrix may go afterwards. With
/// `replace_pivots` incomplete factors get others where they are 0 or, in ilut, small: relative to the row there, but
/// of one size in ilu0, so that rows should be.
std::unique_ptr<Preconditioner> make_preconditioner(const Settings& settings, const SparseMatrix<double>& a,
                                                    bool replace_pivots = false);

/// The preconditioner, with what was done for it, and the tolerance, for the report.
std::string description_of_iteration(const Settings& settings, const std::string& treatment = "");

} // namespace solve
