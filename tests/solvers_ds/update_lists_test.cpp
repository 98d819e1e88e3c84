// The queues of updates, played through without threads, in orders that threads may come in.
#include "solvers_ds/kernel/default/pardiso/numeric/update_lists.hpp"
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace {

using namespace nxl;
using namespace nxl::pardiso;

/// Supernodes of random widths with random rows below them.
struct RandomStructure {
    std::vector<i32> xsup{1}, snode, lindx, nmod;
    std::vector<i64> xlindx{1};

    explicit RandomStructure(unsigned seed) {
        std::mt19937 random(seed);
        const i32 count = 30;
        for (i32 s = 1; s <= count; ++s) {
            const i32 width = 1 + static_cast<i32>(random() % 4);
            snode.insert(snode.end(), static_cast<std::size_t>(width), s);
            xsup.push_back(xsup.back() + width);
        }
        for (i32 s = 1; s <= count; ++s) {
            const auto at = static_cast<std::size_t>(s);
            for (i32 row = xsup[at - 1]; row < xsup[count]; ++row)
                if (row < xsup[at] || random() % 6 == 0) lindx.push_back(row);
            xlindx.push_back(static_cast<i64>(lindx.size()) + 1);
        }
        nmod.assign(static_cast<std::size_t>(count), 0);
        const Supernodes all = view();
        for (i32 s = 1; s <= count; ++s)
            all.groups(s, [&](i32 target, i32, i32) { ++nmod[static_cast<std::size_t>(target - 1)]; });
    }
    Supernodes view() const {
        return {static_cast<i32>(xsup.size()) - 1, xsup.data(), snode.data(), xlindx.data(), lindx.data()};
    }
};

/// Which updates each target got: a source, and the row of it that the update begins with.
using Taken = std::map<i32, std::set<std::pair<i32, i32>>>;

Taken expected_of(const Supernodes& all) {
    Taken result;
    for (i32 s = 1; s <= all.count; ++s)
        all.groups(s, [&](i32 target, i32, i32 rest) { result[target].insert({s, all.rows(s) - rest}); });
    return result;
}

TEST(WaitingLists, EveryTargetGetsItsUpdatesOnce) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const RandomStructure structure(seed);
        const Supernodes all = structure.view();
        const auto count = static_cast<std::size_t>(all.count);
        std::vector<i32> link(count, 77), length(count, 77);
        WaitingLists lists(all, link.data(), length.data());
        Taken taken;
        for (i32 target = 1; target <= all.count; ++target) {
            const auto columns = [&](i32 source, i32 offset) {
                i32 rows = 0;
                for (i32 k = offset; k < all.rows(source) && all.list(source)[k] <= all.last(target); ++k) ++rows;
                return rows;
            };
            for (;;) {
                const WaitingUpdate update = lists.pop(target, columns);
                if (update.source == 0) break;
                EXPECT_TRUE(taken[target].insert({update.source, update.offset}).second);
            }
            lists.push(target);
        }
        EXPECT_EQ(taken, expected_of(all));
    }
}

/// Threads that are at their supernodes in any order: each pops what is there, and is done when it has all.
TEST(UpdateQueues, AnyOrderOfThreadsEmptiesThem) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const RandomStructure structure(seed);
        const Supernodes all = structure.view();
        const auto count = static_cast<std::size_t>(all.count);
        std::size_t updates = 0;
        for (const i32 n : structure.nmod) updates += static_cast<std::size_t>(n);
        std::vector<i32> head(count, 77), tail(count, 77), left = structure.nmod;
        std::vector<i64> start(count + 1);
        std::vector<WaitingUpdate> memory(updates);
        UpdateQueues queues(all, structure.nmod.data(), start.data(), head.data(), tail.data(), memory.data());
        std::mt19937 random(seed + 100);
        std::vector<i32> open;
        for (i32 s = 1; s <= all.count; ++s) open.push_back(s);
        Taken taken;
        while (!open.empty()) {
            const std::size_t turn = random() % std::min<std::size_t>(open.size(), 3); // three threads
            const i32 target = open[turn];
            i32& missing = left[static_cast<std::size_t>(target - 1)];
            const WaitingUpdate update = missing > 0 ? queues.pop(target) : WaitingUpdate{};
            if (update.source != 0) {
                --missing;
                EXPECT_TRUE(taken[target].insert({update.source, update.offset}).second);
            } else if (missing == 0) {
                queues.push(target);
                open.erase(open.begin() + static_cast<std::ptrdiff_t>(turn));
            }
        }
        EXPECT_EQ(taken, expected_of(all));
    }
}

} // namespace
