// Maximum bipartite matching of rows and columns, one augmenting path after the other, without recursion.
#include "transversal.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace solve {
namespace {

constexpr int kFree = -1;

class Matching {
  public:
    explicit Matching(const SparseMatrix<double>& a)
        : a_(a),
          row_of_(rows(), kFree),
          seen_in_(rows(), kFree),
          order_(a.value.size()),
          end_(rows()),
          unlooked_(a.row_start),
          next_(rows()) {
        for (int i = 0; i < a.n; ++i) sort_row(i);
    }

    /// Matches what is on the diagonal; returns the other rows.
    std::vector<int> keep_diagonal() {
        std::vector<int> others;
        for (int i = 0; i < a_.n; ++i) {
            for (int k = start(i); k < end_.data()[i]; ++k)
                if (column(k) == i) row_of_.data()[i] = i;
            if (row_of_.data()[i] == kFree) others.push_back(i);
        }
        return others;
    }

    /// Finds a column for row `root`: rows on the path each give their column to the one before and take another.
    /// False when there is none, and then there is no matching of all rows.
    bool augment(int root) {
        path_.assign(1, root);
        next_.data()[root] = start(root);
        while (!path_.empty()) {
            const int row = path_.back();
            if (const int free = free_column(row); free != kFree) {
                shift_along_path(free);
                return true;
            }
            if (!descend(row, root)) path_.pop_back();
        }
        return false;
    }

    const std::vector<int>& row_of() const { return row_of_; }

  private:
    std::size_t rows() const { return static_cast<std::size_t>(a_.n); }
    int start(int row) const { return a_.row_start.data()[row]; }
    int column(int k) const { return a_.column.data()[order_.data()[k]]; }

    /// The entries of a row that are not 0, the largest first.
    void sort_row(int row) {
        const auto size = [this](int k) { return std::abs(a_.value.data()[k]); };
        int end = start(row);
        for (int k = start(row); k < a_.row_start.data()[row + 1]; ++k)
            if (size(k) > 0.0) order_.data()[end++] = k;
        std::sort(order_.data() + start(row), order_.data() + end,
                  [&](int k, int l) { return size(k) != size(l) ? size(k) > size(l) : k < l; });
        end_.data()[row] = end;
    }

    /// The lookahead. Columns once matched stay so: what it has passed need not be looked at again.
    int free_column(int row) {
        for (int& k = unlooked_.data()[row]; k < end_.data()[row]; ++k)
            if (row_of_.data()[column(k)] == kFree) return column(k++);
        return kFree;
    }

    /// Goes on to the row that has the next column of this one, among columns that this search has not seen.
    bool descend(int row, int root) {
        for (int& k = next_.data()[row]; k < end_.data()[row]; ++k) {
            const int j = column(k);
            if (seen_in_.data()[j] == root) continue;
            seen_in_.data()[j] = root;
            path_.push_back(row_of_.data()[j]);
            next_.data()[path_.back()] = start(path_.back());
            return true; // next_ of `row` stays at the column by which the path leaves it
        }
        return false;
    }

    void shift_along_path(int free) {
        row_of_.data()[free] = path_.back();
        for (std::size_t step = path_.size() - 1; step-- > 0;)
            row_of_.data()[column(next_.data()[path_[step]])] = path_[step];
    }

    const SparseMatrix<double>& a_;
    std::vector<int> row_of_;   // of each column
    std::vector<int> seen_in_;  // of each column: the row for which a search came by last
    std::vector<int> order_;    // positions in a_, by rows as there
    std::vector<int> end_;      // of each row, in order_
    std::vector<int> unlooked_; // of each row: the first entry that the lookahead has not passed
    std::vector<int> next_;     // of each row on the path: the entry where it is left
    std::vector<int> path_;     // rows
};

} // namespace

std::vector<int> transversal(const SparseMatrix<double>& a) {
    Matching matching(a);
    for (const int row : matching.keep_diagonal())
        if (!matching.augment(row)) return {};
    return matching.row_of();
}

} // namespace solve
