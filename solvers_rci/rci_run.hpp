// What the runs of all reverse-communication solvers share: the first entries of the caller's ipar and dpar, and their
// defaults. nxl.h has the tables of all entries.
#pragma once
#include "solvers_rci/report.hpp"
#include <algorithm>

namespace nxl::rci {

inline constexpr double default_relative_tolerance = 1e-6; // on squared norms in DCG
inline constexpr int default_iteration_limit = 150;

class RciRun {
  protected:
    int* const ipar_;
    double* const dpar_;

  public:
    RciRun(int* ipar, double* dpar) : ipar_(ipar), dpar_(dpar) {}

    int& size() const { return ipar_[0]; }
    int& report_destination() const { return ipar_[1]; }
    int& stage_or_system() const { return ipar_[2]; } // the stage; DCGMRHS: the system that a request is about
    int& iterations() const { return ipar_[3]; }
    int& iteration_limit() const { return ipar_[4]; }
    int& reports_errors() const { return ipar_[5]; }
    int& reports_warnings() const { return ipar_[6]; }
    int& limit_test() const { return ipar_[7]; }
    int& residual_test() const { return ipar_[8]; }
    int& caller_test() const { return ipar_[9]; }
    int& has_preconditioner() const { return ipar_[10]; }
    double& relative_tolerance() const { return dpar_[0]; }
    double& absolute_tolerance() const { return dpar_[1]; }

    /// ipar(1..11) and dpar(1..8).
    void set_defaults(int n) const {
        size() = n;
        report_destination() = standard_output;
        stage_or_system() = 1;
        iterations() = 0;
        iteration_limit() = std::min(default_iteration_limit, n);
        reports_errors() = 1;
        reports_warnings() = 1;
        limit_test() = 1;
        residual_test() = 0;
        caller_test() = 1;
        has_preconditioner() = 0;
        std::fill_n(dpar_, 8, 0.0);
        relative_tolerance() = default_relative_tolerance;
    }
};

} // namespace nxl::rci
