// The kernel of small updates in sparse factors, against sums written out. CTest runs this program for each processor
// class and vector width.
#include "service/kernel_slot.hpp"
#include "tests/support/guarded_matrix.hpp"
#include "tests/support/scalars.hpp"
#include <algorithm>

namespace {

using namespace nxl;

/// `count` ascending places below `size`: some that follow each other, then with gaps.
std::vector<i32> places(i64 count, i64 size, nxl_test::Generator& generator) {
    std::vector<i32> chosen;
    const auto run = static_cast<i64>(generator() % static_cast<std::uint64_t>(count + 1));
    for (i64 place = 0; place < size; ++place) {
        const i64 wanted = count - static_cast<i64>(chosen.size()), left = size - place;
        if (wanted > 0 && (place < run || wanted == left || generator() % 2 == 0))
            chosen.push_back(static_cast<i32>(place));
    }
    return chosen;
}

template <class T> class ScatteredProducts : public ::testing::Test {
  protected:
    nxl_test::Generator generator_{3};

    nxl_test::GuardedMatrix<T> matrix(i64 rows, i64 columns, i64 ld) {
        const nxl_test::MatrixShape shape{static_cast<int>(rows), static_cast<int>(columns), static_cast<int>(ld)};
        return {shape, nxl_test::Flush::end, [&](int, int) { return nxl_test::random_value<T>(generator_); }};
    }

    void check(i64 rows, i64 columns, i64 depth, bool lower, bool conjugate) {
        const i64 height = rows + 6, ldl = rows + 1, ldr = columns + 2;
        const std::vector<i32> p = places(rows, height, generator_);
        const std::vector<i32> q = lower ? p : places(columns, columns + 3, generator_);
        const auto left = matrix(rows, depth, ldl), right = matrix(columns, depth, ldr);
        const auto c = matrix(height, height + columns, height);
        const ScatteredProduct shape{rows, columns, depth, ldl, ldr, height, p.data(), q.data(), lower, conjugate};
        slot_of<T, &KernelTable::dscattered_product, &KernelTable::zscattered_product>()(shape, left.data(),
                                                                                         right.data(), c.data());
        std::vector<T> expected = c.original();
        for (i64 j = 0; j < columns; ++j)
            for (i64 i = 0; i < rows; ++i) {
                const i64 at = p[static_cast<std::size_t>(i)] + q[static_cast<std::size_t>(j)] * height;
                T& sum = expected[static_cast<std::size_t>(at)];
                for (i64 k = 0; k < depth; ++k) {
                    const T factor = right.data()[j + k * ldr];
                    sum -= left.data()[i + k * ldl] * (conjugate ? nxl_test::conjugate(factor) : factor);
                }
                if (lower && i < j) sum = c.data()[at]; // either is right above the diagonal
            }
        for (std::size_t at = 0; at < expected.size(); ++at)
            ASSERT_LE(nxl_test::abs1(c.data()[at] - expected[at]), 8.0 * static_cast<double>(depth + 1) * nxl_test::eps)
                << rows << " " << columns << " " << depth << (lower ? " lower" : "") << (conjugate ? " conjugate" : "");
    }
};
TYPED_TEST_SUITE(ScatteredProducts, nxl_test::Scalars);

TYPED_TEST(ScatteredProducts, TakeTheSumsOffTheirPlacesAndLeaveTheRest) {
    for (const i64 rows : {1, 2, 3, 4, 5, 7, 8, 12, 13, 23, 24, 31})
        for (const i64 columns : {1, 2, 3, 4, 5, 8, 11})
            for (const i64 depth : {1, 2, 9})
                for (const int form : {0, 1, 2, 3})
                    if (form % 2 == 0 || columns <= rows)
                        ASSERT_NO_FATAL_FAILURE(this->check(rows, columns, depth, form % 2 != 0, form > 1));
    for (const i64 depth : {7, 9, 130}) // sizes that are packed, and depths for which one factor or both are not
        for (const int form : {0, 1, 2, 3})
            ASSERT_NO_FATAL_FAILURE(this->check(111, 29, depth, form % 2 != 0, form > 1));
}

} // namespace
