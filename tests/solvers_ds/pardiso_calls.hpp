// PARDISO as a program calls it.
#pragma once
#include "nxl.h"
#include "tests/solvers_ds/patterns.hpp"
#include <array>
#include <complex>
#include <vector>

namespace nxl_test {

/// One handle and the arguments of its calls. Values of a complex matrix are pairs.
struct Solver {
    std::array<long long, 64> pt{};
    std::array<int, 64> iparam{};
    int max_fac_store = 1, matrix_number = 1, mtype = 2, n = 0, nb = 1, msglvl = 0;
    std::vector<int> ia, ja, perm;
    std::vector<double> a, b, x;

    Solver() = default;
    Solver(int type, const SparseRows& pattern)
        : mtype(type),
          n(static_cast<int>(pattern.ia.size()) - 1),
          ia(pattern.ia),
          ja(pattern.ja),
          perm(natural(n)),
          a(2 * ja.size(), 1.0),
          b(5 * static_cast<std::size_t>(n), 1.0),
          x(b.size(), 0.0) {
        for (std::size_t i = 0; i + 1 < ia.size(); ++i) // heavy diagonals, where there are any
            for (int k = ia[i]; k < ia[i + 1]; ++k)
                if (ja[static_cast<std::size_t>(k - 1)] == static_cast<int>(i + 1))
                    a[static_cast<std::size_t>(k - 1)] = 9.0;
    }

    int& parameter(std::size_t entry) { return iparam[entry - 1]; }

    /// Returns `error`.
    int run(int ido) {
        int error = 12345;
        PARDISO(pt.data(), &max_fac_store, &matrix_number, &mtype, &ido, &n, a.data(), ia.data(), ja.data(),
                perm.data(), &nb, iparam.data(), &msglvl, b.data(), x.data(), &error);
        return error;
    }
};

} // namespace nxl_test
