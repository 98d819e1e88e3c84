// ILUT: each row is eliminated in a dense working row that knows its entries, thinned out, and stored.
// Saad, Iterative Methods for Sparse Linear Systems, 2nd ed., section 10.4.
#include "solvers_rci/dcsrilut.hpp"
#include "service/scratch.hpp"
#include "solvers_rci/csr_rows.hpp"
#include "solvers_rci/report.hpp"
#include <algorithm>
#include <cmath>
#include <limits>

namespace nxl::rci {
namespace {

enum Status : int {
    done = 0,
    much_fill = 101,
    negative_tolerance = 102,
    tolerance_above_factor = 103,
    factor_is_zero = 104,
    empty_row = -101,
    small_pivot = -102,
    bad_row_starts = -103,
    no_memory = -104,
    negative_fill = -105,
    negative_size = -106,
    bad_column = -107,
    running = -99999
};

enum MessageId : int { error_header = 405, warning_header = 406, warning_written = 655 };

// The notice speaks of warnings for errors too.
constexpr ReportFile log_file{"NXL_PREC_DILUT_log.txt", warning_written};

/// The lines of a report: messages that follow each other.
struct Lines {
    int first, count;
};
constexpr Lines warning_lines[] = {{705, 3}, {708, 2}, {710, 3}, {713, 3}};
constexpr Lines error_lines[] = {{716, 3}, {719, 5}, {724, 2}, {726, 2}, {728, 2}, {730, 2}, {732, 2}};

/// The row under work: columns left of its diagonal at positions 0, 1, ... in the order of elimination, the diagonal at
/// the row's own number, columns right of it behind that. A column stands in it once, so the lists do not meet.
struct WorkingRow {
    int* place;  // by column: its position + 1, 0 when the row does not have it
    int* column; // by position
    double* value;
    i64 row = 0, lower = 0, upper = 0; // number, and lengths of the lists

    i64 first_upper() const { return row + 1; }

    void put(i64 at, i64 new_column, double new_value) const {
        place[new_column] = static_cast<int>(at + 1);
        column[at] = static_cast<int>(new_column);
        value[at] = new_value;
    }

    void begin(i64 number) {
        row = number;
        lower = upper = 0;
        value[row] = 0.0;
    }

    void scatter(i64 new_column, double new_value);
    void insert_lower(i64 after, i64 new_column, double new_value);
    void append_upper(i64 new_column, double new_value) { put(first_upper() + upper++, new_column, new_value); }
    void move_largest_to_tail(i64 first, i64 count, i64 keep) const;
    void clear() const;
};

void WorkingRow::scatter(i64 new_column, double new_value) {
    if (place[new_column] != 0) value[place[new_column] - 1] += new_value; // given twice: the entries add up
    else if (new_column < row) put(lower++, new_column, new_value);
    else if (new_column > row) append_upper(new_column, new_value);
    else put(row, new_column, new_value);
}

/// In the order of columns, but never before the position that elimination has come to.
void WorkingRow::insert_lower(i64 after, i64 new_column, double new_value) {
    i64 at = lower++;
    for (; at > after + 1 && column[at - 1] > new_column; --at) put(at, column[at - 1], value[at - 1]);
    put(at, new_column, new_value);
}

/// Partial quicksort of `count` entries from `first` by magnitude: the `keep` largest end up last. Both scans stop at
/// equal magnitudes, which keeps ties cheap, and at NaN. Places are not kept up: nobody asks for them any more.
void WorkingRow::move_largest_to_tail(i64 first, i64 count, i64 keep) const {
    const auto magnitude = [this](i64 at) { return std::fabs(value[at]); };
    const auto swap = [this](i64 i, i64 j) {
        std::swap(value[i], value[j]);
        std::swap(column[i], column[j]);
    };
    const i64 border = first + count - keep; // first position of the tail
    i64 low = first, high = first + count - 1;
    while (low < high) {
        swap(low, low + (high - low) / 2); // the first one is the pivot: rows that ascend or descend are common
        const double pivot = magnitude(low);
        i64 i = low, j = high + 1;
        for (;;) {
            do ++i;
            while (i <= high && magnitude(i) < pivot);
            do --j;
            while (magnitude(j) > pivot); // ends at low
            if (i >= j) break;
            swap(i, j);
        }
        swap(low, j); // now nothing before j is larger, nothing behind it smaller
        if (j == border) return;
        if (j < border) low = j + 1;
        else high = j - 1;
    }
}

void WorkingRow::clear() const {
    for (i64 at = 0; at < lower; ++at) place[column[at]] = 0;
    place[row] = 0;
    for (i64 at = first_upper(); at < first_upper() + upper; ++at) place[column[at]] = 0;
}

class Ilut {
    const CsrRows rows_;
    const double* const a_;
    double* const factor_;
    int* const start_;
    int* const column_;
    double tolerance_;
    i64 most_; // entries kept in each part of a row
    const int* const ipar_;
    const double* const dpar_;

    Status warning_ = done;   // the last one
    int* diagonal_ = nullptr; // by finished row: position of its diagonal
    i64 next_ = 0;            // first free position
    double norm_ = 0.0;       // root mean square of the working row
    double drop_ = 0.0;       // what is not larger is dropped

    bool replaces_pivots() const { return ipar_[30] != 0; }
    double replacement_factor() const { return dpar_[30]; }

    bool ends_run(Status warning);
    Status settle_parameters();
    Status examine() const;
    Status scatter(WorkingRow& work, i64 row);
    void eliminate(WorkingRow& work) const;
    void subtract_row(WorkingRow& work, i64 k, double multiplier) const;
    void thin_out(const WorkingRow& work) const;
    void store(const WorkingRow& work, i64 first, i64 count);
    Status store_row(const WorkingRow& work);
    Status factor_row(WorkingRow& work, i64 row);

  public:
    Ilut(int n, const double* a, const int* ia, const int* ja, double* bilut, int* ibilut, int* jbilut, double tol,
         int maxfil, const int* ipar, const double* dpar)
        : rows_{n, ia, ja},
          a_(a),
          factor_(bilut),
          start_(ibilut),
          column_(jbilut),
          tolerance_(tol),
          most_(maxfil),
          ipar_(ipar),
          dpar_(dpar) {}

    Status run();
};

/// What ipar(7) makes of a warning: above 0 the run goes on, at 0 there is no report.
bool Ilut::ends_run(Status warning) {
    warning_ = warning;
    if (ipar_[6] != 0) report_ilut(warning, ipar_);
    return ipar_[6] <= 0;
}

Status Ilut::settle_parameters() {
    if (most_ < 0) return negative_fill;
    if (rows_.n < 0) return negative_size;
    if (most_ >= rows_.n) {
        most_ = rows_.n - 1;
        if (ends_run(much_fill)) return much_fill;
    }
    if (!(tolerance_ >= 0.0)) {
        tolerance_ = -tolerance_;
        if (ends_run(negative_tolerance)) return negative_tolerance;
    }
    if (!(std::fabs(replacement_factor()) >= std::fabs(tolerance_)) && ends_run(tolerance_above_factor))
        return tolerance_above_factor;
    if (ipar_[30] == 1 && replacement_factor() == 0.0 && ends_run(factor_is_zero)) return factor_is_zero;
    return done;
}

Status Ilut::examine() const {
    for (i64 row = 0; row < rows_.n; ++row) {
        if (rows_.begin(row) < 0 || rows_.begin(row) >= rows_.end(row)) return bad_row_starts;
        for (i64 k = rows_.begin(row); k < rows_.end(row); ++k)
            if (rows_.column(k) < 0 || rows_.column(k) >= rows_.n) return bad_column;
    }
    return done;
}

Status Ilut::scatter(WorkingRow& work, i64 row) {
    const i64 begin = rows_.begin(row), end = rows_.end(row);
    if (begin >= end) return empty_row; // examined before, but outputs laid over inputs can bring it about
    work.begin(row);
    double squares = 0.0;
    for (i64 k = begin; k < end; ++k) {
        squares += a_[k] * a_[k];
        work.scatter(rows_.column(k), a_[k]);
    }
    norm_ = std::sqrt(squares / static_cast<double>(end - begin));
    drop_ = tolerance_ * norm_;
    return done;
}

void Ilut::eliminate(WorkingRow& work) const {
    for (i64 k = 0; k < work.lower; ++k) { // fill lengthens the list
        const double multiplier = work.value[k] / factor_[diagonal_[work.column[k]]];
        const bool dropped = std::fabs(multiplier) < drop_;
        work.value[k] = dropped ? 0.0 : multiplier;
        if (!dropped) subtract_row(work, k, multiplier);
    }
}

/// The working row minus the multiple of the stored row whose column stands at position k; fill above the drop
/// tolerance joins its list, on the diagonal any fill does.
void Ilut::subtract_row(WorkingRow& work, i64 k, double multiplier) const {
    const i64 above = work.column[k], end = i64{start_[above + 1]} - 1;
    for (i64 q = i64{diagonal_[above]} + 1; q < end; ++q) {
        const i64 column = i64{column_[q]} - 1;
        const double fill = -(factor_[q] * multiplier);
        if (const int place = work.place[column]; place != 0) work.value[place - 1] += fill;
        else if (column == work.row) work.put(work.row, column, fill);
        else if (!(drop_ < std::fabs(fill))) continue;
        else if (column < work.row) work.insert_lower(k, column, fill);
        else work.append_upper(column, fill);
    }
}

void Ilut::thin_out(const WorkingRow& work) const {
    for (i64 at = work.first_upper(); at < work.first_upper() + work.upper; ++at)
        if (std::fabs(work.value[at]) <= drop_) work.value[at] = 0.0;
    if (most_ == 0) return; // nothing will be kept
    if (work.lower > most_) work.move_largest_to_tail(0, work.lower, most_);
    if (work.upper > most_) work.move_largest_to_tail(work.first_upper(), work.upper, most_);
}

void Ilut::store(const WorkingRow& work, i64 first, i64 count) {
    for (i64 at = first + count - std::min(count, most_); at < first + count; ++at) {
        if (work.value[at] == 0.0) continue;
        factor_[next_] = work.value[at];
        column_[next_++] = work.column[at] + 1;
    }
}

Status Ilut::store_row(const WorkingRow& work) {
    const i64 longest = std::min(work.lower, most_) + 1 + std::min(work.upper, most_);
    if (next_ + longest >= std::numeric_limits<int>::max()) return no_memory; // row starts have 32 bits
    store(work, 0, work.lower);
    double pivot = work.value[work.row];
    if (std::fabs(pivot) <= drop_) {
        if (!replaces_pivots()) return small_pivot;
        pivot = replacement_factor() * norm_;
    }
    diagonal_[work.row] = static_cast<int>(next_);
    factor_[next_] = pivot;
    column_[next_++] = static_cast<int>(work.row + 1);
    store(work, work.first_upper(), work.upper);
    start_[work.row + 1] = static_cast<int>(next_ + 1);
    return done;
}

Status Ilut::factor_row(WorkingRow& work, i64 row) {
    if (const Status status = scatter(work, row); status != done) return status;
    eliminate(work);
    thin_out(work);
    const Status status = store_row(work);
    work.clear();
    return status;
}

Status Ilut::run() {
    if (const Status status = settle_parameters(); status != done) return status;
    if (const Status status = examine(); status != done) return status;
    const i64 length = std::max(rows_.n, i64{1}); // no rows at all take no memory, which is not a failure
    const Scratch<int> place(length, 256), column(length, 256), diagonal(length, 256);
    const Scratch<double> value(length, 256);
    if (!place.data() || !column.data() || !diagonal.data() || !value.data()) return no_memory;
    diagonal_ = diagonal.data();
    WorkingRow work{place.data(), column.data(), value.data()};
    std::fill_n(work.place, length, 0);
    start_[0] = 1;
    for (i64 row = 0; row < rows_.n; ++row)
        if (const Status status = factor_row(work, row); status != done) return status;
    return warning_;
}

Report report_on(int code) {
    if (code >= much_fill && code <= factor_is_zero) {
        const Lines& lines = warning_lines[code - much_fill];
        return Report(warning_header).lines(lines.first, lines.count);
    }
    if (code <= empty_row && code >= bad_column) {
        const Lines& lines = error_lines[empty_row - code];
        return Report(error_header).lines(lines.first, lines.count);
    }
    return wrong_request(warning_header);
}

} // namespace

void report_ilut(int code, const int* ipar) { report_on(code).send(ipar[1], log_file); }

void dcsrilut(int n, const double* a, const int* ia, const int* ja, double* bilut, int* ibilut, int* jbilut, double tol,
              int maxfil, const int* ipar, const double* dpar, int* ierr) {
    *ierr = running;
    const Status status = Ilut(n, a, ia, ja, bilut, ibilut, jbilut, tol, maxfil, ipar, dpar).run();
    if (status < done && ipar[5] != 0) report_ilut(status, ipar);
    *ierr = status;
}

} // namespace nxl::rci
