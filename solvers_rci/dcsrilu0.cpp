// ILU(0), row by row: row i minus its multipliers times the rows above, wherever row i has an entry.
// Saad, Iterative Methods for Sparse Linear Systems, 2nd ed., section 10.3.
#include "solvers_rci/dcsrilu0.hpp"
#include "service/scratch.hpp"
#include "solvers_rci/csr_rows.hpp"
#include "solvers_rci/report.hpp"
#include <cmath>

namespace nxl::rci {
namespace {

enum Status : int {
    done = 0,
    no_diagonal = -101,
    zero_pivot = -102,
    small_pivot = -103,
    no_memory = -104,
    no_rows = -105,
    columns_not_ascending = -106,
    running = -99999
};

enum MessageId : int { error_header = 403, warning_header = 404, error_written = 654, first_line = 693 };
constexpr int lines_of_a_report = 2;
constexpr ReportFile log_file{"NXL_PREC_log.txt", error_written};

class Ilu0 {
    const CsrRows rows_;
    const double* const a_;
    double* const factor_;
    const bool replaces_pivots_; // ipar(31)
    const double threshold_;     // dpar(31), its sign does not count
    const double replacement_;   // dpar(32)
    int* diagonal_ = nullptr;    // by row: position of its diagonal

    Status copy_row(i64 row) const;
    Status copy_rows() const;
    Status settle_first_pivot() const;
    Status settle_pivot(i64 row) const;
    void subtract_row(i64 above, double multiplier, i64 from, i64 end) const;
    void eliminate(i64 row) const;

  public:
    Ilu0(int n, const double* a, const int* ia, const int* ja, double* factor, const int* ipar, const double* dpar)
        : rows_{n, ia, ja},
          a_(a),
          factor_(factor),
          replaces_pivots_(ipar[30] != 0),
          threshold_(std::fabs(dpar[30])),
          replacement_(dpar[31]) {}

    Status run();
};

/// Examines and copies a row. Columns below 1 fail the order too, as if 0 stood before the first: elimination takes
/// every column before the diagonal as the number of a row. Columns beyond n stay entries that no row number meets.
Status Ilu0::copy_row(i64 row) const {
    const i64 begin = rows_.begin(row), end = rows_.end(row);
    if (begin < 0 || begin >= end) return no_diagonal;
    i64 last = -1, diagonal = -1;
    for (i64 k = begin; k < end; ++k) {
        const i64 column = rows_.column(k);
        if (column <= last) return columns_not_ascending;
        if (column == row) diagonal = k;
        factor_[k] = a_[k];
        last = column;
    }
    if (diagonal < 0) return no_diagonal;
    diagonal_[row] = static_cast<int>(diagonal);
    return done;
}

Status Ilu0::copy_rows() const {
    for (i64 row = 0; row < rows_.n; ++row)
        if (const Status status = copy_row(row); status != done) return status;
    return done;
}

/// In row 1 a small pivot is replaced as a zero one is, and NaN counts as small; in the others neither is replaced.
Status Ilu0::settle_first_pivot() const {
    double& pivot = factor_[diagonal_[0]];
    const bool is_zero = pivot == 0.0;
    if (!is_zero && std::fabs(pivot) >= threshold_) return done;
    if (!replaces_pivots_) return is_zero ? zero_pivot : small_pivot;
    pivot = replacement_;
    return done;
}

Status Ilu0::settle_pivot(i64 row) const {
    double& pivot = factor_[diagonal_[row]];
    if (pivot == 0.0) {
        if (!replaces_pivots_) return zero_pivot;
        pivot = replacement_;
        return done;
    }
    return !replaces_pivots_ && std::fabs(pivot) < threshold_ ? small_pivot : done;
}

/// Entries from..end of the working row, all right of column `above`, minus the multiple of row `above`: a merge of
/// two ascending lists, which visits each entry once.
void Ilu0::subtract_row(i64 above, double multiplier, i64 from, i64 end) const {
    const i64 above_end = rows_.end(above);
    i64 q = i64{diagonal_[above]} + 1;
    for (i64 j = from; j < end && q < above_end;) {
        const int wanted = rows_.ja[j], met = rows_.ja[q];
        if (wanted == met) factor_[j] -= factor_[q] * multiplier;
        j += wanted <= met;
        q += met <= wanted;
    }
}

void Ilu0::eliminate(i64 row) const {
    const i64 end = rows_.end(row), diagonal = diagonal_[row];
    for (i64 k = rows_.begin(row); k < diagonal; ++k) {
        const i64 above = rows_.column(k);
        const double multiplier = factor_[k] / factor_[diagonal_[above]];
        subtract_row(above, multiplier, k + 1, end);
        factor_[k] = multiplier;
    }
}

Status Ilu0::run() {
    if (rows_.n < 1) return no_rows;
    const Scratch<int> diagonal(rows_.n, 256);
    if (!diagonal.data()) return no_memory;
    diagonal_ = diagonal.data();
    Status status = copy_rows(); // all are sound before the first is changed
    if (status == done) status = settle_first_pivot();
    for (i64 row = 1; row < rows_.n && status == done; ++row) {
        eliminate(row);
        status = settle_pivot(row);
    }
    return status;
}

} // namespace

void report_ilu0(int code, const int* ipar) {
    if (ipar[5] == 0) return;
    const int destination = ipar[1];
    if (code > no_diagonal || code < columns_not_ascending) {
        wrong_request(warning_header).send(destination, log_file);
        return;
    }
    const int first = first_line + lines_of_a_report * (no_diagonal - code);
    Report(error_header).lines(first, lines_of_a_report).send(destination, log_file);
}

void dcsrilu0(int n, const double* a, const int* ia, const int* ja, double* bilu0, const int* ipar, const double* dpar,
              int* ierr) {
    *ierr = running;
    const Status status = Ilu0(n, a, ia, ja, bilu0, ipar, dpar).run();
    if (status != done) report_ilu0(status, ipar);
    *ierr = status;
}

} // namespace nxl::rci
