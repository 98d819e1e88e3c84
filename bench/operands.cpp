#include "bench/operands.hpp"
#include "bench/shapes.hpp"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <random>

namespace nxl::bench {
namespace {

constexpr i64 line = 64 / sizeof(double);
constexpr i64 page = 4096 / sizeof(double);

i64 round_up(i64 value, i64 step) { return (value + step - 1) / step * step; }

double relative_difference(double a, double b) {
    if (a == b) return 0.0;
    const double difference = std::abs(a - b) / std::max({1.0, std::abs(a), std::abs(b)});
    return std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
}

} // namespace

Operands::Operands(const Case& which, const Layout& layout)
    : layout_(layout),
      options_(which.options),
      size(which.size),
      lda(layout.a.rows),
      ldb(layout.b.rows),
      ldc(layout.c.rows),
      ldx(layout.x.rows),
      lwork(static_cast<int>(layout.work)),
      lrwork(static_cast<int>(layout.real_work)),
      liwork(static_cast<int>(layout.integer_work)) {
    const Extent extents[] = {layout.x, layout.y, layout.a, layout.b, layout.c};
    const i64 used = std::ranges::count_if(extents, [](const Extent& e) { return e.elements() > 0; });
    // Where two arrays lie the same distance into their pages, a processor takes a load of one for a hit on a store to
    // the other.
    const i64 shift = page / std::max(i64{1}, used) / line * line;
    i64 room = line;
    std::array<i64, 5> starts{};
    for (std::size_t i = 0; i < arrays_.size(); ++i) {
        arrays_[i].doubles = extents[i].elements() * layout.doubles_per_element;
        starts[i] = room;
        if (arrays_[i].doubles > 0) room += round_up(arrays_[i].doubles, page) + shift;
    }
    const auto bytes = static_cast<std::size_t>(round_up(room, page)) * sizeof(double);
    memory_.reset(static_cast<double*>(std::aligned_alloc(4096, bytes)));
    if (!memory_) throw std::bad_alloc();
    for (std::size_t i = 0; i < arrays_.size(); ++i) arrays_[i].data = memory_.get() + starts[i];
    refill();
}

void Operands::refill() {
    std::minstd_rand generator(20);
    const double scale = 2.0 / std::minstd_rand::max();
    for (const Array& array : arrays_)
        for (i64 i = 0; i < array.doubles; ++i) array.data[i] = static_cast<double>(generator()) * scale - 1.0;
    const auto elements = [&](std::size_t i, const Extent& extent) {
        return Elements{arrays_[i].data, extent.rows, extent.columns, layout_.doubles_per_element};
    };
    const bool told = options_.find_first_of("LU") != std::string::npos;
    give_shape(layout_.shape, told ? options_[options_.find_first_of("LU")] : ' ', elements(2, layout_.a),
               elements(4, layout_.c));
    original_.clear();
    for_arrays(layout_.restored,
               [&](const Array& array) { original_.insert(original_.end(), array.data, array.data + array.doubles); });
    set_pivots();
    work_.assign(static_cast<std::size_t>(layout_.work * layout_.doubles_per_element), 0.0);
    real_work_.assign(static_cast<std::size_t>(layout_.real_work), 0.0);
    integer_work_.assign(static_cast<std::size_t>(layout_.integer_work), 0);
    result = {};
    count = 0;
    info = 0;
    turn = 0;
}

void Operands::restore() {
    const double* from = original_.data();
    for_arrays(layout_.restored, [&](const Array& array) {
        std::copy_n(from, array.doubles, array.data);
        from += array.doubles;
    });
    std::ranges::fill(integer_work_, 0);
}

template <class Body> void Operands::for_arrays(const char* names, const Body& body) const {
    for (std::size_t i = 0; i < arrays_.size(); ++i)
        if (std::strchr(names, "xyabc"[i])) body(arrays_[i]);
}

/// Each row changes places with a random one that is not above it, of `indefinite_factors` not above it for L, not
/// below it for U, and there every other two are a block, as negative numbers tell.
void Operands::set_pivots() {
    std::minstd_rand generator(21);
    const int n = layout_.pivots, reach = layout_.farthest >= 0 ? layout_.farthest : n;
    const bool symmetric = layout_.shape == Shape::indefinite_factors, upper = symmetric && options_[0] == 'U';
    pivots_.resize(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i)
        pivots_[static_cast<std::size_t>(i)] =
            upper ? std::uniform_int_distribution(std::max(1, i + 1 - reach), i + 1)(generator)
                  : std::uniform_int_distribution(i + 1, std::min(n, i + 1 + reach))(generator);
    for (std::size_t i = 0; symmetric && i + 1 < pivots_.size(); i += 4)
        pivots_[i] = pivots_[i + 1] = -pivots_[upper ? i : i + 1];
}

double Operands::difference(const Operands& other) const {
    double largest = std::max(relative_difference(result.real(), other.result.real()),
                              relative_difference(result.imag(), other.result.imag()));
    for (std::size_t k = 0; k < arrays_.size(); ++k)
        for (i64 i = 0; i < arrays_[k].doubles && !std::strchr(layout_.unchecked, "xyabc"[k]); ++i)
            largest = std::max(largest, relative_difference(arrays_[k].data[i], other.arrays_[k].data[i]));
    return info == other.info && count == other.count && pivots_ == other.pivots_
               ? largest
               : std::numeric_limits<double>::infinity();
}

} // namespace nxl::bench
