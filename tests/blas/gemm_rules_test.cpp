// The decisions of the level 3 drivers as pure functions: gates on both sides of every threshold, the choice of
// strategy, and that every way of cutting C covers it exactly once.
#include "blas/gemm_processor_seams.hpp"
#include "blas/kernel/default_em64t/level3/gemm_rules.hpp"
#include "blas/kernel/default_em64t/level3/level3_rules.hpp"
#include "blas/kernel/default_em64t/level3/trsm_omp.hpp"
#include "service/worthwhile_threads.hpp"
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace nxl {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

/// A decision that holds at a shape, and no longer where any one of these sizes is smaller by 1.
struct Edge {
    GemmShape at;
    std::string sizes;
};
template <class Decision> void expect_edges(const char* name, Decision holds, std::initializer_list<Edge> edges) {
    for (const auto& [at, sizes] : edges) {
        EXPECT_TRUE(holds(at)) << name << ' ' << at.m << " x " << at.n << " x " << at.k;
        for (const char size : sizes) {
            GemmShape below = at;
            --(size == 'm' ? below.m : size == 'n' ? below.n : below.k);
            EXPECT_FALSE(holds(below)) << name << ' ' << below.m << " x " << below.n << " x " << below.k;
        }
    }
}

TEST(GemmEarlyExit, SmallDepthSmallHeightOrSmallAltogether) {
    expect_edges("not small", [](const GemmShape& s) { return !gemm_is_small(s); },
                 {{{1000, 1000, 5}, "k"},
                  {{6, 1000, 1000}, "m"},
                  {{17, 16, 16}, "m"},
                  {{16, 17, 16}, "n"},
                  {{16, 16, 17}, "k"}});
    EXPECT_FALSE(gemm_is_small({1000, 1, 1000}));
}

TEST(GemmGate, Edges) {
    const auto real = [](i64 threads) { return [=](const GemmShape& s) { return dgemm_may_fork(s, threads); }; };
    const auto complex = [](i64 threads) { return [=](const GemmShape& s) { return zgemm_may_fork(s, threads); }; };
    // Volume, with 8 as half of the rows: n k 8 / 512 > 36 on two threads, a quarter of n and a limit of 9 on eight.
    // Surface alone: (3 mh + 2) / 128 > 48 on two threads, 12 on eight. Depth: above 512 / h, 16 for 64 threads.
    // A share of one column at most is never worth it.
    expect_edges("2", real(2),
                 {{{16, 37, 64}, "k"}, {{4180, 2, 1}, "m"}, {{6, 2, 513}, "k"}, {{1 << 20, 2, 1 << 20}, "n"}});
    expect_edges("3", real(3), {{{17, 37, 64}, "k"}});
    expect_edges("8", real(8), {{{16, 64, 40}, "k"}, {{1108, 8, 1}, "m"}, {{5000, 8, 1000}, "n"}});
    expect_edges("9", real(9), {{{16, 67, 40}, "k"}});
    expect_edges("64", real(64), {{{6, 64, 17}, "k"}});
    expect_edges("1024", real(1024), {{{2000, 1024, 100}, "n"}});
    // Volume: 8 k 8 n / 1024 > 24 from n k = 400; at any volume a depth of 5. With no columns for a thread: surface,
    // mh k / 64 > 6 on eight threads, and depth, above 128 on four.
    expect_edges("complex 2", complex(2), {{{16, 20, 20}, "nk"}, {{1 << 20, 1 << 10, 5}, "k"}});
    expect_edges("complex 8", complex(8), {{{56, 2, 16}, "m"}});
    expect_edges("complex 4", complex(4), {{{6, 1, 129}, "k"}});
}

TEST(GemmGate, SizesBeyondMemoryDoNotOverflow) {
    const i64 huge = (i64{1} << 31) - 1;
    EXPECT_TRUE(dgemm_may_fork({huge, huge, 5}, 2));
    EXPECT_TRUE(zgemm_may_fork({huge, huge, 5}, 2));
    EXPECT_TRUE(dgemm_may_fork({huge, huge, huge}, 2));
    EXPECT_TRUE(zgemm_may_fork({huge, huge, huge}, 1024));
}

TEST(GemmScalars, NaNPassesForTheValueThatItIsComparedWith) {
    for (const double value : {1.0, nan}) EXPECT_TRUE(counts_as(value, 1.0));
    for (const double value : {0.0, 0.5, -1.0, std::nextafter(1.0, 2.0), inf}) EXPECT_FALSE(counts_as(value, 1.0));
    EXPECT_TRUE(counts_as(-0.0, 0.0));
    EXPECT_TRUE(counts_as(zcomplex(nan, nan), 1.0));
    EXPECT_TRUE(counts_as(zcomplex(1.0, nan), 1.0));
    EXPECT_FALSE(counts_as(zcomplex(1.0, 0.5), 1.0));
    EXPECT_FALSE(counts_as(zcomplex(nan, 2.0), 0.0));
    EXPECT_FALSE(counts_as(zcomplex(2.0, nan), 0.0));
}

TEST(GemmStrategy, OtherClassesAndNoSse41) {
    using enum GemmStrategy;
    const GemmShape big{9000, 4000, 500};
    for (const bool sse41 : {false, true}) {
        for (const CpuClass c : {CpuClass::def, CpuClass::p4n}) {
            EXPECT_EQ(dgemm_strategy(big, 4, c, sse41), split_1d);
            EXPECT_EQ(zgemm_strategy(big, c, sse41), split_1d);
        }
        EXPECT_EQ(dgemm_strategy(big, 4, CpuClass::mc3, sse41), grid_nhm);
        EXPECT_EQ(zgemm_strategy(big, CpuClass::mc3, sse41), grid_nhm);
    }
    EXPECT_EQ(zgemm_strategy(big, CpuClass::mc, false), grid);
    const auto takes = [](GemmStrategy wanted, bool sse41) {
        return [=](const GemmShape& s) { return dgemm_strategy(s, 2, CpuClass::mc, sse41) == wanted; };
    };
    expect_edges("shared copy", takes(shared_copy, false), {{{8000, 3000, 512}, "mn"}});
    expect_edges("no shared copy", takes(grid, false), {{{8000, 3000, 513}, "k"}, {{8000, 8000, 512}, "n"}});
    expect_edges(
        "private copies", takes(private_copies, true), // on 2 threads: n <= 2 m
        {{{1000, 1000, 150}, "mnk"}, {{1001, 2002, 150}, "m"}, {{7000, 3000, 5}, "mn"}, {{1200, 1200, 128}, "mnk"}});
    expect_edges("grid", takes(grid, true), {{{1000, 2001, 200}, "n"}});
    expect_edges("complex", [](const GemmShape& s) { return zgemm_strategy(s, CpuClass::mc, true) == private_copies; },
                 {{{400, 400, 200}, "mnk"}, {{7000, 3000, 5}, "mn"}, {{600, 600, 128}, "mnk"}});
    EXPECT_EQ(zgemm_strategy({400, 100000, 200}, CpuClass::mc, true), private_copies);
}

/// Counts how often each element of an m by n matrix is reached.
class Coverage {
    i64 m_, n_;
    std::vector<int> reached_ = std::vector<int>(static_cast<std::size_t>(m_ * n_));

  public:
    Coverage(i64 m, i64 n) : m_(m), n_(n) {}
    void add(Slice rows, Slice columns) {
        for (i64 j = columns.start; j < columns.start + columns.count; ++j)
            for (i64 i = rows.start; i < rows.start + rows.count; ++i) {
                ASSERT_TRUE(0 <= i && i < m_ && 0 <= j && j < n_) << i << ' ' << j;
                ++reached_[static_cast<std::size_t>(i + j * m_)];
            }
    }
    bool once(const std::function<bool(i64, i64)>& wanted = [](i64, i64) { return true; }) const {
        for (i64 j = 0; j < n_; ++j)
            for (i64 i = 0; i < m_; ++i)
                if (reached_[static_cast<std::size_t>(i + j * m_)] != (wanted(i, j) ? 1 : 0)) return false;
        return true;
    }
};

constexpr i64 any_threads[] = {2, 3, 4, 5, 7, 8, 16, 31, 300};

std::vector<GemmShape> any_shapes() {
    std::mt19937 random(11);
    std::uniform_int_distribution<i64> size(1, 90);
    std::vector<GemmShape> shapes{{1, 1, 1}, {90, 1, 1}, {1, 90, 1}};
    for (int i = 0; i < 40; ++i) shapes.push_back({size(random), size(random), 1});
    return shapes;
}

TEST(GemmCuts, SlicesCoverASideOnce) {
    for (const i64 length : {1, 2, 7, 64, 1000})
        for (const i64 slices : {2, 3, 8, 1024})
            for (const i64 unit : {1, 4}) {
                i64 next = 0;
                for (i64 i = 0; i < slices; ++i) {
                    const Slice slice = slice_of(length, round_down(length / slices, unit), i, slices);
                    EXPECT_LT(slice.start, length); // a pointer that may be formed
                    if (slice.count > 0) EXPECT_EQ(slice.start, next);
                    next += slice.count;
                }
                EXPECT_EQ(next, length);
            }
    EXPECT_EQ(slice_of(0, 0, 3, 4).start, 0);
    EXPECT_EQ(slice_of(0, 0, 3, 4).count, 0);
}

TEST(GemmCuts, GridsCoverC) {
    for (const GemmShape& shape : any_shapes())
        for (const i64 offered : any_threads)
            for (const i64 unit : {2, 4}) {
                const i64 threads = even_threads(offered);
                const GemmGrid grid(shape, threads, grid_rows(shape, threads), unit, 4);
                ASSERT_EQ(grid.cells(), threads);
                Coverage covered(shape.m, shape.n);
                for (i64 i = 0; i < threads; ++i) covered.add(grid.cell(i).rows, grid.cell(i).columns);
                EXPECT_TRUE(covered.once()) << shape.m << " x " << shape.n << " on " << offered;
            }
}

TEST(GemmCuts, GridFollowsTheShape) {
    const auto rows_are = [](i64 wanted) { return [=](const GemmShape& s) { return grid_rows(s, 8) == wanted; }; };
    expect_edges("tall", rows_are(8), {{{801, 100, 1}, "m"}});
    expect_edges("wide", rows_are(1), {{{100, 801, 1}, "n"}});
    EXPECT_EQ(grid_rows({100, 800, 1}, 8), 2);
    const GemmGrid grid({103, 107, 1}, 8, 2, 2, 4); // cells of 50 x 24, numbered down the columns
    const GemmCell cell = grid.cell(3), last = grid.cell(7);
    EXPECT_EQ(cell.rows.start, 50);
    EXPECT_EQ(cell.rows.count, 53);
    EXPECT_EQ(cell.columns.start, 24);
    EXPECT_EQ(cell.columns.count, 24);
    EXPECT_EQ(last.columns.start, 72);
    EXPECT_EQ(last.columns.count, 35);
}

TEST(GemmCuts, PairsCoverC) {
    for (const GemmShape& shape : any_shapes())
        for (const i64 offered : any_threads)
            for (const auto& [rows, columns] : {std::pair<i64, i64>{1, 4}, {2, 2}})
                for (const i64 nb : {5, 1000}) {
                    const GemmPairs pairs(shape, even_threads(offered), rows, columns);
                    Coverage covered(shape.m, shape.n);
                    for (i64 from = 0; from < pairs.last_width; from += nb)
                        for (i64 i = 0; i < even_threads(offered); ++i)
                            covered.add(pairs.rows(i), pairs.columns(pairs.pair_of(i), from, nb));
                    EXPECT_TRUE(covered.once()) << shape.m << " x " << shape.n << " on " << offered;
                }
    EXPECT_EQ(GemmPairs({7, 9, 1}, 4, 2, 2).rhalf, 2);
    EXPECT_EQ(GemmPairs({7, 9, 1}, 4, 1, 4).rhalf, 3);
    EXPECT_EQ(GemmPairs({7, 9, 1}, 4, 2, 2).last_width, 5);
}

TEST(GemmCuts, SlabsCoverTheRowsInBlocksThatFitTheirBuffers) {
    for (const i64 m : {1, 100, 1000, 3007, 9001})
        for (const i64 offered : any_threads) {
            const GemmSlabs slabs(m, offered, 4);
            i64 next = 0;
            for (i64 t = 0; t < slabs.count; ++t) {
                const Slice rows = slabs.rows(t);
                if (rows.count > 0) EXPECT_EQ(rows.start, next);
                next += rows.count;
                for (i64 from = 0; from < rows.count;) {
                    const i64 block = slab_block_rows(rows.count, from, 448, slabs.is_last(t));
                    ASSERT_GT(block, 0);
                    ASSERT_LE(block, slabs.is_last(t) ? 895 : 448);
                    from += block;
                    ASSERT_LE(from, rows.count);
                }
            }
            EXPECT_EQ(next, m);
        }
    const GemmSlabs odd(3000, 3, 4); // two slabs, cut for three threads
    EXPECT_EQ(odd.count, 2);
    EXPECT_EQ(odd.rows(0).count, 1000);
    EXPECT_EQ(odd.rows(1).count, 2000);
}

TEST(GemmCuts, RotationVisitsEverySliceAndNeverTheSameAtOneTime) {
    for (const i64 threads : {2, 6, 8})
        for (i64 step = 0; step < threads; ++step) {
            std::vector<bool> read(static_cast<std::size_t>(threads));
            for (i64 t = 0; t < threads; ++t) read[static_cast<std::size_t>(rotated_slice(t, step, threads))] = true;
            EXPECT_EQ(std::count(read.begin(), read.end(), true), threads);
        }
    EXPECT_EQ(rotated_slice(3, 0, 4), 3);
    EXPECT_EQ(rotated_slice(3, 1, 4), 0);
}

TEST(GemmBlockRows, FollowTheSecondCache) {
    constexpr std::int32_t mib = 1024 * 1024;
    const GemmCacheSizes unknown{}, small{3, {32768, 3 * mib, 8 * mib, 0}}, large{2, {32768, 3 * mib + 1, 0, 0}};
    EXPECT_EQ(dgemm_htn_block_rows({9000, 100, 512}, small), 448);
    EXPECT_EQ(zgemm_htn_block_rows(small), 256);
    for (const GemmCacheSizes& caches : {unknown, large}) {
        const auto rows_are = [&](i64 wanted) {
            return [=, &caches](const GemmShape& s) { return dgemm_htn_block_rows(s, caches) == wanted; };
        };
        expect_edges("704", rows_are(704), {{{7001, 100, 512}, "mk"}, {{7001, 100, 256}, "k"}});
        expect_edges("1024", rows_are(1024), {{{7001, 100, 257}, "k"}});
        EXPECT_EQ(zgemm_htn_block_rows(caches), 512);
    }
}

/// Leaf 4 of a made-up processor: type in EAX, and sizes that multiply up to ways * 64 bytes * sets.
constexpr CpuidRegisters cache_entry(unsigned type, unsigned ways, unsigned sets) {
    return {type | 0x120, (ways - 1) << 22 | 63, sets - 1, 0};
}

TEST(GemmCaches, ListedInOrderWithoutInstructionCaches) {
    const GemmCacheSizes desktop = gemm_cache_sizes_from([](unsigned leaf, unsigned subleaf) {
        const CpuidRegisters entries[] = {cache_entry(1, 8, 64), cache_entry(2, 8, 64), cache_entry(3, 24, 4096), {}};
        return leaf == 4 && subleaf < 4 ? entries[subleaf] : CpuidRegisters{};
    });
    EXPECT_EQ(desktop.count, 2);
    EXPECT_EQ(desktop.size[0], 32768);
    EXPECT_EQ(desktop.size[1], 24 * 64 * 4096);
    EXPECT_FALSE(second_cache_is_small(desktop));
    // Partitions count, and a second cache of 3 MiB is small.
    const GemmCacheSizes parted = gemm_cache_sizes_from([](unsigned, unsigned subleaf) {
        const CpuidRegisters second{3, 11 << 22 | 1 << 12 | 63, 2047, 0};
        return subleaf == 0 ? cache_entry(1, 8, 64) : subleaf == 1 ? second : CpuidRegisters{};
    });
    EXPECT_EQ(parted.size[1], 3 * 1024 * 1024);
    EXPECT_TRUE(second_cache_is_small(parted));
}

TEST(GemmCaches, OddListsStayWithinTheRecord) {
    const GemmCacheSizes none = gemm_cache_sizes_from([](unsigned, unsigned) { return CpuidRegisters{}; });
    EXPECT_EQ(none.count, 0);
    EXPECT_FALSE(second_cache_is_small(none));
    const GemmCacheSizes endless = gemm_cache_sizes_from([](unsigned, unsigned) { return cache_entry(1, 8, 64); });
    EXPECT_EQ(endless.count, 4);
    const GemmCacheSizes no_sizes =
        gemm_cache_sizes_from([](unsigned, unsigned) { return CpuidRegisters{1, 0, 63, 0}; });
    EXPECT_EQ(no_sizes.count, 0);
    // Instruction caches alone: the walk ends by itself.
    static unsigned asked;
    asked = 0;
    gemm_cache_sizes_from([](unsigned, unsigned) { return ++asked, cache_entry(2, 8, 64); });
    EXPECT_EQ(asked, 32U);
    // A size beyond 32 bits is large, not small.
    const GemmCacheSizes vast =
        gemm_cache_sizes_from([](unsigned, unsigned) { return cache_entry(3, 1024, 1U << 20); });
    EXPECT_FALSE(second_cache_is_small(vast));
}

struct TriangularCase {
    TriangularShape shape;
    i64 q;
    bool serial;
    i64 threads = 2;
};

TEST(TriangularGates, BothSidesOfEveryClauseOfDtrsm) {
    const auto check = [](std::initializer_list<CpuClass> classes, std::initializer_list<TriangularCase> cases) {
        for (const CpuClass cpu_class : classes)
            for (const auto& [shape, q, serial, threads] : cases) {
                SCOPED_TRACE(::testing::Message()
                             << "class " << static_cast<int>(cpu_class) << (shape.left ? " left " : " right ")
                             << shape.m << " x " << shape.n);
                const TriangularGate& gate = dtrsm_gate(cpu_class, shape.left);
                EXPECT_EQ(triangular_block(gate, shape, threads), q);
                EXPECT_EQ(triangular_stays_serial(gate, shape, q, 1.0), serial);
            }
    };
    constexpr auto def = CpuClass::def, p4n = CpuClass::p4n, mc = CpuClass::mc, mc3 = CpuClass::mc3;
    // Sizes alone.
    check({def, mc3}, {{{true, 16, 16}, 8, true}, {{true, 17, 1}, 0, false}, {{true, 1, 17}, 8, false}});
    check({def, mc3}, {{{false, 16, 16}, 4, true, 4}, {{false, 17, 16}, 4, false, 4}});
    // Left: below 17 in both; s < 1 (m <= 15) and w < 6, the sum is above 6 only beyond that.
    check({p4n, mc}, {{{true, 16, 16}, 8, true}, {{true, 15, 102}, 51, true}, {{true, 15, 104}, 52, false}});
    // Left: s + w <= 6. m = 32: s = 4.125, w = q / 4. The triangle alone may do: m = 39 gives s = 6.09.
    check({p4n}, {{{true, 32, 14}, 7, true}, {{true, 32, 16}, 8, false}});
    check({p4n}, {{{true, 39, 1}, 0, false}, {{true, 38, 1}, 0, true}});
    check({mc}, {{{true, 31, 17}, 8, true}, {{true, 31, 18}, 9, false}});
    // Left, above 512: class 1 wants 8 columns; class 2 rounds.
    check({p4n, mc}, {{{true, 512, 15}, 7, false}});
    check({p4n}, {{{true, 513, 15}, 7, true}, {{true, 513, 16}, 8, false}});
    check({mc}, {{{true, 513, 15}, 4, false}, {{true, 513, 6}, 0, false}});
    // Right: s <= 1 (n <= 15), whatever the rows; w < 4, where n = 64: s = 16.25, w = q / 2.
    check({p4n, mc}, {{{false, 100000, 15}, 50000, true}, {{false, 100000, 16}, 50000, false}});
    check({p4n, mc}, {{{false, 16, 64}, 8, false}, {{false, 48, 32}, 24, false}}); // s + w = 10.125 in the second
    check({p4n}, {{{false, 15, 64}, 7, true}, {{false, 46, 32}, 23, true}});       // 9.875
    check({mc}, {{{false, 15, 64}, 4, true}, {{false, 46, 32}, 20, true}, {{false, 6, 2000}, 0, true}});
}

TEST(TriangularGates, OtherRoutinesWantWorkInEveryBlock) {
    const TriangularShape tall{true, 2000, 7}, square{true, 40, 40};
    EXPECT_TRUE(
        triangular_stays_serial(triangular_gate(true), tall, triangular_block(triangular_gate(true), tall, 2), 1.0));
    EXPECT_FALSE(triangular_stays_serial(triangular_gate(true), square, 20, 1.0));
    const TriangularShape few{true, 17, 17}; // s + w = 1.195 + 1.06: enough as complex work alone
    EXPECT_TRUE(triangular_stays_serial(triangular_gate(true), few, 8, 1.0));
    EXPECT_FALSE(triangular_stays_serial(triangular_gate(true), few, 8, 4.0));
    EXPECT_EQ(triangular_block(triangular_gate(false), {false, 30, 100}, 2), 12);
}

TEST(RankUpdateStrips, CoverTheTriangleInEqualAreas) {
    for (const bool lower : {false, true})
        for (const i64 n : {1, 7, 40, 203})
            for (const i64 strips : {2, 3, 8, 20}) {
                Coverage covered(n, n);
                for (i64 i = 0; i < strips; ++i) {
                    const TriangleStrip strip = triangle_strip(lower, n, i, strips);
                    covered.add(strip.rows, strip.columns);
                    covered.add(strip.diagonal, strip.diagonal); // its other half is not touched, but belongs to it
                }
                // What lies outside the triangle is inside a diagonal part.
                const auto in_diagonal = [&](i64 r, i64 c) {
                    for (i64 i = 0; i < strips; ++i) {
                        const Slice d = triangle_strip(lower, n, i, strips).diagonal;
                        if (d.start <= std::min(r, c) && std::max(r, c) < d.start + d.count) return true;
                    }
                    return false;
                };
                EXPECT_TRUE(covered.once([&](i64 r, i64 c) { return (lower ? r >= c : r <= c) || in_diagonal(r, c); }));
            }
    for (const i64 strips : {4, 16})
        for (i64 i = 0; i < strips; ++i) {
            const TriangleStrip strip = triangle_strip(true, 2000, i, strips);
            const i64 twice_the_area =
                strip.diagonal.count * strip.diagonal.count + 2 * strip.rows.count * strip.columns.count;
            EXPECT_NEAR(static_cast<double>(twice_the_area * strips) / 4e6, 1.0, 0.1) << i << " of " << strips;
        }
    EXPECT_EQ(strips_for(2000, 2), 4);
    EXPECT_EQ(strips_for(20, 1024), 2);
    EXPECT_EQ(strips_for(1, 8), 1);
}

TEST(WorkGate, AThreadForEachTwoMillionOperations) {
    EXPECT_LT(threads_for_work(3.9e6, 8), 2);
    EXPECT_EQ(threads_for_work(4e6, 8), 2);
    EXPECT_EQ(threads_for_work(1e18, 8), 8);
    EXPECT_EQ(flops_of<double>(100, 200, 300), 12e6);
    EXPECT_EQ(flops_of<zcomplex>(100, 200, 300), 48e6);
    EXPECT_GT(flops_of<double>(1 << 30, 1 << 30, 1 << 30), 1e27);
}

TEST(WorkGate, BalancedSlicesCoverASide) {
    for (const i64 length : {8, 33, 1000})
        for (const i64 parts : {2, 3, 7}) {
            i64 next = 0;
            for (i64 i = 0; i < parts; ++i) {
                const Slice slice = balanced_slice(length, 4, i, parts);
                EXPECT_EQ(slice.start, next);
                EXPECT_LE(slice.count, length / parts + 5);
                next += slice.count;
            }
            EXPECT_EQ(next, length);
        }
}

} // namespace
} // namespace nxl
