#include "bench/operands.hpp"
#include <algorithm>
#include <cmath>
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
      ldc(layout.c.rows) {
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
    if (layout_.a_is_own_inverse) make_own_inverse(arrays_[2]);
    result = {};
    turn = 0;
}

/// Either triangle of [I X; Y -I] squares to I.
void Operands::make_own_inverse(const Array& matrix) const {
    constexpr double not_to_tell = 1e-12;
    const i64 order = layout_.a.rows, step = layout_.doubles_per_element;
    const double coupling = 1.0 / std::sqrt(static_cast<double>(order));
    for (i64 j = 0; j < order; ++j)
        for (i64 i = 0; i < order; ++i) {
            double* entry = matrix.data + (i + j * order) * step;
            const bool first_row = i < order / 2, first_column = j < order / 2;
            for (i64 part = 0; part < step; ++part) entry[part] *= first_row == first_column ? not_to_tell : coupling;
            if (i != j) continue;
            std::fill_n(entry, step, 0.0);
            entry[0] = first_row ? 1.0 : -1.0;
        }
}

double Operands::difference(const Operands& other) const {
    double largest = std::max(relative_difference(result.real(), other.result.real()),
                              relative_difference(result.imag(), other.result.imag()));
    for (std::size_t k = 0; k < arrays_.size(); ++k)
        for (i64 i = 0; i < arrays_[k].doubles; ++i)
            largest = std::max(largest, relative_difference(arrays_[k].data[i], other.arrays_[k].data[i]));
    return largest;
}

} // namespace nxl::bench
