// The graph of a partly eliminated matrix in the room of the first one. A node is a variable, which stands for `weight`
// columns that are indistinguishable, or an element: an eliminated variable, whose list is the clique that it left. The
// list of a variable has its elements and then the variables that no element joins it with.
// A. George and J. W. H. Liu, SIAM Review 31 (1989); outside sizes and the absorption of elements that lie within
// another: P. R. Amestoy, T. A. Davis and I. S. Duff, SIAM J. Matrix Anal. Appl. 17 (1996).
#pragma once
#include "solvers_ds/kernel/default/pardiso/degree_lists.hpp"

namespace nxl::pardiso {

/// What is looked at together stands together: half a line of cache.
struct QuotientNode {
    i32 begin, length; // its list
    i32 elements;      // how many the list of a variable begins with
    i32 weight;        // columns that a variable stands for; 0: an element, or merged into another variable
    i32 closed_degree; // of a variable, its weight and those of all that it is adjacent to, or less, see `exact`
    i32 outside;       // of an element, the weight of its list
    i32 tag;
    i32 hash;
};

/// The nodes and lists, and arrays of one integer for each node or column.
struct QuotientArrays {
    QuotientNode* node;
    i32* list; // the lists of all nodes, one after the other, and then room to work in
    i32 room;  // the sum of their lengths, and at least one integer for each node
    i32 *hash_first, *hash_next;
    i32 *first_column, *last_column; // the chain of columns that a node stands for
    i32* next_column;                // for each column the next in its chain, or -1
    i32* parent;                     // of an element, the one that absorbed it, or -1
    unsigned char* exact;            // whether closed_degree is the degree, or a lower bound
};

class QuotientGraph {
    QuotientArrays a_;
    DegreeLists& lists_;
    i32 n_, free_;
    unsigned bucket_mask_;
    i32 tag_ = 1, base_tag_ = 1, largest_element_ = 0;
    i32 pivot_weight_ = 0, clique_weight_ = 0; // of the elimination that is under way

    i32* list_of(i32 node) const { return a_.list + a_.node[node].begin; }
    i32 new_tag(i32 span);
    void compact();
    void append_alive(const i32* list, i32 length, i32& end);
    void form_clique(i32 pivot);
    void weigh_outside(i32 pivot);
    void update(i32 variable, i32 pivot);
    bool alike(i32 variable, i32 other, i32 tag) const;
    void append_columns(i32 of, i32 to) const;
    void merge_alike(i32 variable);
    void merge_indistinguishable(i32 pivot);
    void close(i32 pivot);

  public:
    /// The lists are those of the variables, up to `used`; their places, weights and the chains of columns are set.
    QuotientGraph(const QuotientArrays& arrays, DegreeLists& lists, i32 nodes, i32 used);

    i32 weight(i32 node) const { return a_.node[node].weight; }
    bool exact(i32 variable) const { return a_.exact[variable] != 0; }
    /// Weight of what a variable is adjacent to, or a lower bound.
    i32 external_degree(i32 variable) const { return a_.node[variable].closed_degree - a_.node[variable].weight; }

    /// Makes the degree of a variable exact.
    void find_degree(i32 variable);

    /// Turns a variable into an element. All variables of its clique leave their degree lists; those that become
    /// indistinguishable are merged, those without other neighbours are eliminated with it. Returns the columns that
    /// are eliminated.
    i32 eliminate(i32 variable);
    const i32* clique_begin(i32 element) const { return list_of(element); }
    const i32* clique_end(i32 element) const { return list_of(element) + a_.node[element].length; }
};

} // namespace nxl::pardiso
