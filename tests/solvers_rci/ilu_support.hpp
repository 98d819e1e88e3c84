// Sparse matrices and calls of the incomplete LU routines, for their tests.
#pragma once
#include "nxl.h"
#include "tests/support/captured.hpp"
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace nxl_test {

/// Columns from 0, ascending.
using Row = std::map<int, double>;
using Rows = std::vector<Row>;

/// About `degree` random entries per row in (-1, 1), and a diagonal of that size plus `dominance`.
inline Rows random_rows(int n, int degree, double dominance, unsigned seed) {
    std::mt19937_64 generator(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::uniform_int_distribution<int> column(0, n - 1);
    Rows rows(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        Row& row = rows[static_cast<std::size_t>(i)];
        for (int k = 0; k < degree; ++k) row[column(generator)] = uniform(generator);
        row[i] = dominance + uniform(generator);
    }
    return rows;
}

inline double at(const Row& row, int column) {
    const auto entry = row.find(column);
    return entry == row.end() ? 0.0 : entry->second;
}

constexpr double untouched = -8.25e77;

/// A matrix, the parameters and the results of a call; arrays end in a margin that has to stay.
struct IluCase {
    static constexpr int margin = 3;

    int n;
    std::vector<double> a, dpar = std::vector<double>(128, NAN), lu;
    std::vector<int> ia{1}, ja, ipar = std::vector<int>(128, -77), ilu, jlu;
    int ierr = 12345;

    /// Errors and warnings reported on standard output, no pivot replaced.
    explicit IluCase(const Rows& rows) : n(static_cast<int>(rows.size())) {
        for (const Row& row : rows) {
            for (const auto& [column, value] : row) {
                ja.push_back(column + 1);
                a.push_back(value);
            }
            ia.push_back(static_cast<int>(ja.size()) + 1);
        }
        ip(2) = 6, ip(6) = 1, ip(7) = 1, ip(31) = 0;
        dp(31) = dp(32) = 0.0;
    }

    int& ip(std::size_t i) { return ipar[i - 1]; }
    double& dp(std::size_t i) { return dpar[i - 1]; }

    int ilu0() {
        lu.assign(a.size() + margin, untouched);
        ilu = ia, jlu = ja;
        DCSRILU0(&n, a.data(), ia.data(), ja.data(), lu.data(), ipar.data(), dpar.data(), &ierr);
        return ierr;
    }

    int ilut(double tol, int maxfil) {
        const std::size_t rows = static_cast<std::size_t>(std::max(n, 0));
        const std::size_t room = rows * static_cast<std::size_t>(2 * std::max(std::min(maxfil, n - 1), 0) + 1);
        lu.assign(room + margin, untouched);
        jlu.assign(room + margin, -5);
        ilu.assign(rows + 1 + margin, -5);
        DCSRILUT(&n, a.data(), ia.data(), ja.data(), lu.data(), ilu.data(), jlu.data(), &tol, &maxfil, ipar.data(),
                 dpar.data(), &ierr);
        EXPECT_EQ(ilu.back(), -5);
        EXPECT_EQ(jlu[room], -5);
        EXPECT_EQ(lu[room], untouched);
        return ierr;
    }

    /// The factors: row i of L left of the diagonal, then U.
    Rows factors() const {
        Rows rows(static_cast<std::size_t>(n));
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (int k = ilu[i] - 1; k < ilu[i + 1] - 1; ++k)
                rows[i][jlu[static_cast<std::size_t>(k)] - 1] = lu[static_cast<std::size_t>(k)];
        return rows;
    }
};

/// Row i minus the rows of `factors` above, in order; entries for which keep(column, change) is false do not arise.
template <class Keep> Row eliminated(Row row, int i, const Rows& factors, double drop, Keep&& keep) {
    for (auto entry = row.begin(); entry != row.end() && entry->first < i; ++entry) { // sees fill as it arises
        const Row& above = factors[static_cast<std::size_t>(entry->first)];
        entry->second /= above.at(entry->first);
        if (std::fabs(entry->second) < drop) {
            entry->second = 0.0;
            continue;
        }
        for (auto u = above.upper_bound(entry->first); u != above.end(); ++u) {
            const double change = -u->second * entry->second;
            if (row.contains(u->first) || keep(u->first, change)) row[u->first] += change;
        }
    }
    return row;
}

inline void expect_same(const Rows& found, const Rows& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        ASSERT_EQ(found[i].size(), expected[i].size()) << "row " << i;
        for (const auto& [column, value] : expected[i])
            EXPECT_DOUBLE_EQ(at(found[i], column), value) << "row " << i << " column " << column;
    }
}

} // namespace nxl_test
