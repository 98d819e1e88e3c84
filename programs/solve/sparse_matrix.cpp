// Compressed rows: sorting and merging at assembly, and the loops over the rows.
#include "sparse_matrix.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <type_traits>

namespace solve {

const char* name_of(Symmetry symmetry) {
    switch (symmetry) {
    case Symmetry::symmetric: return "symmetric";
    case Symmetry::skew_symmetric: return "skew-symmetric";
    case Symmetry::hermitian: return "hermitian";
    default: return "general";
    }
}

namespace {

/// The value at (j, i) that an entry at (i, j) implies.
template <class T> T mirrored(Symmetry symmetry, T value) {
    if (symmetry == Symmetry::skew_symmetric) return -value;
    if constexpr (!std::is_same_v<T, double>) {
        if (symmetry == Symmetry::hermitian) return std::conj(value);
    }
    return value;
}

template <class T> void fill_other_triangle(Symmetry symmetry, std::vector<Triplet<T>>& triplets) {
    if (symmetry == Symmetry::general) return;
    const std::size_t count = triplets.size();
    triplets.reserve(2 * count);
    for (std::size_t k = 0; k < count; ++k) {
        const auto& t = triplets[k];
        if (t.row != t.column) triplets.push_back({t.column, t.row, mirrored(symmetry, t.value)});
    }
}

/// Counting sort by a key in 0 to n - 1; what has the same key stays in its order.
template <class T> void stable_sort_by(int Triplet<T>::* key, int n, std::vector<Triplet<T>>& triplets) {
    std::vector<int> position(static_cast<std::size_t>(n) + 1, 0); // where the next triplet of a key goes
    for (const auto& t : triplets) ++position.data()[t.*key + 1];
    std::partial_sum(position.begin(), position.end(), position.begin());
    std::vector<Triplet<T>> sorted(triplets.size());
    for (const auto& t : triplets) sorted.data()[position.data()[t.*key]++] = t;
    triplets.swap(sorted);
}

/// The rows of a list sorted by row and column; entries of the same place become one. Of a matrix given by its lower
/// triangle only the duplicates there are counted.
template <class T>
SparseMatrix<T> compress(int n, int columns, Symmetry symmetry, const std::vector<Triplet<T>>& sorted,
                         long& duplicates) {
    SparseMatrix<T> a{.n = n, .columns = columns, .symmetry = symmetry, .row_start = {0}, .column = {}, .value = {}};
    a.row_start.reserve(static_cast<std::size_t>(n) + 1);
    a.column.reserve(sorted.size());
    a.value.reserve(sorted.size());
    auto t = sorted.begin();
    for (int i = 0; i < n; ++i) {
        for (int previous = -1; t != sorted.end() && t->row == i; ++t) {
            if (t->column == previous) {
                a.value.back() += t->value;
                duplicates += symmetry == Symmetry::general || t->row >= t->column;
                continue;
            }
            a.column.push_back(previous = t->column);
            a.value.push_back(t->value);
        }
        a.row_start.push_back(a.entries());
    }
    return a;
}

/// Whether every stored entry has the mirror image that `symmetry` asks for.
template <class T> bool mirrors_itself(Symmetry symmetry, const SparseMatrix<T>& a) {
    if (!a.square()) return false;
    // Rows are visited from the first to the last and columns ascend, so that entry (i, j) has to find as its mirror
    // image the first entry of row j that none has found before.
    std::vector<int> unmet(a.row_start);
    for (int i = 0; i < a.n; ++i) {
        const auto [columns, values] = a.row(i);
        for (std::size_t k = 0; k < columns.size(); ++k) {
            const int j = columns[k];
            const int mirror = unmet.data()[j]++;
            if (mirror == a.row_start.data()[j + 1]) return false;
            if (a.column.data()[mirror] != i || a.value.data()[mirror] != mirrored(symmetry, values[k])) return false;
        }
    }
    return true;
}

} // namespace

template <class T>
SparseMatrix<T> assemble(int rows, int columns, Symmetry symmetry, std::vector<Triplet<T>> triplets, long* duplicates) {
    fill_other_triangle(symmetry, triplets);
    stable_sort_by(&Triplet<T>::column, columns, triplets);
    stable_sort_by(&Triplet<T>::row, rows, triplets);
    long summed = 0;
    SparseMatrix<T> a = compress(rows, columns, symmetry, triplets, summed);
    if (duplicates) *duplicates = summed;
    return a;
}

template <class T> void multiply(const SparseMatrix<T>& a, const T* x, T* y) {
    const int* start = a.row_start.data();
    const int* column = a.column.data();
    const T* value = a.value.data();
    // A thousand entries are about a microsecond of work: below some ten thousand, waking a team costs more than it
    // saves.
#pragma omp parallel for schedule(static) if (a.entries() > 20000)
    for (int i = 0; i < a.n; ++i) {
        T sum{};
        for (int k = start[i]; k < start[i + 1]; ++k) sum += value[k] * x[column[k]];
        y[i] = sum;
    }
}

template <class T> void multiply_adjoint(const SparseMatrix<T>& a, const T* x, T* y) {
    std::fill(y, y + a.columns, T{});
    for (int i = 0; i < a.n; ++i) {
        const auto [columns, values] = a.row(i);
        for (std::size_t k = 0; k < columns.size(); ++k)
            y[columns[k]] += mirrored(Symmetry::hermitian, values[k]) * x[i];
    }
}

template <class T> double norm(const SparseMatrix<T>& a) {
    double largest = 0.0;
    for (int i = 0; i < a.n; ++i) {
        double sum = 0.0;
        for (const T& value : a.row(i).value) sum += std::abs(value);
        largest = std::max(largest, sum);
    }
    return largest;
}

template <class T> std::vector<T> diagonal(const SparseMatrix<T>& a) {
    std::vector<T> d(static_cast<std::size_t>(a.n));
    for (int i = 0; i < a.n; ++i) {
        const auto [columns, values] = a.row(i);
        const auto found = std::lower_bound(columns.begin(), columns.end(), i);
        if (found != columns.end() && *found == i) d.data()[i] = *(values.begin() + (found - columns.begin()));
    }
    return d;
}

template <class T> bool is_symmetric(const SparseMatrix<T>& a) { return mirrors_itself(Symmetry::symmetric, a); }

template <class T> bool is_hermitian(const SparseMatrix<T>& a) {
    const auto declared = std::is_same_v<T, double> ? Symmetry::symmetric : Symmetry::hermitian;
    return a.symmetry == declared || mirrors_itself(Symmetry::hermitian, a);
}

template SparseMatrix<double> assemble(int, int, Symmetry, std::vector<Triplet<double>>, long*);
template SparseMatrix<Complex> assemble(int, int, Symmetry, std::vector<Triplet<Complex>>, long*);
template void multiply(const SparseMatrix<double>&, const double*, double*);
template void multiply(const SparseMatrix<Complex>&, const Complex*, Complex*);
template void multiply_adjoint(const SparseMatrix<double>&, const double*, double*);
template void multiply_adjoint(const SparseMatrix<Complex>&, const Complex*, Complex*);
template double norm(const SparseMatrix<double>&);
template double norm(const SparseMatrix<Complex>&);
template std::vector<double> diagonal(const SparseMatrix<double>&);
template std::vector<Complex> diagonal(const SparseMatrix<Complex>&);
template bool is_symmetric(const SparseMatrix<double>&);
template bool is_symmetric(const SparseMatrix<Complex>&);
template bool is_hermitian(const SparseMatrix<double>&);
template bool is_hermitian(const SparseMatrix<Complex>&);

} // namespace solve
