// Sequences of orders, by blocks: K walks up through all of them, I down from each block's top, and both are summed at
// a common scale. Results are stored when a block, or with several blocks a first pass over all, is known to be good.
#include "primitives/bessel/sequences.hpp"
#include "primitives/bessel/phase.hpp"
#include "primitives/bessel/recurrences.hpp"
#include "primitives/bessel/right_half_plane.hpp"
#include "primitives/bessel/to_single.hpp"

namespace nxl::bessel {
namespace {

constexpr i64 block_orders = 64; // steps that cost several times the one value of I which starts them

/// i^quarters a.
zcomplex turned(zcomplex a, i64 quarters) {
    switch (quarters & 3) {
    case 0: return a;
    case 1: return {-a.imag(), a.real()};
    case 2: return -a;
    default: return {a.imag(), -a.real()};
    }
}

/// exp(i pi/2 quarters nu) for nu = first, first + 1, ...: one sine, then turns by right angles.
class Turning {
    zcomplex start_;
    i64 quarters_;

  public:
    Turning(int quarters, double first)
        : start_(quarters == 0 ? 1.0 : unit_phase(quarters * first)),
          quarters_(quarters) {}
    zcomplex at(i64 k) const { return turned(start_, quarters_ * (k & 3)); }
};

/// I or K with its coefficient, along the orders.
class Term {
    Coefficient coefficient_;
    bool on_axis_;
    double axis_factor_;
    Turning turning_, axis_turning_;

  public:
    /// On an axis Re(axis_factor exp(i pi/2 axis_quarters nu) value) takes the value's place.
    Term(const Continuation& path, const Coefficient& coefficient, double first, int axis_quarters, double axis_factor)
        : coefficient_(coefficient),
          on_axis_(path.on_axis && coefficient.present()),
          axis_factor_(axis_factor),
          turning_(coefficient.quarters, first),
          axis_turning_(on_axis_ ? axis_quarters : 0, first) {}

    bool present() const { return coefficient_.present(); }

    zcomplex at(i64 k, zcomplex value) const {
        zcomplex phase = turning_.at(k);
        if (coefficient_.cosine) phase = phase.real();
        if (on_axis_) value = axis_factor_ * (axis_turning_.at(k) * value).real();
        return coefficient_.factor * phase * value;
    }
};

/// The walk over the orders first, first + 1, ... of one function at one argument.
class Walk {
    Continuation path_;
    double first_;
    Term i_term_, k_term_;
    OrderPair k_{};
    Scaled sums_[block_orders];

    /// I of orders first + start + (0 ... m - 1). At 0 there is no recurrence, nor a need for one.
    bool add_i(i64 start, i64 m) {
        const double bottom = first_ + static_cast<double>(start);
        if (path_.t == 0.0) {
            for (i64 k = 0; k < m; ++k) sums_[k] = {bottom + static_cast<double>(k) == 0.0 ? 1.0 : 0.0, 0.0};
            return true;
        }
        double order = bottom + static_cast<double>(m - 1);
        auto [pair, converged] = i_pair(order, path_.t);
        for (i64 k = m - 1;; --k, order -= 1.0) {
            sums_[k] = {i_term_.at(start + k, pair.first), pair.log_scale};
            if (k == 0) return converged;
            pair = advance_down(pair, order, path_.t);
        }
    }

    /// K likewise, from where the block before ended.
    bool add_k(i64 start, i64 m) {
        bool converged = true;
        if (start == 0) {
            const PairResult found = k_pair(first_, path_.t);
            k_ = found.pair;
            converged = found.converged;
        }
        for (i64 k = 0; k < m; ++k) {
            const Scaled value{k_term_.at(start + k, k_.first), k_.log_scale};
            sums_[k] = i_term_.present() ? sums_[k] + value : value;
            k_ = advance_up(k_, first_ + static_cast<double>(start + k), path_.t);
        }
        return converged;
    }

  public:
    Walk(const Continuation& path, double first)
        : path_(path),
          first_(first),
          i_term_(path, path.i, first, 1, 1.0),
          k_term_(path, path.k, first, -1, -2.0 * std::numbers::inv_pi) {}

    /// m results from `start` on, blocks in ascending order.
    Code block(i64 start, i64 m, std::complex<float>* results, i64* zeros) {
        if (i_term_.present() && !add_i(start, m)) return Code::no_convergence;
        if (k_term_.present() && !add_k(start, m)) return Code::no_convergence;
        for (i64 k = 0; k < m; ++k) {
            const Single result = to_single(sums_[k] * path_.scale, path_.conjugate);
            if (result.overflow) return Code::overflow;
            results[k] = result.value;
            *zeros += result.underflow;
        }
        return Code::good;
    }
};

/// One pass over all orders. A null cy: only to see whether it will go well.
Code pass(const Continuation& path, double first, i64 n, std::complex<float>* cy, i64* zeros) {
    Walk walk(path, first);
    std::complex<float> results[block_orders];
    i64 found = 0;
    for (i64 start = 0; start < n; start += block_orders) {
        const i64 m = std::min(block_orders, n - start);
        const Code code = walk.block(start, m, results, &found);
        if (code != Code::good) return code;
        if (cy) std::copy_n(results, m, cy + start);
    }
    *zeros = found;
    return Code::good;
}

Code code_of_input(Function function, const SequenceRequest& request, zcomplex z) {
    const bool singular = function != Function::i && function != Function::j;
    if (!(request.order >= 0.0F) || request.n < 1 || request.kode < 1 || request.kode > 2) return Code::bad_input;
    if (singular && z == 0.0) return Code::bad_input;
    const double last = double{request.order} + static_cast<double>(request.n - 1);
    return worse(code_of_size(std::hypot(z.real(), z.imag()), largest_size), code_of_size(last, largest_size));
}

} // namespace

Code bessel_sequence(Function function, const SequenceRequest& request, std::complex<float>* cy, i64* zeros) {
    *zeros = 0;
    const zcomplex z(request.z);
    const Code size = code_of_input(function, request, z);
    if (!computes(size)) return size;
    const Continuation path = continue_to(function, z, request.kode == 2);
    if (request.n > block_orders) {
        i64 ignored = 0;
        const Code code = pass(path, request.order, request.n, nullptr, &ignored);
        if (code != Code::good) return code;
    }
    const Code code = pass(path, request.order, request.n, cy, zeros);
    return code == Code::good ? size : code;
}

Code hankel_sequence(i64 kind, const SequenceRequest& request, std::complex<float>* cy, i64* zeros) {
    if (kind == 1 || kind == 2) return bessel_sequence(kind == 1 ? Function::h1 : Function::h2, request, cy, zeros);
    *zeros = 0;
    return Code::bad_input;
}

} // namespace nxl::bessel
