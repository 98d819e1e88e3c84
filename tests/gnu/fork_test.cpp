// A process that forks after its threads have worked: parent and child go on computing on their own.
#include "nxl.h"
#include "nxl_cblas.h"
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int n = 300;

/// Whether the square of a matrix of ones is right.
bool product_is_right() {
    const std::vector<double> ones(n * n, 1.0);
    std::vector<double> c(n * n, 0.0);
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, n, n, n, 1.0, ones.data(), n, ones.data(), n, 0.0, c.data(),
                n);
    return c == std::vector<double>(n * n, n);
}

TEST(Fork, ChildAndParentGoOnWithThreads) { // catches a child that waits for threads which only the parent has
    NXL_Set_Dynamic(0);
    NXL_Set_Num_Threads(2);
    ASSERT_TRUE(product_is_right());
    const pid_t child = fork();
    if (child == 0) {
        alarm(60); // ends a child that hangs
        _exit(product_is_right() ? 0 : 1);
    }
    ASSERT_GT(child, 0);
    EXPECT_TRUE(product_is_right());
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    NXL_Set_Num_Threads(1);
    NXL_Set_Dynamic(1);
}

} // namespace
