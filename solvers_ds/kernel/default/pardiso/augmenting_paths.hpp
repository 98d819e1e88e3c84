// Assignment of least cost by shortest augmenting paths, on a sparse bipartite graph of rows and columns.
#pragma once
#include "solvers_ds/kernel/default/pardiso/index.hpp"

namespace nxl::pardiso {

/// Costs are 0 or more, and 0 somewhere in each column that has an entry.
struct AssignmentArrays {
    i32 n;
    const i32 *start, *column; // rows, counted from 0: n + 1 and the number of entries
    const double* cost;
    i32* row_of;      // n: the row of each column, or -1
    i32* column_of;   // n: the column of each row, or -1
    double* u;        // n, of rows, and
    double* v;        // n, of columns: u + v <= cost, and equal where row and column are matched
    i32* found_from;  // n: the row from which a column was reached
    i32* position;    // n: where a column stands in the heap, or one of the states below 0
    i32* heap;        // n: columns that are reached from the front, those that are done from the back
    i32* queue;       // n: columns as near as what is done
    double* distance; // n
};

/// What bids leave without a column is the root of a search, in which the nearest columns come first: Duff and Koster,
/// 1999 and 2001. Rows bid as in the reduction of R. Jonker and A. Volgenant, Computing 38 (1987) 325-340. When
/// searches go far, the duals are poor, and an auction makes better ones, from which all begins again.
class AugmentingPaths {
    AssignmentArrays a_;
    i32 heaped_ = 0, done_ = 0, queued_ = 0;
    double nearest_free_ = 0.0; // distance of the nearest column without a row
    i32 free_column_ = -1;
    double scanned_ = 0.0; // entries, by all searches

    double reduced_cost(i32 row, i32 k) const { return a_.cost[k] - a_.u[row] - a_.v[a_.column[k]]; }
    void set(i32 place, i32 column) const;
    void sift_up(i32 place, i32 column) const;
    i32 pop();
    void leave_heap(i32 column);
    void sift_down(i32 place, i32 column) const;
    void reach(i32 row, i32 column, double distance, double least);
    void scan(i32 row, double least);
    void move_duals(i32 root) const;
    void forget(bool dead);
    void flip(i32 root) const;
    bool take_free(i32 row, i32& from) const;
    void start_cheaply();
    i32 outbid(i32 row, double margin, bool& again) const;
    i64 bid(double margin, i64 bids) const;
    void unmatch() const;
    void scale_duals() const;
    void start_from_duals() const;
    bool search_all(double patience, i32& matched);

  public:
    explicit AugmentingPaths(const AssignmentArrays& arrays) : a_(arrays) {}

    /// Matches as many rows as possible. Returns their number.
    i32 match();
    bool search(i32 root);
};

} // namespace nxl::pardiso
