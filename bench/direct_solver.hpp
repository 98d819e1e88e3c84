// Sparse direct solvers as the sparse family runs them: this library's and its peers', one interface for all.
#pragma once
#include "bench/library.hpp"
#include "tests/support/sparse_problems.hpp"
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace nxl::bench {

using nxl_test::SparseProblem;

enum class SparseOrdering { minimum_degree, metis };

/// A solver with one matrix, in the form that it wants it. Methods throw std::runtime_error when they fail.
class DirectSolver {
  public:
    DirectSolver() = default;
    DirectSolver(const DirectSolver&) = delete;
    DirectSolver& operator=(const DirectSolver&) = delete;
    virtual ~DirectSolver() = default;

    virtual void analyse() = 0;   // anew; what was there is given up
    virtual void factorise() = 0; // after an analysis; again for each new set of values
    /// x = A^-1 b, nb columns of n elements, of complex problems pairs.
    virtual void solve(const std::vector<double>& b, std::vector<double>& x, int nb) = 0;
    virtual double peak_bytes() const = 0; // of analysis and factorisation, as the solver tells
    virtual double flops() const { return 0.0; }
};

/// One way to solve with one library.
struct DirectContender {
    std::string name; // as a column is headed
    std::string version;
    std::function<bool(const SparseProblem&)> takes;
    std::function<std::unique_ptr<DirectSolver>(const SparseProblem&)> make;
};

DirectContender nxl_direct(const Library& library, const std::string& name, SparseOrdering ordering);

/// Each is empty where the package is not there. What is compiled with their headers has a file for each.
std::vector<DirectContender> cholmod_direct(); // with METIS, with AMD
std::vector<DirectContender> mumps_direct();   // with METIS, with AMD
std::vector<DirectContender> umfpack_direct(); // UMFPACK and KLU
std::vector<DirectContender> superlu_direct();

/// A matrix by compressed columns, counted from 0.
struct SparseColumns {
    std::vector<int> start, row;
    std::vector<double> value;
};
/// Of a problem that has all its entries.
SparseColumns columns_of(const SparseProblem& problem);

/// From 1 to 0.
std::vector<int> from_zero(const std::vector<int>& indices);

} // namespace nxl::bench
