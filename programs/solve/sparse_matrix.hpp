// A square sparse matrix in compressed rows, real or complex: assembly from triplets, product, norms, symmetry.
#pragma once

#include <complex>
#include <span>
#include <vector>

namespace solve {

using Complex = std::complex<double>;

enum class Symmetry { general, symmetric, skew_symmetric, hermitian };
const char* name_of(Symmetry symmetry);

/// Rows one after the other, columns 0-based and ascending within a row. Both triangles are stored, whatever the
/// symmetry, so that a product reads each row once and rows can be shared out among threads.
template <class T> struct SparseMatrix {
    int n = 0;
    Symmetry symmetry = Symmetry::general; // as declared; is_symmetric() looks at the values
    std::vector<int> row_start;            // n + 1 positions in column and value
    std::vector<int> column;
    std::vector<T> value;

    struct Row {
        std::span<const int> column;
        std::span<const T> value;
    };

    int entries() const { return static_cast<int>(value.size()); }
    Row row(int i) const {
        const auto first = static_cast<std::size_t>(row_start.data()[i]);
        const auto count = static_cast<std::size_t>(row_start.data()[i + 1]) - first;
        return {std::span(column).subspan(first, count), std::span(value).subspan(first, count)};
    }
};

template <class T> struct Triplet {
    int row, column; // 0-based
    T value;
};

/// The matrix of a list of triplets. Of a symmetric, skew or Hermitian matrix the list holds one triangle, the other
/// one is filled in. Triplets of the same place are summed, in the order of the list; `duplicates`, if not null, counts
/// those of the list that went into another one. With the other triangle there are at most 2^31 - 1 triplets.
template <class T>
SparseMatrix<T> assemble(int n, Symmetry symmetry, std::vector<Triplet<T>> triplets, long* duplicates = nullptr);

/// y = A x; x and y hold n elements each and do not overlap. Every row is one sum in the order of its columns, whatever
/// the number of threads.
template <class T> void multiply(const SparseMatrix<T>& a, const T* x, T* y);

/// The infinity norm, the largest sum of absolute values of a row.
template <class T> double norm(const SparseMatrix<T>& a);

/// The diagonal; 0 where no entry is stored.
template <class T> std::vector<T> diagonal(const SparseMatrix<T>& a);

/// Whether A equals its transpose, stored entry for stored entry.
template <class T> bool is_symmetric(const SparseMatrix<T>& a);

/// Whether A equals its conjugate transpose, by its declared symmetry or stored entry for stored entry. For a real
/// matrix that is symmetry.
template <class T> bool is_hermitian(const SparseMatrix<T>& a);

} // namespace solve
