// What a decomposition is to the program: it takes a matrix and gives values and vectors. Each kind is a function of
// its own, in a file of its own, and a line in decompose().
#pragma once

#include "matrix_market.hpp"
#include "sparse_matrix.hpp"

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace eig {

using solve::AnyMatrix;
using solve::Complex;
using AnyBlock = std::variant<solve::Block<double>, solve::Block<Complex>>;

/// Which values are wanted: all, those of these numbers, or those in an interval. Eigenvalues are numbered upwards,
/// singular values downwards.
struct Selection {
    enum class By { nothing, number, value } by = By::nothing;
    int first = 1, last = -1;     // from 1; below 0 counted from the end
    double low = 0.0, high = 0.0; // low < value <= high
    bool all() const { return by == By::nothing; }
    /// The first and last of the numbers, as counted from the start; throws Refusal where there are none among n.
    std::pair<int, int> numbers_of(int n) const;
};

struct Wish {
    std::string method = "auto"; // or "dense", "band"
    Selection selection;
    bool vectors = false;
    bool singular = false;       // singular values, not eigenvalues
    std::optional<double> rcond; // singular values not above this times the largest count as 0
};

/// What singular values tell of their matrix, whichever of them are wanted.
struct Singular {
    AnyBlock left; // a column for each value; the right vectors are the spectrum's own
    double rcond = 0.0;
    int rank = 0; // values above rcond times the largest
    double smallest = 0.0;
};

struct Spectrum {
    std::string method;                  // for the report
    bool real = true;                    // the values
    std::vector<Complex> value;          // ascending by real parts, then by imaginary parts; singular ones descending
    AnyBlock vector;                     // a column for each value; no columns where they were not wanted
    int failed = 0;                      // vectors that have not converged
    double norm = 0.0;                   // |A|, infinity norm; of singular values the 2-norm
    double residual = 0.0;               // the largest |A v - lambda v| / |A|, or |A v - s u|, |A^H u - s v|
    std::optional<double> orthogonality; // the largest element of |V^H V - I|, where the vectors are to be orthogonal
    std::optional<Singular> singular;

    std::size_t vectors() const {
        return std::visit([](const auto& block) { return static_cast<std::size_t>(block.count); }, vector);
    }
};

/// A matrix whose spectrum cannot be had, in one line. Exit status 1.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The spectrum of any matrix that one of the kinds below is for; throws Refusal.
Spectrum decompose(const AnyMatrix& matrix, const Wish& wish);

/// Of a symmetric or Hermitian matrix.
template <class T> Spectrum self_adjoint(const solve::SparseMatrix<T>& a, const Wish& wish);

/// Of any other: right vectors of length 1, and real numbers where all eigenvalues of a real matrix are.
template <class T> Spectrum general(const solve::SparseMatrix<T>& a, const Wish& wish);

/// Singular values of a matrix of any shape, and vectors of length 1.
template <class T> Spectrum singular_values(const solve::SparseMatrix<T>& a, const Wish& wish);

} // namespace eig
