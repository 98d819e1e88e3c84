#include "solvers_ds/kernel/default/pardiso/smat.hpp"
#include "service/assertion.hpp"
#include "service/handle_memory.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/symmetric_pattern.hpp"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numeric>

namespace nxl::pardiso {
namespace {

/// `count` elements, or one where there are none, so that null always means no memory.
template <class T> T* take(i64 count) { return take_for_handle<T>(std::max(count, i64{1})); }

Smat* complete(Smat* mat, bool whole) {
    if (whole) return mat;
    if (mat) smat_free(mat);
    return nullptr;
}

} // namespace

Smat* smat_create(u32 m, u32 n, i32 sym) {
    auto* mat = take_for_handle<Smat>(1);
    if (!mat) return nullptr;
    *mat = {.m = m, .n = n, .nnz = 0, .sym = sym, .ia = take<i32>(i64{m} + 1), .ja = nullptr, .a = nullptr};
    if (mat->ia) std::fill_n(mat->ia, i64{m} + 1, 0);
    return complete(mat, mat->ia != nullptr);
}

Smat* smat_create_pattern(u32 m, u32 n, u32 nnz, i32 sym) {
    Smat* mat = smat_create(m, n, sym);
    if (!mat) return nullptr;
    mat->nnz = nnz;
    mat->ja = take<i32>(nnz);
    return complete(mat, mat->ja != nullptr);
}

Smat* smat_create_full(u32 m, u32 n, u32 nnz, i32 sym) {
    Smat* mat = smat_create_pattern(m, n, nnz, sym);
    if (!mat) return nullptr;
    mat->a = take<double>(nnz);
    return complete(mat, mat->a != nullptr);
}

Smat* smat_wrap(u32 m, u32 n, i32* ia, i32* ja, double* a, i32 base_index, i32 sym) {
    require(base_index == 0 || base_index == 1, "base_index == 0 || base_index == 1");
    auto* mat = take_for_handle<Smat>(1);
    if (!mat) return nullptr;
    *mat = {.m = m, .n = n, .nnz = static_cast<u32>(ia[m] - base_index), .sym = sym, .ia = ia, .ja = ja, .a = a};
    if (base_index == 1) smat_to_zero_base(mat);
    return mat;
}

void smat_release(Smat* mat) { give_back(mat); }

void smat_free(Smat* mat) {
    if (!mat) {
        std::printf("Trying to free NULL matrix.\n");
        return;
    }
    give_back(mat->ia);
    give_back(mat->ja);
    give_back(mat->a);
    give_back(mat);
}

void smat_to_zero_base(Smat* mat) {
    require(mat->ia[0] == 1, "mat->ia[0] == 1");
    for (u32 i = 0; i <= mat->m; ++i) --mat->ia[i];
    for (u32 k = 0; k < mat->nnz; ++k) --mat->ja[k];
    require(static_cast<i32>(mat->nnz) == mat->ia[mat->m], "(pint) mat->nnz == mat->ia[mat->m]");
}

void ZeroBased::shift(i32 by) const {
    const i32 entries = ia_[n_] - ia_[0];
    for (i32 i = 0; i <= n_; ++i) ia_[i] += by;
    for (i32 k = 0; k < entries; ++k) ja_[k] += by;
}

bool smat_has_diagonal(const Smat* mat) {
    for (u32 i = 0; i < mat->m; ++i)
        if (std::count(mat->ja + mat->ia[i], mat->ja + mat->ia[i + 1], static_cast<i32>(i)) != 1) return false;
    return true;
}

Smat* smat_copy_pattern(const Smat* src) {
    Smat* copy = smat_create_pattern(src->m, src->n, src->nnz, src->sym);
    if (!copy) return nullptr;
    std::copy_n(src->ia, i64{src->m} + 1, copy->ia);
    std::copy_n(src->ja, src->nnz, copy->ja);
    return copy;
}

Smat* smat_copy(const Smat* src) {
    Smat* copy = smat_copy_pattern(src);
    if (!copy || !src->a) return copy;
    copy->a = take<double>(src->nnz);
    if (copy->a) std::copy_n(src->a, src->nnz, copy->a);
    return complete(copy, copy->a != nullptr);
}

int smat_check(const Smat* mat) {
    if (mat->ia[0] != 0 || mat->ia[mat->m] != static_cast<i32>(mat->nnz)) return 0;
    for (u32 i = 0; i < mat->m; ++i)
        if (mat->ia[i] >= mat->ia[i + 1]) return 0;
    for (u32 i = 0; i < mat->m; ++i) {
        i32 before = -1;
        for (i32 k = mat->ia[i]; k < mat->ia[i + 1]; ++k) {
            const i32 column = mat->ja[k];
            if (column <= before || column >= static_cast<i32>(mat->n)) return 0;
            if (mat->a && !std::isfinite(mat->a[k])) return 0;
            before = column;
        }
    }
    return 1;
}

namespace {

/// False when there is no memory; the array is then as it was.
template <class T> bool resize(T*& array, i64 count) {
    void* moved = allocator.realloc(array, static_cast<std::size_t>(std::max(count, i64{1})) * sizeof(T));
    if (moved) array = static_cast<T*>(moved);
    return moved != nullptr;
}

bool resize_entries(Smat* mat, i64 count, bool with_values) {
    if (count > std::numeric_limits<i32>::max()) return false;
    return resize(mat->ja, count) && (!with_values || resize(mat->a, count));
}

void drop_values(Smat* mat) {
    give_back(mat->a);
    mat->a = nullptr;
}

PatternRows rows_of(const Smat* mat) {
    return {.n = static_cast<i32>(mat->m), .start = mat->ia, .column = mat->ja, .base = 0, .row_order = nullptr};
}

/// Moves the entries of an upper triangle, of which the source of each is told in `source` when it is given.
struct EntryMover {
    i32* column;
    double* value; // or null
    i32* source;   // or null

    void move(i32 from, i32 to) const {
        column[to] = column[from];
        if (value) value[to] = value[from];
        if (source) source[to] = from;
    }
    void mirror(i32 from, i32 to, i32 row) const {
        column[to] = row;
        if (value) value[to] = value[from];
        if (source) source[to] = source[from];
    }
};

/// The columns of a matrix: entry e of column j is in row row_of[e] and was entry source[e].
struct Columns {
    const i32 *start, *row_of, *source;
};

/// Gathers P A P^T, column by column of the result, so that its rows ascend. keep(row, column): whether an entry stays.
template <class Keep>
void gather_permuted(const Columns& columns, const Perm* perm, const Perm* inverse, const double* value,
                     const Keep& keep, Smat* dst) {
    const i32 n = perm->n;
    const auto for_each_kept = [&](const auto& visit) {
        for (i32 c = 0; c < n; ++c) {
            const i32 j = inverse->p[c];
            for (i32 e = columns.start[j]; e < columns.start[j + 1]; ++e)
                if (const i32 row = perm->p[columns.row_of[e]]; keep(row, c)) visit(row, c, columns.source[e]);
        }
    };
    for_each_kept([&](i32 row, i32, i32) { ++dst->ia[row + 1]; });
    cursors_from_counts(n, dst->ia);
    for_each_kept([&](i32 row, i32 column, i32 source) {
        const i32 place = dst->ia[row + 1]++;
        dst->ja[place] = column;
        if (value) dst->a[place] = value[source];
    });
    require(dst->ia[n] == static_cast<i32>(dst->nnz), "dst->ia[dst->m] == (pint) dst->nnz");
}

bool permute_triangle(const Smat* src, const Perm* perm, const Perm* inverse, const double* value, Smat* dst) {
    const OwnedSmat all(smat_copy_pattern(src));
    const Scratch<i32> source(2 * i64{src->nnz} - i64{src->m});
    if (!all || !source.data() || !smat_expand_symmetric(all.get(), false, source.data())) return false;
    const Columns columns = {.start = all->ia, .row_of = all->ja, .source = source.data()}; // rows, as it is symmetric
    gather_permuted(columns, perm, inverse, value, [](i32 row, i32 column) { return column >= row; }, dst);
    return true;
}

bool permute_all(const Smat* src, const Perm* perm, const Perm* inverse, const double* value, Smat* dst) {
    const i64 nnz = std::max(i64{src->nnz}, i64{1});
    const Scratch<i32> start(i64{src->m} + 1), row_of(nnz), source(nnz);
    if (!start.data() || !row_of.data() || !source.data()) return false;
    transpose(rows_of(src), start.data(), [&](i32 place, i32 i, i32 k) {
        row_of.data()[place] = i;
        source.data()[place] = k;
    });
    const Columns columns = {.start = start.data(), .row_of = row_of.data(), .source = source.data()};
    gather_permuted(columns, perm, inverse, value, [](i32, i32) { return true; }, dst);
    return true;
}

} // namespace

// Rows move to the ends of their new ranges, last row first, so that nothing is overwritten before it has moved; what
// is mirrored then fills each range from its begin, in the order of its rows.
bool smat_expand_symmetric(Smat* mat, bool with_values, i32* index_map) {
    const auto m = static_cast<i32>(mat->m);
    const i64 nnz = 2 * i64{mat->nnz} - m;
    const Scratch<i32> new_start(i64{m} + 1), cursors(i64{m} + 1);
    if (!new_start.data() || !cursors.data() || !resize_entries(mat, nnz, with_values)) return false;
    i32 *new_ia = new_start.data(), *cursor = cursors.data();
    const i32* ia = mat->ia;
    std::fill_n(new_ia, i64{m} + 1, 0);
    for (i32 i = 0; i < m; ++i) {
        new_ia[i + 1] += ia[i + 1] - ia[i];
        for (i32 k = ia[i]; k < ia[i + 1]; ++k)
            if (mat->ja[k] != i) ++new_ia[mat->ja[k] + 1];
    }
    std::partial_sum(new_ia, new_ia + m + 1, new_ia);
    require(new_ia[m] == static_cast<i32>(nnz), "new_ia[dst->m] == (pint) nnz");
    const EntryMover mover = {.column = mat->ja, .value = with_values ? mat->a : nullptr, .source = index_map};
    for (i32 i = m; i-- > 0;)
        for (i32 k = ia[i + 1], to = new_ia[i + 1]; k-- > ia[i];) mover.move(k, --to);
    std::copy_n(new_ia, m, cursor);
    for (i32 i = 0; i < m; ++i)
        for (i32 k = new_ia[i + 1] - (ia[i + 1] - ia[i]); k < new_ia[i + 1]; ++k)
            if (const i32 j = mat->ja[k]; j != i) mover.mirror(k, cursor[j]++, i);
    std::copy_n(new_ia, i64{m} + 1, mat->ia);
    mat->nnz = static_cast<u32>(nnz);
    mat->sym = 0;
    if (!with_values) drop_values(mat);
    return true;
}

Smat* smat_permute(const Smat* src, const Perm* perm, bool with_values) {
    require(src->m == static_cast<u32>(perm->n), "src->m == perm->n");
    require(src->n == static_cast<u32>(perm->n), "src->n == perm->n");
    const double* value = with_values ? src->a : nullptr;
    OwnedSmat dst(value ? smat_create_full(src->m, src->n, src->nnz, src->sym)
                        : smat_create_pattern(src->m, src->n, src->nnz, src->sym));
    const OwnedPerm inverse(perm_invert(perm));
    if (!dst || !inverse) return nullptr;
    const auto permute = src->sym == 1 ? permute_triangle : permute_all;
    return permute(src, perm, inverse.get(), value, dst.get()) ? dst.release() : nullptr;
}

bool smat_symmetrise_pattern(Smat* mat) {
    if (mat->sym == 1) return smat_expand_symmetric(mat, false, nullptr);
    const auto n = static_cast<i32>(mat->m);
    const i64 nnz = mat->nnz;
    OwnedSmat sum(2 * nnz > std::numeric_limits<i32>::max()
                      ? nullptr
                      : smat_create_pattern(mat->m, mat->n, static_cast<u32>(2 * nnz), 0));
    const Scratch<i32> work(2 * i64{n} + 1 + nnz);
    if (!sum || !work.data()) return false;
    add_transpose(rows_of(mat), sum->ia, sum->ja, work.data());
    sum->nnz = static_cast<u32>(sum->ia[n]);
    std::swap(*mat, *sum);
    return true;
}

} // namespace nxl::pardiso
