#include "tests/support/sparse_problems.hpp"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace nxl_test {
namespace {

/// Entries in any order, those of one place added up.
class Assembly {
    SparseProblem problem_;
    std::vector<std::vector<std::pair<int, double>>> rows_;

  public:
    Assembly(int n, int mtype) : rows_(static_cast<std::size_t>(n)) {
        problem_.n = n;
        problem_.mtype = mtype;
    }

    /// Of a symmetric matrix each entry of both triangles or of the upper one alone: what lies below is left out.
    void add(int i, int j, double value) {
        if (problem_.upper() && j < i) return;
        rows_[static_cast<std::size_t>(i)].emplace_back(j, value);
    }

    SparseProblem problem() && {
        problem_.ia.push_back(1);
        for (auto& row : rows_) {
            std::ranges::sort(row);
            int last = -1;
            for (const auto& [column, value] : row) {
                if (column == last) problem_.a.back() += value;
                else {
                    problem_.ja.push_back(column + 1);
                    problem_.a.push_back(value);
                }
                last = column;
            }
            problem_.ia.push_back(static_cast<int>(problem_.ja.size()) + 1);
        }
        return std::move(problem_);
    }
};

int power(int side, int dimensions) { return dimensions == 0 ? 1 : side * power(side, dimensions - 1); }

/// Differences on a grid: `wind`, times the mesh width, along each axis.
SparseProblem differences(int side, int dimensions, int mtype, const std::array<double, 3>& wind) {
    const int n = power(side, dimensions);
    Assembly matrix(n, mtype);
    for (int i = 0; i < n; ++i) {
        double diagonal = 0.0;
        for (int d = 0; d < dimensions; ++d) {
            const int step = power(side, d), at = i / step % side;
            const double flow = wind.at(static_cast<std::size_t>(d)) / (side + 1);
            diagonal += 2.0 + flow;
            if (at > 0) matrix.add(i, i - step, -1.0 - flow);
            if (at < side - 1) matrix.add(i, i + step, -1.0);
        }
        matrix.add(i, i, diagonal);
    }
    return std::move(matrix).problem();
}

using Brick = std::array<std::array<double, 24>, 24>;

/// Derivative along `axis` of the shape function of `corner` at a point of the brick -1 .. 1.
double shape_derivative(int corner, int axis, const std::array<double, 3>& point) {
    double value = 0.125;
    for (int d = 0; d < 3; ++d) {
        const double sign = (corner >> d & 1) != 0 ? 1.0 : -1.0;
        value *= d == axis ? sign : 1.0 + sign * point.at(static_cast<std::size_t>(d));
    }
    return value;
}

/// Stiffness of a brick: the integral of lambda div u div v + 2 mu eps(u) : eps(v), by two points along each axis.
Brick brick_stiffness() {
    constexpr double ratio = 0.3, lambda = ratio / ((1 + ratio) * (1 - 2 * ratio)), mu = 0.5 / (1 + ratio);
    Brick k{};
    for (int g = 0; g < 8; ++g) {
        std::array<double, 3> point{};
        for (int d = 0; d < 3; ++d)
            point.at(static_cast<std::size_t>(d)) = ((g >> d & 1) != 0 ? 1 : -1) / std::sqrt(3.0);
        for (std::size_t row = 0; row < 24; ++row)
            for (std::size_t column = 0; column < 24; ++column) {
                const int a = static_cast<int>(row) / 3, p = static_cast<int>(row) % 3;
                const int b = static_cast<int>(column) / 3, q = static_cast<int>(column) % 3;
                double sum = lambda * shape_derivative(a, p, point) * shape_derivative(b, q, point) +
                             mu * shape_derivative(a, q, point) * shape_derivative(b, p, point);
                for (int d = 0; p == q && d < 3; ++d)
                    sum += mu * shape_derivative(a, d, point) * shape_derivative(b, d, point);
                k.at(row).at(column) += sum;
            }
    }
    return k;
}

} // namespace

SparseProblem poisson2d(int side) { return differences(side, 2, 2, {}); }
SparseProblem poisson3d(int side) { return differences(side, 3, 2, {}); }
SparseProblem convection3d(int side) { return differences(side, 3, 11, {40.0, 20.0, 10.0}); }

SparseProblem elasticity3d(int side) {
    const Brick brick = brick_stiffness();
    const auto node = [&](int cell, int corner) { // of a grid with one more cell below the first layer of nodes
        const int cells = side - 1, x = cell % cells, y = cell / cells % cells, z = cell / (cells * cells);
        return x + (corner & 1) + side * (y + (corner >> 1 & 1)) + side * side * (z - 1 + (corner >> 2 & 1));
    };
    Assembly matrix(3 * power(side, 3), 2);
    const int cells = (side - 1) * (side - 1) * side;
    for (int cell = 0; cell < cells; ++cell)
        for (int i = 0; i < 24; ++i)
            for (int j = 0; j < 24; ++j) {
                const int row = node(cell, i / 3), column = node(cell, j / 3);
                if (row < 0 || column < 0) continue; // held
                matrix.add(3 * row + i % 3, 3 * column + j % 3,
                           brick.at(static_cast<std::size_t>(i)).at(static_cast<std::size_t>(j)));
            }
    return std::move(matrix).problem();
}

SparseProblem saddle(int side) {
    const int cells = side * side, faces = side * (side - 1);
    const auto u = [&](int x, int y) { return x + (side - 1) * y; };   // right of cell (x, y)
    const auto v = [&](int x, int y) { return faces + x + side * y; }; // above it
    const auto p = [&](int x, int y) { return 2 * faces + x + side * y; };
    Assembly matrix(2 * faces + cells, -2);
    const auto laplace = [&](const auto& at, int columns, int rows) {
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < columns; ++x) {
                matrix.add(at(x, y), at(x, y), 4.0);
                if (x + 1 < columns) matrix.add(at(x, y), at(x + 1, y), -1.0);
                if (y + 1 < rows) matrix.add(at(x, y), at(x, y + 1), -1.0);
            }
    };
    laplace(u, side - 1, side);
    laplace(v, side, side - 1);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            matrix.add(p(x, y), p(x, y), x + y == 0 ? -1.0 : 0.0);
            if (x + 1 < side) {
                matrix.add(u(x, y), p(x, y), -1.0);
                matrix.add(u(x, y), p(x + 1, y), 1.0);
            }
            if (y + 1 < side) {
                matrix.add(v(x, y), p(x, y), -1.0);
                matrix.add(v(x, y), p(x, y + 1), 1.0);
            }
        }
    return std::move(matrix).problem();
}

SparseProblem sparse_problem(const std::string& name, int side) {
    const int most = name.ends_with("3d") ? 200 : 8000; // entries are counted by 32-bit numbers
    if (side < 2 || side > most) throw std::invalid_argument(name + ": a side is 2 to " + std::to_string(most));
    if (name == "poisson2d") return poisson2d(side);
    if (name == "poisson3d") return poisson3d(side);
    if (name == "elasticity3d") return elasticity3d(side);
    if (name == "convection3d") return convection3d(side);
    if (name == "saddle") return saddle(side);
    throw std::invalid_argument("no such problem: " + name);
}

} // namespace nxl_test
