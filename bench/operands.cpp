#include "bench/operands.hpp"
#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numeric>
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

/// A matrix of real or complex elements, as doubles; the first of an element is its real part.
struct Square {
    double* data;
    i64 order, step;

    double* entry(i64 i, i64 j) const { return data + (i + j * order) * step; }
    void set_real(i64 i, i64 j, double value) const {
        std::fill_n(entry(i, j), step, 0.0);
        entry(i, j)[0] = value;
    }
    void scale(double factor) const {
        for (i64 k = 0; k < order * order * step; ++k) data[k] *= factor;
    }
    double root() const { return std::sqrt(static_cast<double>(order)); }
};

/// Either triangle of [I X; Y -I] squares to I. Entries of the blocks I and -I off the diagonal are too small to tell.
void make_own_inverse(const Square& matrix) {
    constexpr double not_to_tell = 1e-12;
    const double coupling = 1.0 / matrix.root();
    for (i64 j = 0; j < matrix.order; ++j)
        for (i64 i = 0; i < matrix.order; ++i) {
            const bool first_row = i < matrix.order / 2, first_column = j < matrix.order / 2;
            for (i64 part = 0; part < matrix.step; ++part)
                matrix.entry(i, j)[part] *= first_row == first_column ? not_to_tell : coupling;
            if (i == j) matrix.set_real(i, j, first_row ? 1.0 : -1.0);
        }
}

/// More than the norm of the random rest, which is at most 1.7 roots of the order.
double dominant(const Square& matrix) { return 3.0 * matrix.root(); }

void make_dominated(const Square& matrix) {
    std::vector<i64> row_of(static_cast<std::size_t>(matrix.order));
    std::iota(row_of.begin(), row_of.end(), 0);
    std::ranges::shuffle(row_of, std::minstd_rand(22));
    for (i64 j = 0; j < matrix.order; ++j) matrix.set_real(row_of[static_cast<std::size_t>(j)], j, dominant(matrix));
}

void make_positive_definite(const Square& matrix) {
    for (i64 j = 0; j < matrix.order; ++j) {
        matrix.set_real(j, j, dominant(matrix));
        for (i64 i = j + 1; i < matrix.order; ++i) {
            matrix.entry(j, i)[0] = matrix.entry(i, j)[0];
            if (matrix.step == 2) matrix.entry(j, i)[1] = -matrix.entry(i, j)[1];
        }
    }
}

/// With entries of this size a triangle's inverse stays small, whatever the order.
void make_factors(const Square& matrix) {
    matrix.scale(1.0 / matrix.root());
    for (i64 j = 0; j < matrix.order; ++j) matrix.set_real(j, j, 2.0);
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
    shape_a();
    if (need_restoring()) original_.assign(restored_array().data, restored_array().data + restored_array().doubles);
    set_pivots();
    work_.assign(static_cast<std::size_t>(layout_.work * layout_.doubles_per_element), 0.0);
    result = {};
    info = 0;
    turn = 0;
}

void Operands::restore() { std::ranges::copy(original_, restored_array().data); }

void Operands::shape_a() {
    const Square matrix{arrays_[2].data, layout_.a.rows, layout_.doubles_per_element};
    switch (layout_.shape) {
    case Shape::random: return;
    case Shape::own_inverse: return make_own_inverse(matrix);
    case Shape::dominated: return make_dominated(matrix);
    case Shape::positive_definite: return make_positive_definite(matrix);
    case Shape::near_one:
        for (i64 i = 0; i < arrays_[2].doubles; ++i) arrays_[2].data[i] = 1.0 + 1e-4 * arrays_[2].data[i];
        return;
    case Shape::factors: return make_factors(matrix);
    }
}

/// Each row changes places with a random one that is not above it.
void Operands::set_pivots() {
    std::minstd_rand generator(21);
    pivots_.resize(static_cast<std::size_t>(layout_.pivots));
    for (int i = 0; i < layout_.pivots; ++i)
        pivots_[static_cast<std::size_t>(i)] = std::uniform_int_distribution(i + 1, layout_.pivots)(generator);
}

double Operands::difference(const Operands& other) const {
    double largest = std::max(relative_difference(result.real(), other.result.real()),
                              relative_difference(result.imag(), other.result.imag()));
    for (std::size_t k = 0; k < arrays_.size(); ++k)
        for (i64 i = 0; i < arrays_[k].doubles; ++i)
            largest = std::max(largest, relative_difference(arrays_[k].data[i], other.arrays_[k].data[i]));
    return info == other.info && pivots_ == other.pivots_ ? largest : std::numeric_limits<double>::infinity();
}

} // namespace nxl::bench
