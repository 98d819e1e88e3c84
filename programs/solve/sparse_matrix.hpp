// A sparse matrix in compressed rows, real or complex: assembly from triplets, products, norms, symmetry.
#pragma once

#include <complex>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace solve {

using Complex = std::complex<double>;

enum class Symmetry { general, symmetric, skew_symmetric, hermitian };
const char* name_of(Symmetry symmetry);

/// Rows one after the other, columns 0-based and ascending within a row. Both triangles are stored, whatever the
/// symmetry, so that a product reads each row once and rows can be shared out among threads.
template <class T> struct SparseMatrix {
    int n = 0;                             // rows
    int columns = n;                       // square, if nothing else is said
    Symmetry symmetry = Symmetry::general; // as declared; is_symmetric() looks at the values
    std::vector<int> row_start;            // n + 1 positions in column and value
    std::vector<int> column;
    std::vector<T> value;

    struct Row {
        std::span<const int> column;
        std::span<const T> value;
    };

    bool square() const { return n == columns; }
    int entries() const { return static_cast<int>(value.size()); }
    Row row(int i) const {
        const auto first = static_cast<std::size_t>(row_start.data()[i]);
        const auto count = static_cast<std::size_t>(row_start.data()[i + 1]) - first;
        return {std::span(column).subspan(first, count), std::span(value).subspan(first, count)};
    }
};

/// "20 by 3".
template <class T> std::string shape_of(const SparseMatrix<T>& a) {
    return std::to_string(a.n) + " by " + std::to_string(a.columns);
}

template <class T> struct Triplet {
    int row, column; // 0-based
    T value;
};

/// The matrix of a list of triplets. Symmetric ones are square. Of a symmetric, skew or Hermitian matrix the list holds
/// one triangle, the other one is filled in. Triplets of the same place are summed, in the order of the list;
/// `duplicates`, if not null, counts those of the list that went into another one. With the other triangle there are at
/// most 2^31 - 1 triplets.
template <class T>
SparseMatrix<T> assemble(int rows, int columns, Symmetry symmetry, std::vector<Triplet<T>> triplets,
                         long* duplicates = nullptr);
template <class T> SparseMatrix<T> assemble(int n, Symmetry symmetry, std::vector<Triplet<T>> triplets) {
    return assemble(n, n, symmetry, std::move(triplets));
}

/// y = A x; x holds as many elements as A has columns, y as many as it has rows, and they do not overlap. Every row is
/// one sum in the order of its columns, whatever the number of threads.
template <class T> void multiply(const SparseMatrix<T>& a, const T* x, T* y);

/// y = A^H x, on one thread.
template <class T> void multiply_adjoint(const SparseMatrix<T>& a, const T* x, T* y);

/// The infinity norm, the largest sum of absolute values of a row.
template <class T> double norm(const SparseMatrix<T>& a);

/// The diagonal of a square matrix; 0 where no entry is stored.
template <class T> std::vector<T> diagonal(const SparseMatrix<T>& a);

/// Whether A equals its transpose, stored entry for stored entry.
template <class T> bool is_symmetric(const SparseMatrix<T>& a);

/// Whether A equals its conjugate transpose, by its declared symmetry or stored entry for stored entry. For a real
/// matrix that is symmetry.
template <class T> bool is_hermitian(const SparseMatrix<T>& a);

} // namespace solve
