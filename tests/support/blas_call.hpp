// Calls of levels 2 and 3 as data: letters, sizes and scalars of any routine, and one check of its result against the
// reference BLAS, with a bound for every element.
#pragma once
#include "nxl.h"
#include "tests/support/guarded_matrix.hpp"
#include "tests/support/reference_blas.hpp"
#include "tests/support/scalars.hpp"
#include <array>
#include <cctype>
#include <cmath>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace nxl_test {

/// Routines with the same arguments. In all of them c is what is written; trm and trv read and write c.
enum class Family { gemm, symm, syrk, syr2k, trm, gemv, ger, symv, syr, syr2, trv };

struct BlasCall {
    char side = 'L', uplo = 'U', transa = 'N', transb = 'N', diag = 'N';
    int m = 0, n = 0, k = 0;
    zcomplex alpha = 1.0, beta = 1.0;     // real routines take the real parts
    std::array<int, 3> steps = {1, 1, 1}; // of a, b, c: a vector's increment, or 1 + rows of slack
    std::array<Flush, 3> flush = {Flush::end, Flush::end, Flush::end};
    bool graded = false;                                     // a triangle's rows and columns scaled far apart
    double poison = std::numeric_limits<double>::infinity(); // stands in operands that a zero scalar drops
    unsigned long seed = 1;                                  // of all values
    std::vector<int> threads = {1};                          // the call is made once with each count,
    void (*prepare)(int) = [](int count) { NXL_Set_Num_Threads(count); }; // after this
};

struct Routine {
    std::string name, oracle; // a solver's oracle is the product, put to the solution
    Family family;
    bool is_complex;
    std::function<::testing::AssertionResult(const Routine&, const BlasCall&)> run;

    ::testing::AssertionResult check(const BlasCall& call) const { return run(*this, call); }
    bool solves() const { return name != oracle; }
    bool hermitian() const { return name[1] == 'h'; }
    bool is(std::initializer_list<Family> families) const {
        return std::find(families.begin(), families.end(), family) != families.end();
    }
    bool level3() const { return family <= Family::trm; }
    bool has_beta() const {
        return is({Family::gemm, Family::symm, Family::syrk, Family::syr2k, Family::gemv, Family::symv});
    }
    bool real_alpha() const { return hermitian() && is({Family::syrk, Family::syr}); }
    bool real_beta() const { return hermitian() && is({Family::syrk, Family::syr2k}); }
    friend std::ostream& operator<<(std::ostream& out, const Routine& r) { return out << r.name; }
};

inline bool is_letter(char c, char upper) { return c == upper || c == upper + ('a' - 'A'); }

/// The shapes of a, b, c and the number of products that an element of the result sums up.
struct Shapes {
    MatrixShape a, b, c;
    int terms;
};

inline Shapes shapes_of(const Routine& r, const BlasCall& call) {
    const bool left = is_letter(call.side, 'L'), plain_a = is_letter(call.transa, 'N');
    const bool plain_b = is_letter(call.transb, 'N');
    const int m = call.m, n = call.n, k = call.k, order = r.level3() ? (left ? m : n) : n;
    const auto matrix = [&](int rows, int cols, std::size_t which) {
        return MatrixShape{rows, cols, std::max(1, rows) + std::abs(call.steps[which]) - 1};
    };
    const auto triangle = [&](std::size_t which, Diagonal diagonal) {
        MatrixShape shape = matrix(r.is({Family::syrk, Family::syr2k}) ? n : order, 0, which);
        shape.cols = shape.rows;
        shape.part = is_letter(call.uplo, 'U') ? Part::upper : Part::lower;
        shape.diagonal = diagonal;
        return shape;
    };
    const auto vector = [&](int length, std::size_t which) {
        return MatrixShape{1, length, std::abs(call.steps[which])};
    };
    const Diagonal symmetric = r.hermitian() ? Diagonal::real : Diagonal::general;
    const Diagonal triangular = is_letter(call.diag, 'U') ? Diagonal::unit : Diagonal::general;
    const MatrixShape tall = plain_a ? matrix(n, k, 0) : matrix(k, n, 0);
    switch (r.family) {
    case Family::gemm:
        return {plain_a ? matrix(m, k, 0) : matrix(k, m, 0), plain_b ? matrix(k, n, 1) : matrix(n, k, 1),
                matrix(m, n, 2), k};
    case Family::symm: return {triangle(0, symmetric), matrix(m, n, 1), matrix(m, n, 2), order};
    case Family::syrk: return {tall, {}, triangle(2, symmetric), k};
    case Family::syr2k: return {tall, plain_a ? matrix(n, k, 1) : matrix(k, n, 1), triangle(2, symmetric), 2 * k};
    case Family::trm: return {triangle(0, triangular), {}, matrix(m, n, 2), order};
    case Family::gemv:
        return {matrix(m, n, 0), vector(plain_a ? n : m, 1), vector(plain_a ? m : n, 2), plain_a ? n : m};
    case Family::ger: return {vector(m, 0), vector(n, 1), matrix(m, n, 2), 1};
    case Family::symv: return {triangle(0, symmetric), vector(n, 1), vector(n, 2), n};
    case Family::syr: return {vector(n, 0), {}, triangle(2, symmetric), 1};
    case Family::syr2: return {vector(n, 0), vector(n, 1), triangle(2, symmetric), 2};
    case Family::trv: return {triangle(0, triangular), {}, vector(n, 2), n};
    }
    return {};
}

// Arguments by reference, as the integers of either layer and as the scalars that a routine takes.
struct LetterArgument {
    char letter, capital; // drivers get capitals alone
    LetterArgument(char value) : letter(value), capital(static_cast<char>(std::toupper(value))) {}
    operator const char*() const { return &letter; }
    operator const char&() const { return capital; }
};
struct IntArgument {
    std::int64_t wide;
    int narrow;
    IntArgument(int value) : wide(value), narrow(value) {}
    operator const std::int64_t&() const { return wide; }
    operator const int*() const { return &narrow; }
};
template <class T> struct ScalarArgument {
    std::array<T, 1> value;
    ScalarArgument(T v) : value{v} {}
    /// As T or, for a complex routine that takes a real scalar, its real part.
    template <class S> operator const S*() const { return reinterpret_cast<const S*>(value.data()); }
    operator const double&() const { return reinterpret_cast<const double*>(value.data())[0]; }
    operator const zcomplex&() const
        requires std::is_same_v<T, zcomplex>
    {
        return value[0];
    }
};

template <class T> struct Arguments {
    LetterArgument side, uplo, transa, transb, diag;
    IntArgument m, n, k;
    ScalarArgument<T> alpha, beta;
    const T *a, *b;
    T* c;
    IntArgument step_a, step_b, step_c; // leading dimensions or increments

    /// Calls f; `rest` follows the published arguments.
    template <Family family, class F, class... Rest> void pass_to(F* f, Rest... rest) const {
        if constexpr (family == Family::gemm)
            f(transa, transb, m, n, k, alpha, a, step_a, b, step_b, beta, c, step_c, rest...);
        if constexpr (family == Family::symm)
            f(side, uplo, m, n, alpha, a, step_a, b, step_b, beta, c, step_c, rest...);
        if constexpr (family == Family::syrk) f(uplo, transa, n, k, alpha, a, step_a, beta, c, step_c, rest...);
        if constexpr (family == Family::syr2k)
            f(uplo, transa, n, k, alpha, a, step_a, b, step_b, beta, c, step_c, rest...);
        if constexpr (family == Family::trm) f(side, uplo, transa, diag, m, n, alpha, a, step_a, c, step_c, rest...);
        if constexpr (family == Family::gemv) f(transa, m, n, alpha, a, step_a, b, step_b, beta, c, step_c, rest...);
        if constexpr (family == Family::ger) f(m, n, alpha, a, step_a, b, step_b, c, step_c, rest...);
        if constexpr (family == Family::symv) f(uplo, n, alpha, a, step_a, b, step_b, beta, c, step_c, rest...);
        if constexpr (family == Family::syr) f(uplo, n, alpha, a, step_a, c, step_c, rest...);
        if constexpr (family == Family::syr2) f(uplo, n, alpha, a, step_a, b, step_b, c, step_c, rest...);
        if constexpr (family == Family::trv) f(uplo, transa, diag, n, a, step_a, c, step_c, rest...);
    }
};

template <class T> T scalar_of(zcomplex value, bool real) {
    if constexpr (std::is_same_v<T, double>) return value.real();
    else return real ? value.real() : value;
}

/// An element of a triangle that can be solved with: the diagonal well away from 0, the rest small beside it. With
/// grades, rows and columns are scaled, each over twelve decimal orders; a unit diagonal takes a similarity.
template <class T> T triangle_value(const MatrixShape& shape, int i, int j, bool graded, Generator& generator) {
    const T value = random_value<T>(generator);
    const T plain = i == j ? value + (std::real(value) < 0.0 ? -1.0 : 1.0) : value / static_cast<double>(shape.rows);
    if (!graded) return plain;
    const double row = 6.0 * std::sin(1.3 * i + 0.5);
    const double column = shape.diagonal == Diagonal::unit ? -6.0 * std::sin(1.3 * j + 0.5) : 6.0 * std::sin(2.1 * j);
    return plain * std::pow(10.0, row + column);
}

/// Moduli of what may be read, to be put through the routine for the bound.
template <class T> std::vector<T> moduli(const MatrixShape& shape, const T* data) {
    std::vector<T> result(data, data + shape.span());
    shape.for_each_place([&](int i, int j) {
        if (!shape.has(i, j)) return;
        T& value = result[shape.at(i, j)];
        value = shape.diagonal == Diagonal::real && i == j ? std::fabs(std::real(value)) : modulus(value);
    });
    return result;
}

inline std::string text_of(const Routine& r, const BlasCall& call) {
    std::string text = r.name + ": side " + call.side + " uplo " + call.uplo + " trans " + call.transa + call.transb;
    text += std::string(" diag ") + call.diag + " m " + std::to_string(call.m) + " n " + std::to_string(call.n);
    text += " k " + std::to_string(call.k) + (call.graded ? " graded" : "") + " steps";
    for (const int step : call.steps) text += ' ' + std::to_string(step);
    text += " flush";
    for (const Flush flush : call.flush) text += ' ' + std::to_string(static_cast<int>(flush));
    for (const zcomplex& scalar : {call.alpha, call.beta})
        text += " (" + std::to_string(scalar.real()) + ", " + std::to_string(scalar.imag()) + ")";
    return text + " seed " + std::to_string(call.seed);
}

/// Whether every element is as close as roundings * eps * bound, or the same bits. The imaginary parts of a Hermitian
/// diagonal must be the oracle's own.
template <class T>
::testing::AssertionResult within(const MatrixShape& shape, const T* got, const T* want, const T* bound,
                                  double roundings) {
    ::testing::AssertionResult result = ::testing::AssertionSuccess();
    shape.for_each_place([&](int i, int j) {
        const std::size_t at = shape.at(i, j);
        if (!result || !shape.has(i, j) || std::memcmp(got + at, want + at, sizeof(T)) == 0) return;
        const double tolerance = roundings * std::numeric_limits<double>::epsilon() * std::real(bound[at]);
        const bool real = shape.diagonal != Diagonal::real || i != j || std::imag(got[at]) == std::imag(want[at]);
        if (real && modulus(got[at] - want[at]) <= tolerance) return;
        result = ::testing::AssertionFailure() << "element (" << i << ", " << j << ") is " << got[at] << ", wanted "
                                               << want[at] << " within " << tolerance;
    });
    return result;
}

/// The call that is being made, for the report of a read or write in a guard page.
struct InProgress {
    const Routine* routine;
    const BlasCall* call;
    int threads;
    std::string text() const { return text_of(*routine, *call) + ", threads " + std::to_string(threads); }
};
inline InProgress in_progress;
inline void report_fault(int) {
    const std::string text = "outside the arrays in " + in_progress.text() + "\n";
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    std::signal(SIGSEGV, SIG_DFL); // the access is made again on return and ends the program
}

/// The type that an argument of the driver layer has in Fortran: values are pointers there, and integers 32 bits wide.
template <class P> struct InFortran {
    using Type = P;
};
template <class P> struct InFortran<const P&> {
    using Type = const P*;
};
template <> struct InFortran<const std::int64_t&> {
    using Type = const int*;
};
template <class P> using Fortran = typename InFortran<P>::Type;

/// One call of the routine, and of its oracle on the same data.
///
/// The bound: a sum of s products, times alpha, plus beta C, is off by at most (s + c) u (|alpha| |A| |B| + |beta| |C|)
/// in every element, whatever the order of summation; c is 3 for real numbers, and for complex ones, whose products
/// cost 2 sqrt(2) u and quotients some more, 12 (Higham, Accuracy and Stability of Numerical Algorithms, 2nd ed.,
/// sections 3.1, 3.5, 3.6). The oracle errs as much, and u is eps / 2. The same routine on the moduli gives the
/// bracket. A solution X of op(A) X = alpha B by substitution has |op(A) X - alpha B| under the same bound with |op(A)|
/// |X| (section 8.1).
template <class T, Family family, class... P> class Comparison {
    using Oracle = void(Fortran<P>..., std::size_t, std::size_t, std::size_t, std::size_t);
    const Routine& routine_;
    const BlasCall& call_;
    const Shapes shapes_;
    const T alpha_, beta_;
    Generator generator_;
    GuardedMatrix<T> a_, b_, c_;
    Oracle* oracle_; // takes four lengths: with fewer characters, it does not look at the rest

  public:
    Comparison(const Routine& routine, const BlasCall& call)
        : routine_(routine),
          call_(call),
          shapes_(shapes_of(routine, call)),
          alpha_(family == Family::trv ? T(1.0) : scalar_of<T>(call.alpha, routine.real_alpha())),
          beta_(scalar_of<T>(call.beta, routine.real_beta())),
          generator_(call.seed),
          a_(shapes_.a, call.flush[0], values(alpha_ == 0.0, routine.solves())),
          b_(shapes_.b, call.flush[1], values(alpha_ == 0.0)),
          c_(shapes_.c, call.flush[2],
             values(routine.has_beta() ? beta_ == 0.0 : family == Family::trm && alpha_ == 0.0)),
          oracle_(reference<Oracle>((routine.oracle + '_').c_str())) {}

    ::testing::AssertionResult run(void (*ours)(P...)) {
        const bool residual = routine_.solves() && alpha_ != 0.0;
        const auto [want, bound] = residual ? std::pair<std::vector<T>, std::vector<T>>() : product(c_.original());
        std::signal(SIGSEGV, report_fault);
        for (const int threads : call_.threads) {
            in_progress = {&routine_, &call_, threads};
            call_.prepare(threads);
            c_.restore();
            arguments(alpha_, beta_, a_.data(), b_.data(), c_.data()).template pass_to<family>(ours);
            const auto result = !arrays_kept()
                                    ? ::testing::AssertionFailure() << "an input, slack or the other triangle changed"
                                : residual ? check_solution()
                                           : within(shapes_.c, c_.data(), want.data(), bound.data(), roundings());
            if (!result) return ::testing::AssertionFailure() << result.message() << "\nin " << in_progress.text();
        }
        return ::testing::AssertionSuccess();
    }

  private:
    auto values(bool dropped, bool solvable = false) {
        return [this, dropped, solvable](int i, int j) {
            if (dropped) return T(call_.poison);
            return solvable ? triangle_value<T>(shapes_.a, i, j, call_.graded, generator_)
                            : random_value<T>(generator_);
        };
    }
    Arguments<T> arguments(T alpha, T beta, const T* a, const T* b, T* c) const {
        const bool update = routine_.is({Family::ger, Family::syr, Family::syr2}); // of a matrix by vectors
        const bool vector_a = update, vector_b = !routine_.level3(), vector_c = vector_b && !update;
        return {call_.side,
                call_.uplo,
                call_.transa,
                call_.transb,
                call_.diag,
                call_.m,
                call_.n,
                call_.k,
                alpha,
                beta,
                a,
                b,
                c,
                vector_a ? call_.steps[0] : shapes_.a.ld,
                vector_b ? call_.steps[1] : shapes_.b.ld,
                vector_c ? call_.steps[2] : shapes_.c.ld};
    }
    bool arrays_kept() const { return a_.untouched() && b_.untouched() && c_.rest_untouched(); }
    /// The oracle's result for this c, and its result for the moduli of everything.
    std::pair<std::vector<T>, std::vector<T>> product(std::vector<T> c) const {
        const T alpha = routine_.solves() && alpha_ != 0.0 ? T(1.0) : alpha_; // a solution holds alpha
        const std::vector<T> a = moduli(shapes_.a, a_.data()), b = moduli(shapes_.b, b_.data());
        std::vector<T> bound = moduli(shapes_.c, c.data());
        arguments(alpha, beta_, a_.data(), b_.data(), c.data()).template pass_to<family>(oracle_, 1u, 1u, 1u, 1u);
        arguments(std::abs(alpha), std::abs(beta_), a.data(), b.data(), bound.data())
            .template pass_to<family>(oracle_, 1u, 1u, 1u, 1u);
        return {c, bound};
    }
    ::testing::AssertionResult check_solution() const {
        const auto [got, bound] = product({c_.data(), c_.data() + shapes_.c.span()});
        std::vector<T> want = c_.original();
        for (T& element : want) element *= alpha_;
        return within(shapes_.c, got.data(), want.data(), bound.data(), roundings());
    }
    /// Of the result, in units of eps; none where elements are only kept or cleared.
    double roundings() const {
        if (alpha_ == 0.0 && (!routine_.has_beta() || beta_ == 0.0 || beta_ == 1.0)) return 0.0;
        return shapes_.terms + (routine_.is_complex ? 12.0 : 3.0);
    }
};

/// `ours` under the name that the reference knows it by; a solver also needs the name of its product.
template <Family family, class... P>
Routine routine(const std::string& name, void (*ours)(P...), const std::string& product = {}) {
    constexpr bool is_complex = (std::is_same_v<P, const zcomplex*> || ...);
    return {name, product.empty() ? name : product, family, is_complex, [ours](const Routine& r, const BlasCall& call) {
                return Comparison<std::conditional_t<is_complex, zcomplex, double>, family, P...>(r, call).run(ours);
            }};
}

/// A call for every combination of the letters that the routine takes, in upper case.
inline std::vector<BlasCall> letters_of(const Routine& r) {
    const bool update = r.is({Family::syrk, Family::syr2k}), triangular = r.is({Family::trm, Family::trv});
    const std::string sides = r.is({Family::symm, Family::trm}) ? "LR" : "L";
    const std::string triangles = r.is({Family::gemm, Family::gemv, Family::ger}) ? "U" : "UL";
    const std::string diagonals = triangular ? "NU" : "N", transb = r.family == Family::gemm ? "NTC" : "N";
    const std::string transa = update && r.is_complex ? (r.hermitian() ? "NC" : "NT")
                               : update || triangular || r.is({Family::gemm, Family::gemv}) ? "NTC"
                                                                                            : "N";
    std::vector<BlasCall> calls;
    for (const char side : sides)
        for (const char uplo : triangles)
            for (const char a : transa)
                for (const char b : transb)
                    for (const char diag : diagonals) calls.push_back({side, uplo, a, b, diag});
    return calls;
}

template <class Choices> auto pick(Generator& generator, const Choices& choices) {
    return choices[generator() % std::size(choices)];
}

/// Gives a call of certain letters and sizes all else at random: scalars, slack and increments, places, case of
/// letters.
inline BlasCall randomised(BlasCall call, Generator& generator) {
    static constexpr std::array<zcomplex, 7> scalars = {
        {{0.0, 0.0}, {1.0, 0.0}, {-1.0, 0.0}, {0.7, -0.3}, {-1.3, 0.4}, {0.0, 1.0}, {1.0, 0.5}}};
    static constexpr std::array steps = {1, 2, 4, -1, -3};
    static constexpr std::array places = {Flush::start, Flush::end, Flush::end, Flush::off_by_8};
    for (char* letter : {&call.side, &call.uplo, &call.transa, &call.transb, &call.diag})
        if (generator() % 2 == 0) *letter = static_cast<char>(*letter - 'A' + 'a');
    call.alpha = pick(generator, scalars);
    call.beta = pick(generator, scalars);
    for (int& step : call.steps) step = pick(generator, steps);
    for (Flush& place : call.flush) place = pick(generator, places);
    if (generator() % 2 == 0) call.poison = std::numeric_limits<double>::quiet_NaN();
    call.graded = generator() % 4 == 0;
    call.seed = generator();
    return call;
}

inline std::string name_of(const ::testing::TestParamInfo<Routine>& info) { return info.param.name; }

} // namespace nxl_test
