#include "solvers_ds/kernel/default/pardiso/nested_dissection.hpp"
#include "service/scratch.hpp"
#include <algorithm>
#include <csignal>
#include <metis.h>
#include <numeric>
#include <type_traits>

namespace nxl::pardiso {
namespace {

static_assert(std::is_same_v<idx_t, i32>, "METIS has to be the one with 32-bit indices");

/// A row this long, as a part of all rows, is dense.
constexpr i32 kDensePart = 8;
/// METIS orders rows longer than a tenth of this times the average last, outside its partition.
constexpr i32 kPruningFactor = 200;

/// METIS takes SIGTERM for a fault of its own while it runs: it would end with an error, and the signal be lost. With
/// this one the signal waits, and is then the host's as ever. Where METIS runs out of memory it raises SIGABRT.
class TerminationWaits {
    sigset_t before_;

  public:
    TerminationWaits() {
        sigset_t termination;
        sigemptyset(&termination);
        sigaddset(&termination, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &termination, &before_);
    }
    ~TerminationWaits() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    TerminationWaits(const TerminationWaits&) = delete;
    TerminationWaits& operator=(const TerminationWaits&) = delete;
};

bool has_dense_rows(const DissectedGraph& graph) {
    i32 longest = 0;
    for (i32 i = 0; i < graph.n; ++i) longest = std::max(longest, graph.xadj[i + 1] - graph.xadj[i]);
    return longest >= graph.n / kDensePart;
}

/// Where the subgraphs of a partition stand in its order. METIS divides a graph into a first part, a second part and
/// the separator between them, numbered in this order, and each part likewise. The divisions are a binary heap: that
/// of part i, 0 the whole graph, makes 2 i + 2 first and 2 i + 1 second, and parts - 1 and above are subgraphs. Entry
/// 2 parts - 2 - i of the sizes is the size of a subgraph or, above, of the separator; a part without edges is not
/// divided and counts as its own separator.
class SubgraphRanges {
    const i32* sizes_;
    i32 parts_;
    Separators& separators_;
    i32 subgraph_ = 0, column_ = 0;

    void walk(i32 part) { // as deep as there are divisions
        const i32 size = sizes_[2 * parts_ - 2 - part];
        if (part >= parts_ - 1) {
            separators_.first(subgraph_) = column_ + 1;
            separators_.last(subgraph_++) = column_ + size;
        } else {
            walk(2 * part + 2);
            walk(2 * part + 1);
        }
        column_ += size;
    }

  public:
    SubgraphRanges(const i32* sizes, i32 parts, Separators& separators)
        : sizes_(sizes),
          parts_(parts),
          separators_(separators) {}

    /// Fills in the record. Returns the number of columns.
    i32 tell() {
        separators_.n = 2 * (parts_ + 1);
        walk(0);
        separators_.last(parts_) = column_;
        separators_.first(parts_) = column_ - sizes_[2 * parts_ - 2] + 1;
        return column_;
    }
};

i32 code_of(int metis_status) {
    if (metis_status == METIS_OK) return 0;
    return metis_status == METIS_ERROR_MEMORY ? kNoMemory : kNoPartition;
}

i32 dissect_into(i32 parts, const DissectedGraph& graph, i32* options, i32* perm, i32* invp, Separators& separators) {
    const Scratch<i32> sizes(2 * i64{parts} - 1);
    if (!sizes.data()) return kNoMemory;
    const TerminationWaits waits;
    const i32 code =
        code_of(METIS_NodeNDP(graph.n, graph.xadj, graph.adjncy, nullptr, parts, options, perm, invp, sizes.data()));
    if (code != 0) return code;
    return SubgraphRanges(sizes.data(), parts, separators).tell() == graph.n ? 0 : kNoPartition;
}

} // namespace

i32 nested_dissection(const DissectedGraph& graph, i32 parts, i32* perm, i32* invp, Separators& separators) {
    i32 n = graph.n;
    set_single_subgraph(separators, n);
    if (n < kLeastToDissect || graph.xadj[n] == 0) {
        std::iota(perm, perm + n, 0);
        std::iota(invp, invp + n, 0);
        return 0;
    }
    i32 options[METIS_NOPTIONS];
    METIS_SetDefaultOptions(options);
    const bool dense = has_dense_rows(graph);
    if (dense) options[METIS_OPTION_PFACTOR] = kPruningFactor;
    if (parts > 1 && !dense) return dissect_into(parts, graph, options, perm, invp, separators);
    const TerminationWaits waits;
    return code_of(METIS_NodeND(&n, graph.xadj, graph.adjncy, nullptr, options, perm, invp));
}

} // namespace nxl::pardiso
