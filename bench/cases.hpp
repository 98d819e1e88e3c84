// What a case is: a routine, its option letters and the size of its operands.
#pragma once
#include <string>

namespace nxl::bench {

/// Dimensions as the routine's arguments name them; those that it does not have equal the others.
struct Size {
    int m, n, k;

    Size(int order) : m(order), n(order), k(order) {}
    Size(int rows, int columns, int inner) : m(rows), n(columns), k(inner) {}

    bool square() const { return m == n && n == k; }
    std::string text() const {
        if (square()) return std::to_string(n);
        return std::to_string(m) + 'x' + std::to_string(n) + 'x' + std::to_string(k);
    }
};

struct Case {
    std::string routine;
    std::string options; // in the order of the arguments, as TN for gemm; empty for routines without
    Size size;

    /// As rows are headed: dgemm-TN.
    std::string label() const { return options.empty() ? routine : routine + '-' + options; }
};

} // namespace nxl::bench
