// The right-hand sides of a run, and what is known about their solutions.
#pragma once

#include "matrix_market.hpp"

#include <optional>
#include <string>

namespace solve {

template <class T> struct RightHandSide {
    Block<T> b;
    std::optional<Block<T>> solution; // where b was made from it
    std::string description;
};

/// `what` is "known" (A times a known X), "ones", "load" (the generated problem's own), or a file. Column k of X, or of
/// "ones", is cos(k pi (i - 1/2) / n) for k from 0 and i from 1 to n: the first is all ones, the others differ, so that
/// several systems are several. `count` of 0 means as many as there are: those of the file, or one.
template <class T>
RightHandSide<T> make_right_hand_side(const std::string& what, int count, const SparseMatrix<T>& a,
                                      const std::vector<double>& load);

} // namespace solve
