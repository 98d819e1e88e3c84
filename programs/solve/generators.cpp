// The table of problems, and those on grids: finite volumes, fixed values all around, unknowns ordered x fastest.
#include "generators.hpp"

#include "common/input_error.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cmath>
#include <random>

namespace solve {
namespace {

struct Cell {
    int x, y, z;
};

/// The six neighbours in the order of their column numbers. A plane grid has the middle four.
enum Direction { kBelow, kSouth, kWest, kEast, kNorth, kAbove };
constexpr int kDirections = 6;

/// The matrix of a square or cube of n cells a side in which the flow from a cell in a direction is
/// coupling(cell, direction) times (value here - value there); values beyond the boundary are 0.
template <class Coupling> SparseMatrix<double> grid_matrix(int dimensions, int n, Coupling coupling) {
    const std::array<int, kDirections> distance{-n * n, -n, -1, 1, n, n * n};
    const bool flat = dimensions == 2;
    const int first = flat ? kSouth : kBelow, last = flat ? kNorth : kAbove, layers = flat ? 1 : n;
    SparseMatrix<double> a{.n = n * n * layers, .row_start = {0}, .column = {}, .value = {}};
    const auto most = static_cast<std::size_t>(a.n) * static_cast<std::size_t>(last - first + 2);
    a.column.reserve(most);
    a.value.reserve(most);
    a.row_start.reserve(static_cast<std::size_t>(a.n) + 1);

    const auto add_row = [&](const Cell& c) {
        const std::array<bool, kDirections> inside{c.z > 0, c.y > 0, c.x > 0, c.x + 1 < n, c.y + 1 < n, c.z + 1 < n};
        const int row = c.x + n * (c.y + n * c.z);
        std::size_t diagonal = 0;
        double sum = 0.0;
        for (int d = first; d <= last; ++d) {
            if (d == kEast) {
                diagonal = a.value.size();
                a.column.push_back(row);
                a.value.push_back(0.0);
            }
            const double flow = coupling(c, static_cast<Direction>(d));
            sum += flow;
            if (!inside.data()[d]) continue;
            a.column.push_back(row + distance.data()[d]);
            a.value.push_back(-flow);
        }
        a.value[diagonal] = sum;
        a.row_start.push_back(a.entries());
    };
    for (int z = 0; z < layers; ++z) {
        for (int y = 0; y < n; ++y) {
            for (int x = 0; x < n; ++x) add_row({x, y, z});
        }
    }
    return a;
}

/// A symmetric grid problem with uniform heating.
template <class Coupling> Problem diffusion(int dimensions, int n, Coupling coupling) {
    Problem problem{grid_matrix(dimensions, n, coupling), {}};
    problem.matrix.symmetry = Symmetry::symmetric;
    problem.load.assign(static_cast<std::size_t>(problem.matrix.n), 1.0);
    return problem;
}

Problem poisson2d(int n) {
    return diffusion(2, n, [](const Cell&, Direction) { return 1.0; });
}

Problem heat3d(int n) {
    return diffusion(3, n, [](const Cell&, Direction) { return 1.0; });
}

Problem anisotropic2d(int n) {
    return diffusion(2, n, [](const Cell&, Direction d) { return d == kWest || d == kEast ? 1.0 : 0.01; });
}

/// Layers of four cells in z that conduct heat 1 and 1000 in turn; between layers the harmonic mean holds.
Problem layers3d(int n) {
    const auto conductivity = [](int z) { return (z / 4) % 2 == 0 ? 1.0 : 1000.0; };
    return diffusion(3, n, [=](const Cell& c, Direction d) {
        const double here = conductivity(c.z);
        if (d != kBelow && d != kAbove) return here;
        const double there = conductivity(std::clamp(c.z + (d == kAbove ? 1 : -1), 0, n - 1));
        return 2.0 * here * there / (here + there);
    });
}

/// Diffusion in a wind along x, upwind differences: what comes from the west weighs 1.5, so the matrix is unsymmetric.
Problem convection(int dimensions, int n) {
    Problem problem = diffusion(dimensions, n, [](const Cell&, Direction d) { return d == kWest ? 1.5 : 1.0; });
    problem.matrix.symmetry = Symmetry::general;
    return problem;
}

Problem convection2d(int n) { return convection(2, n); }
Problem convection3d(int n) { return convection(3, n); }

/// Eight random couplings per row on top of a diagonal that outweighs them by 1: positive definite, no structure.
Problem random_sparse(int n) {
    std::mt19937_64 random(20240607);
    const auto uniform = [&] { return static_cast<double>(random() >> 11) * 0x1p-53; };
    std::vector<Triplet<double>> triplets;
    std::vector<double> outweigh(static_cast<std::size_t>(n), 1.0);
    const auto couple = [&](int i, int j, double value) {
        triplets.push_back({std::max(i, j), std::min(i, j), value});
        outweigh.data()[i] += std::abs(value);
        outweigh.data()[j] += std::abs(value);
    };
    for (int i = 0; i < n; ++i) {
        for (int k = 0; k < 4; ++k) {
            const int j = static_cast<int>(uniform() * n);
            if (i != j) couple(i, j, 2.0 * uniform() - 1.0);
        }
    }
    for (int i = 0; i < n; ++i) triplets.push_back({i, i, outweigh.data()[i]});
    return {assemble(n, Symmetry::symmetric, std::move(triplets)),
            std::vector<double>(static_cast<std::size_t>(n), 1.0)};
}

/// Differences of height between neighbours of a square grid of n points a side, measured with some error; the heights
/// are known up to a constant.
Problem levelling(int n) {
    if (n < 2) throw common::UsageError("a single point has no differences of height");
    const auto height = [n](int x, int y) {
        return 100.0 * std::exp(-((x - 0.4 * n) * (x - 0.4 * n) + y * y) / (n * n));
    };
    std::vector<Triplet<double>> triplets;
    Problem problem;
    const auto measure = [&](int x, int y, int to_x, int to_y) {
        const int row = static_cast<int>(problem.load.size());
        triplets.push_back({row, x + n * y, -1.0});
        triplets.push_back({row, to_x + n * to_y, 1.0});
        problem.load.push_back(height(to_x, to_y) - height(x, y) + 0.01 * std::sin(17.0 * row));
    };
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            if (x + 1 < n) measure(x, y, x + 1, y);
            if (y + 1 < n) measure(x, y, x, y + 1);
        }
    const int rows = static_cast<int>(problem.load.size());
    problem.matrix = assemble(rows, n * n, Symmetry::general, std::move(triplets));
    return problem;
}

struct Kind {
    const char* name;
    Problem (*make)(int size);
    int dimensions;         // unknowns grow with this power of the size
    double entries_per_one; // triplets or entries on the way to the matrix per size^dimensions, at most
    const char* explanation;
};

constexpr Kind kKinds[] = {
    {"poisson2d", poisson2d, 2, 5, "Poisson's equation on N x N cells, five-point stencil"},
    {"heat3d", heat3d, 3, 7, "steady heat flow in a cube of N x N x N cells, seven-point stencil"},
    {"anisotropic2d", anisotropic2d, 2, 5, "as poisson2d, conducting 100 times better in x than in y"},
    {"layers3d", layers3d, 3, 7, "as heat3d, in layers that conduct heat 1 and 1000 in turn"},
    {"convection2d", convection2d, 2, 5, "as poisson2d in a wind along x: unsymmetric"},
    {"convection3d", convection3d, 3, 7, "as heat3d in a wind along x: unsymmetric"},
    {"truss", truss_bridge, 1, 600, "steel truss bridge of N bays, three displacements per joint"},
    {"random", random_sparse, 1, 9, "N unknowns coupled at random, diagonally dominant"},
    {"kriging", kriging, 2, 1, "covariances of N measurements in the plane: dense"},
    {"panels", source_panels, 2, 1, "flow around an elliptic cylinder of N panels: dense, unsymmetric"},
    {"surface", surface, 1, 36, "polynomial of 36 terms through N measurements: N by 36, dense"},
    {"levelling", levelling, 2, 4, "heights of N x N points by differences, rank N x N - 1: 2 N (N - 1) by N x N"},
};

} // namespace

Problem generate(const std::string& description) {
    const auto colon = description.find(':');
    const std::string name = description.substr(0, colon);
    const auto* kind = std::ranges::find(kKinds, name, &Kind::name);
    if (kind == std::end(kKinds)) throw common::UsageError("no problem of the name '" + name + "'; --help lists them");
    int size = 0;
    const char* first = description.data() + std::min(colon, description.size() - 1) + 1;
    const char* last = description.data() + description.size();
    const auto [end, status] = std::from_chars(first, last, size);
    if (status != std::errc() || end != last || size < 1)
        throw common::UsageError("'" + description + "': after " + name + ": a size from 1 on is expected");
    if (std::pow(size, kind->dimensions) * kind->entries_per_one > INT_MAX)
        throw common::UsageError("'" + description + "' has more entries than 32-bit positions reach");
    return kind->make(size);
}

std::string list_of_problems() {
    std::string list;
    for (const Kind& kind : kKinds) {
        std::string name = std::string(kind.name) + ":N";
        name.resize(18, ' ');
        list += "  " + name + kind.explanation + "\n";
    }
    return list;
}

} // namespace solve
