#include "solvers_ds/kernel/default/pardiso/compressed_graph.hpp"
#include <algorithm>
#include <cmath>
#include <limits>

namespace nxl::pardiso {
namespace {

using Hash = std::uint32_t;

/// Spreads neighbouring columns over all numbers, so that sums of few of them rarely agree by chance.
Hash spread(i32 column) { return (static_cast<Hash>(column) + 1) * 0x9E3779B1U; }

Hash hash_of(const Graph& graph, i32 column) {
    Hash sum = spread(column);
    for (i32 k = graph.xadj[column]; k < graph.xadj[column + 1]; ++k) sum += spread(graph.adjncy[k]);
    return sum;
}

i32 degree_of(const Graph& graph, i32 column) { return graph.xadj[column + 1] - graph.xadj[column]; }

/// Room for the lists and a fifth more, which spares most compactions, and for one more of the longest.
i32 room_for(const Graph& graph) {
    const i64 room = i64{graph.xadj[graph.n]} + graph.xadj[graph.n] / 5 + graph.n + 1;
    return static_cast<i32>(std::min(room, i64{std::numeric_limits<i32>::max()}));
}

} // namespace

i32 densest_to_order(i32 nodes) {
    constexpr double least = 16.0, factor = 10.0; // as in AMD's published defaults
    return static_cast<i32>(std::max(least, factor * std::sqrt(static_cast<double>(nodes))));
}

CompressedGraph::CompressedGraph(const Graph& graph)
    : columns_(graph.n),
      room_(room_for(graph)),
      node_(graph.n),
      list_(room_),
      first_column_(graph.n),
      last_column_(graph.n),
      next_column_(graph.n),
      node_of_(graph.n) {}

i32 CompressedGraph::build(const Graph& graph) {
    const i32 n = columns_;
    const Scratch<i32> hash_first(n), hash_next(n), mark(n);
    const Scratch<Hash> hash(n);
    const void* const arrays[] = {node_.data(),        list_.data(),    first_column_.data(), last_column_.data(),
                                  next_column_.data(), node_of_.data(), hash_first.data(),    hash_next.data(),
                                  mark.data(),         hash.data()};
    for (const void* array : arrays)
        if (!array) return kNoMemory;
    if (i64{graph.xadj[n]} + n > room_) return kNoMemory;
    merge_columns(graph, hash_first.data(), hash_next.data(), mark.data(), hash.data());
    link_nodes(graph, mark.data());
    put_off_dense_nodes();
    return 0;
}

/// Each column becomes a node, or joins the node of an earlier column with the same closed neighbourhood. Buckets chain
/// the nodes by the hash of their first columns.
void CompressedGraph::merge_columns(const Graph& graph, i32* hash_first, i32* hash_next, i32* mark, Hash* hash) {
    const i32 n = columns_;
    std::fill_n(hash_first, n, -1);
    std::fill_n(mark, n, -1);
    i32 *first = first_column_.data(), *last = last_column_.data();
    std::fill_n(next_column_.data(), n, -1);
    const auto same_neighbours = [&](i32 column, i32 other) {
        if (hash[column] != hash[other] || degree_of(graph, column) != degree_of(graph, other)) return false;
        if (mark[column] != column) {
            mark[column] = column;
            for (i32 k = graph.xadj[column]; k < graph.xadj[column + 1]; ++k) mark[graph.adjncy[k]] = column;
        }
        const auto marked = [&](i32 j) { return mark[j] == column; };
        return marked(other) &&
               std::all_of(graph.adjncy + graph.xadj[other], graph.adjncy + graph.xadj[other + 1], marked);
    };
    for (i32 column = 0; column < n; ++column) {
        hash[column] = hash_of(graph, column);
        i32& bucket = hash_first[hash[column] % static_cast<Hash>(n)];
        i32 node = bucket;
        while (node >= 0 && !same_neighbours(column, first[node])) node = hash_next[node];
        if (node < 0) {
            node = nodes_++;
            first[node] = column;
            node_.data()[node].weight = 0;
            hash_next[node] = bucket;
            bucket = node;
        } else next_column_.data()[last[node]] = column;
        last[node] = column;
        ++node_.data()[node].weight;
        node_of_.data()[column] = node;
    }
}

void CompressedGraph::link_nodes(const Graph& graph, i32* mark) {
    std::fill_n(mark, nodes_, -1);
    i32* list = list_.data();
    for (i32 node = 0; node < nodes_; ++node) {
        const i32 column = first_column_.data()[node];
        node_.data()[node].begin = used_;
        mark[node] = node;
        for (i32 k = graph.xadj[column]; k < graph.xadj[column + 1]; ++k) {
            const i32 other = node_of_.data()[graph.adjncy[k]];
            if (mark[other] == node) continue;
            mark[other] = node;
            list[used_++] = other;
        }
        node_.data()[node].length = used_ - node_.data()[node].begin;
    }
}

void CompressedGraph::put_off_dense_nodes() {
    QuotientNode* const node = node_.data();
    const i32 most = densest_to_order(nodes_);
    for (i32 i = 0; i < nodes_; ++i) {
        if (node[i].length <= most) continue;
        dense_columns_ += node[i].weight;
        node[i].weight = 0;
    }
    if (dense_columns_ == 0) return;
    for (i32 i = 0; i < nodes_; ++i) {
        if (node[i].weight == 0) {
            node[i].begin = -1;
            node[i].length = 0;
            continue;
        }
        i32* const own = list_.data() + node[i].begin;
        const auto is_dense = [&](i32 other) { return node[other].weight == 0; };
        node[i].length = static_cast<i32>(std::remove_if(own, own + node[i].length, is_dense) - own);
    }
}

} // namespace nxl::pardiso
