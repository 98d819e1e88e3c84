// Defaults, check and reports of the conjugate-gradient solvers.
#include "solvers_rci/cg_run.hpp"
#include "solvers_rci/report.hpp"

namespace nxl::rci {
namespace {

enum MessageId : int { error_header = 401, warning_header = 402, error_written = 654, warning_written = 655 };

constexpr ReportFile error_file{"Dcg_errors.txt", error_written};
constexpr ReportFile warning_file{"Dcg_check_warnings.txt", warning_written};

/// The lines of a report: messages that follow each other.
struct Lines {
    int first, count;
};
constexpr Lines error_lines[] = {{656, 3}, {659, 4}, {663, 3}};
constexpr Lines warning_lines[] = {{666, 2}, {668, 3}, {671, 3}, {674, 3}, {677, 3},
                                   {680, 1}, {681, 2}, {683, 3}, {686, 3}, {689, 2}};

template <int Count> Report numbered_report(int header, const Lines (&table)[Count], int number) {
    if (number < 1 || number > Count) return wrong_request(warning_header);
    const Lines& lines = table[number - 1];
    return Report(header).lines(lines.first, lines.count);
}

} // namespace

void CgRun::report(CgError error) const {
    if (reports_errors() == 0) return;
    numbered_report(error_header, error_lines, static_cast<int>(error)).send(report_destination(), error_file);
}

void CgRun::report(CgWarning warning) const {
    if (reports_warnings() == 0) return;
    numbered_report(warning_header, warning_lines, static_cast<int>(warning)).send(report_destination(), warning_file);
}

bool CgRun::mend_missing_tests() const {
    if (i64{limit_test()} + residual_test() + caller_test() != 0) return false; // the sum decides, not each flag
    report(CgWarning::no_test);
    limit_test() = 1;
    residual_test() = 1;
    return true;
}

bool CgRun::mend_tolerances() const {
    bool changed = false;
    if (!(relative_tolerance() >= 0.0 && relative_tolerance() <= 1.0)) { // NaN is mended too
        report(CgWarning::relative_tolerance);
        relative_tolerance() = default_relative_tolerance;
        changed = true;
    }
    if (!(absolute_tolerance() >= 0.0)) {
        report(CgWarning::absolute_tolerance);
        absolute_tolerance() = 0.0;
        changed = true;
    }
    return changed;
}

bool CgRun::has_suspicious_counts() const {
    bool suspicious = false;
    const auto warn_if = [&](bool found, CgWarning warning) {
        if (found) report(warning);
        suspicious |= found;
    };
    warn_if(iteration_limit() < 0, CgWarning::negative_limit);
    warn_if(iterations() != 0, CgWarning::iterations_not_zero);
    warn_if(iterations() >= iteration_limit(), CgWarning::no_iterations);
    return suspicious;
}

int CgRun::check(int n, int systems) const {
    bool suspicious = false;
    const bool examine_tolerances = residual_test() != 0;
    bool changed = mend_missing_tests();
    if (changed || examine_tolerances) {
        changed |= mend_tolerances();
        if (relative_tolerance() == 0.0 && absolute_tolerance() == 0.0) {
            report(CgWarning::both_tolerances_zero);
            suspicious = true;
        }
    }
    if (size() != n) {
        report(CgWarning::size_differs);
        suspicious = true;
    }
    if (size() < 1 || systems < 1) {
        report(CgWarning::size_not_positive); // its text speaks of IPAR(1) in either case
        return impossible_size;
    }
    if (stage_or_system() != 1) {
        report(CgWarning::already_started);
        suspicious = true;
    }
    if (limit_test() != 0) suspicious |= has_suspicious_counts();
    if (!suspicious && !changed) return finished;
    return check_has_findings - (suspicious ? 1 : 0) - (changed ? 10 : 0);
}

} // namespace nxl::rci
