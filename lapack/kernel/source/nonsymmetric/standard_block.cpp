// The Schur form of a matrix of order 2. Golub and Van Loan, Matrix Computations, 4th ed., section 7.4; the block with
// equal diagonal elements: Bai and Demmel, On swapping diagonal blocks in real Schur form, Linear Algebra Appl. 186
// (1993).
#include "lapack/kernel/source/nonsymmetric/standard_block.hpp"
#include "lapack/kernel/source/common/scalars.hpp"
#include <algorithm>
#include <utility>

namespace nxl {
namespace {

bool same_sign(double x, double y) { return std::signbit(x) == std::signbit(y); }

/// Of a block with a zero above the diagonal.
template <class T> PlaneTurn<T> exchange_ends(Block2<T>& block) {
    block = {block.d, -block.c, T{}, block.a};
    return {0.0, T(1.0)};
}

/// `far`: the distance of an eigenvalue from d, of which (far, c) is the vector. The other is d - other.
PlaneTurn<double> split(Block2<double>& block, double far, double other) {
    const PlaneTurn<double> turn = turn_onto_first(far, block.c);
    block = {block.d + far, block.b - block.c, 0.0, block.d - other};
    return turn;
}

/// Turned by the angle that makes the diagonal elements equal.
PlaneTurn<double> make_diagonal_equal(Block2<double>& block) {
    const double half_sum = block.b / 2.0 + block.c / 2.0, half_skew = block.b / 2.0 - block.c / 2.0;
    const double half_difference = block.a / 2.0 - block.d / 2.0;
    const double length = length_of(half_sum, half_difference), mean = block.a / 2.0 + block.d / 2.0;
    PlaneTurn<double> turn;
    if (length > 0.0) {
        turn.cosine = std::sqrt(0.5 * (1.0 + std::fabs(half_sum) / length));
        turn.sine = -half_difference * sign_of(half_sum) / (2.0 * length * turn.cosine);
    }
    const double sum = std::copysign(length, half_sum);
    block = {mean, sum + half_skew, sum - half_skew, mean};
    return turn;
}

/// Two real eigenvalues that are very close, of a block with equal diagonal elements.
PlaneTurn<double> split_close(Block2<double>& block) {
    const double root_b = std::sqrt(std::fabs(block.b)), root_c = std::sqrt(std::fabs(block.c));
    const double half = std::copysign(root_b * root_c, block.c), length = std::sqrt(std::fabs(block.b + block.c));
    block = {block.a + half, block.b - block.c, 0.0, block.d - half};
    return {root_b / length, root_c / length};
}

PlaneTurn<double> followed_by(const PlaneTurn<double>& first, const PlaneTurn<double>& second) {
    return {first.cosine * second.cosine - first.sine * second.sine,
            first.cosine * second.sine + first.sine * second.cosine};
}

} // namespace

template <> PlaneTurn<double> make_standard(Block2<double>& block) {
    const auto [a, b, c, d] = block;
    if (c == 0.0) return {};
    if (b == 0.0) return exchange_ends(block);
    if (a == d && !same_sign(b, c)) return {};
    const double half = a / 2.0 - d / 2.0, larger = std::max(std::fabs(b), std::fabs(c));
    const double smaller = std::copysign(std::min(std::fabs(b), std::fabs(c)), same_sign(b, c) ? 1.0 : -1.0);
    const double scale = std::max(std::fabs(half), larger);
    const double discriminant = half / scale * half + larger / scale * smaller; // divided by scale
    if (discriminant >= 8.0 * unit_roundoff * scale) {
        const double far = half + std::copysign(std::sqrt(scale) * std::sqrt(discriminant), half);
        return split(block, far, larger / far * smaller);
    }
    const PlaneTurn<double> equal = make_diagonal_equal(block);
    if (block.c == 0.0) return equal;
    if (block.b == 0.0) return followed_by(equal, exchange_ends(block));
    return same_sign(block.b, block.c) ? followed_by(equal, split_close(block)) : equal;
}

template <> Eigenpair eigenvalues_of(Block2<double> block) {
    make_standard(block);
    return eigenvalues_of_standard(block);
}

namespace {

/// The distance from d of the eigenvalue that is farther from it, and that of the other to the other side.
Eigenpair distances(const Block2<zcomplex>& block) {
    const double scale = std::max({abs1(block.a), abs1(block.b), abs1(block.c), abs1(block.d)});
    if (scale == 0.0) return {};
    const zcomplex b = block.b / scale, c = block.c / scale, half = 0.5 * (block.a / scale - block.d / scale);
    zcomplex root = std::sqrt(half * half + b * c);
    if (real_part(half * std::conj(root)) < 0.0) root = -root;
    const zcomplex far = half + root;
    return {far * scale, far == zcomplex{} ? zcomplex{} : b / far * c * scale};
}

} // namespace

template <> PlaneTurn<zcomplex> make_standard(Block2<zcomplex>& block) {
    const auto [a, b, c, d] = block;
    if (c == zcomplex{}) return {};
    const PlaneTurn<zcomplex> turn = turn_onto_first(distances(block).first, c);
    const auto [cosine, sine] = turn;
    const zcomplex top_a = cosine * a + sine * c, top_b = cosine * b + sine * d;
    const zcomplex low_a = cosine * c - std::conj(sine) * a, low_b = cosine * d - std::conj(sine) * b;
    block = {
        top_a * cosine + top_b * std::conj(sine), top_b * cosine - top_a * sine, {}, low_b * cosine - low_a * sine};
    return turn;
}

template <> Eigenpair eigenvalues_of(Block2<zcomplex> block) {
    const Eigenpair distance = distances(block);
    return {block.d + distance.first, block.d - distance.second};
}

} // namespace nxl
