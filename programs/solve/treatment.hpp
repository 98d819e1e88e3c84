// What helps an incomplete factorisation over a matrix that it cannot take as it is: another order of the rows, rows of
// one size, other pivots. FGMRES takes what comes of it: the factors need not be symmetric.
#pragma once

#include "preconditioner.hpp"

namespace solve {

struct Treatment {
    bool permuted = false; // rows are in the order of a transversal
    bool scaled = false;   // each row is divided by the largest of its absolute values
    bool replaced = false; // small pivots are, by the library
};

/// The preconditioners that the settings allow, one after the other: first that of the matrix as it is, then with the
/// treatments of ilu0 or ilut. Keeps a reference to the matrix.
class Candidates {
  public:
    /// Takes the first that exists. Throws Refusal when none does.
    Candidates(const Settings& settings, const SparseMatrix<double>& a);

    /// Takes the next one that exists; false when none is left, and then the present one stays.
    bool advance();
    bool more() const { return next_ < list_.size(); }

    /// Null for "none".
    const Preconditioner* current() const { return current_.get(); }
    /// What was done, for the report: "rows scaled, ..."; empty for the matrix as it is.
    const std::string& note() const { return note_; }

  private:
    std::unique_ptr<Preconditioner> make(const Treatment& treatment);
    const std::vector<int>& order_of_rows();

    const Settings settings_;
    const SparseMatrix<double>& a_;
    std::vector<Treatment> list_;
    std::size_t next_ = 0;
    bool refused_ = false; // the latest that was tried, and with which words the first
    std::string refusal_;
    std::vector<int> order_;
    std::unique_ptr<Preconditioner> current_;
    std::string note_;
};

} // namespace solve
