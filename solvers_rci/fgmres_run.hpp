// A run of FGMRES as a view of the caller's x, b, ipar, dpar and tmp, which hold all its state; nxl.h has the tables
// of their entries. The stages stand in fgmres_run.cpp, defaults, check and reports in dfgmres.cpp.
#pragma once
#include "service/types.hpp"
#include "solvers_rci/rci_run.hpp"
#include "solvers_rci/request.hpp"
#include <limits>

namespace nxl::rci {

/// The number of an error is its place in the table of reports.
enum class FgmresError : int {
    zero_residual = 0,
    restart_length = 1,
    inner_iteration = 2,
    negative_residual = 3,
    negative_new_norm = 4,
    size = 5,
    zero_new_norm = 6,
    endless_loop = 7,
    degenerate_rotation = 8,
    restart_length_at_check = 9,
    altered_size = 10,
    rotated_rhs_index = 11,
    operation_output_index = 12,
    triangle_index = 13,
    cosines_index = 14,
    sines_index = 15,
    preconditioned_index = 16,
    small_solution_index = 17,
    degenerate_triangle = 18
};

enum class FgmresWarning : int {
    no_test = 300,
    relative_tolerance = 301,
    absolute_tolerance = 302,
    both_tolerances_zero = 303,
    norm_tolerance = 304,
    norm_tolerance_zero = 305,
    size_differs = 306,
    already_started = 307,
    negative_limit = 308,
    iterations_not_zero = 309,
    no_iterations = 310,
    inner_iteration_not_zero = 311
};

/// A counter or a difference of entries that wraps around as 32-bit integers do.
constexpr int wrapped(i64 value) { return static_cast<int>(value); }

/// The last element of tmp that an entry of ipar can name.
inline constexpr i64 largest_index = std::numeric_limits<int>::max();

/// With n = ipar(1), k = ipar(14), m = ipar(15). Entries of tmp and columns count from 1.
class FgmresRun : public RciRun {
    double* const x_;
    const double* const b_; // null where the routine has no use for it
    double* const tmp_;

    /// What the caller has done when it comes back; the value of ipar(3).
    enum class Stage : int {
        start = 1,
        first_product = 2,
        restart = 3,
        restart_product = 4,
        residual_ready = 5,
        plain_test = 6,
        plain_step = 7,
        plain_product = 8,
        plain_norm_judged = 9,
        test = 10,
        step = 11,
        preconditioned = 12,
        product = 13,
        norm_judged = 14
    };

    /// Where the plain and the preconditioned method go on.
    struct Method {
        Stage test, step, norm_judged;
    };
    static constexpr Method plain{Stage::plain_test, Stage::plain_step, Stage::plain_norm_judged};
    static constexpr Method with_preconditioner{Stage::test, Stage::step, Stage::norm_judged};

    /// A stored value that would be used next, and what to say when it cannot be right.
    struct Guard {
        bool violated;
        FgmresError error;
    };

    void stage(Stage next) const { stage_or_system() = static_cast<int>(next); }
    int ask(Request request, Stage next) const;
    bool place_operation(i64 input, i64 output) const;
    int fail(FgmresError error, Request request) const;

    Guard size_guard() const { return {size() < 1, FgmresError::altered_size}; }
    Guard restart_length_guard() const { return {restart_length() < 1, FgmresError::restart_length}; }
    Guard inner_guard(i64 least, i64 most) const {
        return {inner() < least || inner() > most, FgmresError::inner_iteration};
    }
    static Guard index_guard(int index, FgmresError error) { return {index < 1, error}; }
    template <int Count> bool rejects(const Guard (&guards)[Count]) const;
    bool rejects_arnoldi_state() const;
    bool rejects_rotation_state() const;
    bool rejects_solution_state() const;

    int ask_for_residual(Stage next) const;
    int take_residual(bool is_first) const;
    int begin_cycle() const;
    int decide(const Method& method) const;
    int restart() const;
    int next_product() const;
    int next_preconditioning() const;
    int preconditioned_ready() const;
    int product_ready(const Method& method) const;
    void orthogonalise() const;
    int rotate(const Method& method) const;
    void solve_triangle() const;
    void add_correction(double* target) const;
    int update_solution() const;

    double* element(i64 first) const { return tmp_ + (first - 1); }
    double* basis(i64 column) const { return element((column - 1) * size() + 1); }
    double* preconditioned(i64 column) const { return element(preconditioned_at() + (column - 1) * size()); }
    double* triangle_column(i64 k) const { return element(triangle_at() + k * (k - 1) / 2); }
    double* cosines() const { return element(cosines_at()); }
    double* sines() const { return element(sines_at()); }
    double* rotated_rhs() const { return element(rotated_rhs_at()); }
    double* small_solution() const { return element(small_solution_at()); }
    double* new_vector() const { return element(output_at()); }

  public:
    FgmresRun(double* x, const double* b, int* ipar, double* dpar, double* tmp)
        : RciRun(ipar, dpar),
          x_(x),
          b_(b),
          tmp_(tmp) {}

    int& norm_test() const { return ipar_[11]; }
    int& solution_place() const { return ipar_[12]; }
    int& inner() const { return ipar_[13]; }
    int& restart_length() const { return ipar_[14]; }
    int& triangle_at() const { return ipar_[15]; }
    int& cosines_at() const { return ipar_[16]; }
    int& sines_at() const { return ipar_[17]; }
    int& rotated_rhs_at() const { return ipar_[18]; }
    int& small_solution_at() const { return ipar_[19]; }
    int& preconditioned_at() const { return ipar_[20]; }
    int& input_at() const { return ipar_[21]; }
    int& output_at() const { return ipar_[22]; }

    double& initial_norm() const { return dpar_[2]; }
    double& target() const { return dpar_[3]; }
    double& residual_norm() const { return dpar_[4]; }
    double& last_residual_norm() const { return dpar_[5]; }
    double& new_norm() const { return dpar_[6]; }
    double& norm_tolerance() const { return dpar_[7]; }

    /// Goes on from the caller's answer to the next request. A stage that does not exist gives `request` back.
    int resume(int request) const;

    /// Adds what the present cycle has gained: to x, to b := x, or nowhere, as ipar(13) says.
    int form_solution(double* b) const;

    void set_defaults(int n) const;
    int check(int n) const;

    void report(FgmresError error) const;
    void report(FgmresWarning warning, int n) const; // n: the argument, which one text shows

  private:
    bool mend_missing_tests(int n) const;
    bool mend_tolerances(int n) const;
    bool mend_norm_tolerance(int n) const;
    bool lay_out_work() const;
};

} // namespace nxl::rci
