// Singular values, of matrices of every shape, dense: dgesdd, zgesdd.
#include "method.hpp"
#include "nxl.h"
#include "quality.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace eig {
namespace {

using solve::Block;
using solve::SparseMatrix;

/// A = U S V^H with the first min(m, n) vectors of either side, where they are wanted.
template <class T> struct Run {
    std::vector<double> value; // descending
    Block<T> left, right;      // columns of U, and of V
};

/// The columns of V, from the rows of V^H.
template <class T> Block<T> adjoint(const Block<T>& vt, int columns) {
    Block<T> v(columns, vt.n);
    for (int j = 0; j < columns; ++j)
        for (int i = 0; i < vt.n; ++i) {
            const T element = vt.column(j)[i];
            if constexpr (kReal<T>) v.column(i)[j] = element;
            else v.column(i)[j] = std::conj(element);
        }
    return v;
}

template <class T> Run<T> decompose_dense(const SparseMatrix<T>& a, bool vectors) {
    const int least = std::min(a.n, a.columns), count = vectors ? least : 0, width = std::max(count, 1);
    const char* jobz = vectors ? "S" : "N";
    Run<T> run{
        .value = std::vector<double>(static_cast<std::size_t>(least)), .left = Block<T>(a.n, count), .right = {}};
    Block<T> vt(count, a.columns);
    std::vector<T> stored = solve::column_major(a);
    std::vector<int> integers(8 * static_cast<std::size_t>(least));
    int info = 0;
    const auto call = [&](T* work, int lwork) {
        const auto go = [&](auto* routine, auto*... real_work) {
            routine(jobz, &a.n, &a.columns, stored.data(), &a.n, run.value.data(), run.left.value.data(), &a.n,
                    vt.value.data(), &width, work, &lwork, real_work..., integers.data(), &info, 1);
        };
        double none = 0.0;
        if constexpr (kReal<T>) go(dgesdd);
        else go(zgesdd, &none);
    };
    T best{};
    call(&best, -1);
    std::vector<T> work(static_cast<std::size_t>(std::real(best)));
    call(work.data(), static_cast<int>(work.size()));
    solve::expect_memory(info);
    if (info > 0) throw Refusal("the iteration for the singular values has not converged");
    if (vectors) run.right = adjoint(vt, a.columns);
    return run;
}

/// The positions, from 0, of the wanted ones among values that descend: the first, and the one behind the last.
std::pair<std::size_t, std::size_t> chosen(const std::vector<double>& value, const Selection& selection) {
    if (selection.by == Selection::By::number) {
        const auto [first, last] = selection.numbers_of(static_cast<int>(value.size()));
        return {static_cast<std::size_t>(first) - 1, static_cast<std::size_t>(last)};
    }
    if (selection.all()) return {0, value.size()};
    const auto behind = [&value](double bound) { // those above it
        const auto end = std::partition_point(value.begin(), value.end(), [bound](double v) { return v > bound; });
        return static_cast<std::size_t>(end - value.begin());
    };
    return {behind(selection.high), behind(selection.low)};
}

template <class T> Block<T> columns(const Block<T>& block, std::size_t first, std::size_t last) {
    Block<T> part(block.n, static_cast<int>(last - first));
    std::copy(block.column(static_cast<int>(first)), block.column(static_cast<int>(last)), part.value.begin());
    return part;
}

/// The largest 2-norm of A v - s u and of A^H u - s v.
template <class T>
double largest_residual(const SparseMatrix<T>& a, const double* value, const Block<T>& u, const Block<T>& v) {
    std::vector<T> left(static_cast<std::size_t>(a.n)), right(static_cast<std::size_t>(a.columns));
    const auto distance = [](const std::vector<T>& product, double s, const T* vector) {
        double sum = 0.0;
        for (std::size_t i = 0; i < product.size(); ++i) sum += std::norm(product[i] - s * vector[i]);
        return std::sqrt(sum);
    };
    double largest = 0.0;
    for (int j = 0; j < v.count; ++j) {
        solve::multiply(a, v.column(j), left.data());
        solve::multiply_adjoint(a, u.column(j), right.data());
        largest = std::max({largest, distance(left, value[j], u.column(j)), distance(right, value[j], v.column(j))});
    }
    return largest;
}

/// Throws Refusal where the arrays would take more than half of the memory: the matrix, the vectors, those on the right
/// twice, and the work of the routine.
void expect_room(double m, double n, bool vectors, std::size_t element) {
    const double least = std::min(m, n), of_vectors = least * (m + 2.0 * n + 4.0 * least);
    const double bytes = (m * n + (vectors ? of_vectors : 0.0)) * static_cast<double>(element);
    if (!solve::fits_in_memory(bytes)) throw Refusal("the decomposition needs " + solve::memory_need(bytes, "arrays"));
}

} // namespace

template <class T> Spectrum singular_values(const SparseMatrix<T>& a, const Wish& wish) {
    expect_room(a.n, a.columns, wish.vectors, sizeof(T));
    const Run<T> run = decompose_dense(a, wish.vectors);
    const auto [first, last] = chosen(run.value, wish.selection);
    Spectrum spectrum;
    spectrum.method = std::string(kReal<T> ? "dgesdd" : "zgesdd") + ", dense";
    spectrum.value.assign(run.value.begin() + static_cast<std::ptrdiff_t>(first),
                          run.value.begin() + static_cast<std::ptrdiff_t>(last));
    spectrum.norm = run.value.front();
    const double rcond = wish.rcond.value_or(std::max(a.n, a.columns) * std::numeric_limits<double>::epsilon());
    Singular& singular = spectrum.singular.emplace();
    singular.rcond = rcond;
    singular.rank = static_cast<int>(
        std::count_if(run.value.begin(), run.value.end(), [&](double value) { return value > rcond * spectrum.norm; }));
    singular.smallest = run.value.back();
    if (!wish.vectors) return spectrum;
    Block<T> u = columns(run.left, first, last), v = columns(run.right, first, last);
    if (spectrum.norm > 0.0) spectrum.residual = largest_residual(a, run.value.data() + first, u, v) / spectrum.norm;
    spectrum.orthogonality = std::max(loss_of_orthogonality(u), loss_of_orthogonality(v));
    singular.left = std::move(u);
    spectrum.vector = std::move(v);
    return spectrum;
}

template Spectrum singular_values(const SparseMatrix<double>&, const Wish&);
template Spectrum singular_values(const SparseMatrix<Complex>&, const Wish&);

} // namespace eig
