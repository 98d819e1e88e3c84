// Right-hand sides: from a file, from the problem, or made.
#include "right_hand_side.hpp"

#include "common/input_error.hpp"

#include <cmath>
#include <numbers>

namespace solve {
namespace {

template <class T> Block<T> cosines(int n, int count) {
    Block<T> block(n, count);
    for (int k = 0; k < count; ++k) {
        for (int i = 0; i < n; ++i) block.column(k)[i] = std::cos(k * std::numbers::pi * (i + 0.5) / n);
    }
    return block;
}

template <class T> Block<T> product(const SparseMatrix<T>& a, const Block<T>& x) {
    Block<T> b(a.n, x.count);
    for (int k = 0; k < x.count; ++k) multiply(a, x.column(k), b.column(k));
    return b;
}

template <class T> Block<T> single_column(const std::vector<double>& values) {
    Block<T> block(static_cast<int>(values.size()), 1);
    block.value.assign(values.begin(), values.end());
    return block;
}

void expect_count(const std::string& what, int wanted, int found) {
    if (wanted != 0 && wanted != found)
        throw common::UsageError("--nrhs " + std::to_string(wanted) + ", but '" + what + "' holds " +
                                 std::to_string(found));
}

} // namespace

template <class T>
RightHandSide<T> make_right_hand_side(const std::string& what, int count, const SparseMatrix<T>& a,
                                      const std::vector<double>& load) {
    const int made = count > 0 ? count : 1;
    if (what == "ones") return {cosines<T>(a.n, made), std::nullopt, made == 1 ? "ones" : "ones and cosines"};
    if (what == "known") {
        auto x = cosines<T>(a.columns, made);
        auto b = product(a, x);
        return {std::move(b), std::move(x), made == 1 ? "A times ones" : "A times ones and cosines"};
    }
    if (what == "load") {
        if (load.empty()) throw common::UsageError("--rhs load belongs to --generate: a file has no load of its own");
        expect_count(what, count, 1);
        return {single_column<T>(load), std::nullopt, "the load of the problem"};
    }
    auto b = read_block<T>(common::open_lines(what), a.n);
    expect_count(what, count, b.count);
    return {std::move(b), std::nullopt, what};
}

template RightHandSide<double> make_right_hand_side(const std::string&, int, const SparseMatrix<double>&,
                                                    const std::vector<double>&);
template RightHandSide<Complex> make_right_hand_side(const std::string&, int, const SparseMatrix<Complex>&,
                                                     const std::vector<double>&);

} // namespace solve
