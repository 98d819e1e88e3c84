// The kernel for a few rows of eigenvectors: residuals, what stays, and who has left the room. CTest runs this program
// for each processor class and vector width.
#include "service/kernel_slot.hpp"
#include "tests/support/scalars.hpp"
#include <array>

namespace {

using namespace nxl;

constexpr i64 room_for_rows = shifted_rows + 1, ld = 25;

template <class T> class ShiftedRows : public ::testing::Test {
  protected:
    nxl_test::Generator generator_{5};
    std::array<T, room_for_rows * room_for_rows> t_{};
    std::vector<T> x_, b_;
    std::array<double, ld> re_{}, im_{}, least_{}, start_{}, sizes_{};

    /// A real form has blocks of order 2 in rows 1 and 2, 4 and 5, and so on; an element below the diagonal of a
    /// complex one is not looked at.
    ShiftedRows() {
        for (i64 j = 0; j < room_for_rows; ++j)
            for (i64 i = 0; i < room_for_rows; ++i)
                if (i <= j || (i == j + 1 && j % 3 == 1)) at(i, j) = nxl_test::random_value<T>(generator_);
    }
    T& at(i64 i, i64 j) { return t_[static_cast<std::size_t>(i + j * room_for_rows)]; }
    static zcomplex number(const std::vector<T>& x, i64 lane, i64 i, i64 apart) {
        const auto k = static_cast<std::size_t>(lane + i * ld);
        return zcomplex(x[k]) + (apart > 0 ? zcomplex(0.0, 1.0) * x[k + static_cast<std::size_t>(apart)] : zcomplex{});
    }
    /// Every third lane has its eigenvalue in row 1 of the form; one shift meets a diagonal element, one has no room.
    void check(i64 rows, i64 count, bool real) {
        const i64 apart = nxl_test::is_complex<T> || real ? 0 : count, full = count / 2, first = 10;
        x_.assign(ld * room_for_rows, T{});
        for (T& x : x_) x = nxl_test::random_value<T>(generator_);
        for (std::size_t v = 0; v < ld; ++v) {
            re_[v] = std::real(nxl_test::random_value<T>(generator_)) + 3.0;
            im_[v] = real ? 0.0 : std::real(nxl_test::random_value<T>(generator_));
            least_[v] = 1e-3;
            start_[v] = static_cast<double>(v % 3 == 0 ? first + 1 : first + 20);
        }
        re_[1] = std::real(at(0, 0));
        im_[1] = std::imag(zcomplex(at(0, 0)));
        if (count > 1) x_[static_cast<std::size_t>(full + (rows - 1) * ld)] = 1e200;
        b_ = x_;
        const ShiftedLanes lanes{count,         re_.data(),    real ? nullptr : im_.data(),
                                 least_.data(), start_.data(), sizes_.data()};
        const bool within = slot_of<T, &KernelTable::dshifted_rows, &KernelTable::zshifted_rows>()(
            rows, t_.data(), room_for_rows, first, lanes, 1e100, x_.data(), ld);
        EXPECT_EQ(within, count < 2);
        for (i64 v = 0; v < count; ++v) {
            EXPECT_EQ(sizes_[static_cast<std::size_t>(v)] <= 1e100, count < 2 || v != full);
            check_lane(v, rows, apart, count > 1 && v == full);
        }
        for (i64 i = 0; i < room_for_rows; ++i)
            for (i64 v = i < rows ? count + apart : 0; v < ld; ++v) EXPECT_EQ(number(x_, v, i, 0), number(b_, v, i, 0));
    }
    void check_lane(i64 v, i64 rows, i64 apart, bool all_stays) {
        const zcomplex shift(re_[static_cast<std::size_t>(v)], im_[static_cast<std::size_t>(v)]);
        for (i64 i = 0; i < rows; ++i) {
            if (all_stays || (v % 3 == 0 && i > 0)) {
                EXPECT_EQ(number(x_, v, i, apart), number(b_, v, i, apart));
                continue;
            }
            zcomplex left{};
            double size = 0.0;
            for (i64 k = 0; k < rows; ++k) {
                const bool below = nxl_test::is_complex<T> && k < i;
                zcomplex element = below ? zcomplex{} : zcomplex(at(i, k)) - (i == k ? shift : zcomplex{});
                if (i == k && nxl_test::abs1(element) == 0.0) element = least_[0];
                const zcomplex product = element * number(x_, v, k, apart);
                left += product;
                size += nxl_test::abs1(product);
            }
            EXPECT_LE(nxl_test::abs1(left - number(b_, v, i, apart)), 50.0 * nxl_test::eps * (size + 1.0))
                << v << ' ' << i;
        }
    }
};
TYPED_TEST_SUITE(ShiftedRows, nxl_test::Scalars);

TYPED_TEST(ShiftedRows, EveryCountOfLanes) {
    for (const i64 rows : {1, 3, 6, 9})
        for (i64 count = 1; count <= 12; ++count)
            for (const bool real : {false, true}) {
                if (real && nxl_test::is_complex<TypeParam>) continue;
                SCOPED_TRACE(testing::Message() << rows << ' ' << count << real);
                this->check(rows, count, real);
            }
}

} // namespace
