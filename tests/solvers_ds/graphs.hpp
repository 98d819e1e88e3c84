// Graphs for the tests of the orderings, and elimination on plain sets as their oracle.
#pragma once
#include "solvers_ds/kernel/default/pardiso/minimum_degree.hpp"
#include <algorithm>
#include <bitset>
#include <ostream>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace nxl_test {

using nxl::pardiso::i32;

struct TestGraph {
    std::string name;
    std::vector<std::set<i32>> neighbours;
    bool has_dense_row = false; // one that the minimum degree algorithm puts off

    TestGraph(std::string given, i32 n) : name(std::move(given)), neighbours(static_cast<std::size_t>(n)) {}

    i32 n() const { return static_cast<i32>(neighbours.size()); }
    const std::set<i32>& of(i32 i) const { return neighbours[static_cast<std::size_t>(i)]; }
    TestGraph& join(i32 i, i32 j) {
        if (i == j) return *this;
        neighbours[static_cast<std::size_t>(i)].insert(j);
        neighbours[static_cast<std::size_t>(j)].insert(i);
        return *this;
    }
};

inline void PrintTo(const TestGraph& graph, std::ostream* out) { *out << graph.name; } // found by GoogleTest

/// The arrays of a graph.
struct GraphArrays {
    std::vector<i32> xadj = {0}, adjncy;

    explicit GraphArrays(const TestGraph& graph) {
        for (const auto& list : graph.neighbours) {
            adjncy.insert(adjncy.end(), list.begin(), list.end());
            xadj.push_back(static_cast<i32>(adjncy.size()));
        }
    }
    nxl::pardiso::Graph view() const {
        return {.n = static_cast<i32>(xadj.size()) - 1, .xadj = xadj.data(), .adjncy = adjncy.data()};
    }
};

/// A grid of nx x ny x nz points, each of `dofs` nodes that are joined with all of the neighbouring points.
inline TestGraph grid(const std::string& name, i32 nx, i32 ny, i32 nz, i32 dofs = 1) {
    TestGraph graph(name, nx * ny * nz * dofs);
    const auto join_points = [&](i32 p, i32 q) {
        for (i32 k = 0; k < dofs * dofs; ++k) graph.join(p * dofs + k / dofs, q * dofs + k % dofs);
    };
    for (i32 p = 0; p < nx * ny * nz; ++p) {
        join_points(p, p);
        if (p % nx + 1 < nx) join_points(p, p + 1);
        if (p / nx % ny + 1 < ny) join_points(p, p + nx);
        if (p / (nx * ny) + 1 < nz) join_points(p, p + nx * ny);
    }
    return graph;
}

inline TestGraph random_graph(const std::string& name, i32 n, i32 edges, unsigned seed) {
    TestGraph graph(name, n);
    std::mt19937 random(seed);
    std::uniform_int_distribution<i32> node(0, n - 1);
    for (i32 e = 0; e < edges; ++e) graph.join(node(random), node(random));
    return graph;
}

inline std::vector<TestGraph> graphs_of_all_shapes() {
    std::vector<TestGraph> all;
    for (const i32 n : {1, 2, 8, 9}) all.push_back(grid("chain" + std::to_string(n), n, 1, 1));
    all.emplace_back("without_edges", 30);
    all.push_back(grid("complete", 1, 1, 1, 40));
    for (const i32 hub : {0, 59}) {
        TestGraph& arrow = all.emplace_back(hub == 0 ? "arrow_up" : "arrow_down", 60);
        for (i32 i = 0; i < 60; ++i) arrow.join(hub, i);
    }
    TestGraph dense_row = grid("dense_row", 20, 20, 1);
    dense_row.has_dense_row = true;
    for (i32 i = 0; i < 400; ++i) dense_row.join(17, i);
    all.push_back(dense_row);
    all.push_back(grid("chain", 500, 1, 1));
    all.push_back(grid("square", 24, 24, 1));
    all.push_back(grid("cube", 8, 8, 8));
    all.push_back(grid("blocks", 7, 7, 3, 3));
    TestGraph apart = random_graph("apart", 300, 200, 1);
    all.push_back(apart);
    all.push_back(random_graph("sparse", 300, 700, 2));
    all.push_back(random_graph("dense", 120, 1800, 3));
    return all;
}

/// Elimination of one node after the other, on rows of bits.
class PlainElimination {
    static constexpr std::size_t most_nodes = 640;
    std::vector<std::bitset<most_nodes>> rows_;

  public:
    explicit PlainElimination(const TestGraph& graph) : rows_(graph.neighbours.size()) {
        if (rows_.size() > most_nodes) throw std::length_error("graph " + graph.name);
        for (std::size_t i = 0; i < rows_.size(); ++i)
            for (const i32 j : graph.neighbours[i]) rows_[i].set(static_cast<std::size_t>(j));
    }

    std::size_t degree(i32 node) const { return rows_[static_cast<std::size_t>(node)].count(); }

    /// Returns the nodes that it joins.
    std::vector<i32> eliminate(i32 node) {
        const auto row = rows_[static_cast<std::size_t>(node)];
        std::vector<i32> clique;
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            if (!row[i]) continue;
            clique.push_back(static_cast<i32>(i));
            rows_[i] |= row;
            rows_[i].reset(i).reset(static_cast<std::size_t>(node));
        }
        return clique;
    }
};

/// Entries of the factor.
inline std::size_t fill(const TestGraph& graph, const std::vector<i32>& order) {
    PlainElimination elimination(graph);
    std::size_t entries = 0;
    for (const i32 node : order) entries += elimination.eliminate(node).size() + 1;
    return entries;
}

/// Each time a node of least degree.
inline std::vector<i32> plain_minimum_degree(const TestGraph& graph) {
    PlainElimination elimination(graph);
    std::set<i32> left;
    for (i32 i = 0; i < graph.n(); ++i) left.insert(i);
    std::vector<i32> order;
    while (!left.empty()) {
        order.push_back(*std::ranges::min_element(left, {}, [&](i32 i) { return elimination.degree(i); }));
        elimination.eliminate(order.back());
        left.erase(order.back());
    }
    return order;
}

inline bool is_permutation_from(i32 base, std::vector<i32> p) {
    std::ranges::sort(p);
    for (std::size_t i = 0; i < p.size(); ++i)
        if (p[i] != static_cast<i32>(i) + base) return false;
    return true;
}

} // namespace nxl_test
