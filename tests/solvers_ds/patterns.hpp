// Symmetric patterns for the sparse direct solver, as edges, as a graph and as rows; all numbers from 1.
#pragma once
#include <algorithm>
#include <cstdint>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace nxl_test {

struct Pattern {
    int n;
    std::set<std::pair<int, int>> edges; // the smaller number first
};

inline void connect(Pattern& pattern, int a, int b) {
    if (a != b) pattern.edges.insert({std::min(a, b), std::max(a, b)});
}

inline Pattern chain(int n) {
    Pattern result{n, {}};
    for (int i = 1; i < n; ++i) result.edges.insert(result.edges.end(), {i, i + 1});
    return result;
}

inline Pattern star(int n, int centre) {
    Pattern result{n, {}};
    for (int i = 1; i <= n; ++i) connect(result, i, centre);
    return result;
}

inline Pattern clique(int n) {
    Pattern result{n, {}};
    for (int i = 1; i <= n; ++i)
        for (int j = i + 1; j <= n; ++j) connect(result, i, j);
    return result;
}

/// Node (row, column) is number row + (column - 1) * rows.
inline Pattern grid(int rows, int columns) {
    Pattern result{rows * columns, {}};
    for (int k = 1; k <= rows * columns; ++k) {
        if (k % rows != 0) connect(result, k, k + 1);
        if (k + rows <= rows * columns) connect(result, k, k + rows);
    }
    return result;
}

inline Pattern random_pattern(int n, int edges, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> node(1, n);
    Pattern result{n, {}};
    for (int k = 0; k < edges; ++k) {
        const int a = node(random);
        connect(result, a, node(random));
    }
    return result;
}

/// The edges of both, on the same nodes.
inline Pattern joined(Pattern a, const Pattern& b) {
    a.edges.insert(b.edges.begin(), b.edges.end());
    return a;
}

/// Both beside each other, without an edge between them.
inline Pattern apart(Pattern a, const Pattern& b) {
    for (const auto& [i, j] : b.edges) connect(a, i + a.n, j + a.n);
    a.n += b.n;
    return a;
}

inline std::vector<int> natural(int n) {
    std::vector<int> result;
    for (int k = 1; k <= n; ++k) result.push_back(k);
    return result;
}

inline std::vector<int> shuffled(int n, unsigned seed) {
    std::vector<int> result = natural(n);
    std::shuffle(result.begin(), result.end(), std::mt19937(seed));
    return result;
}

/// Rows of numbers, one after the other: a matrix's columns by row, or a graph's neighbours by node.
struct SparseRows {
    std::vector<int> ia{1}, ja;

    void add_row(const std::vector<int>& columns) {
        ja.insert(ja.end(), columns.begin(), columns.end());
        ia.push_back(static_cast<int>(ja.size()) + 1);
    }
    std::vector<int> row(std::size_t i) const { return {ja.begin() + ia[i] - 1, ja.begin() + ia[i + 1] - 1}; }
};

/// What of a pattern is stored: row i has column j when `stored` says so of the two.
template <class Stored> SparseRows rows_of(const Pattern& pattern, Stored&& stored) {
    std::vector<std::set<int>> rows(static_cast<std::size_t>(pattern.n) + 1);
    const auto add = [&](int i, int j) {
        if (stored(i, j)) rows[static_cast<std::size_t>(i)].insert(j);
    };
    for (int i = 1; i <= pattern.n; ++i) add(i, i);
    for (const auto& [i, j] : pattern.edges) {
        add(i, j);
        add(j, i);
    }
    SparseRows result;
    for (std::size_t i = 1; i < rows.size(); ++i) result.add_row({rows[i].begin(), rows[i].end()});
    return result;
}
inline SparseRows upper_triangle(const Pattern& pattern) {
    return rows_of(pattern, [](int i, int j) { return i <= j; });
}
inline SparseRows all_entries(const Pattern& pattern) {
    return rows_of(pattern, [](int, int) { return true; });
}
inline SparseRows neighbours(const Pattern& pattern) {
    return rows_of(pattern, [](int i, int j) { return i != j; });
}

/// Row i as row place[i - 1].
inline SparseRows with_rows_moved(const SparseRows& a, const std::vector<int>& place) {
    std::vector<std::size_t> row_at(place.size());
    for (std::size_t i = 0; i < place.size(); ++i) row_at[static_cast<std::size_t>(place[i] - 1)] = i;
    SparseRows result;
    for (const std::size_t i : row_at) result.add_row(a.row(i));
    return result;
}

} // namespace nxl_test
