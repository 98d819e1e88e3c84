// DFGMRES and its companions: defaults, the check, reports.
#include "solvers_rci/dfgmres.hpp"
#include "solvers_rci/fgmres_run.hpp"
#include "solvers_rci/report.hpp"
#include <algorithm>

namespace nxl::rci {
namespace {

constexpr double default_norm_tolerance = 1e-12;

enum MessageId : int { error_header = 399, warning_header = 400 };

constexpr ReportFile log_file{"NXL_RCI_FGMRES_Log.txt", 0};

/// Where a value in a report comes from: an entry that counts from 1, or a number with no entry.
struct Source {
    enum Kind : int { none, ipar_entry, dpar_entry, iterations_left, argument_n, constant } kind = none;
    int entry = 0;
    double number = 0.0;
};
constexpr Source ipar(int entry) { return {Source::ipar_entry, entry}; }
constexpr Source dpar(int entry) { return {Source::dpar_entry, entry}; }
constexpr Source constant(double number) { return {Source::constant, 0, number}; }
constexpr Source iterations_left{Source::iterations_left};
constexpr Source argument_n{Source::argument_n};

/// The lines of a report, messages that follow each other, and the values in them.
struct Text {
    int first, count;
    Source values[2] = {};
};
constexpr Text error_texts[] = {
    {566, 4, {dpar(5)}},
    {570, 3, {ipar(15)}},
    {573, 3, {ipar(14), ipar(15)}},
    {576, 2, {dpar(5)}},
    {578, 3, {dpar(7)}},
    {581, 1, {ipar(1)}},
    {582, 4, {dpar(7)}},
    {586, 3},
    {589, 4},
    {593, 4, {ipar(15), iterations_left}},
    {597, 3, {ipar(1)}},
    {600, 3, {ipar(19)}},
    {603, 3, {ipar(23)}},
    {606, 3, {ipar(16)}},
    {609, 3, {ipar(17)}},
    {612, 3, {ipar(18)}},
    {615, 3, {ipar(21)}},
    {618, 3, {ipar(20)}},
    {621, 3, {ipar(4)}},
};
constexpr int first_warning = 300;
constexpr Text warning_texts[] = {
    {624, 4},
    {628, 2, {dpar(1), constant(default_relative_tolerance)}},
    {630, 2, {dpar(2), constant(0.0)}},
    {632, 3, {dpar(1), dpar(2)}},
    {635, 2, {dpar(8), constant(default_norm_tolerance)}},
    {637, 2, {dpar(8)}},
    {639, 2, {ipar(1), argument_n}},
    {641, 2, {ipar(3)}},
    {643, 3, {ipar(5), iterations_left}},
    {646, 3, {ipar(4), iterations_left}},
    {649, 3, {ipar(5), ipar(4)}},
    {652, 2, {ipar(14)}},
};

/// The values of one moment.
struct Values {
    const int* ipar;
    const double* dpar;
    int n;

    ReportValue operator()(const Source& source) const {
        switch (source.kind) {
        case Source::ipar_entry: return {false, ipar[source.entry - 1], 0.0};
        case Source::dpar_entry: return {true, 0, dpar[source.entry - 1]};
        case Source::iterations_left: return {false, wrapped(i64{ipar[4]} - ipar[3]), 0.0};
        case Source::argument_n: return {false, n, 0.0};
        case Source::constant: return {true, 0, source.number};
        case Source::none: break;
        }
        return {false, 0, 0.0};
    }
};

template <int Count> Report numbered_report(int header, const Text (&texts)[Count], int number, const Values& values) {
    if (number < 0 || number >= Count) return wrong_request(warning_header);
    const Text& text = texts[number];
    const ReportValue filled[] = {values(text.values[0]), values(text.values[1])};
    return Report(header).lines(text.first, text.count, filled);
}

} // namespace

void FgmresRun::report(FgmresError error) const {
    if (reports_errors() == 0) return;
    numbered_report(error_header, error_texts, static_cast<int>(error), {ipar_, dpar_, size()})
        .send(report_destination(), log_file);
}

void FgmresRun::report(FgmresWarning warning, int n) const {
    if (reports_warnings() == 0) return;
    numbered_report(warning_header, warning_texts, static_cast<int>(warning) - first_warning, {ipar_, dpar_, n})
        .send(report_destination(), log_file);
}

void FgmresRun::set_defaults(int n) const {
    RciRun::set_defaults(n);
    norm_test() = 0;
    solution_place() = 0;
    inner() = 0;
    restart_length() = std::min(default_iteration_limit, n);
    norm_tolerance() = default_norm_tolerance;
}

bool FgmresRun::mend_missing_tests(int n) const {
    if (limit_test() != 0 || residual_test() != 0 || caller_test() != 0) return false;
    report(FgmresWarning::no_test, n);
    limit_test() = 1;
    residual_test() = 1;
    return true;
}

bool FgmresRun::mend_tolerances(int n) const {
    bool changed = false;
    if (!(relative_tolerance() >= 0.0 && relative_tolerance() <= 1.0)) { // NaN is mended too
        report(FgmresWarning::relative_tolerance, n);
        relative_tolerance() = default_relative_tolerance;
        changed = true;
    }
    if (!(absolute_tolerance() >= 0.0)) {
        report(FgmresWarning::absolute_tolerance, n);
        absolute_tolerance() = 0.0;
        changed = true;
    }
    return changed;
}

bool FgmresRun::mend_norm_tolerance(int n) const {
    if (norm_test() == 0 || norm_tolerance() >= 0.0) return false;
    report(FgmresWarning::norm_tolerance, n);
    norm_tolerance() = default_norm_tolerance;
    return true;
}

int FgmresRun::check(int n) const {
    bool suspicious = false;
    const auto warn_if = [&](bool found, FgmresWarning warning) {
        if (found) report(warning, n);
        suspicious |= found;
    };
    const bool examine_tolerances = residual_test() != 0;
    bool changed = mend_missing_tests(n);
    if (changed || examine_tolerances) {
        changed |= mend_tolerances(n);
        warn_if(relative_tolerance() == 0.0 && absolute_tolerance() == 0.0, FgmresWarning::both_tolerances_zero);
    }
    changed |= mend_norm_tolerance(n);
    warn_if(norm_test() != 0 && norm_tolerance() == 0.0, FgmresWarning::norm_tolerance_zero);
    warn_if(size() != n, FgmresWarning::size_differs);
    if (size() < 1) return fail(FgmresError::size, impossible_size);
    warn_if(stage_or_system() != static_cast<int>(Stage::start), FgmresWarning::already_started);
    if (limit_test() != 0) {
        warn_if(iteration_limit() < 0, FgmresWarning::negative_limit);
        warn_if(iterations() != 0, FgmresWarning::iterations_not_zero);
        warn_if(iterations() >= iteration_limit(), FgmresWarning::no_iterations);
    }
    if (restart_length() < 1) return fail(FgmresError::restart_length_at_check, impossible_size);
    if (!lay_out_work()) return fail(FgmresError::triangle_index, impossible_size);
    warn_if(inner() != 0, FgmresWarning::inner_iteration_not_zero);
    if (!suspicious && !changed) return finished;
    return check_has_findings - (suspicious ? 1 : 0) - (changed ? 10 : 0);
}

/// The regions of tmp behind the basis, each the first element of one: R, c, s, g, y, Z. Where no entry can name them,
/// or the columns of a Z that is needed, the result is false and all are 0, which every run rejects.
bool FgmresRun::lay_out_work() const {
    const i64 n = size(), m = restart_length();
    const i64 behind_basis = n * (m + 1) + 1;
    const i64 rotated_rhs = behind_basis + (m + 5) * m / 2; // m is below 2^31: squares of it have room
    const i64 small_solution = rotated_rhs + m + 1;         // g has m + 1 elements
    const i64 preconditioned = small_solution + m;
    const bool fits =
        preconditioned <= largest_index && (has_preconditioner() == 0 || preconditioned + n * m - 1 <= largest_index);
    const auto at = [fits](i64 element) { return fits ? static_cast<int>(element) : 0; };
    triangle_at() = at(behind_basis);
    cosines_at() = at(behind_basis + (m + 1) * m / 2);
    sines_at() = at(behind_basis + (m + 3) * m / 2);
    rotated_rhs_at() = at(rotated_rhs);
    small_solution_at() = at(small_solution);
    preconditioned_at() = at(preconditioned);
    return fits;
}

int dfgmres_init(int n, int* ipar, double* dpar, double* tmp) {
    FgmresRun(nullptr, nullptr, ipar, dpar, tmp).set_defaults(n);
    if (n > 0) std::fill_n(tmp, n, 0.0);
    return finished;
}

int dfgmres_check(int n, int* ipar, double* dpar) { return FgmresRun(nullptr, nullptr, ipar, dpar, nullptr).check(n); }

int dfgmres(double* x, const double* b, int request, int* ipar, double* dpar, double* tmp) {
    return FgmresRun(x, b, ipar, dpar, tmp).resume(request);
}

int dfgmres_get(double* x, double* b, int* ipar, double* dpar, double* tmp) {
    return FgmresRun(x, nullptr, ipar, dpar, tmp).form_solution(b);
}

} // namespace nxl::rci
