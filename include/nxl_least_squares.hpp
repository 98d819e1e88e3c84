// Least squares without and with bounds, and numeric Jacobians, for C++20: handles that own their memory, and functions
// that run them to their end. Part of nxl.hpp.
#pragma once
#include "nxl.h"
#include "nxl_status.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace nxl {

/// What a run by reverse communication wants next; negative values say that it has ended, by what.
enum class Request : int { go_on = 0, residual = 1, derivatives = 2 };

/// A run of one of the routines that keep a handle. Owns it; may be moved, and serves one thread at a time.
class Handle {
    void* pointer_ = nullptr;
    int (*remove_)(void**) = nullptr;

  protected:
    Status status_;

    static constexpr int success = 1501, no_memory = 1503;
    static Status told(int code) {
        if (code == success) return {};
        return {code, code == no_memory ? "there is not enough memory" : "an argument is wrong, or a step failed"};
    }
    /// Takes over what an init made at address().
    void made(int code, int (*remove)(void**)) {
        status_ = told(code);
        if (status_) remove_ = remove;
    }
    void** address() { return &pointer_; }
    Handle() = default;

  public:
    ~Handle() {
        if (remove_ != nullptr) remove_(&pointer_);
    }
    /// The other one holds nothing afterwards.
    Handle(Handle&& other) noexcept
        : pointer_(std::exchange(other.pointer_, nullptr)),
          remove_(std::exchange(other.remove_, nullptr)),
          status_(std::exchange(other.status_, Status(1502, "the handle has moved"))) {}
    /// The two exchange what they hold.
    Handle& operator=(Handle&& other) noexcept {
        std::swap(pointer_, other.pointer_);
        std::swap(remove_, other.remove_);
        std::swap(status_, other.status_);
        return *this;
    }

    /// How the last step ended, or the making of it.
    const Status& status() const { return status_; }
};

/// A Jacobian by central differences, by reverse communication: djacobi_solve. Serves once.
class Jacobian : public Handle {
    int request_ = 0;

  public:
    /// jacobian is m by x.size(), by columns. Both spans are kept, and stay the caller's.
    Jacobian(std::span<double> x, int m, std::span<double> jacobian, double difference = 1e-5) {
        const int n = static_cast<int>(x.size());
        if (m < 1 || jacobian.size() != x.size() * static_cast<std::size_t>(m)) {
            status_ = {1502, "a span is not as long as the sizes need"};
            return;
        }
        made(djacobi_init(address(), &n, &m, x.data(), jacobian.data(), &difference), djacobi_delete);
    }

    /// True when F is wanted at x, in the span that is named by `wanted`; false when the Jacobian is there, or at an
    /// error. `forward` and `backward` have m elements and are the same ones at each call.
    bool next(std::span<double> forward, std::span<double> backward, std::span<double>& wanted) {
        if (!status_) return false;
        status_ = told(djacobi_solve(address(), forward.data(), backward.data(), &request_));
        wanted = request_ == 1 ? forward : backward;
        return status_.ok() && request_ != 0;
    }
};

/// How a fit is to end, and how it starts; the names of dtrnlsp's arguments.
struct FitOptions {
    /// Least radius, target for |F|, norm of a column that counts as 0, least step, and two without effect.
    std::array<double, 6> eps{1e-10, 1e-12, 1e-15, 1e-10, 1e-10, 1e-10};
    int steps = 1000;          ///< iter1
    int steps_of_step = 100;   ///< iter2
    double first_radius = 0.0; ///< rs
    double difference = 1e-6;  ///< of the numeric Jacobian, relative
};

/// How a fit went.
struct Fit {
    Status status;           ///< of the routines
    int steps = 0;           ///< iterations made
    int stop_code = 0;       ///< st_cr of dtrnlsp_get
    double first_norm = 0.0; ///< |F| at the start
    double last_norm = 0.0;  ///< and at the end
};

/// Least and greatest values of each unknown; infinite ones are allowed, equal ones hold an unknown.
struct Bounds {
    std::span<const double> lower; ///< as long as x
    std::span<const double> upper; ///< the same
};

/// A nonlinear least-squares run by reverse communication: dtrnlsp, or with bounds dtrnlspbc.
class LeastSquares : public Handle {
    bool bounded_;
    int request_ = 0;

  public:
    /// From x on, to which the solution comes. x, the bounds' elements and options.eps are kept by address.
    LeastSquares(std::span<double> x, int m, const FitOptions& options) : bounded_(false) {
        const int n = static_cast<int>(x.size());
        made(dtrnlsp_init(address(), &n, &m, x.data(), options.eps.data(), &options.steps, &options.steps_of_step,
                          &options.first_radius),
             dtrnlsp_delete);
    }
    /// The same inside bounds; x is moved there.
    LeastSquares(std::span<double> x, int m, const Bounds& bounds, const FitOptions& options) : bounded_(true) {
        const int n = static_cast<int>(x.size());
        if (bounds.lower.size() != x.size() || bounds.upper.size() != x.size()) {
            status_ = {1502, "a bound is not as long as x"};
            return;
        }
        made(dtrnlspbc_init(address(), &n, &m, x.data(), bounds.lower.data(), bounds.upper.data(), options.eps.data(),
                            &options.steps, &options.steps_of_step, &options.first_radius),
             dtrnlspbc_delete);
    }

    /// Goes on to the next request: F at x into f(m), or its derivatives into jacobian(m, n), by columns; the same
    /// spans at each call. False when the run has ended, or at an error.
    bool next(std::span<double> f, std::span<double> jacobian, Request& wanted) {
        if (!status_) return false;
        const auto step = bounded_ ? dtrnlspbc_solve : dtrnlsp_solve;
        status_ = told(step(address(), f.data(), jacobian.data(), &request_));
        wanted = static_cast<Request>(request_);
        return status_.ok() && request_ >= 0;
    }

    /// Where the run is.
    Fit result() {
        Fit fit;
        fit.status = status_;
        const auto get = bounded_ ? dtrnlspbc_get : dtrnlsp_get;
        if (*address() != nullptr) get(address(), &fit.steps, &fit.stop_code, &fit.first_norm, &fit.last_norm);
        return fit;
    }
};

/// J(x) of F, m by x.size() and by columns, by central differences of relative step `difference`. `function` is called
/// with x and F, to be filled in; it may keep state and throw. With bounds it is called inside them alone: beside a
/// bound the difference becomes one-sided.
template <class Function> Status jacobian(Function&& function, std::span<const double> at, int m, std::span<double> out,
                                          double difference = 1e-5, const Bounds& bounds = {}) {
    const auto low = [&](std::size_t j, double v) { return bounds.lower.empty() ? v : std::max(v, bounds.lower[j]); };
    const auto high = [&](std::size_t j, double v) { return bounds.upper.empty() ? v : std::min(v, bounds.upper[j]); };
    std::vector<double> x(at.begin(), at.end()), inside(x), f(static_cast<std::size_t>(std::max(m, 0))), g(f);
    Jacobian run(x, m, out, difference);
    for (std::span<double> wanted; run.next(f, g, wanted);) {
        for (std::size_t j = 0; j < x.size(); ++j) inside[j] = low(j, high(j, x[j]));
        function(std::span<const double>(inside), wanted);
    }
    if (!run.status()) return run.status();
    for (std::size_t j = 0; j < x.size(); ++j) { // the bound that took a point's place is nearer
        const double reach = difference < std::abs(x[j]) ? difference * std::abs(x[j]) : difference;
        const double taken = high(j, x[j] + reach) - low(j, x[j] - reach);
        const double scale = taken < 2.0 * reach ? (taken > 0.0 ? 2.0 * reach / taken : 0.0) : 1.0;
        if (scale != 1.0)
            for (double& slope : out.subspan(j * f.size(), f.size())) slope *= scale;
    }
    return {};
}

/// Runs a fit to its end, with numeric derivatives. For both forms of least_squares.
template <class Function> Fit run_to_end(LeastSquares& run, Function&& function, std::span<double> x, int m,
                                         const FitOptions& options, const Bounds& bounds) {
    if (!run.status()) return run.result();
    std::vector<double> f(static_cast<std::size_t>(m)), slopes(f.size() * x.size());
    const auto differentiate = [&] { return jacobian(function, x, m, slopes, options.difference, bounds); };
    function(std::span<const double>(x), std::span<double>(f));
    Status status = differentiate();
    for (Request wanted{}; status.ok() && run.next(f, slopes, wanted);) {
        if (wanted == Request::residual) function(std::span<const double>(x), std::span<double>(f));
        if (wanted == Request::derivatives) status = differentiate();
    }
    Fit fit = run.result();
    if (!status) fit.status = status;
    return fit;
}

/// Makes |F(x)| small over x, from the x that is given, with numeric derivatives: dtrnlsp. `function` is called with x,
/// of n elements, and F, of m >= n, to be filled in; it may keep state and throw.
template <class Function> Fit least_squares(Function&& function, std::span<double> x, int m,
                                            const FitOptions& options = {}) {
    LeastSquares run(x, m, options);
    return run_to_end(run, function, x, m, options, {});
}

/// The same inside bounds, where alone `function` is called: dtrnlspbc.
template <class Function> Fit least_squares(Function&& function, std::span<double> x, int m, const Bounds& bounds,
                                            const FitOptions& options = {}) {
    LeastSquares run(x, m, bounds, options);
    return run_to_end(run, function, x, m, options, bounds);
}

} // namespace nxl
