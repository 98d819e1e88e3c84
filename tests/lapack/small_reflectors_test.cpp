// The kernels of small bulges, against reflectors written out. CTest runs this program for each processor class and
// vector width.
#include "service/kernel_slot.hpp"
#include "tests/support/guarded_matrix.hpp"
#include "tests/support/scalars.hpp"

namespace {

using namespace nxl;
using nxl_test::conjugate;

template <class T> class SmallReflectors : public ::testing::Test {
  protected:
    nxl_test::Generator generator_{5};
    std::vector<T> numbers_ = std::vector<T>(33);

    SmallReflectors() {
        for (T& number : numbers_) number = nxl_test::random_value<T>(generator_);
    }
    nxl_test::GuardedMatrix<T> matrix(i64 rows, i64 columns) {
        const nxl_test::MatrixShape shape{static_cast<int>(rows), static_cast<int>(columns), static_cast<int>(rows)};
        return {shape, nxl_test::Flush::end, [&](int, int) { return nxl_test::random_value<T>(generator_); }};
    }
    /// x := (I - tau v v^H)^H x, or x^T := x^T (I - tau v v^H), for three elements `step` apart.
    void reflect(i64 r, bool from_left, T* x, i64 step) const {
        const T* const h = numbers_.data() + 3 * r;
        const T v[3] = {T(1.0), h[1], h[2]}, tau = from_left ? conjugate(h[0]) : h[0];
        T sum{};
        for (int i = 0; i < 3; ++i) sum += (from_left ? conjugate(v[i]) : v[i]) * x[i * step];
        for (int i = 0; i < 3; ++i) x[i * step] -= tau * (from_left ? v[i] : conjugate(v[i])) * sum;
    }
    static void expect_same(const std::vector<T>& expected, const T* found) {
        for (std::size_t at = 0; at < expected.size(); ++at)
            ASSERT_LE(nxl_test::abs1(found[at] - expected[at]), 200.0 * nxl_test::eps) << at;
    }
};
TYPED_TEST_SUITE(SmallReflectors, nxl_test::Scalars);

TYPED_TEST(SmallReflectors, TurnTheirRowsFromTheirFirstColumnOn) {
    using T = TypeParam;
    for (i64 count = 0; count <= 11; ++count)
        for (const i64 more : {0, 1, 5}) {
            const i64 rows = 3 * count + 1, columns = 3 * count + more;
            const auto c = this->matrix(rows, columns + 1);
            std::vector<T> expected = c.original();
            for (i64 j = 0; j < columns; ++j)
                for (i64 r = 0; r < count; ++r)
                    if (T* const x = expected.data() + 3 * r + j * rows; 3 * r <= j) this->reflect(r, true, x, 1);
            slot_of<T, &KernelTable::dreflect_rows, &KernelTable::zreflect_rows>()(count, this->numbers_.data(),
                                                                                   columns, c.data(), rows);
            for (i64 j = 0; j < columns; ++j) // either is right here
                for (i64 i = 3 * (j / 3 + 1); i < 3 * count; ++i)
                    expected[static_cast<std::size_t>(i + j * rows)] = c.data()[i + j * rows];
            ASSERT_NO_FATAL_FAILURE(this->expect_same(expected, c.data())) << count << " " << columns;
        }
}

TYPED_TEST(SmallReflectors, TurnAsManyElementsOfTheirColumnsAsTheyAreToldTo) {
    using T = TypeParam;
    for (const i64 count : {1, 2, 5})
        for (const i64 down : {0, 3})
            for (const i64 growth : {3, 1, 0, -2})
                for (i64 rows = 10; rows < 30; ++rows) {
                    const i64 ld = 60;
                    const auto c = this->matrix(ld, 3 * count);
                    std::vector<T> expected = c.original();
                    for (i64 r = 0; r < count; ++r)
                        for (i64 i = 0; i < rows + r * growth; ++i)
                            this->reflect(r, false, expected.data() + r * (3 * ld + down) + i, ld);
                    slot_of<T, &KernelTable::dreflect_columns, &KernelTable::zreflect_columns>()(
                        count, this->numbers_.data(), rows, growth, c.data(), ld, 3 * ld + down);
                    ASSERT_NO_FATAL_FAILURE(this->expect_same(expected, c.data())) << count << " " << rows;
                }
}

} // namespace
