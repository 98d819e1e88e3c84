// bitvec, perm and smat against plain sets and maps of entries.
#include "solvers_ds/kernel/default/pardiso/bitvec.hpp"
#include "solvers_ds/kernel/default/pardiso/smat.hpp"
#include "tests/support/captured.hpp"
#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <numeric>
#include <random>
#include <set>

namespace {

using namespace nxl::pardiso;
using Entries = std::map<std::pair<i32, i32>, double>;

OwnedPerm random_perm(i32 n, unsigned seed) {
    OwnedPerm perm(perm_create_identity(n));
    std::shuffle(perm->p, perm->p + n, std::mt19937(seed));
    return perm;
}

/// A square matrix with its whole diagonal; `upper`: without entries below it. Columns descend, so that whatever is to
/// ascend was sorted.
OwnedSmat random_matrix(i32 n, bool upper, unsigned seed) {
    std::mt19937 random(seed);
    const auto order = static_cast<u32>(n);
    Entries entries;
    for (i32 i = 0; i < n; ++i) entries[{i, i}] = i + 1;
    for (i32 k = 0; k < 3 * n; ++k) {
        auto [i, j] = std::pair(static_cast<i32>(random() % order), static_cast<i32>(random() % order));
        if (upper && i > j) std::swap(i, j);
        entries[{i, j}] = static_cast<double>(random() % 1000);
    }
    OwnedSmat mat(smat_create_full(order, order, static_cast<u32>(entries.size()), upper ? 1 : 0));
    i32 k = 0;
    for (i32 i = 0; i < n; ++i) {
        for (auto at = entries.upper_bound({i, n}); at != entries.begin() && std::prev(at)->first.first == i; ++k) {
            --at;
            mat->ja[k] = at->first.second;
            mat->a[k] = at->second;
        }
        mat->ia[i + 1] = k;
    }
    return mat;
}

Entries entries_of(const Smat* mat) {
    Entries entries;
    for (u32 i = 0; i < mat->m; ++i)
        for (i32 k = mat->ia[i]; k < mat->ia[i + 1]; ++k)
            EXPECT_TRUE(entries.emplace(std::pair(i, mat->ja[k]), mat->a ? mat->a[k] : 0.0).second);
    EXPECT_EQ(entries.size(), mat->nnz);
    return entries;
}

Entries with_mirror(const Entries& entries) {
    Entries all = entries;
    for (const auto& [place, value] : entries) all[{place.second, place.first}] = value;
    return all;
}

class Matrices : public ::testing::TestWithParam<i32> {};

TEST_P(Matrices, ArePermutedWithAscendingRows) {
    const i32 n = GetParam();
    for (const bool upper : {false, true}) {
        const auto mat = random_matrix(n, upper, 3);
        const auto perm = random_perm(n, 5);
        const OwnedSmat moved(smat_permute(mat.get(), perm.get(), true));
        Entries expected;
        for (const auto& [place, value] : upper ? with_mirror(entries_of(mat.get())) : entries_of(mat.get()))
            if (const auto to = std::pair(perm->p[place.first], perm->p[place.second]); !upper || to.first <= to.second)
                expected[to] = value;
        EXPECT_EQ(entries_of(moved.get()), expected);
        EXPECT_EQ(smat_check(moved.get()), 1);
        EXPECT_EQ(moved->sym, upper ? 1 : 0);
    }
}

TEST_P(Matrices, AreExpandedInPlaceAndTellTheSourceOfEachEntry) {
    const i32 n = GetParam();
    const auto upper = random_matrix(n, true, 7);
    const OwnedPerm same(perm_create_identity(n));
    const OwnedSmat sorted(smat_permute(upper.get(), same.get(), true)), mat(smat_copy(sorted.get()));
    std::vector<i32> source(2 * mat->nnz);
    ASSERT_TRUE(smat_expand_symmetric(mat.get(), true, source.data()));
    EXPECT_EQ(entries_of(mat.get()), with_mirror(entries_of(sorted.get())));
    EXPECT_EQ(smat_check(mat.get()), 1);
    for (u32 k = 0; k < mat->nnz; ++k) EXPECT_EQ(mat->a[k], sorted->a[source[k]]);
}

TEST_P(Matrices, GiveThePatternOfTheSumWithTheTranspose) {
    const auto mat = random_matrix(GetParam(), false, 11);
    Entries expected;
    for (const auto& entry : with_mirror(entries_of(mat.get())))
        if (entry.first.first != entry.first.second) expected[entry.first] = 0.0;
    ASSERT_TRUE(smat_symmetrise_pattern(mat.get()));
    EXPECT_EQ(entries_of(mat.get()), expected);
    for (u32 i = 0; i < mat->m; ++i) EXPECT_TRUE(std::is_sorted(mat->ja + mat->ia[i], mat->ja + mat->ia[i + 1]));
}

INSTANTIATE_TEST_SUITE_P(Orders, Matrices, ::testing::Values(1, 2, 9, 60));

TEST(Smat, WrapsArraysOfEitherBase) {
    std::vector<i32> ia = {1, 3, 4}, ja = {1, 2, 2};
    {
        const ZeroBased shifted(2, ia.data(), ja.data());
        EXPECT_EQ(ja, (std::vector<i32>{0, 1, 1}));
    }
    EXPECT_EQ(ia, (std::vector<i32>{1, 3, 4}));
    const WrappedSmat mat(smat_wrap(2, 2, ia.data(), ja.data(), nullptr, 1, 1));
    EXPECT_EQ(ja, (std::vector<i32>{0, 1, 1}));
    EXPECT_EQ(mat->nnz, 3U);
    EXPECT_EQ(nxl_test::printed_by([] { smat_free(nullptr); }), "Trying to free NULL matrix.\n");
}

TEST(Smat, CheckFindsEachFault) {
    const auto with = [](auto&& harm) {
        const OwnedPerm same(perm_create_identity(9));
        const OwnedSmat mat(smat_permute(random_matrix(9, false, 13).get(), same.get(), true));
        harm(*mat);
        return smat_check(mat.get());
    };
    EXPECT_EQ(with([](Smat&) {}), 1);
    EXPECT_EQ(with([](Smat& mat) { mat.ia[0] = 1; }), 0);
    EXPECT_EQ(with([](Smat& mat) { mat.ia[3] = mat.ia[4]; }), 0);
    EXPECT_EQ(with([](Smat& mat) { --mat.nnz; }), 0);
    EXPECT_EQ(with([](Smat& mat) { mat.ja[mat.nnz - 1] = 9; }), 0);
    EXPECT_EQ(with([](Smat& mat) { mat.ja[0] = -1; }), 0);
    EXPECT_EQ(with([](Smat& mat) { std::swap(mat.ja[0], mat.ja[1]); }), 0);
    EXPECT_EQ(with([](Smat& mat) { mat.a[2] = std::numeric_limits<double>::infinity(); }), 0);
}

TEST(Perm, ComposesInvertsAndFallsIntoCycles) {
    const i32 n = 100;
    const auto p = random_perm(n, 1), q = random_perm(n, 2);
    const OwnedPerm both(perm_compose(p.get(), q.get())), back(perm_invert(both.get()));
    for (i32 i = 0; i < n; ++i) EXPECT_EQ(back->p[q->p[p->p[i]]], i);
    const OwnedCycles cycles(perm_cycles(p.get()));
    std::set<i32> seen;
    for (i32 c = 0; c < cycles->cycles; ++c)
        for (i32 k = cycles->start[c]; k < cycles->start[c + 1]; ++k) {
            const i32 next = k + 1 < cycles->start[c + 1] ? k + 1 : cycles->start[c];
            EXPECT_EQ(p->p[cycles->element[k]], cycles->element[next]);
            seen.insert(cycles->element[k]);
        }
    EXPECT_EQ(seen.size(), static_cast<std::size_t>(n));
}

TEST(Perm, CheckTellsWhatIsWrong) {
    const OwnedPerm perm(perm_create_identity(5));
    EXPECT_TRUE(perm_check(perm.get()));
    perm->p[1] = 5;
    perm->p[3] = perm->p[4] = 0;
    EXPECT_EQ(nxl_test::printed_by([&] { EXPECT_FALSE(perm_check(perm.get())); }),
              "Permutation contains 1 out-of-range elements (first:  1 -> 5)\n"
              "Permutation contains 2 multiple element pairs (first: 3 -> 0)\nPermutation is inconsistent!\n");
}

TEST(Bitvec, HoldsBitsAcrossWords) {
    EXPECT_EQ(bitvec_words(1), 1U);
    EXPECT_EQ(bitvec_words(32), 1U);
    EXPECT_EQ(bitvec_words(33), 2U);
    const auto perm = random_perm(70, 3);
    std::vector<u32> words(bitvec_words(70), 0);
    const OwnedBitvec bv(bitvec_wrap(70, words.data()));
    for (u32 i = 0; i < 70; i += 3) bitvec_set(bv.get(), i);
    ASSERT_TRUE(bitvec_permute_in_place(bv.get(), perm.get()));
    for (i32 i = 0; i < 70; ++i) EXPECT_EQ(bitvec_get(bv.get(), static_cast<u32>(perm->p[i])), i % 3 == 0 ? 1 : 0);
    bitvec_clear_all(bv.get());
    EXPECT_EQ(words, std::vector<u32>(words.size(), 0));
}

TEST(ContainersDeathTest, BrokenInvariantsAbortWithTextSourceAndLine) {
    const OwnedBitvec bv(bitvec_create(32));
    const OwnedPerm perm(perm_create_identity(3));
    const OwnedSmat mat(smat_create(2, 2, 0)), gap(smat_create_pattern(2, 2, 1, 1));
    gap->ja[0] = 1;
    gap->ia[1] = gap->ia[2] = 1;
    EXPECT_DEATH(bitvec_set(bv.get(), 32), "bit < bv->size, file pardiso/bitvec, line [0-9]+");
    EXPECT_DEATH(bitvec_permute(bv.get(), perm.get()), "src->size == perm->n, file pardiso/bitvec");
    EXPECT_DEATH(bitvec_permute(nullptr, perm.get()), "failed: src, file pardiso/bitvec");
    EXPECT_DEATH(smat_wrap(2, 2, mat->ia, mat->ja, nullptr, 2, 0),
                 "base_index == 0 \\|\\| base_index == 1, file pardiso/smat");
    EXPECT_DEATH(smat_to_zero_base(mat.get()), "mat->ia\\[0\\] == 1, file pardiso/smat,");
    EXPECT_DEATH(smat_permute(mat.get(), perm.get(), false), "src->m == perm->n, file pardiso/smat,");
    EXPECT_DEATH(smat_expand_symmetric(gap.get(), false, nullptr),
                 "new_ia\\[dst->m\\] == \\(pint\\) nnz, file pardiso/smat,");
}

} // namespace
