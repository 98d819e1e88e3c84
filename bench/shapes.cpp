#include "bench/shapes.hpp"
#include <algorithm>
#include <cmath>
#include <complex>
#include <numeric>
#include <random>
#include <vector>

namespace nxl::bench {

void Elements::set_real(i64 i, i64 j, double value) const {
    std::fill_n(entry(i, j), step, 0.0);
    entry(i, j)[0] = value;
}

void Elements::scale(double factor) const {
    for (i64 k = 0; k < rows * columns * step; ++k) data[k] *= factor;
}

namespace {

double root(i64 order) { return std::sqrt(static_cast<double>(order)); }

/// More than the norm of the random rest, which is at most 1.7 roots of the order.
double dominant(i64 order) { return 3.0 * root(order); }

/// Either triangle of [I X; Y -I] squares to I. Entries of the blocks I and -I off the diagonal are too small to tell.
void make_own_inverse(const Elements& matrix) {
    constexpr double not_to_tell = 1e-12;
    const double coupling = 1.0 / root(matrix.rows);
    for (i64 j = 0; j < matrix.columns; ++j)
        for (i64 i = 0; i < matrix.rows; ++i) {
            const bool first_row = i < matrix.rows / 2, first_column = j < matrix.rows / 2;
            for (i64 part = 0; part < matrix.step; ++part)
                matrix.entry(i, j)[part] *= first_row == first_column ? not_to_tell : coupling;
            if (i == j) matrix.set_real(i, j, first_row ? 1.0 : -1.0);
        }
}

std::vector<i64> shuffled(i64 count) {
    std::vector<i64> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    std::ranges::shuffle(order, std::minstd_rand(22));
    return order;
}

void make_dominated(const Elements& matrix) {
    const std::vector<i64> row_of = shuffled(matrix.rows);
    for (i64 j = 0; j < matrix.columns; ++j)
        matrix.set_real(row_of[static_cast<std::size_t>(j)], j, dominant(matrix.rows));
}

void make_positive_definite(const Elements& matrix) {
    for (i64 j = 0; j < matrix.columns; ++j) {
        matrix.set_real(j, j, dominant(matrix.rows));
        for (i64 i = j + 1; i < matrix.rows; ++i) {
            matrix.entry(j, i)[0] = matrix.entry(i, j)[0];
            if (matrix.step == 2) matrix.entry(j, i)[1] = -matrix.entry(i, j)[1];
        }
    }
}

/// Rows go in random groups of five: a large element on the diagonal; two rows that only a pivot of order two serves;
/// two of which the second's diagonal is the pivot.
void make_indefinite(const Elements& matrix) {
    const double large = dominant(matrix.rows);
    const std::vector<i64> order = shuffled(matrix.rows);
    for (i64 i = 0; i < matrix.rows; ++i) matrix.set_real(i, i, large);
    const auto pair = [&](std::size_t first, double second_diagonal) {
        if (first + 1 >= order.size()) return;
        const i64 one = order[first], other = order[first + 1];
        matrix.set_real(one, one, 0.0);
        matrix.set_real(other, other, second_diagonal);
        matrix.set_real(one, other, large);
        matrix.set_real(other, one, large);
    };
    for (std::size_t group = 0; group < order.size(); group += 5) {
        pair(group + 1, 0.0);
        pair(group + 3, 2.0 * large);
    }
}

/// With entries of this size a triangle's inverse stays small, whatever the order. The diagonal is row `diagonal`.
void make_factors(const Elements& matrix, i64 order, i64 diagonal) {
    matrix.scale(1.0 / root(order));
    for (i64 j = 0; j < matrix.columns; ++j) matrix.set_real(diagonal, j, 2.0);
}
void make_factors(const Elements& matrix) {
    matrix.scale(1.0 / root(matrix.rows));
    for (i64 j = 0; j < matrix.columns; ++j) matrix.set_real(j, j, 2.0);
}

void make_indefinite_factors(const Elements& matrix) {
    make_factors(matrix);
    for (i64 j = 0; j + 1 < matrix.columns; j += 4) {
        matrix.set_real(j, j + 1, 4.0);
        matrix.set_real(j + 1, j, 4.0);
    }
}

/// A reduction takes the lengths of what was below into the subdiagonal.
void make_hessenberg(const Elements& matrix) {
    for (i64 j = 0; j < matrix.columns; ++j)
        for (i64 i = j + 1; i < matrix.rows; ++i)
            matrix.set_real(i, j, i == j + 1 ? root(matrix.step * (matrix.rows - i)) / root(3) : 0.0);
}

/// Blocks are in the standard form: equal elements on the diagonal, of opposite signs off it. Of ten rows two are
/// alone.
void make_schur_form(const Elements& matrix) {
    matrix.scale(1.0 / root(matrix.rows));
    for (i64 j = 0; j < matrix.columns; ++j) {
        for (i64 i = j + 1; i < matrix.rows; ++i) matrix.set_real(i, j, 0.0);
        matrix.entry(j, j)[0] = 2.0 + matrix.entry(j, j)[0] * root(matrix.rows);
    }
    for (i64 j = 0; j + 1 < matrix.columns && matrix.step == 1; ++j) {
        if (j % 10 > 7) continue;
        const double part = 0.1 + std::fabs(matrix.entry(j, j + 1)[0]) * root(matrix.rows);
        matrix.set_real(j, j + 1, part);
        matrix.set_real(j + 1, j, -part);
        matrix.set_real(j + 1, j + 1, matrix.entry(j, j)[0]);
        ++j;
    }
}

using Complex = std::complex<double>;

/// One triangle of the elements, or its conjugate transpose, as a square of numbers.
std::vector<Complex> triangle_of(char uplo, bool adjoint, const Elements& from) {
    const i64 n = from.rows;
    std::vector<Complex> to(static_cast<std::size_t>(n * n));
    for (i64 j = 0; j < n; ++j)
        for (i64 i = uplo == 'U' ? 0 : j; i < (uplo == 'U' ? j + 1 : n); ++i) {
            const double* const entry = from.entry(i, j);
            const Complex value(entry[0], from.step == 2 ? entry[1] : 0.0);
            to[static_cast<std::size_t>(adjoint ? j + i * n : i + j * n)] = adjoint ? std::conj(value) : value;
        }
    return to;
}

/// a := the product of c's triangles.
void make_product(char triangle, const Elements& a, const Elements& c) {
    make_factors(c);
    const i64 n = c.rows;
    std::vector<Complex> left = triangle_of(triangle == 'U' ? 'U' : 'L', triangle == 'U', c);
    const std::vector<Complex> right = triangle_of(triangle == 'L' ? 'L' : 'U', triangle == 'L', c);
    if (triangle != 'L' && triangle != 'U')
        for (i64 i = 0; i < n; ++i) left[static_cast<std::size_t>(i * (n + 1))] = 1.0;
    a.scale(0.0);
    for (i64 j = 0; j < n; ++j)
        for (i64 k = 0; k <= j; ++k) {
            const Complex y = right[static_cast<std::size_t>(k + j * n)];
            const Complex* const x = left.data() + k * n;
            for (i64 i = k; i < n; ++i) {
                a.entry(i, j)[0] += x[i].real() * y.real() - x[i].imag() * y.imag();
                if (a.step == 2) a.entry(i, j)[1] += x[i].real() * y.imag() + x[i].imag() * y.real();
            }
        }
}

/// For each block of rows as large as half the band is wide, the large entries go to random places.
void make_band_dominated(const Elements& matrix) {
    const i64 width = (matrix.rows - 1) / 3, diagonal = 2 * width;
    for (i64 start = 0; start < matrix.columns; start += width + 1) {
        const i64 count = std::min(width + 1, matrix.columns - start);
        const std::vector<i64> row_of = shuffled(count);
        for (i64 j = 0; j < count; ++j)
            matrix.set_real(diagonal + row_of[static_cast<std::size_t>(j)] - j, start + j, dominant(2 * width + 1));
    }
}

void make_band_triangle(char triangle, const Elements& matrix) {
    make_factors(matrix, matrix.rows, triangle == 'U' ? matrix.rows - 1 : 0);
}

void make_band_positive_definite(char triangle, const Elements& matrix) {
    const i64 diagonal = triangle == 'U' ? matrix.rows - 1 : 0;
    for (i64 j = 0; j < matrix.columns; ++j) matrix.set_real(diagonal, j, dominant(2 * matrix.rows));
}

} // namespace

void give_shape(Shape shape, char triangle, const Elements& a, const Elements& c) {
    switch (shape) {
    case Shape::random: return;
    case Shape::own_inverse: return make_own_inverse(a);
    case Shape::dominated: return make_dominated(a);
    case Shape::positive_definite: return make_positive_definite(a);
    case Shape::near_one:
        for (i64 i = 0; i < a.rows * a.columns * a.step; ++i) a.data[i] = 1.0 + 1e-4 * a.data[i];
        return;
    case Shape::factors: return make_factors(a);
    case Shape::indefinite: return make_indefinite(a);
    case Shape::indefinite_factors: return make_indefinite_factors(a);
    case Shape::hessenberg: return make_hessenberg(a);
    case Shape::schur_form: return make_schur_form(a);
    case Shape::product_of_factors: return make_product(triangle, a, c);
    case Shape::band_dominated: return make_band_dominated(a);
    case Shape::band_factors: return make_factors(a, a.rows, 2 * (a.rows - 1) / 3);
    case Shape::band_positive_definite: return make_band_positive_definite(triangle, a);
    case Shape::band_triangle: return make_band_triangle(triangle, a);
    }
}

} // namespace nxl::bench
