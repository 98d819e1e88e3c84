// What a solution method is to the program: it looks at the matrix, prepares itself, and solves. A new method is a
// class behind this interface and a line in make_method().
#pragma once

#include "matrix_market.hpp"
#include "memory_need.hpp"
#include "sparse_matrix.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace solve {

struct Settings {
    std::string method = "auto";
    bool iterative = false;              // of "auto": cg or fgmres, as something about iterations was asked for
    std::string preconditioner = "none"; // or "jacobi", "ilu0", "ilut"
    bool preconditioner_named = false;   // by the user; otherwise "auto" may take another
    double tolerance = 1e-8;             // the residual's 2-norm is to shrink to this fraction of its initial value
    int max_iterations = 0;              // for each right-hand side; 0 lets the method choose
    int restart = 30;                    // fgmres: iterations until it begins anew, in memory that grows with them
    int fill = 10;                       // ilut: the most entries that L, and U, keep of a row
    double drop = 1e-3;                  // ilut: what is smaller, relative to its row, is dropped
    std::string ordering = "nested-dissection"; // direct; or "minimum-degree", "constrained"
    int out_of_core = -1;        // direct: megabytes of memory for factors that are on files; -1: none are
    std::optional<double> rcond; // svd: singular values up to this times the largest count as 0
    int refine = -1; // direct: most steps, by residuals in doubled precision; -1: 2 unless the matrix is definite
};

/// One iteration, as seen by whoever watches.
struct Step {
    int system = 0; // the right-hand side, from 0
    int iteration = 0;
    double residual = 1.0; // 2-norm, relative to the initial one
};
using Observer = std::function<void(const Step&)>;

/// The factors of a sparse matrix.
struct SparseFactors {
    int entries = 0; // with diagonal blocks whole
    double bytes = 0.0;
    double fill = 0.0; // entries for each one of the matrix that was stored
    bool definite = false, has_signs = false;
    int positive = 0, negative = 0; // pivots, where signs are told
    int replaced = 0;               // pivots that were too small
    int refined = 0;                // steps
    int window = -1;                // megabytes of memory, where factors were on files
};

struct Outcome {
    long iterations = 0;   // over all right-hand sides
    double residual = 0.0; // the largest, relative as in Step, as the method itself sees it
    bool converged = false;
    std::string trouble; // why it stopped, when neither convergence nor the limit was the reason

    /// Of a direct method: the floating-point operations of its factorisation, and the seconds; it has no iterations
    /// and no residual of its own. 0 after an iterative one.
    double operations = 0.0, factor_seconds = 0.0;
    std::optional<SparseFactors> factors; // of a sparse one, whose operations are counted in millions
    bool least_squares = false;           // no factors that would tell a condition of A
    bool direct() const { return operations > 0.0 || factors || least_squares; }
};

/// How many columns, or rows, of a matrix are independent.
struct Rank {
    int rank, most;             // most is the smaller dimension
    double rcond;               // what is not above this times the largest counts as 0
    const char *by, *condition; // how it was found, and which condition the method tells
};

/// A method that cannot work with this matrix, in one line. Exit status 1.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The factors would take more than half of the memory.
class TooLarge : public Refusal {
    using Refusal::Refusal;
};

/// No preconditioner and no method can: the matrix is singular by its pattern.
class Singular : public Refusal {
    using Refusal::Refusal;
};

template <class T> class Method {
  public:
    virtual ~Method() = default;
    /// Keeps a reference to the matrix, which must outlive the method; throws Refusal.
    virtual void set_up(const SparseMatrix<T>& a) = 0;
    /// Solves A X = B, from X = 0 where that matters; an iterative method tells `observe` about every iteration.
    virtual Outcome solve(const Block<T>& b, Block<T>& x, const Observer& observe) = 0;
    /// The condition number |A| |A^-1|, infinity norms, as the factors tell it; 0 where they do not. Of the methods for
    /// matrices of any shape that of the triangle, in the 1-norm, or by singular values; after solve.
    virtual double condition() const { return 0.0; }
    /// Of a method for matrices of any shape; may take as long as the solution did.
    virtual std::optional<Rank> rank() const { return std::nullopt; }
    /// For the report, after set_up: the method's name and settings.
    virtual std::string description() const = 0;
};

/// T is double or Complex; throws UsageError or Refusal.
template <class T> std::unique_ptr<Method<T>> make_method(const Settings& settings);

std::unique_ptr<Method<double>> make_conjugate_gradients(const Settings& settings);
std::unique_ptr<Method<double>> make_fgmres(const Settings& settings);
template <class T> std::unique_ptr<Method<T>> make_lu();
template <class T> std::unique_ptr<Method<T>> make_cholesky();
template <class T> std::unique_ptr<Method<T>> make_sparse_direct(const Settings& settings);
template <class T> std::unique_ptr<Method<T>> make_ldl();
/// Least squares or the shortest solution, whatever the shape of the matrix.
template <class T> std::unique_ptr<Method<T>> make_qr();
template <class T> std::unique_ptr<Method<T>> make_svd(const Settings& settings);
bool takes_any_shape(const std::string& method);
template <class T> std::unique_ptr<Method<T>> make_band_lu();
template <class T> std::unique_ptr<Method<T>> make_band_cholesky();

/// Whether the band between the outermost diagonals, with what interchanges fill in, is about as large as what is
/// stored of the matrix.
template <class T> bool pays_band(const SparseMatrix<T>& a);

/// Chooses when it sees the matrix. Sparse ones go to the sparse direct method; of dense ones, what may be positive
/// definite is tried by Cholesky, and all else goes to LU. Real matrices whose factors do not fit into memory are left
/// to conjugate gradients and to FGMRES, what is not square to QR, and where that finds no full rank, to singular
/// values.
template <class T> std::unique_ptr<Method<T>> make_automatic(const Settings& settings);

/// The limit of iterations when the user named none.
int default_limit(int n);

/// Whether a dense copy is no larger than sparse factors would become: a quarter of the entries are stored.
bool is_dense(int n, int entries);

/// Whether so many bytes are at most half of the machine's memory; and how the refusal of more goes on.
bool fits_in_memory(double bytes);
std::string memory_need(double bytes, const std::string& what);
template <class T> bool fits_dense(int n);
template <class T> std::string dense_need(int n);

} // namespace solve
