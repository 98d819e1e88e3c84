// What a solution method is to the program: it looks at the matrix, prepares itself, and solves. A new method is a
// class behind this interface and a line in make_method().
#pragma once

#include "matrix_market.hpp"
#include "sparse_matrix.hpp"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace solve {

struct Settings {
    std::string method = "cg";
    std::string preconditioner = "none"; // or "jacobi"
    double tolerance = 1e-8;             // the residual's 2-norm is to shrink to this fraction of its initial value
    int max_iterations = 0;              // for each right-hand side; 0 lets the method choose
};

/// One iteration, as seen by whoever watches.
struct Step {
    int system = 0; // the right-hand side, from 0
    int iteration = 0;
    double residual = 1.0; // 2-norm, relative to the initial one
};
using Observer = std::function<void(const Step&)>;

struct Outcome {
    long iterations = 0;   // over all right-hand sides
    double residual = 0.0; // the largest, relative as in Step, as the method itself sees it
    bool converged = false;
    std::string trouble; // why it stopped, when neither convergence nor the limit was the reason
};

/// A method that cannot work with this matrix, in one line. Exit status 1.
class Refusal : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

template <class T> class Method {
  public:
    virtual ~Method() = default;
    /// Keeps a reference to the matrix, which must outlive the method; throws Refusal.
    virtual void set_up(const SparseMatrix<T>& a) = 0;
    /// Solves A X = B from X = 0; tells `observe` about every iteration.
    virtual Outcome solve(const Block<T>& b, Block<T>& x, const Observer& observe) = 0;
};

/// T is double or Complex; throws UsageError or Refusal.
template <class T> std::unique_ptr<Method<T>> make_method(const Settings& settings);

std::unique_ptr<Method<double>> make_conjugate_gradients(const Settings& settings);

} // namespace solve
