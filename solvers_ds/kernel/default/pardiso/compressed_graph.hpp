// A graph whose indistinguishable nodes, those with the same neighbours and each other, are one node.
#pragma once
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/minimum_degree.hpp"
#include "solvers_ds/kernel/default/pardiso/quotient_graph.hpp"

namespace nxl::pardiso {

/// Nodes that are adjacent to more others than this are put off to the end: they would be touched by every elimination.
i32 densest_to_order(i32 nodes);

/// Nodes are numbered by their first columns; lists need not ascend, and name each neighbour once.
class CompressedGraph {
    i32 columns_, nodes_ = 0, used_ = 0, dense_columns_ = 0;
    i32 room_;
    Scratch<QuotientNode> node_;
    Scratch<i32> list_, first_column_, last_column_, next_column_, node_of_;

    void merge_columns(const Graph& graph, i32* hash_first, i32* hash_next, i32* mark, std::uint32_t* hash);
    void link_nodes(const Graph& graph, i32* mark);
    void put_off_dense_nodes();

  public:
    explicit CompressedGraph(const Graph& graph);

    /// kNoMemory or 0. To be called once, before all others.
    i32 build(const Graph& graph);

    i32 nodes() const { return nodes_; }
    /// A node that is put off has weight 0 and an empty list, and is in no list.
    bool is_put_off(i32 node) const { return node_.data()[node].begin < 0; }
    i32 dense_columns() const { return dense_columns_; } // in nodes that are put off
    i32 columns() const { return columns_; }

    i32* list() const { return list_.data(); }
    i32 used() const { return used_; }                  // of list
    i32 room() const { return room_; }                  // of list: at least `used` and one for each node
    QuotientNode* node() const { return node_.data(); } // places of lists, and weights
    i32* first_column() const { return first_column_.data(); }
    i32* last_column() const { return last_column_.data(); }
    i32* next_column() const { return next_column_.data(); }
};

} // namespace nxl::pardiso
