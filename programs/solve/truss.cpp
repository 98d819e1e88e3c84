// A truss bridge: a box of steel bars, pin-jointed, every side braced by diagonals, so that it is stiff in space.
//
// Frame f stands at x = f bays and has four joints: 0 and 1 carry the deck, 2 and 3 are above 1 and 0. Unknowns are the
// displacements of the joints in metres; the matrix is the stiffness in kN/m, the load the weight on the deck in kN.
#include "truss.hpp"

#include "generators.hpp"

#include <array>
#include <cmath>

namespace solve {
namespace {

constexpr double kBayLength = 5.0, kWidth = 4.0, kHeight = 5.0; // m
constexpr double kElasticity = 210e6;                           // steel, kN/m^2
constexpr double kChordArea = 0.02, kBraceArea = 0.008;         // m^2
constexpr double kDeckLoad = 50.0;                              // kN on each deck joint
constexpr double kGravity = 9.81, kDensity = 7.85;              // m/s^2; steel, t/m^3
constexpr int kJointsPerFrame = 4;
enum Axis { kAlong, kAcross, kUp, kAxes };

struct Bar {
    int from, to; // joints
    double area;
};

int joint(int frame, int corner) { return kJointsPerFrame * frame + corner; }

std::array<double, kAxes> position(int joint) {
    constexpr std::array<double, 4> across{0.0, kWidth, kWidth, 0.0}, up{0.0, 0.0, kHeight, kHeight};
    const int frame = joint / kJointsPerFrame, corner = joint % kJointsPerFrame;
    return {kBayLength * frame, across.data()[corner], up.data()[corner]};
}

/// Four sides and a diagonal in every frame; four chords and a diagonal on every side of the box in every bay.
std::vector<Bar> bars_of(int bays) {
    std::vector<Bar> bars;
    for (int f = 0; f <= bays; ++f) {
        for (int c = 0; c < 4; ++c) bars.push_back({joint(f, c), joint(f, (c + 1) % 4), kBraceArea});
        bars.push_back({joint(f, 0), joint(f, 2), kBraceArea});
    }
    for (int f = 0; f < bays; ++f) {
        const bool rising = 2 * f < bays; // diagonals lean towards the middle of the span
        for (int c = 0; c < 4; ++c) {
            bars.push_back({joint(f, c), joint(f + 1, c), kChordArea});
            bars.push_back({joint(f + !rising, c), joint(f + rising, (c + 1) % 4), kBraceArea});
        }
    }
    return bars;
}

/// The bearings: the left end is held along the bridge, both ends upwards, one side across.
bool is_held(int joint, int axis, int bays) {
    const int frame = joint / kJointsPerFrame, corner = joint % kJointsPerFrame;
    if (corner > 1 || (frame != 0 && frame != bays)) return false;
    return axis == kUp || (axis == kAlong && frame == 0) || (axis == kAcross && corner == 0);
}

/// The number of each displacement among the unknowns, -1 where a bearing holds the joint.
struct Unknowns {
    std::vector<int> number;
    int count = 0;

    explicit Unknowns(int bays) {
        for (int j = 0; j < kJointsPerFrame * (bays + 1); ++j) {
            for (int axis = 0; axis < kAxes; ++axis) number.push_back(is_held(j, axis, bays) ? -1 : count++);
        }
    }
    int of(int joint, int axis) const { return number.data()[kAxes * joint + axis]; }
};

/// A bar of direction d resists with E A / length d d^T at its ends, with opposite signs across.
void add_stiffness(const Bar& bar, const Unknowns& unknowns, std::vector<Triplet<double>>& lower) {
    const auto from = position(bar.from), to = position(bar.to);
    const std::array<double, kAxes> along{to[0] - from[0], to[1] - from[1], to[2] - from[2]};
    const double length = std::hypot(along[0], along[1], along[2]);
    const double stiffness = kElasticity * bar.area / (length * length * length);
    const auto end_joint = [&](int k) { return k < kAxes ? bar.from : bar.to; };
    for (int i = 0; i < 2 * kAxes; ++i) {
        for (int j = 0; j < 2 * kAxes; ++j) {
            const int row = unknowns.of(end_joint(i), i % kAxes), column = unknowns.of(end_joint(j), j % kAxes);
            if (row < column || column < 0) continue;
            const double sign = end_joint(i) == end_joint(j) ? 1.0 : -1.0;
            const double product = along.data()[i % kAxes] * along.data()[j % kAxes];
            if (product != 0.0) lower.push_back({row, column, sign * stiffness * product});
        }
    }
}

} // namespace

Truss make_truss(int bays) {
    const Unknowns unknowns(bays);
    const std::vector<Bar> bars = bars_of(bays);
    std::vector<Triplet<double>> lower;
    Truss truss{.joint = {}, .bar = {}, .unknown = unknowns.number, .mass = {}, .stiffness = {}};
    for (int j = 0; j < kJointsPerFrame * (bays + 1); ++j) {
        truss.joint.push_back(position(j));
        truss.mass.push_back(j % kJointsPerFrame < 2 ? kDeckLoad / kGravity : 0.0);
    }
    for (const Bar& bar : bars) {
        add_stiffness(bar, unknowns, lower);
        truss.bar.emplace_back(bar.from, bar.to);
        const auto from = position(bar.from), to = position(bar.to);
        const double length = std::hypot(to[0] - from[0], to[1] - from[1], to[2] - from[2]);
        for (const int end : {bar.from, bar.to}) truss.mass.data()[end] += kDensity * bar.area * length / 2.0;
    }
    truss.stiffness = assemble(unknowns.count, Symmetry::symmetric, std::move(lower));
    return truss;
}

Problem truss_bridge(int bays) {
    Truss truss = make_truss(bays);
    Problem problem{std::move(truss.stiffness), {}};
    problem.load.assign(static_cast<std::size_t>(problem.matrix.n), 0.0);
    for (int f = 0; f <= bays; ++f) {
        for (int corner = 0; corner < 2; ++corner) {
            const int up = truss.unknown.data()[kAxes * joint(f, corner) + kUp];
            if (up >= 0) problem.load.data()[up] = -kDeckLoad;
        }
    }
    return problem;
}

} // namespace solve
