#include "solvers_ds/kernel/default/pardiso/separators.hpp"
#include "service/scratch.hpp"
#include <algorithm>

namespace nxl::pardiso {

i32 gather_subgraphs(i32 columns, i32* perm, Separators& separators) {
    const i32 subgraphs = separators.subgraphs();
    const Scratch<i32> old_perm(columns);
    if (!old_perm.data()) return kNoMemory;
    std::copy_n(perm, columns, old_perm.data());
    const i32* old = old_perm.data();
    i32 next = 0;
    for (i32 s = 0; s < subgraphs; ++s) next += std::max(separators.last(s) - separators.first(s) + 1, 0);
    const i32 root_first = next;
    next = 0;
    i32 next_of_root = root_first, column = 0;
    for (i32 s = 0; s < subgraphs; ++s) {
        const i32 begin = separators.first(s) - 1, end = separators.last(s);
        for (; column < begin; ++column) perm[next_of_root++] = old[column];
        separators.first(s) = next + 1;
        for (; column < end; ++column) perm[next++] = old[column];
        separators.last(s) = next;
    }
    for (; column < columns; ++column) perm[next_of_root++] = old[column];
    separators.first(subgraphs) = root_first + 1;
    separators.last(subgraphs) = columns;
    return 0;
}

} // namespace nxl::pardiso
