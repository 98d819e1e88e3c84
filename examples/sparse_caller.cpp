// Heat in a rod from C++, through nxl.hpp: one analysis, two matrices of its pattern, several right-hand sides.
#include <nxl.hpp>

#include <cmath>
#include <cstdio>
#include <vector>

namespace {

/// The upper triangle of (-1, 2 + c, -1), by rows from 0.
struct Rod {
    std::vector<int> row_start{0}, column;
    std::vector<double> value;

    Rod(int n, double c) {
        for (int i = 0; i < n; ++i) {
            column.push_back(i);
            value.push_back(2.0 + c);
            if (i + 1 < n) {
                column.push_back(i + 1);
                value.push_back(-1.0);
            }
            row_start.push_back(static_cast<int>(column.size()));
        }
    }
};

int fail(const nxl::Status& status) {
    std::printf("%.*s\n", static_cast<int>(status.text().size()), status.text().data());
    return 1;
}

} // namespace

int main() {
    const int n = 100, systems = 2;
    const Rod still(n, 0.0), cooled(n, 0.1);
    const std::vector<double> b(static_cast<std::size_t>(n * systems), 1.0);
    std::vector<double> x(b.size());

    nxl::SparseSolver<double> solver(nxl::MatrixType::positive_definite);
    if (const auto status = solver.analyse(still.row_start, still.column, still.value); !status) return fail(status);
    for (const Rod* rod : {&still, &cooled}) {
        if (const auto status = solver.factor(rod->value); !status) return fail(status);
        if (const auto status = solver.solve(b, x); !status) return fail(status);
        std::printf("in the middle %.6f; %d entries of L\n", x[n / 2], solver.factor_size_in_entries());
    }
    return std::isfinite(x[0]) ? 0 : 1;
}
