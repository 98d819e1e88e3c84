// Sparse level 1 through the exported entries, d and z. CTest runs this program for each processor class and vector
// width.
#include "nxl.h"
#include "tests/support/host_allocator.hpp"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {
std::string reported_name;
int reported_info = 0;
} // namespace

// This host brings its own error handler, and the allocator of host_allocator.cpp.
extern "C" {
__attribute__((visibility("default"))) void XERBLA(const char* srname, const int* info, int len) noexcept {
    reported_name.assign(srname, static_cast<std::size_t>(len));
    reported_info = *info;
}
}

namespace {

using zcomplex = std::complex<double>;

template <class T> struct Sparse;
template <> struct Sparse<double> {
    static constexpr auto axpyi = daxpyi;
    static constexpr auto gthr = dgthr;
    static constexpr auto sctr = dsctr;
    static double doti(const int* nz, const double* x, const int* indx, const double* y) {
        return ddoti(nz, x, indx, y);
    }
    static constexpr double doti_without_memory = 0.0;
    static double conjugate(double v) { return v; }
    static constexpr double alpha = 1.5;
};
template <> struct Sparse<zcomplex> {
    static constexpr auto axpyi = zaxpyi;
    static constexpr auto gthr = zgthr;
    static constexpr auto sctr = zsctr;
    static zcomplex doti(const int* nz, const zcomplex* x, const int* indx, const zcomplex* y) {
        zcomplex result(7.0, 7.0);
        zdotci(&result, nz, x, indx, y);
        return result;
    }
    static constexpr zcomplex doti_without_memory{7.0, 7.0}; // the caller's, untouched
    static zcomplex conjugate(zcomplex v) { return std::conj(v); }
    static constexpr zcomplex alpha{1.5, -0.5};
};

template <class T> class SparseLevel1 : public ::testing::Test {
  protected:
    static constexpr int dense = 50;
    std::mt19937 generator{11};

    T value() {
        const auto part = [this] { return static_cast<int>(generator() % 17) - 8.0; }; // exact in every sum
        if constexpr (std::is_same_v<T, double>) return part();
        else return T(part(), part());
    }
    std::vector<T> values(int n) {
        std::vector<T> v(static_cast<std::size_t>(n));
        for (auto& x : v) x = value();
        return v;
    }
    /// Random places, repeated ones among them.
    std::vector<int> places(int nz) {
        std::vector<int> indx(static_cast<std::size_t>(nz));
        for (int& i : indx) i = 1 + static_cast<int>(generator() % dense);
        return indx;
    }
};
using Scalars = ::testing::Types<double, zcomplex>;
TYPED_TEST_SUITE(SparseLevel1, Scalars);

TYPED_TEST(SparseLevel1, MatchesPlainLoops) {
    using T = TypeParam;
    using S = Sparse<T>;
    const T alpha = S::alpha;
    for (const int nz : {1, 2, 3, 8, 31, 200}) {
        auto x = this->values(nz), y = this->values(this->dense), want = y;
        const auto indx = this->places(nz);
        T dot{};
        const auto at = [&](std::size_t i) { return static_cast<std::size_t>(indx[i] - 1); };
        for (std::size_t i = 0; i < x.size(); ++i) dot += S::conjugate(x[i]) * y[at(i)];
        EXPECT_EQ(S::doti(&nz, x.data(), indx.data(), y.data()), dot);

        for (std::size_t i = 0; i < x.size(); ++i) want[at(i)] += alpha * x[i];
        S::axpyi(&nz, &alpha, x.data(), indx.data(), y.data());
        EXPECT_EQ(y, want);

        for (std::size_t i = 0; i < x.size(); ++i) want[at(i)] = x[i]; // the last of a repeated place stays
        S::sctr(&nz, x.data(), indx.data(), y.data());
        EXPECT_EQ(y, want);

        std::vector<T> gathered(x.size());
        S::gthr(&nz, y.data(), gathered.data(), indx.data());
        for (std::size_t i = 0; i < x.size(); ++i) EXPECT_EQ(gathered[i], y[at(i)]);
    }
}

TYPED_TEST(SparseLevel1, NothingToDo) {
    using T = TypeParam;
    using S = Sparse<T>;
    const T alpha = S::alpha, zero(0.0);
    for (const int nz : {0, -1, std::numeric_limits<int>::min()}) {
        T x(3.0), y(4.0);
        const int indx = 1;
        S::axpyi(&nz, &alpha, &x, &indx, &y);
        S::sctr(&nz, &x, &indx, &y);
        EXPECT_EQ(y, T(4.0));
        S::gthr(&nz, &y, &x, &indx);
        EXPECT_EQ(x, T(3.0));
        EXPECT_EQ(S::doti(&nz, &x, &indx, &y), T(0.0));
    }
    const int one = 1, indx = 1;
    const T infinite(std::numeric_limits<double>::infinity());
    T y(4.0);
    S::axpyi(&one, &zero, &infinite, &indx, &y);
    EXPECT_EQ(y, T(4.0));
}

TYPED_TEST(SparseLevel1, WithoutMemoryTheCallIsReportedAndHasNoEffect) {
    using T = TypeParam;
    using S = Sparse<T>;
    constexpr bool real = std::is_same_v<T, double>;
    const int nz = 7000000; // its copy is too large to be cached
    std::vector<int> indx(static_cast<std::size_t>(nz), 1);
    const std::vector<T> x(static_cast<std::size_t>(nz), T(1.0));
    T y(4.0);
    const T alpha = S::alpha;
    reported_info = 0;
    nxl_test::fail_allocation(1);
    S::axpyi(&nz, &alpha, x.data(), indx.data(), &y);
    EXPECT_EQ(reported_info, 1000);
    EXPECT_EQ(reported_name, real ? "DAXPYI" : "ZAXPYI");
    EXPECT_EQ(y, T(4.0));
    nxl_test::fail_allocation(1);
    EXPECT_EQ(S::doti(&nz, x.data(), indx.data(), &y), T(S::doti_without_memory));
    EXPECT_EQ(reported_name, real ? "DDOTI " : "ZDOTCI");
}

TEST(SparseLevel1Complex, DotUDoesNotConjugate) {
    const int nz = 2, indx[2] = {3, 1};
    const zcomplex x[2] = {{1, 2}, {3, -1}}, y[3] = {{2, 1}, {9, 9}, {0, 5}};
    zcomplex result;
    zdotui(&result, &nz, x, indx, y);
    EXPECT_EQ(result, x[0] * y[2] + x[1] * y[0]);
}

} // namespace
