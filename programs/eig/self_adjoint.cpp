// Symmetric and Hermitian matrices, dense (dsyevx, zheevx) or as a band (dsbevx, zhbevx; all values dsbevd, zhbevd).
#include "method.hpp"
#include "nxl.h"
#include "quality.hpp"

#include <algorithm>
#include <cstddef>
#include <tuple>

namespace eig {
namespace {

using solve::Block;
using solve::SparseMatrix;

/// The diagonals that are stored beside the main one, on one side.
template <class T> int half_bandwidth(const SparseMatrix<T>& a) {
    int width = 0;
    for (int i = 0; i < a.n; ++i) {
        const auto columns = a.row(i).column;
        if (!columns.empty()) width = std::max(width, i - columns.front());
    }
    return width;
}

/// The lower triangle in a rectangle: element (i, j) at (row(i, j), j).
template <class T, class Row> std::vector<T> lower_triangle(const SparseMatrix<T>& a, std::size_t rows, Row row) {
    std::vector<T> stored(rows * static_cast<std::size_t>(a.n));
    for (int i = 0; i < a.n; ++i) {
        const auto [columns, values] = a.row(i);
        for (std::size_t k = 0; k < columns.size() && columns[k] <= i; ++k)
            stored[static_cast<std::size_t>(row(i, columns[k])) + rows * static_cast<std::size_t>(columns[k])] =
                values[k];
    }
    return stored;
}

/// The arguments that the routines for chosen values share, and what they give.
template <class T> struct Run {
    const char* jobz;
    const char* range = "A";
    int n, first = 1, last, info = 0, found = 0;
    double low, high, tolerance = 0.0;
    std::vector<double> value;
    Block<T> vector;
    std::vector<int> unconverged, integers;

    Run(int order, const Wish& wish)
        : jobz(wish.vectors ? "V" : "N"),
          n(order),
          last(order),
          low(wish.selection.low),
          high(wish.selection.high),
          value(static_cast<std::size_t>(order)),
          vector(order, wish.vectors ? order : 0),
          unconverged(static_cast<std::size_t>(order)),
          integers(5 * static_cast<std::size_t>(order)) {
        const Selection& chosen = wish.selection;
        if (chosen.by == Selection::By::value) range = "V";
        if (chosen.by != Selection::By::number) return;
        range = "I";
        std::tie(first, last) = chosen.numbers_of(n);
    }
    void expect_success(const char* routine) const {
        if (info < 0) throw std::bad_alloc();
        if (info > 0 && (found == 0 || *jobz == 'N'))
            throw Refusal(std::string(routine) + " has not converged: info " + std::to_string(info));
    }
};

template <class T> void dense(const SparseMatrix<T>& a, Run<T>& run) {
    std::vector<T> stored = lower_triangle(a, static_cast<std::size_t>(a.n), [](int i, int) { return i; });
    const auto call = [&](T* work, int lwork) {
        const auto go = [&](auto* routine, auto*... real_work) {
            routine(run.jobz, run.range, "L", &run.n, stored.data(), &run.n, &run.low, &run.high, &run.first, &run.last,
                    &run.tolerance, &run.found, run.value.data(), run.vector.value.data(), &run.n, work, &lwork,
                    real_work..., run.integers.data(), run.unconverged.data(), &run.info, 1, 1, 1);
        };
        std::vector<double> spare(7 * static_cast<std::size_t>(a.n));
        if constexpr (kReal<T>) go(dsyevx);
        else go(zheevx, spare.data());
    };
    T best{};
    call(&best, -1);
    std::vector<T> work(static_cast<std::size_t>(std::real(best)));
    call(work.data(), static_cast<int>(work.size()));
    run.expect_success("the dense routine");
}

template <class T> std::vector<T> band_of(const SparseMatrix<T>& a, int width) {
    return lower_triangle(a, static_cast<std::size_t>(width) + 1, [](int i, int j) { return i - j; });
}

template <class T> void some_of_band(const SparseMatrix<T>& a, int width, Run<T>& run) {
    const std::vector<T> band = band_of(a, width);
    const int rows = width + 1;
    const auto n = static_cast<std::size_t>(a.n);
    std::vector<T> q(*run.jobz == 'V' ? n * n : 0), work((kReal<T> ? 7 : 1) * n);
    const auto go = [&](auto* routine, auto*... real_work) {
        routine(run.jobz, run.range, "L", &run.n, &width, band.data(), &rows, q.data(), &run.n, &run.low, &run.high,
                &run.first, &run.last, &run.tolerance, &run.found, run.value.data(), run.vector.value.data(), &run.n,
                work.data(), real_work..., run.integers.data(), run.unconverged.data(), &run.info, 1, 1, 1);
    };
    std::vector<double> spare(7 * n);
    if constexpr (kReal<T>) go(dsbevx);
    else go(zhbevx, spare.data());
    run.expect_success("the band routine");
}

template <class T> void all_of_band(const SparseMatrix<T>& a, int width, Run<T>& run) {
    const std::vector<T> band = band_of(a, width);
    const int rows = width + 1, query = -1;
    const auto go = [&](T* work, const int* lwork, double* reals, const int* lreals, int* integers,
                        const int* lintegers) {
        if constexpr (kReal<T>)
            dsbevd(run.jobz, "L", &run.n, &width, band.data(), &rows, run.value.data(), run.vector.value.data(), &run.n,
                   work, lwork, integers, lintegers, &run.info, 1, 1);
        else
            zhbevd(run.jobz, "L", &run.n, &width, band.data(), &rows, run.value.data(), run.vector.value.data(), &run.n,
                   work, lwork, reals, lreals, integers, lintegers, &run.info, 1, 1);
    };
    T best{};
    double best_reals = 0.0;
    int best_integers = 0;
    go(&best, &query, &best_reals, &query, &best_integers, &query);
    std::vector<T> work(static_cast<std::size_t>(std::real(best)));
    std::vector<double> reals(static_cast<std::size_t>(best_reals));
    std::vector<int> integers(static_cast<std::size_t>(best_integers));
    const int lwork = static_cast<int>(work.size()), lreals = static_cast<int>(reals.size());
    go(work.data(), &lwork, reals.data(), &lreals, integers.data(), &best_integers);
    run.found = run.info == 0 ? run.n : 0;
    run.expect_success("the band routine");
}

/// Throws Refusal where the arrays would take more than half of the memory.
template <class T> void expect_room(int n, const Wish& wish, bool band) {
    const double squares = (band ? 0.0 : 1.0) + (wish.vectors ? (band ? 3.0 : 1.0) : 0.0);
    const double bytes = squares * n * n * sizeof(T);
    if (!solve::fits_in_memory(bytes)) throw Refusal("the decomposition needs " + solve::memory_need(bytes, "arrays"));
}

} // namespace

/// A band routine has n^2 times the bandwidth to do before the vectors, a dense one n^3.
template <class T> Spectrum self_adjoint(const SparseMatrix<T>& a, const Wish& wish) {
    const int width = half_bandwidth(a);
    const bool band = wish.method == "band" || (wish.method == "auto" && width <= a.n / 8);
    expect_room<T>(a.n, wish, band);
    Run<T> run(a.n, wish);
    if (!band) dense(a, run);
    else if (wish.selection.all()) all_of_band(a, width, run);
    else some_of_band(a, width, run);

    Spectrum spectrum;
    const std::string letters = kReal<T> ? "ds" : "zh";
    spectrum.method = band ? letters + (wish.selection.all() ? "bevd" : "bevx") + ", a band of " +
                                 std::to_string(width) + " diagonals on either side"
                           : std::string(kReal<T> ? "dsyevx" : "zheevx") + ", dense";
    run.value.resize(static_cast<std::size_t>(run.found));
    spectrum.value.assign(run.value.begin(), run.value.end());
    spectrum.failed = run.info;
    spectrum.norm = solve::norm(a);
    if (wish.vectors) {
        run.vector.count = run.found;
        run.vector.value.resize(static_cast<std::size_t>(a.n) * static_cast<std::size_t>(run.found));
        if (spectrum.norm > 0.0) spectrum.residual = largest_residual(a, run.value, run.vector) / spectrum.norm;
        spectrum.orthogonality = loss_of_orthogonality(run.vector);
        spectrum.vector = std::move(run.vector);
    }
    return spectrum;
}

template Spectrum self_adjoint(const SparseMatrix<double>&, const Wish&);
template Spectrum self_adjoint(const SparseMatrix<Complex>&, const Wish&);

} // namespace eig
