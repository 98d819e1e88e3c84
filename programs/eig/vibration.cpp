// Masses are lumped: half of each bar at either end, and the deck at its joints.
#include "vibration.hpp"

#include "common/gnuplot.hpp"
#include "report.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace eig {
namespace {

constexpr int kAxes = 3, kMost = 6; // modes of a drawing
using Point = std::array<double, 2>;

/// 1 / sqrt(mass) of each unknown.
std::vector<double> scales(const solve::Truss& truss) {
    std::vector<double> scale(static_cast<std::size_t>(truss.stiffness.n));
    for (std::size_t k = 0; k < truss.unknown.size(); ++k)
        if (truss.unknown[k] >= 0) scale.data()[truss.unknown[k]] = 1.0 / std::sqrt(truss.mass[k / kAxes]);
    return scale;
}

Point seen(const std::array<double, 3>& p) { return {p[0] + 0.5 * p[1], p[2] + 0.4 * p[1]}; }

/// Where the joints are, moved by a mode whose largest displacement is drawn so long; 0: where they rest.
std::vector<Point> joints_in(const solve::Truss& truss, const double* mode, double reach) {
    const std::vector<double> scale = scales(truss);
    double largest = 0.0;
    for (std::size_t k = 0; k < scale.size(); ++k) largest = std::max(largest, std::abs(mode[k] * scale[k]));
    std::vector<Point> points;
    for (std::size_t j = 0; j < truss.joint.size(); ++j) {
        auto moved = truss.joint[j];
        for (std::size_t axis = 0; axis < kAxes; ++axis) {
            const int unknown = truss.unknown[kAxes * j + axis];
            if (unknown >= 0 && largest > 0.0)
                moved.at(axis) += reach * mode[unknown] * scale.data()[unknown] / largest;
        }
        points.push_back(seen(moved));
    }
    return points;
}

void write_bars(std::FILE* script, const solve::Truss& truss, const std::vector<Point>& at, double up) {
    for (const auto& [from, to] : truss.bar) {
        const Point &a = at.data()[from], &b = at.data()[to];
        std::fprintf(script, "%.5g %.5g\n%.5g %.5g\n\n", a[0], a[1] + up, b[0], b[1] + up);
    }
}

} // namespace

solve::SparseMatrix<double> vibration_matrix(const solve::Truss& truss) {
    solve::SparseMatrix<double> a = truss.stiffness;
    const std::vector<double> scale = scales(truss);
    for (int i = 0; i < a.n; ++i)
        for (int k = a.row_start.data()[i]; k < a.row_start.data()[i + 1]; ++k)
            a.value.data()[k] *= scale.data()[i] * scale.data()[a.column.data()[k]]; // first this product: symmetric
    return a;
}

void draw_modes(const std::string& path, const std::string& title, const solve::Truss& truss,
                const Spectrum& spectrum) {
    const auto& vectors = std::get<solve::Block<double>>(spectrum.vector);
    const int modes = std::min(vectors.count, kMost);
    const double length = truss.joint.back()[0], reach = std::max(4.0, 0.04 * length), step = 9.0 + 2.0 * reach;
    const auto draw = [&](std::FILE* script) {
        std::fputs("unset key\nunset tics\nunset grid\nunset border\nset size ratio -1\n", script);
        for (int k = 0; k < modes; ++k)
            std::fprintf(script, "set label '%d:  %.4g Hz' at 0,%.5g\n", k + 1,
                         frequency(spectrum.value[static_cast<std::size_t>(k)].real()), 9.0 - k * step);
        for (const bool moved : {false, true}) {
            std::fputs(moved ? "$moved << END\n" : "$resting << END\n", script);
            for (int k = 0; k < modes; ++k)
                write_bars(script, truss, joints_in(truss, vectors.column(k), moved ? reach : 0.0), -k * step);
            std::fputs("END\n", script);
        }
        std::fputs("plot $resting with lines linecolor rgb '#c8c8c8', $moved with lines linewidth 1.5 linecolor 1\n",
                   script);
    };
    const double shown = (step * modes + 4.0) / (length + 4.0);
    common::draw(path, title, draw, {.width = 900, .height = std::clamp(static_cast<int>(900 * shown), 200, 1600)});
}

} // namespace eig
