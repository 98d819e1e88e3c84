// Rates of the steps of the sparse solver, real positive definite, on a grid of the shapes of supernodes. Sources lie
// in memory that is passed through once, as they do in a factorisation; the target is at hand.
#include "bench/clocks.hpp"
#include "bench/scaling/rates.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/diagonal_block.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/update.hpp"
#include <algorithm>
#include <cmath>
#include <numeric>

namespace nxl::bench {
namespace {

using namespace pardiso;
using Shape = std::vector<double>;
using Definite = Member<double, Form::cholesky>;

constexpr i64 pool_size = i64{1} << 22; // doubles, beyond the second-level cache

template <class Body> double fastest_batch(int calls, const Body& body) {
    double best = HUGE_VAL;
    for (int batch = 0; batch < 3; ++batch) {
        const double start = thread_seconds();
        for (int call = 0; call < calls; ++call) body();
        best = std::min(best, (thread_seconds() - start) / calls);
    }
    return best;
}

i32 count(double x) { return static_cast<i32>(x); }
int calls_for(double operations) { return std::clamp(static_cast<int>(2e6 / operations), 2, 2000); }

double update_work(double rows, double columns, double depth) { return depth * columns * (2.0 * rows - columns); }
double factor_work(double rows, double width) { return width * width * (rows - 2.0 / 3.0 * width); }

FactorBlock<double> block(i32 width, i32 rows, const i32* list, double* l) {
    return {.first = 1,
            .width = width,
            .rows = rows,
            .list = list,
            .l = l,
            .u = nullptr,
            .d = nullptr,
            .row_interchanges = nullptr,
            .column_interchanges = nullptr};
}

/// An update of one target by supernodes of one shape, whose rows are spread over those of the target: half of them
/// follow on each other.
class Updates {
    const i32 rows_, columns_, depth_, height_; // of the target
    std::vector<i32> places_, map_, list_, target_list_;
    std::vector<double> target_, product_, &pool_;
    Updater<Definite> updater_;
    i64 next_ = 0;

  public:
    Updates(const Shape& shape, std::vector<double>& pool)
        : rows_(count(shape[0])),
          columns_(count(std::min(shape[1], shape[0]))),
          depth_(count(shape[2])),
          height_(columns_ + 3 * (rows_ - columns_) / 2 + 2),
          places_(at(rows_)),
          map_(at(height_)),
          list_(at(rows_)),
          target_list_(at(height_)),
          target_(at(height_) * at(columns_)),
          product_(at(rows_) * at(columns_)),
          pool_(pool),
          updater_(UpdateWork<double>{map_.data(), places_.data(), product_.data(), i64{rows_} * columns_, nullptr}) {
        std::iota(target_list_.begin(), target_list_.end(), 1);
        for (i32 i = 0; i < rows_; ++i) list_[at(i)] = 1 + (i < columns_ ? i : columns_ + 3 * (i - columns_) / 2);
        updater_.aim(block(columns_, height_, target_list_.data(), target_.data()));
    }
    static std::size_t at(i32 i) { return static_cast<std::size_t>(i); }

    void once() {
        const i64 size = i64{rows_} * depth_;
        if (next_ + size > pool_size) next_ = 0;
        updater_.update(block(depth_, rows_, list_.data(), pool_.data() + next_), 0, columns_);
        next_ += size;
    }
};

double seconds_of_factor(const Shape& shape, std::vector<double>& memory) {
    const i64 rows = count(shape[0]), width = std::min(count(shape[1]), count(shape[0]));
    std::fill_n(memory.data(), rows * width, 0.0);
    for (i64 j = 0; j < width; ++j) memory[static_cast<std::size_t>(j + j * rows)] = 4.0;
    const FactorBlock<double> diagonal = block(static_cast<i32>(width), static_cast<i32>(rows), nullptr, memory.data());
    PivotCounts counts;
    return fastest_batch(calls_for(factor_work(shape[0], shape[1])),
                         [&] { factor_block<Definite>(diagonal, PivotRule{}, counts); });
}

} // namespace

SparseCosts measured_sparse_costs() {
    std::vector<double> pool(pool_size, 1e-9);
    const Shape rows{4, 16, 64, 256, 1024}, columns{1, 4, 16, 64, 128};
    const RateGrid update(
        {rows, columns, columns}, [](const Shape& s) { return update_work(s[0], std::min(s[0], s[1]), s[2]); },
        [&](const Shape& s) {
            Updates updates(s, pool);
            return fastest_batch(calls_for(update_work(s[0], std::min(s[0], s[1]), s[2])), [&] { updates.once(); });
        });
    const RateGrid factor(
        {rows, columns}, [](const Shape& s) { return factor_work(s[0], std::min(s[0], s[1])); },
        [&](const Shape& s) { return seconds_of_factor(s, pool); });
    const double fill = fastest_batch(1, [&] { std::fill(pool.begin(), pool.end(), 1e-9); }) / pool_size;
    return {.assemble = [fill](i64 height,
                               i64 width) { return fill * static_cast<double>(height * width + 8 * width + height); },
            .factor =
                [factor](i64 height, i64 width) {
                    const auto r = static_cast<double>(height), w = static_cast<double>(width);
                    return factor.per_operation({r, w}) * factor_work(r, w);
                },
            .update =
                [update](i64 height, i64 count, i64 depth) {
                    const auto r = static_cast<double>(height), c = static_cast<double>(count),
                               d = static_cast<double>(depth);
                    return update.per_operation({r, c, d}) * update_work(r, c, d);
                }};
}

} // namespace nxl::bench
