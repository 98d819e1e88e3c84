// The summation order of class 1's plain bodies, which any processor with SSE3 runs.
#include "service/kernel_slot.hpp"
#include "tests/support/scalars.hpp"

namespace nxl {
namespace p4n {
extern const KernelTable kernel_table;
}
namespace {

using nxl_test::random_values;

std::size_t at(i64 i, i64 j, i64 ld) { return static_cast<std::size_t>(i + j * ld); }

/// C := alpha A B + beta C in the summation order of class 1: k is cut into blocks of kb; the first is the shorter one
/// at the end of k, and it takes beta; the others follow from 0 upward. alpha is in A.
std::vector<double> class1_product(int m, int n, int k, int kb, double alpha, const std::vector<double>& a,
                                   const std::vector<double>& b, double beta, std::vector<double> c) {
    const int first = k % kb == 0 ? kb : k % kb;
    const auto add_block = [&](int start, int length, double factor) {
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < m; ++i) {
                double sum = 0.0;
                for (int p = start; p < start + length; ++p) sum += alpha * a[at(i, p, m)] * b[at(p, j, k)];
                double& element = c[at(i, j, m)];
                element = factor == 0.0 ? sum : factor * element + sum;
            }
    };
    add_block(k - first, first, beta);
    for (int start = 0; start < k - first; start += kb) add_block(start, kb, 1.0);
    return c;
}

TEST(GemmClass1, SummationOrderIsFixed) {
    struct Case {
        int m, n, k, kb;
    };
    for (const auto& [m, n, k, kb] : {Case{8, 8, 300, 112},
                                      {7, 5, 300, 112},
                                      {8, 8, 57, 112},
                                      {8, 8, 112, 112},
                                      {8, 8, 113, 56},
                                      {8, 4, 200, 100},
                                      {3, 3, 224, 112},
                                      {12, 9, 225, 112}})
        for (const double beta : {0.0, 1.0, -0.7}) {
            const std::vector<double> a = random_values<double>(m * k, 1), b = random_values<double>(k * n, 2),
                                      c = random_values<double>(m * n, 3);
            std::vector<double> got = c;
            const double alpha = 1.7;
            p4n::kernel_table.xdgemm('N', 'N', m, n, k, alpha, a.data(), m, b.data(), k, beta, got.data(), m);
            ASSERT_TRUE(got == class1_product(m, n, k, kb, alpha, a, b, beta, c))
                << m << ' ' << n << ' ' << k << ' ' << beta;
        }
}

} // namespace
} // namespace nxl
