#include "solvers_ds/kernel/default/pardiso/quotient_graph.hpp"
#include <bit>
#include <limits>

namespace nxl::pardiso {

QuotientGraph::QuotientGraph(const QuotientArrays& arrays, DegreeLists& lists, i32 nodes, i32 used)
    : a_(arrays),
      lists_(lists),
      n_(nodes),
      free_(used),
      bucket_mask_(std::bit_floor(static_cast<unsigned>(nodes)) - 1) {
    std::fill_n(a_.hash_first, n_, -1);
    std::fill_n(a_.parent, n_, -1);
    for (i32 i = 0; i < n_; ++i) {
        a_.node[i].elements = 0;
        a_.node[i].tag = 1;
    }
    for (i32 i = 0; i < n_; ++i)
        if (a_.node[i].weight > 0) find_degree(i);
}

/// A tag that no node has, as none of the `span` above it. Absorbed elements have tag 0 for good.
i32 QuotientGraph::new_tag(i32 span) {
    if (tag_ > std::numeric_limits<i32>::max() - 2 * span - 2) {
        for (i32 i = 0; i < n_; ++i) a_.node[i].tag = a_.node[i].tag != 0 ? 1 : 0;
        tag_ = 1;
    }
    const i32 tag = tag_ + 1;
    tag_ = tag + span;
    return tag;
}

/// Closes the gaps between lists. The first element of each is kept in `begin` while ~node marks its place.
void QuotientGraph::compact() {
    for (i32 i = 0; i < n_; ++i) {
        if (a_.node[i].length == 0) continue;
        i32& first = *list_of(i);
        a_.node[i].begin = first;
        first = ~i;
    }
    i32 to = 0;
    for (i32 from = 0; from < free_;) {
        if (a_.list[from] >= 0) {
            ++from;
            continue;
        }
        const i32 node = ~a_.list[from], end = from + a_.node[node].length;
        a_.list[to] = a_.node[node].begin;
        a_.node[node].begin = to++;
        for (++from; from < end; ++from) a_.list[to++] = a_.list[from];
    }
    free_ = to;
}

void QuotientGraph::find_degree(i32 variable) {
    const i32 tag = new_tag(0);
    a_.node[variable].tag = tag;
    i32 sum = a_.node[variable].weight;
    const i32 *list = list_of(variable), *variables = list + a_.node[variable].elements;
    for (; list < variables; ++list) {
        i32 *member = list_of(*list), *end = member + a_.node[*list].length, *to = member;
        for (; member < end; ++member) {
            const i32 j = *member, weight = a_.node[j].weight;
            if (weight == 0) continue; // merged, and leaves the list
            *to++ = j;
            if (a_.node[j].tag == tag) continue;
            a_.node[j].tag = tag;
            sum += weight;
        }
        a_.node[*list].length -= static_cast<i32>(end - to);
    }
    for (const i32* end = list_of(variable) + a_.node[variable].length; list < end; ++list)
        sum += a_.node[*list].weight;
    a_.node[variable].closed_degree = sum;
    a_.exact[variable] = 1;
}

/// Variables that are not in the clique yet go to list[end ...]. Their weights are negative while they are in it.
void QuotientGraph::append_alive(const i32* list, i32 length, i32& end) {
    for (i32 k = 0; k < length; ++k) {
        const i32 j = list[k], weight = a_.node[j].weight;
        if (weight <= 0) continue;
        clique_weight_ += weight;
        a_.node[j].weight = -weight;
        lists_.remove(j);
        a_.list[end++] = j;
    }
}

/// The clique of the pivot: its variables, and those of its elements, which it absorbs.
void QuotientGraph::form_clique(i32 pivot) {
    pivot_weight_ = a_.node[pivot].weight;
    clique_weight_ = 0;
    a_.node[pivot].weight = 0;
    const i32 elements = a_.node[pivot].elements;
    if (elements > 0) { // else in its own place
        i64 need = a_.node[pivot].length;
        for (i32 k = 0; k < elements; ++k) need += a_.node[list_of(pivot)[k]].length;
        if (std::min(need, i64{n_}) > a_.room - free_) compact();
    }
    const i32* own = list_of(pivot);
    const i32 begin = elements > 0 ? free_ : a_.node[pivot].begin;
    i32 end = begin;
    for (i32 k = 0; k < elements; ++k) {
        const i32 element = own[k];
        append_alive(list_of(element), a_.node[element].length, end);
        a_.parent[element] = pivot;
        a_.node[element].tag = 0;
        a_.node[element].length = 0;
    }
    append_alive(own + elements, a_.node[pivot].length - elements, end);
    a_.node[pivot].begin = begin;
    a_.node[pivot].length = end - begin;
    if (elements > 0) free_ = end;
}

/// For each element next to the clique: its tag becomes base_tag_ plus the weight of its variables outside the clique.
void QuotientGraph::weigh_outside(i32 pivot) {
    const i32 tag = base_tag_ = new_tag(largest_element_);
    const i32* clique = list_of(pivot);
    for (i32 k = 0; k < a_.node[pivot].length; ++k) {
        const i32 i = clique[k], weight = -a_.node[i].weight;
        const i32* element = list_of(i);
        for (const i32* end = element + a_.node[i].elements; element < end; ++element) {
            i32& outside = a_.node[*element].tag;
            if (outside >= tag) outside -= weight;
            else if (outside != 0) outside = tag + a_.node[*element].outside - weight;
        }
    }
}

/// A variable of the clique loses its neighbours in there and the elements that lie within, and gets the pivot as its
/// first element. The degree that is left in closed_degree is a bound, or exact, without the clique's weight.
void QuotientGraph::update(i32 variable, i32 pivot) {
    i32 *const list = list_of(variable), *const variables = list + a_.node[variable].elements;
    const i32* const end = list + a_.node[variable].length;
    i32 *to = list, largest = 0;
    auto hash = 0U;
    for (const i32* from = list; from < variables; ++from) {
        const i32 element = *from, outside = a_.node[element].tag - base_tag_;
        if (outside > 0) {
            *to++ = element;
            largest = std::max(largest, outside);
            hash += static_cast<unsigned>(element);
        } else if (a_.node[element].tag != 0) { // within the clique
            a_.parent[element] = pivot;
            a_.node[element].tag = 0;
            a_.node[element].length = 0;
        }
    }
    i32* const kept_variables = to;
    const auto others = static_cast<i32>(to - list);
    i32 sum = 0;
    for (const i32* from = variables; from < end; ++from) {
        const i32 weight = a_.node[*from].weight;
        if (weight <= 0) continue;
        sum += weight;
        hash += static_cast<unsigned>(*from);
        *to++ = *from;
    }
    if (to == list) {                              // adjacent to the clique alone
        pivot_weight_ -= a_.node[variable].weight; // which is negative
        clique_weight_ += a_.node[variable].weight;
        a_.node[variable].weight = 0;
        a_.node[variable].length = 0;
        append_columns(variable, pivot);
        return;
    }
    *to = *kept_variables; // one place at least has become free
    *kept_variables = *list;
    *list = pivot;
    a_.node[variable].elements = others + 1;
    a_.node[variable].length = static_cast<i32>(to - list) + 1;
    a_.exact[variable] = others < 2;
    a_.node[variable].outside = sum + largest;
    // Low bits, and no spreading: nodes that lie together have buckets that do.
    const auto bucket = static_cast<i32>(hash & bucket_mask_);
    a_.node[variable].hash = bucket;
    a_.hash_next[variable] = a_.hash_first[bucket];
    a_.hash_first[bucket] = variable;
}

void QuotientGraph::append_columns(i32 of, i32 to) const {
    a_.next_column[a_.last_column[to]] = a_.first_column[of];
    a_.last_column[to] = a_.last_column[of];
}

/// Whether the lists of two variables hold the same nodes; those of the first have the tag. Both begin with the pivot.
bool QuotientGraph::alike(i32 variable, i32 other, i32 tag) const {
    if (a_.node[variable].length != a_.node[other].length || a_.node[variable].elements != a_.node[other].elements)
        return false;
    const i32* list = list_of(other);
    for (i32 k = 1; k < a_.node[other].length; ++k)
        if (a_.node[list[k]].tag != tag) return false;
    return true;
}

/// Merges into a variable those after it in its bucket that are indistinguishable from it.
void QuotientGraph::merge_alike(i32 variable) {
    const i32 tag = new_tag(0);
    const i32* list = list_of(variable);
    for (i32 k = 1; k < a_.node[variable].length; ++k) a_.node[list[k]].tag = tag;
    for (i32 before = variable, j = a_.hash_next[variable]; j >= 0; j = a_.hash_next[before]) {
        if (!alike(variable, j, tag)) {
            before = j;
            continue;
        }
        a_.node[variable].weight += a_.node[j].weight;
        a_.node[j].weight = 0;
        a_.node[j].length = 0;
        a_.node[variable].closed_degree = std::max(a_.node[variable].closed_degree, a_.node[j].closed_degree);
        append_columns(j, variable);
        a_.hash_next[before] = a_.hash_next[j];
    }
}

void QuotientGraph::merge_indistinguishable(i32 pivot) {
    const i32* clique = list_of(pivot);
    for (i32 k = 0; k < a_.node[pivot].length; ++k) {
        if (a_.node[clique[k]].weight == 0) continue;
        i32& bucket = a_.hash_first[a_.node[clique[k]].hash];
        for (i32 i = bucket; i >= 0 && a_.hash_next[i] >= 0; i = a_.hash_next[i]) merge_alike(i);
        bucket = -1;
    }
}

/// The clique without what was merged or eliminated. An elimination takes at most the columns eliminated from a closed
/// neighbourhood, so an old bound less those remains one; it often is far better than the new one.
void QuotientGraph::close(i32 pivot) {
    i32 *const clique = list_of(pivot), *to = clique;
    for (const i32 *from = clique, *end = clique + a_.node[pivot].length; from < end; ++from) {
        const i32 i = *from, weight = -a_.node[i].weight;
        if (weight == 0) continue;
        a_.node[i].weight = weight;
        const i32 bound = a_.node[i].outside + clique_weight_;
        a_.node[i].closed_degree = a_.exact[i] ? bound : std::max(bound, a_.node[i].closed_degree - pivot_weight_);
        *to++ = i;
    }
    a_.node[pivot].length = static_cast<i32>(to - clique);
    a_.node[pivot].outside = clique_weight_;
    a_.node[pivot].tag = 1;
    largest_element_ = std::max(largest_element_, clique_weight_);
}

i32 QuotientGraph::eliminate(i32 variable) {
    form_clique(variable);
    weigh_outside(variable);
    const i32* clique = list_of(variable);
    for (i32 k = 0; k < a_.node[variable].length; ++k) update(clique[k], variable);
    merge_indistinguishable(variable);
    close(variable);
    return pivot_weight_;
}

} // namespace nxl::pardiso
