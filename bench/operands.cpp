#include "bench/operands.hpp"
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <random>

namespace nxl::bench {
namespace {

constexpr i64 line = 64 / sizeof(double);
// Where x and y lie the same distance into their pages, a processor takes a load of one for a hit on a store to the
// other.
constexpr i64 half_page = 2048 / sizeof(double);

i64 round_up(i64 value, i64 step) { return (value + step - 1) / step * step; }

double relative_difference(double a, double b) {
    return a == b ? 0.0 : std::abs(a - b) / std::max({1.0, std::abs(a), std::abs(b)});
}

} // namespace

Operands::Operands(int size, i64 array_doubles) : n(size), doubles(array_doubles) {
    const i64 room = round_up(doubles, 2 * half_page) + half_page;
    memory_.reset(static_cast<double*>(std::aligned_alloc(4096, static_cast<std::size_t>(2 * room) * sizeof(double))));
    if (!memory_) throw std::bad_alloc();
    x_ = memory_.get() + line;
    y_ = memory_.get() + room + line;
    refill();
}

void Operands::refill() {
    std::minstd_rand generator(20);
    const double scale = 2.0 / std::minstd_rand::max();
    for (double* array : {x_, y_})
        for (i64 i = 0; i < doubles; ++i) array[i] = static_cast<double>(generator()) * scale - 1.0;
    result = {};
    turn = 0;
}

double Operands::difference(const Operands& other) const {
    double largest = std::max(relative_difference(result.real(), other.result.real()),
                              relative_difference(result.imag(), other.result.imag()));
    for (i64 i = 0; i < doubles; ++i)
        largest = std::max({largest, relative_difference(x_[i], other.x_[i]), relative_difference(y_[i], other.y_[i])});
    return largest;
}

} // namespace nxl::bench
