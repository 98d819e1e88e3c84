// Matrices without symmetry, dense: dgeev, zgeev.
#include "method.hpp"
#include "nxl.h"
#include "quality.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace eig {
namespace {

using solve::Block;
using solve::SparseMatrix;

/// All eigenvalues and, where they are wanted, vectors, each in a column; of a real matrix the columns of a conjugate
/// pair hold the real and the imaginary part of its first one.
template <class T> struct Run {
    std::vector<Complex> value;
    Block<T> vector;
};

template <class T> Run<T> decompose_dense(const SparseMatrix<T>& a, bool vectors) {
    const auto n = static_cast<std::size_t>(a.n);
    Run<T> run{.value = std::vector<Complex>(n), .vector = Block<T>(a.n, vectors ? a.n : 0)};
    std::vector<T> stored = solve::column_major(a);
    std::vector<double> re(n), im(n), spare(kReal<T> ? 0 : 2 * n);
    const char* jobvr = vectors ? "V" : "N";
    int info = 0;
    const auto call = [&](T* work, int lwork) {
        T* none = nullptr;
        if constexpr (kReal<T>)
            dgeev("N", jobvr, &a.n, stored.data(), &a.n, re.data(), im.data(), none, &a.n, run.vector.value.data(),
                  &a.n, work, &lwork, &info, 1, 1);
        else
            zgeev("N", jobvr, &a.n, stored.data(), &a.n, run.value.data(), none, &a.n, run.vector.value.data(), &a.n,
                  work, &lwork, spare.data(), &info, 1, 1);
    };
    T best{};
    call(&best, -1);
    std::vector<T> work(static_cast<std::size_t>(std::real(best)));
    call(work.data(), static_cast<int>(work.size()));
    solve::expect_memory(info);
    if (info > 0) throw Refusal("the iteration for eigenvalue " + std::to_string(info) + " has not converged");
    if constexpr (kReal<T>)
        for (std::size_t k = 0; k < n; ++k) run.value[k] = {re[k], im[k]};
    return run;
}

/// Which of the values are wanted, in ascending order.
std::vector<std::size_t> chosen(const std::vector<Complex>& value, const Selection& selection) {
    std::vector<std::size_t> order(value.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t p, std::size_t q) {
        const Complex a = value[p], b = value[q];
        return a.real() != b.real() ? a.real() < b.real() : a.imag() < b.imag();
    });
    if (selection.by == Selection::By::number) {
        const auto [first, last] = selection.numbers_of(static_cast<int>(value.size()));
        return {order.begin() + first - 1, order.begin() + last};
    }
    if (selection.by == Selection::By::value)
        std::erase_if(order, [&](std::size_t k) {
            return !(selection.low < value[k].real() && value[k].real() <= selection.high);
        });
    return order;
}

/// The vector of value k, whose imaginary part is positive in the first of a pair.
Complex element(const Run<double>& run, std::size_t i, std::size_t k) {
    const double im = run.value[k].imag();
    const std::size_t column = im < 0.0 ? k - 1 : k, n = run.value.size();
    const double* v = run.vector.value.data() + n * column;
    return im == 0.0 ? v[i] : Complex(v[i], im > 0.0 ? v[i + n] : -v[i + n]);
}
Complex element(const Run<Complex>& run, std::size_t i, std::size_t k) {
    return run.vector.value[i + run.value.size() * k];
}

SparseMatrix<Complex> complex_copy(const SparseMatrix<double>& a) {
    return {.n = a.n,
            .symmetry = a.symmetry,
            .row_start = a.row_start,
            .column = a.column,
            .value = {a.value.begin(), a.value.end()}};
}

/// The vectors of the chosen values as numbers of type V, and their residual.
template <class V, class T>
void take_vectors(const SparseMatrix<V>& a, const Run<T>& run, const std::vector<std::size_t>& order,
                  Spectrum& spectrum) {
    Block<V> block(a.n, static_cast<int>(order.size()));
    V* next = block.value.data();
    for (const std::size_t k : order)
        for (std::size_t i = 0; i < run.value.size(); ++i) {
            if constexpr (kReal<V>) *next++ = element(run, i, k).real();
            else *next++ = element(run, i, k);
        }
    std::vector<V> lambda;
    for (const Complex& value : spectrum.value) {
        if constexpr (kReal<V>) lambda.push_back(value.real());
        else lambda.push_back(value);
    }
    if (spectrum.norm > 0.0) spectrum.residual = largest_residual(a, lambda, block) / spectrum.norm;
    spectrum.vector = std::move(block);
}

/// Throws Refusal where the arrays would take more than half of the memory: the matrix, its vectors, and these as
/// complex numbers.
template <class T> void expect_room(int n, bool vectors) {
    const double bytes = (vectors ? 2.0 * sizeof(T) + sizeof(Complex) : sizeof(T)) * n * n;
    if (!solve::fits_in_memory(bytes)) throw Refusal("the decomposition needs " + solve::memory_need(bytes, "arrays"));
}

} // namespace

template <class T> Spectrum general(const SparseMatrix<T>& a, const Wish& wish) {
    if (wish.method == "band")
        throw Refusal(std::string("method band needs a ") + (kReal<T> ? "symmetric" : "Hermitian") +
                      " matrix, this one is not");
    expect_room<T>(a.n, wish.vectors);
    const Run<T> run = decompose_dense(a, wish.vectors);
    const auto order = chosen(run.value, wish.selection);
    Spectrum spectrum;
    spectrum.method = std::string(kReal<T> ? "dgeev" : "zgeev") + ", dense";
    for (const std::size_t k : order) spectrum.value.push_back(run.value[k]);
    spectrum.real = kReal<T> && std::all_of(spectrum.value.begin(), spectrum.value.end(),
                                            [](const Complex& value) { return value.imag() == 0.0; });
    spectrum.norm = solve::norm(a);
    if (!wish.vectors) return spectrum;
    if constexpr (kReal<T>) {
        if (!spectrum.real) {
            take_vectors(complex_copy(a), run, order, spectrum);
            return spectrum;
        }
    }
    take_vectors(a, run, order, spectrum);
    return spectrum;
}

template Spectrum general(const SparseMatrix<double>&, const Wish&);
template Spectrum general(const SparseMatrix<Complex>&, const Wish&);

} // namespace eig
