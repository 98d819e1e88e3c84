// Exponential: from its differential equation. Logistic: where it crosses levels. Peaks: the highest, again and again.
#include "start_values.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <nxl.h>
#include <utility>

namespace fit {
namespace {

using Column = std::vector<double>;

/// The points in the order of x.
Data sorted(const Data& data) {
    std::vector<std::pair<double, double>> points;
    for (std::size_t i = 0; i < data.x.size(); ++i) points.emplace_back(data.x[i], data.y[i]);
    std::sort(points.begin(), points.end());
    Data result;
    for (const auto& [x, y] : points) {
        result.x.push_back(x);
        result.y.push_back(y);
    }
    return result;
}

/// Factors of the columns that come closest to y, by the normal equations; empty when the columns are dependent.
Column combination(const std::vector<Column>& columns, const Column& y) {
    const int n = static_cast<int>(columns.size()), m = static_cast<int>(y.size()), one = 1;
    Column normal(columns.size() * columns.size()), factors;
    for (const Column& row : columns) {
        for (std::size_t k = 0; k < columns.size(); ++k)
            normal[factors.size() + k * columns.size()] = ddot(&m, row.data(), &one, columns[k].data(), &one);
        factors.push_back(ddot(&m, row.data(), &one, y.data(), &one));
    }
    int info = 0;
    dpotrf("L", &n, normal.data(), &n, &info, 1);
    if (info != 0) return {};
    dpotrs("L", &n, &one, normal.data(), &n, factors.data(), &n, &info, 1);
    return factors;
}

/// Estimates that are no numbers are left out: those parameters start as any formula's do.
Start finite(Start start) {
    std::erase_if(start, [](const auto& entry) { return !std::isfinite(entry.second); });
    return start;
}

/// The first x where y is at or above `level`.
double first_reaching(const Data& points, double level) {
    const auto at = std::find_if(points.y.begin(), points.y.end(), [=](double y) { return y >= level; });
    return points.x[static_cast<std::size_t>(at - points.y.begin())];
}

/// How far from the peak at `top` the height has fallen to one half, on the side where that comes first.
double half_width(const Column& x, const Column& height, std::size_t top) {
    std::size_t left = top, right = top;
    const double half = 0.5 * height[top];
    while (left > 0 && height[left] > half) --left;
    while (right + 1 < x.size() && height[right] > half) ++right;
    double width = x.back() - x.front();
    if (height[left] <= half) width = std::min(width, x[top] - x[left]);
    if (height[right] <= half) width = std::min(width, x[right] - x[top]);
    return width;
}

/// c + d x through the lowest fifth of the points at either end, or c alone: the lowest fifth of all.
Start background_of(const Data& points, bool linear) {
    const auto low_part = [&](std::size_t first, std::size_t last) {
        Column y(points.y.begin() + static_cast<long>(first), points.y.begin() + static_cast<long>(last));
        std::sort(y.begin(), y.end());
        return y[y.size() / 5];
    };
    const std::size_t m = points.x.size(), part = std::max<std::size_t>(1, m / 5);
    const double run = points.x.back() - points.x.front();
    if (!linear || run == 0.0) return {{"c", low_part(0, m)}};
    const double begin = low_part(0, part), slope = (low_part(m - part, m) - begin) / run;
    return {{"c", begin - slope * points.x.front()}, {"d", slope}};
}

} // namespace

/// y = a exp(-b x) + c obeys y - y(x1) = -b (integral of y from x1 to x) + b c (x - x1), which is linear in b and b c.
Start start_of_exponential(const Data& data) {
    const Data points = sorted(data);
    const std::size_t m = points.x.size();
    Column area(m), distance(m), decay(m);
    const Column ones(m, 1.0);
    for (std::size_t i = 1; i < m; ++i) {
        distance[i] = points.x[i] - points.x[0];
        area[i] = area[i - 1] + 0.5 * (points.y[i] + points.y[i - 1]) * (points.x[i] - points.x[i - 1]);
    }
    const Column rate = combination({area, distance, ones}, points.y);
    if (rate.empty()) return {};
    const double b = -rate[0];
    for (std::size_t i = 0; i < m; ++i) decay[i] = std::exp(-b * distance[i]);
    const Column linear = combination({decay, ones}, points.y);
    if (linear.empty()) return finite({{"b", b}});
    return finite({{"a", linear[0] * std::exp(b * points.x[0])}, {"b", b}, {"c", linear[1]}});
}

Start start_of_logistic(const Data& data) {
    Data points = sorted(data);
    const std::size_t m = points.x.size(), part = std::max<std::size_t>(1, m / 4);
    const auto sum = [](auto first, auto last) { return std::accumulate(first, last, 0.0); };
    const auto quarter = static_cast<long>(part);
    const bool falls =
        sum(points.y.end() - quarter, points.y.end()) < sum(points.y.begin(), points.y.begin() + quarter);
    const auto [low, high] = std::minmax_element(points.y.begin(), points.y.end());
    const double c = *low, a = *high - *low;
    if (falls)
        for (double& y : points.y) y = 2.0 * c + a - y;
    // From a quarter to three quarters of the height the argument k (x - x0) grows by 2 log 3.
    const double rise = first_reaching(points, c + 0.75 * a) - first_reaching(points, c + 0.25 * a);
    const double run = points.x.back() - points.x.front();
    const double k = 2.0 * std::log(3.0) / (rise > 0.0 ? rise : run / static_cast<double>(m));
    return finite({{"a", a}, {"c", c}, {"k", falls ? -k : k}, {"x0", first_reaching(points, c + 0.5 * a)}});
}

Start start_of_peaks(const Data& data, int peaks, bool linear) {
    const Data points = sorted(data);
    const double half_to_deviation = 1.0 / std::sqrt(2.0 * std::log(2.0));
    Start start = background_of(points, linear);
    Column height(points.y.size());
    for (std::size_t i = 0; i < height.size(); ++i)
        height[i] = points.y[i] - start["c"] - (linear ? start["d"] * points.x[i] : 0.0);
    for (int k = 1; k <= peaks; ++k) {
        const auto top = static_cast<std::size_t>(std::max_element(height.begin(), height.end()) - height.begin());
        const double h = height[top], p = points.x[top], w = half_to_deviation * half_width(points.x, height, top);
        const std::string i = std::to_string(k);
        start.insert({{"h" + i, h}, {"p" + i, p}, {"w" + i, w > 0.0 ? w : 1.0}});
        for (std::size_t j = 0; j < height.size(); ++j)
            height[j] -= h * std::exp(-0.5 * std::pow((points.x[j] - p) / start["w" + i], 2));
    }
    return finite(start);
}

} // namespace fit
