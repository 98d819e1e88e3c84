// nxl for C++20: handles that own their memory, spans instead of pointers, errors as values. Header-only, over nxl.h,
// whose comments tell what the routines do. Here the sparse solver; least squares are in nxl_least_squares.hpp, which
// comes along. A guide is docs/cpp.md.
#pragma once
#include "nxl.h"
#include "nxl_least_squares.hpp"
#include "nxl_status.hpp"

#include <algorithm>
#include <array>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace nxl {

/// What a matrix is, and so what of it is read: of symmetric and Hermitian ones the upper triangle.
enum class MatrixType : int {
    structurally_symmetric = 1,
    positive_definite = 2,
    symmetric = -2,
    complex_structurally_symmetric = 3,
    hermitian_positive_definite = 4,
    hermitian = -4,
    complex_symmetric = 6,
    general = 11,
    complex_general = 13
};

/// The order of elimination: iparam(2).
enum class Ordering : int { minimum_degree = 0, constrained_minimum_degree = 1, nested_dissection = 2 };
/// Whether factors go to files: iparam(60).
enum class OutOfCore : int { never = 0, when_needed = 1, always = 2 };

/// Options of a factorisation, with the defaults of a type. Each stands for an entry of iparam.
struct SparseOptions {
    Ordering ordering = Ordering::nested_dissection; ///< iparam(2)
    bool matching = false;                           ///< iparam(13): large entries to the diagonal
    bool scaling = false;                            ///< iparam(11): by the matching
    int pivot_exponent = 0;                          ///< iparam(10): pivots below 10^-p are replaced
    bool pivots_of_order_2 = false;                  ///< iparam(21)
    int refinement_steps = 0;                        ///< iparam(8); 0: two where pivots were replaced
    bool extended_residual = false;                  ///< of the refinement: in doubled precision
    OutOfCore out_of_core = OutOfCore::never;        ///< iparam(60)
    bool messages = false;                           ///< on standard output

    /// The defaults of a type.
    static SparseOptions of(MatrixType type) {
        const int number = static_cast<int>(type);
        SparseOptions options;
        options.matching = options.scaling = number > 10;
        options.pivots_of_order_2 = number < 0 || number == 6;
        options.pivot_exponent = number > 10 || number == 1 || number == 3 ? 13 : options.pivots_of_order_2 ? 8 : 0;
        return options;
    }
};

/// A X = B with A sparse, by factorisation: PARDISO. T is double or std::complex<double>. An analysis serves every
/// matrix that has its pattern, a factorisation every right-hand side. What a solver holds goes with it; it may be
/// moved, and serves one thread at a time.
template <class T> class SparseSolver {
    static_assert(std::is_same_v<T, double> || std::is_same_v<T, std::complex<double>>);

    enum Parameter : std::size_t { // entries of iparam, from 0
        caller_values = 0,
        ordering_choice = 1,
        steps_done = 6,
        step_limit = 7,
        perturbation = 9,
        scaling_choice = 10,
        transposition = 11,
        matching_choice = 12,
        perturbed_count = 13,
        factor_entries = 17,
        factor_mflop = 18,
        pivoting = 20,
        positive_count = 21,
        negative_count = 22,
        out_of_core_choice = 59,
        structure_size = 61,
        factor_size = 62
    };

    /// Everything that moves with a solver.
    struct State {
        std::array<std::int64_t, 64> pt{};
        std::array<int, 64> iparam{};
        int n = 0;
        std::vector<int> row_start, column, place; ///< from 1; place: of each entry as it was given, or -1
        std::vector<T> value;
        bool analysed = false, factored = false;
    };

    MatrixType type_;
    SparseOptions options_;
    State s_;

    bool triangle() const { return static_cast<int>(type_) % 2 == 0; }

    static Status told(int error) {
        switch (error) {
        case 0: return {};
        case -2: return {error, "there is not enough memory"};
        case -3: return {error, "the matrix has no order: its pattern is not what its type says"};
        case -4: return {error, "a pivot is zero, or not positive, or an iteration does not converge"};
        case -6: return {error, "the matrix is structurally singular"};
        case -7: return {error, "an argument is wrong, or a diagonal matrix has a zero"};
        case -8: return {error, "the graph or the factors are too large for their integers"};
        case -9: return {error, "the memory that out-of-core work may take is too small"};
        case -10: return {error, "a file for the factors cannot be opened, or belongs to another solver"};
        case -11: return {error, "a file of the factors cannot be read or written"};
        default: return {error, "an argument is wrong"};
        }
    }
    static Status bad_matrix() { return {-1, "row pointers or columns do not ascend, or are out of range"}; }
    static Status bad_size() { return {-1, "a span is not as long as the matrix needs"}; }
    static Status out_of_order(std::string_view text) { return {-1, text}; }

    void set_parameters() {
        auto& p = s_.iparam;
        p[caller_values] = 2; // the values stand, iparam(12) among them
        p[ordering_choice] = static_cast<int>(options_.ordering);
        p[step_limit] = options_.extended_residual ? -options_.refinement_steps : options_.refinement_steps;
        p[perturbation] = options_.pivot_exponent;
        p[scaling_choice] = options_.scaling;
        p[matching_choice] = options_.matching;
        p[pivoting] = options_.pivots_of_order_2;
        p[out_of_core_choice] = static_cast<int>(options_.out_of_core);
    }

    int run(int step, const T* b = nullptr, T* x = nullptr, int columns = 1) {
        const int one = 1, type = static_cast<int>(type_), messages = options_.messages;
        int error = 0, no_order = 0;
        PARDISO(s_.pt.data(), &one, &one, &type, &step, &s_.n, s_.value.data(), s_.row_start.data(), s_.column.data(),
                &no_order, &columns, s_.iparam.data(), &messages, const_cast<T*>(b), x, &error);
        return error;
    }

    /// Copies the pattern, from 1: the diagonal in full, and of a triangle nothing below it.
    bool take_pattern(std::span<const int> row_start, std::span<const int> column) {
        const int n = static_cast<int>(row_start.size()) - 1, base = row_start[0];
        s_.n = n;
        s_.row_start.assign(1, 1);
        s_.column.clear();
        s_.place.assign(column.size(), -1);
        for (int i = 0; i < n; ++i) {
            const auto first = row_start[static_cast<std::size_t>(i)] - base,
                       end = row_start[static_cast<std::size_t>(i) + 1] - base;
            if (first > end || end > static_cast<int>(column.size())) return false;
            bool diagonal = false;
            const auto add = [&](int j) { s_.column.push_back(j + 1); };
            for (int k = first, last = -1; k < end; ++k) {
                const int j = column[static_cast<std::size_t>(k)] - base;
                if (j <= last || j >= n) return false;
                last = j;
                if (triangle() && j < i) continue;
                if (j > i && !std::exchange(diagonal, true)) add(i);
                diagonal = diagonal || j == i;
                s_.place[static_cast<std::size_t>(k)] = static_cast<int>(s_.column.size());
                add(j);
            }
            if (!diagonal) add(i);
            s_.row_start.push_back(static_cast<int>(s_.column.size()) + 1);
        }
        return true;
    }

    void take_values(std::span<const T> values) {
        s_.value.assign(s_.column.size(), T{});
        for (std::size_t k = 0; k < values.size(); ++k)
            if (s_.place[k] >= 0) s_.value[static_cast<std::size_t>(s_.place[k])] = values[k];
    }

  public:
    /// Of a type, with its defaults.
    explicit SparseSolver(MatrixType type) : SparseSolver(type, SparseOptions::of(type)) {}
    /// With options of the caller's.
    SparseSolver(MatrixType type, const SparseOptions& options) : type_(type), options_(options) {}
    ~SparseSolver() { release(); }
    /// The other one is as new afterwards.
    SparseSolver(SparseSolver&& other) noexcept
        : type_(other.type_),
          options_(other.options_),
          s_(std::exchange(other.s_, State{})) {}
    /// The two exchange what they hold.
    SparseSolver& operator=(SparseSolver&& other) noexcept {
        std::swap(type_, other.type_);
        std::swap(options_, other.options_);
        std::swap(s_, other.s_);
        return *this;
    }

    /// Finds an order and lays the factors out. The pattern is that of compressed rows, counted from row_start[0], 0 or
    /// 1; columns ascend within a row. row_start has n + 1 elements, column and values one for each entry. Only
    /// matching reads the values; without it they may be empty. The spans are not kept.
    Status analyse(std::span<const int> row_start, std::span<const int> column, std::span<const T> values) {
        release();
        if (row_start.size() < 2 || row_start[0] < 0 || row_start[0] > 1) return bad_matrix();
        if (row_start.back() - row_start[0] != static_cast<int>(column.size()) || !take_pattern(row_start, column))
            return bad_matrix();
        if (values.size() != column.size() && (options_.matching || !values.empty())) return bad_size();
        take_values(values);
        set_parameters();
        s_.iparam[transposition] = 0;
        s_.iparam[factor_entries] = s_.iparam[factor_mflop] = -1;
        const int error = run(11);
        s_.analysed = error == 0;
        return told(error);
    }

    /// Factors a matrix of the pattern that was analysed; its values in the order of `column` there.
    Status factor(std::span<const T> values) {
        if (!s_.analysed) return out_of_order("a matrix has to be analysed before it is factored");
        if (values.size() != s_.place.size()) return bad_size();
        take_values(values);
        set_parameters();
        const int error = run(22);
        s_.factored = error == 0;
        return told(error);
    }

    /// A definite type becomes its indefinite namesake, 2 to -2 and 4 to -4: after a factorisation that failed on its
    /// pivots. The analysis stays.
    void give_up_definiteness() {
        if (type_ != MatrixType::positive_definite && type_ != MatrixType::hermitian_positive_definite) return;
        type_ = static_cast<MatrixType>(-static_cast<int>(type_));
        const SparseOptions indefinite = SparseOptions::of(type_);
        options_.pivot_exponent = indefinite.pivot_exponent;
        options_.pivots_of_order_2 = indefinite.pivots_of_order_2;
    }

    /// X := A^-1 B, refined as the options say; both n by k, column by column, and not overlapping.
    Status solve(std::span<const T> b, std::span<T> x) { return solve_with(b, x, false); }

    /// With the transpose of a matrix that is not symmetric.
    Status solve_transposed(std::span<const T> b, std::span<T> x) { return solve_with(b, x, !triangle()); }

    /// The same with so many steps of refinement, whatever the options say; residuals in doubled precision on demand.
    Status refine(std::span<const T> b, std::span<T> x, int steps, bool extended_residual = false) {
        const SparseOptions kept = options_;
        options_.refinement_steps = steps;
        options_.extended_residual = extended_residual;
        const Status status = solve(b, x);
        options_ = kept;
        return status;
    }

    /// How many pivots have each sign.
    struct Inertia {
        int positive; ///< above 0
        int negative; ///< below 0
    };
    /// Signs of the pivots, which are those of the eigenvalues of a symmetric or Hermitian matrix.
    Inertia inertia() const { return {s_.iparam[positive_count], s_.iparam[negative_count]}; }
    /// Pivots that were too small and have been replaced.
    int perturbed_pivots() const { return s_.iparam[perturbed_count]; }
    /// Steps of refinement that the last solution took.
    int refinement_steps() const { return s_.iparam[steps_done]; }

    /// The order of A.
    int size() const { return s_.n; }
    /// What A is taken for.
    MatrixType type() const { return type_; }
    /// Entries of A as they are stored.
    int entries() const { return static_cast<int>(s_.column.size()); }
    /// Entries of the factors with their diagonal blocks whole, at most 2147483647.
    int factor_size_in_entries() const { return std::max(s_.iparam[factor_entries], s_.n); }
    /// Operations of a factorisation, in millions of real ones, at most 2147483647.
    int million_operations() const { return std::max(s_.iparam[factor_mflop], 0); }

    /// Gives all memory back, and removes files.
    void release() {
        if (s_.pt[0] != 0) run(-1);
        s_ = State{};
    }

  private:
    Status solve_with(std::span<const T> b, std::span<T> x, bool transposed) {
        if (!s_.factored) return out_of_order("a matrix has to be factored before a system is solved");
        const auto n = static_cast<std::size_t>(s_.n);
        if (b.size() != x.size() || b.size() % n != 0 || b.empty() || b.size() / n > 2147483647) return bad_size();
        set_parameters();
        if (s_.pt[0] != 0) s_.iparam[transposition] = transposed; // a diagonal matrix has a mark there
        return told(run(33, b.data(), x.data(), static_cast<int>(b.size() / n)));
    }
};

} // namespace nxl
