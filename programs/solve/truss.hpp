// The truss bridge as a structure: where its joints are, what joins them, and what they weigh.
#pragma once

#include "sparse_matrix.hpp"

#include <array>
#include <utility>
#include <vector>

namespace solve {

struct Truss {
    std::vector<std::array<double, 3>> joint; // metres: along, across, up
    std::vector<std::pair<int, int>> bar;     // the joints at its ends
    std::vector<int> unknown;                 // of each joint three: the number of a displacement, -1 where it is held
    std::vector<double> mass;                 // tonnes at each joint: half of its bars, and its part of the deck
    SparseMatrix<double> stiffness;           // of the unknowns, kN/m
};

Truss make_truss(int bays);

} // namespace solve
