#include "tests/support/sparse_problems.hpp"
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <random>
#include <stdexcept>
#include <string_view>
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

/// Differences on a grid: `wind`, times the mesh width, along each axis; `shift` is taken off the diagonal.
SparseProblem differences(int side, int dimensions, int mtype, const std::array<double, 3>& wind, double shift = 0.0) {
    const int n = power(side, dimensions);
    Assembly matrix(n, mtype);
    for (int i = 0; i < n; ++i) {
        double diagonal = -shift;
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
SparseProblem convection2d(int side) { return differences(side, 2, 11, {40.0, 20.0}); }
SparseProblem convection3d(int side) { return differences(side, 3, 11, {40.0, 20.0, 10.0}); }

namespace {
constexpr double ten_points_to_a_wave = 0.628 * 0.628; // (k h)^2
}
SparseProblem shifted2d(int side) { return differences(side, 2, -2, {}, ten_points_to_a_wave); }
SparseProblem shifted3d(int side) { return differences(side, 3, -2, {}, ten_points_to_a_wave); }

SparseProblem circuit(int side) {
    constexpr int nodes_of_a_rail = 500, nearest = 40;
    const int n = side * side, rails = std::max(n / nodes_of_a_rail, 1);
    std::mt19937 random(7); // its numbers are the same everywhere, those of distributions are not
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const auto strength = [&] { return 0.1 + below(1000) / 250.0; };
    Assembly matrix(n, 11);
    const auto connect = [&](int i, int j, double conductance) {
        matrix.add(i, i, conductance);
        matrix.add(j, j, conductance);
        matrix.add(i, j, -conductance);
        matrix.add(j, i, -conductance);
    };
    for (int i = 0; i < n; ++i) {
        matrix.add(i, i, 0.01); // to the ground
        if (i > 0) connect(i, i - 1 - below(std::min(i, nearest)), strength());
        if (below(3) == 0) connect(i, below(rails) * (n / rails), strength());
        if (i > 0 && below(4) == 0) { // a current of i, set by the voltage of another
            const int by = i - 1 - below(std::min(i, nearest));
            const double gain = strength();
            matrix.add(i, by, gain);
            matrix.add(i, i, gain);
        }
    }
    return std::move(matrix).problem();
}

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

SparseProblem in_complex(SparseProblem problem) {
    const auto unit = [](int k) { return std::polar(1.0, 0.7 * k); };
    const bool hermitian = problem.mtype == 2, symmetric = problem.mtype == -2;
    std::vector<double> values;
    values.reserve(2 * problem.a.size());
    std::size_t k = 0;
    for (int i = 0; i < problem.n; ++i)
        for (const auto end = static_cast<std::size_t>(problem.ia.data()[i + 1] - 1); k < end; ++k) {
            const int j = problem.ja.data()[k] - 1;
            const auto right = hermitian ? std::conj(unit(j)) : unit(symmetric ? j : 3 * j);
            const auto value =
                i == j && hermitian ? std::complex(problem.a.data()[k]) : problem.a.data()[k] * unit(i) * right;
            values.push_back(value.real());
            values.push_back(value.imag());
        }
    problem.a = std::move(values);
    problem.mtype = hermitian ? 4 : symmetric ? 6 : 13;
    return problem;
}

SparseProblem sparse_problem(const std::string& name, int side) {
    constexpr std::string_view complex = "-complex";
    if (name.ends_with(complex)) return in_complex(sparse_problem(name.substr(0, name.size() - complex.size()), side));
    const int most = name.ends_with("3d") ? 200 : 8000; // entries are counted by 32-bit numbers
    if (side < 2 || side > most) throw std::invalid_argument(name + ": a side is 2 to " + std::to_string(most));
    if (name == "poisson2d") return poisson2d(side);
    if (name == "poisson3d") return poisson3d(side);
    if (name == "elasticity3d") return elasticity3d(side);
    if (name == "convection2d") return convection2d(side);
    if (name == "convection3d") return convection3d(side);
    if (name == "shifted2d") return shifted2d(side);
    if (name == "shifted3d") return shifted3d(side);
    if (name == "circuit") return circuit(side);
    if (name == "saddle") return saddle(side);
    throw std::invalid_argument("no such problem: " + name);
}

} // namespace nxl_test
