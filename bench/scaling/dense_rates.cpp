// Rates of the steps of LU and Cholesky, in the shapes that a matrix of order n has.
#include "bench/clocks.hpp"
#include "bench/scaling/rates.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/cholesky/xpotrf.hpp"
#include "lapack/kernel/source/lu/xgetrf.hpp"
#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

namespace nxl::bench {
namespace {

using Shape = std::vector<double>;

/// Rows of a matrix, with a leading dimension as that of the whole has it.
class Columns {
    i64 ld_;
    std::vector<double> values_, original_;

  public:
    Columns(i64 rows, i64 columns) : ld_(rows), values_(static_cast<std::size_t>(rows * columns)) {
        std::mt19937_64 random(1);
        std::uniform_real_distribution<double> uniform(-1.0, 1.0);
        for (double& value : values_) value = uniform(random);
        original_ = values_;
    }
    Matrix<double> all() { return {values_.data(), ld_, static_cast<i64>(values_.size()) / ld_, ld_}; }
    /// The last `rows` rows of some columns.
    Matrix<double> lowest(i64 rows, i64 first, i64 columns) { return all().block(ld_ - rows, first, rows, columns); }
    void restore() { std::copy(original_.begin(), original_.end(), values_.begin()); }
};

/// The fastest of several calls, each on what prepare() leaves; on the clock of this thread, so that the time of other
/// programs does not count.
template <class Prepare, class Body> double fastest_after(const Prepare& prepare, const Body& body) {
    constexpr double enough = 0.02;
    constexpr int least = 3, most = 50;
    double best = HUGE_VAL, spent = 0.0;
    for (int call = 0; call < least || (call < most && spent < enough); ++call) {
        prepare();
        const double start = thread_seconds();
        body();
        const double seconds = thread_seconds() - start;
        best = std::min(best, seconds);
        spent += seconds;
    }
    return best;
}

double panel_work(double rows, double columns) { return columns * columns * (rows - columns / 3.0); }
double apply_work(double rows, double width, double columns) { return width * columns * (2.0 * rows - width); }

std::vector<double> ladder(double first, double last, double ratio) {
    std::vector<double> steps;
    for (double step = first; step < last / std::sqrt(ratio); step *= ratio) steps.push_back(step);
    steps.push_back(last);
    return steps;
}

} // namespace

LuCosts measured_lu_costs(i64 n, i64 nb) {
    constexpr i64 widest = 8; // blocks of an update
    const double width = static_cast<double>(nb);
    const auto columns = std::make_shared<Columns>(n, std::min((widest + 1) * nb, n));
    std::vector<i64> pivots(static_cast<std::size_t>(n));
    const auto whole = [](double x) { return static_cast<i64>(x); };
    const auto restore = [&] { columns->restore(); };
    const auto factor = [&](i64 rows) {
        i64 info = 0;
        factor_serially(columns->lowest(rows, 0, nb), pivots.data(), &info, 0, 0);
    };
    const std::vector<double> rows = ladder(width, static_cast<double>(n), 4.0);
    const RateGrid panel(
        {rows}, [&](const Shape& s) { return panel_work(s[0], width); },
        [&](const Shape& s) { return fastest_after(restore, [&] { factor(whole(s[0])); }); });
    const double room = static_cast<double>(columns->all().columns - nb);
    const RateGrid apply(
        {rows, ladder(std::min(width, room), room, static_cast<double>(widest))},
        [&](const Shape& s) { return apply_work(s[0], width, s[1]); },
        [&](const Shape& s) {
            const Matrix<double> part = columns->lowest(whole(s[0]), 0, nb + whole(s[1]));
            return fastest_after(
                [&] {
                    columns->restore();
                    factor(part.rows);
                },
                [&] { apply_panel(part, pivots.data(), 0, nb, nb, part.columns - nb); });
        });
    const double exchanges = fastest_after(restore, [&] { // with rows that are spread as the pivots of a panel are
        for (i64 i = 0; i < nb; ++i) pivots[static_cast<std::size_t>(i)] = 1 + (i * 7919) % n;
        interchange_rows(columns->lowest(n, 0, nb), pivots.data(), 0, nb);
    });
    return {.panel =
                [panel](i64 r, i64 c) {
                    const auto height = static_cast<double>(r);
                    return panel.per_operation({height}) * panel_work(height, static_cast<double>(c));
                },
            .apply =
                [apply, width](i64 r, i64 c) {
                    const auto height = static_cast<double>(r), count = static_cast<double>(c);
                    return apply.per_operation({height, count}) * apply_work(height, width, count);
                },
            .interchange = exchanges / (width * width)};
}

CholeskyCosts measured_cholesky_costs(i64 n, i64 nb) {
    Columns columns(n, 5 * nb); // the tile, and four that are taken off it
    const auto tile = [&](i64 k) { return columns.all().block(0, k * nb, nb, nb); };
    const auto restore = [&] {
        columns.restore();
        for (i64 i = 0; i < nb; ++i) *tile(0).at(i, i) = 2.0 * static_cast<double>(nb);
    };
    i64 info = 0;
    const double factor = fastest_after(restore, [&] { potrf_serial('L', tile(0), info, 0, 0); });
    const double solve = fastest_after(
        [&] {
            restore();
            potrf_serial('L', tile(0), info, 0, 0);
        },
        [&] { trsm('R', 'L', 'C', 'N', 1.0, tile(0), tile(1)); });
    double product[2][2];
    for (const i64 levels : {1, 2}) {
        const Matrix<double> left = columns.all().block(0, nb, nb, levels * nb),
                             right = columns.all().block(0, 3 * nb, nb, levels * nb);
        product[levels - 1][false] = fastest_after(restore, [&] { gemm('N', 'C', -1.0, left, right, 1.0, tile(0)); });
        product[levels - 1][true] = fastest_after(restore, [&] { herk('L', 'N', -1.0, left, 1.0, tile(0)); });
    }
    return {.factor = factor, .solve = solve, .update = [product](i64 levels, bool diagonal) {
                return product[std::min(levels, i64{2}) - 1][diagonal];
            }};
}

} // namespace nxl::bench
