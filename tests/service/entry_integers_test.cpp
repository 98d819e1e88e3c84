// Integers on their way through an entry: widening, narrowing, what goes back, and what a workspace query leaves alone.
#include "nxl.h"
#include "service/interface/integers.hpp"
#include "tests/support/guarded_vector.hpp"
#include "tests/support/host_allocator.hpp"
#include <gtest/gtest.h>
#include <vector>

namespace nxl {
namespace {

constexpr i64 huge = i64{1} << 62;

class IntegerArrays : public ::testing::Test {
  protected:
    void TearDown() override {
        NXL_FreeBuffers();
        EXPECT_EQ(nxl_test::live_blocks(), 0);
    }
};

TEST_F(IntegerArrays, IntegersWidenBySignAndNarrowByTruncation) {
    const int user[3] = {-1, 2147483647, -2147483647 - 1};
    const WideInts wide(user, 3);
    EXPECT_EQ(std::vector(wide.data(), wide.data() + 3), (std::vector<i64>{-1, 2147483647, -2147483648LL}));
    int narrow = 7;
    {
        OutInt out(&narrow);
        out.value = (i64{5} << 32) - 3;
    }
    EXPECT_EQ(narrow, -3);
}

TEST_F(IntegerArrays, OnlyWhatTheDriverSetGoesBack) {
    using Expected = std::vector<int>;
    const auto after = [](Transfer way, i64 count) {
        std::vector<int> user{10, 20, 30, 40};
        {
            const WideInts wide(user.data(), count, way);
            wide.data()[0] = (i64{1} << 32) + 1;
            if (count > 2) wide.data()[2] = -3;
        }
        return user;
    };
    EXPECT_EQ(after(Transfer::in, 3), (Expected{10, 20, 30, 40}));
    EXPECT_EQ(after(Transfer::none, 3), (Expected{10, 20, 30, 40}));
    EXPECT_EQ(after(Transfer::out, 3), (Expected{1, 20, -3, 40}));
    EXPECT_EQ(after(Transfer::in_out, 3), (Expected{1, 20, -3, 40}));
    EXPECT_EQ(after(Transfer::first_out, 3), (Expected{1, 20, 30, 40}));
    EXPECT_EQ(after(Transfer::first_out, -1), (Expected{1, 20, 30, 40})); // a workspace query
    EXPECT_EQ(after(Transfer::out, 0), (Expected{10, 20, 30, 40}));
    for (const Transfer way : {Transfer::out, Transfer::first_out, Transfer::none})
        EXPECT_NE(WideInts(nullptr, 0, way).data(), nullptr); // an array of no elements is not looked at
}

TEST_F(IntegerArrays, WithoutScratchTheCallersIntegersStay) {
    int user[2] = {10, 20};
    for (const Transfer way : {Transfer::in, Transfer::out, Transfer::in_out, Transfer::first_out, Transfer::none})
        EXPECT_EQ(WideInts(user, huge, way).data(), nullptr);
    EXPECT_EQ(user[0], 10);
    EXPECT_EQ(user[1], 20);
}

// ---- Workspace queries ----

/// What a caller has when it asks for a size: arrays that it may not touch, and one element for the answer.
template <class T> struct QueryCaller {
    nxl_test::GuardedMemory memory{1}, answer{sizeof(T)};
    T* array = reinterpret_cast<T*>(memory.at_end(0));
    int* integers = reinterpret_cast<int*>(array);
    T* work = reinterpret_cast<T*>(answer.at_end(sizeof(T)));
    int n = 1000, lwork = -1, info = -77;
};

template <class T> void ask(const char* name, void (*call)(QueryCaller<T>& caller)) {
    QueryCaller<T> caller;
    call(caller);
    EXPECT_EQ(caller.info, 0) << name;
    EXPECT_GE(std::abs(*caller.work), caller.n) << name;
}

TEST(WorkspaceQuery, TouchesNothingButTheAnswer) {
    ask<double>("dgetri", [](auto& c) { dgetri(&c.n, c.array, &c.n, c.integers, c.work, &c.lwork, &c.info); });
    ask<nxl_z>("zgetri", [](auto& c) { zgetri(&c.n, c.array, &c.n, c.integers, c.work, &c.lwork, &c.info); });
}

} // namespace
} // namespace nxl
