// One run of the bounded trust-region method, stage by stage. With D the largest column norms of J so far and z = D s,
// a step minimises |F + J s|^2, or that + s.Ss, over |z(j)| <= radius and lw <= x + s <= up: both are boxes, and so is
// what they share. Conn, Gould and Toint, SIAM J. Numer. Anal. 25 (1988), and Trust-Region Methods (2000), chapter 12.
#pragma once
#include "solvers_tr/kernel/d_rci_tr_nlsqpbc.hpp"
#include "solvers_tr/kernel/d_tr_boxed_step.hpp"
#include <algorithm>
#include <cmath>

namespace nxl::tr {

enum Request : int { go_on = 0, residual = 1, jacobian = 2, caller_stops = -1, caller_stops_too = -2 };

enum StopCode : int {
    running = 0,
    iterations_made = 1,
    small_radius = 2,
    small_residual = 3,
    nothing_free = 4,
    small_step = 5,
    small_prediction = 6,
    failed = -4
};

/// What the caller has been asked for.
enum class Stage : int { start, start_residual, new_jacobian, idle, trial_residual };

inline constexpr double least_scale = 1e-150; // the square of a smaller column norm underflows

/// n doubles each, in one block.
enum Column : int {
    scale,    // D without its floor
    point,    // x at the accepted point while a trial is out
    trial,    // x + s
    gradient, // D^-1 J^T F
    descent,  // the subproblem's gradient
    lower,    // the box of z
    upper,
    z,
    column_norm, // of J
    slope,       // the subproblem's
    direction,
    move,
    curve,
    step,         // from the accepted point before this one
    old_gradient, // J^T F there
    carried,      // (J there)^T F here
    column_count
};

/// What a handle keeps, and its stages.
class BoxedRun {
    BoxedProblem problem_;
    i64 n_, m_;
    int most_iterations_, most_passes_;
    double start_scale_;

    Stage stage_;
    bool jacobian_is_old_; // the accepted point has moved since
    bool uses_second_;     // the next step's model has S
    bool first_pass_;      // no trial has been judged
    int iterations_, reported_iterations_, stop_code_;
    double initial_norm_, final_norm_;

    double norm_;   // |F| at the accepted point
    double radius_; // on |z(j)|
    double model_;  // q at the trial step: half of what |F|^2 changes by, as J predicts it, over unit()^2

    double* columns_;
    double* residual_; // F at the accepted point
    double* hessian_;  // D^-1 J^T J D^-1
    double* second_;   // S, what J^T J leaves out of the second derivatives
    double* model_matrix_;
    double* factor_;
    i64* free_;

    double* column(Column c) const { return columns_ + c * n_; }
    /// What |F| and z are counted in where they are multiplied, so that no square overflows; of about |F|, and a power
    /// of two: no digit changes.
    double unit() const { return std::scalbn(1.0, std::ilogb(norm_)); }
    double counted(double value) const { return value / unit(); }
    double eps(int number) const { return problem_.eps[number - 1]; }
    double weight(i64 j) const { return column(scale)[j] > least_scale ? column(scale)[j] : 1.0; }
    double boxed(i64 j, double v) const { return inside(v, problem_.lower[j], problem_.upper[j]); }
    double room_below(i64 j) const { return std::min(0.0, (problem_.lower[j] - problem_.x[j]) * weight(j)); }
    double room_above(i64 j) const { return std::max(0.0, (problem_.upper[j] - problem_.x[j]) * weight(j)); }

    bool take_memory();
    int ask(Request request, Stage next);
    int stop(int code);
    void retract();

    int start_known(const double* fvec);
    int jacobian_known(const double* fjac);
    int trial_known(double* fvec, const double* fjac);
    int next_round();
    int try_step();

    void take_jacobian(const double* fjac);
    bool is_finite() const;
    void keep_for_update(const double* fvec, const double* fjac) const;
    void update_second() const;
    void choose_model(double trial_norm);
    void scale_model();
    void start_radius();
    bool has_free_column() const;
    void find_step();
    int find_settled_step();
    double form_trial() const;
    double predicted_change() const;
    double counted_change(double trial_norm) const;
    void resize_radius(double ratio, double trial_norm);

  public:
    /// False without memory; what was taken is given back.
    bool init(const BoxedProblem& problem, int most_iterations, int most_passes, double start_scale);
    void free_memory();

    int resume(double* fvec, const double* fjac, int request);
    bool has_failed() const { return stop_code_ == failed; }
    int stop_code() const { return stop_code_; }
    int iterations() const { return reported_iterations_; }
    double initial_norm() const { return initial_norm_; }
    double final_norm() const { return final_norm_; }
};

} // namespace nxl::tr
