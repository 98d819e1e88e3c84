#include "solvers_ds/kernel/default/pardiso/perm.hpp"
#include "service/assertion.hpp"
#include "service/handle_memory.hpp"
#include "service/scratch.hpp"
#include <algorithm>
#include <cstdio>
#include <numeric>

namespace nxl::pardiso {

Perm* perm_create(i32 n) {
    auto* perm = take_for_handle<Perm>(1);
    auto* p = take_for_handle<i32>(std::max(n, 1));
    if (!perm || !p) {
        give_back(perm);
        give_back(p);
        return nullptr;
    }
    *perm = {.n = n, .p = p};
    return perm;
}

Perm* perm_create_zero(i32 n) {
    Perm* perm = perm_create(n);
    if (perm) std::fill_n(perm->p, n, 0);
    return perm;
}

Perm* perm_create_identity(i32 n) {
    Perm* perm = perm_create(n);
    if (perm) std::iota(perm->p, perm->p + n, 0);
    return perm;
}

Perm* perm_copy(const Perm* src) {
    Perm* perm = perm_create(src->n);
    if (perm) std::copy_n(src->p, src->n, perm->p);
    return perm;
}

void perm_free(Perm* perm) {
    if (perm) give_back(perm->p);
    give_back(perm);
}

Perm* perm_compose(const Perm* first, const Perm* second) {
    require(first->n == second->n, "first->n == second->n");
    Perm* perm = perm_create(first->n);
    for (i32 i = 0; perm && i < first->n; ++i) perm->p[i] = second->p[first->p[i]];
    return perm;
}

Perm* perm_invert(const Perm* perm) {
    Perm* inverse = perm_create(perm->n);
    for (i32 i = 0; inverse && i < perm->n; ++i) inverse->p[perm->p[i]] = i;
    return inverse;
}

bool perm_check(const Perm* perm) {
    const i32 n = perm->n;
    const Scratch<char> seen(n);
    if (n < 1) return true;
    if (!seen.data()) return false;
    std::fill_n(seen.data(), n, '\0');
    struct {
        int count = 0;
        i32 first = 0;
        void found_at(i32 i) {
            if (count++ == 0) first = i;
        }
    } outside, repeated;
    for (i32 i = 0; i < n; ++i) {
        const i32 image = perm->p[i];
        if (image < 0 || image >= n) outside.found_at(i);
        else if (seen.data()[image]++) {
            seen.data()[image] = 1;
            repeated.found_at(i);
        }
    }
    if (outside.count == 0 && repeated.count == 0) return true;
    if (outside.count > 0)
        std::printf("Permutation contains %d out-of-range elements (first:  %d -> %ld)\n", outside.count, outside.first,
                    long{perm->p[outside.first]});
    if (repeated.count > 0)
        std::printf("Permutation contains %d multiple element pairs (first: %d -> %ld)\n", repeated.count,
                    repeated.first, long{perm->p[repeated.first]});
    std::printf("Permutation is inconsistent!\n");
    return false;
}

Cycles* perm_cycles(const Perm* perm) {
    const i32 n = perm->n;
    auto* cycles = take_for_handle<Cycles>(1);
    if (!cycles) return nullptr;
    *cycles = {.element = take_for_handle<i32>(std::max(n, 1)),
               .elements = n,
               .cycles = 0,
               .start = take_for_handle<i32>(i64{n} + 1)};
    const Scratch<char> seen(std::max(n, 1));
    if (!cycles->element || !cycles->start || !seen.data()) {
        cycles_free(cycles);
        return nullptr;
    }
    std::fill_n(seen.data(), n, '\0');
    i32 next = 0;
    for (i32 least = 0; least < n; ++least) {
        if (seen.data()[least]) continue;
        cycles->start[cycles->cycles++] = next;
        for (i32 i = least; !seen.data()[i]; i = perm->p[i]) {
            seen.data()[i] = 1;
            cycles->element[next++] = i;
        }
    }
    cycles->start[cycles->cycles] = n;
    return cycles;
}

void cycles_free(Cycles* cycles) {
    if (!cycles) return;
    give_back(cycles->element);
    give_back(cycles->start);
    give_back(cycles);
}

} // namespace nxl::pardiso
