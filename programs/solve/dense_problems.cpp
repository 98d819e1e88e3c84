// Problems in which everything acts on everything: spatial statistics, a surface through measurements, potential flow.
#include "generators.hpp"

#include "common/input_error.hpp"
#include "common/progress.hpp"

#include <cmath>
#include <numbers>
#include <utility>

namespace solve {
namespace {

struct Point {
    double x, y;
};
Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
double dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
double length(Point a) { return std::sqrt(dot(a, a)); }

/// The matrix of entry(i, j), all of them stored.
template <class Entry> SparseMatrix<double> full_matrix(int n, int columns, Symmetry symmetry, Entry entry) {
    SparseMatrix<double> a{
        .n = n, .columns = columns, .symmetry = symmetry, .row_start = {0}, .column = {}, .value = {}};
    const auto count = static_cast<std::size_t>(n) * static_cast<std::size_t>(columns);
    a.row_start.reserve(static_cast<std::size_t>(n) + 1);
    a.column.reserve(count);
    a.value.reserve(count);
    common::Progress progress("generating the matrix");
    for (int i = 0; i < n; ++i) {
        progress.show(static_cast<double>(i) / n);
        for (int j = 0; j < columns; ++j) {
            a.column.push_back(j);
            a.value.push_back(entry(i, j));
        }
        a.row_start.push_back(a.entries());
    }
    return a;
}

struct Panel {
    Point middle, along; // `along` has length 1; the body is to its left
    double length;
    Point normal() const { return {along.y, -along.x}; } // out of the body
};

/// The boundary of an ellipse, counterclockwise.
std::vector<Panel> panels_of_ellipse(double half_length, double half_height, int count) {
    const auto corner = [=](int k) -> Point {
        const double angle = 2.0 * std::numbers::pi * k / count;
        return {half_length * std::cos(angle), half_height * std::sin(angle)};
    };
    std::vector<Panel> panels;
    for (int k = 0; k < count; ++k) {
        const Point from = corner(k), to = corner(k + 1), d = to - from;
        const double size = length(d);
        panels.push_back({{(from.x + to.x) / 2.0, (from.y + to.y) / 2.0}, {d.x / size, d.y / size}, size});
    }
    return panels;
}

/// The velocity that a panel with one unit of source per length causes at a point, in the direction `n`. Hess and
/// Smith, Calculation of potential flow about arbitrary bodies (1967): a logarithm along the panel, and across it the
/// angle under which it is seen.
double induced_velocity(const Panel& panel, Point at, Point n) {
    const Point to = at - panel.middle;
    const double along = dot(to, panel.along), across = dot(to, panel.normal()), half = panel.length / 2.0;
    const double parallel = 0.5 * std::log(((along + half) * (along + half) + across * across) /
                                           ((along - half) * (along - half) + across * across));
    const double angle = std::atan2(panel.length * across, along * along - half * half + across * across);
    return (parallel * dot(panel.along, n) + angle * dot(panel.normal(), n)) / (2.0 * std::numbers::pi);
}

/// Sites spread evenly over the unit square: multiples of powers of the plastic number, without their integer parts.
std::vector<Point> sites_in_square(int count) {
    constexpr double kPlastic = 1.32471795724474602596;
    const auto fraction = [](double value) { return value - std::floor(value); };
    std::vector<Point> site;
    for (int k = 1; k <= count; ++k) site.push_back({fraction(k / kPlastic), fraction(k / (kPlastic * kPlastic))});
    return site;
}

std::vector<double> measured_at(const std::vector<Point>& site) {
    std::vector<double> value;
    for (const Point& p : site) value.push_back(std::sin(7.0 * p.x) * std::cos(5.0 * p.y));
    return value;
}

} // namespace

/// Measurements with covariance exp(-distance / 0.2), and some error of their own, at sites in the square. The load is
/// what was measured; the solution weighs covariances with the sites in an estimate anywhere else.
Problem kriging(int sites) {
    constexpr double kRange = 0.2, kError = 0.01;
    const std::vector<Point> site = sites_in_square(sites);
    const auto covariance = [&](int i, int j) {
        return std::exp(-length(site.data()[i] - site.data()[j]) / kRange) + (i == j ? kError : 0.0);
    };
    return {full_matrix(sites, sites, Symmetry::symmetric, covariance), measured_at(site)};
}

/// The same measurements, by a polynomial of degree 7: products of Chebyshev's.
Problem surface(int sites) {
    constexpr int kDegree = 7;
    const std::vector<Point> site = sites_in_square(sites);
    std::vector<std::pair<int, int>> term;
    for (int i = 0; i <= kDegree; ++i)
        for (int j = 0; i + j <= kDegree; ++j) term.emplace_back(i, j);
    const auto chebyshev = [](int degree, double x) { return std::cos(degree * std::acos(2.0 * x - 1.0)); };
    const auto entry = [&](int i, int j) {
        const auto [of_x, of_y] = term.data()[j];
        return chebyshev(of_x, site.data()[i].x) * chebyshev(of_y, site.data()[i].y);
    };
    return {full_matrix(sites, static_cast<int>(term.size()), Symmetry::general, entry), measured_at(site)};
}

/// Potential flow of speed 1 along the longer axis of an ellipse, 2 by 1: sources on the panels, constant on each, are
/// to make up for the flow through the middle of every panel, which is the load.
Problem source_panels(int panels) {
    if (panels < 3) throw common::UsageError("fewer than 3 panels do not enclose a body");
    const auto body = panels_of_ellipse(1.0, 0.5, panels);
    const auto flow = [&](int i, int j) {
        // A panel's own middle is seen as from the outer side: half of the source leaves there.
        return i == j ? 0.5 : induced_velocity(body.data()[j], body.data()[i].middle, body.data()[i].normal());
    };
    Problem problem{full_matrix(panels, panels, Symmetry::general, flow), {}};
    for (const Panel& panel : body) problem.load.push_back(-panel.normal().x);
    return problem;
}

} // namespace solve
