// Matrix Market files: sparse matrices and dense right-hand sides in, dense solutions out.
#pragma once

#include "common/line_reader.hpp"
#include "sparse_matrix.hpp"

#include <string>
#include <variant>
#include <vector>

namespace solve {

/// A dense block of columns of length n, one after the other.
template <class T> struct Block {
    int n = 0;
    int count = 0;
    std::vector<T> value;

    Block() = default;
    Block(int rows, int columns)
        : n(rows),
          count(columns),
          value(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns)) {}
    T* column(int j) { return value.data() + std::ptrdiff_t{n} * j; }
    const T* column(int j) const { return value.data() + std::ptrdiff_t{n} * j; }
};

using AnyMatrix = std::variant<SparseMatrix<double>, SparseMatrix<Complex>>;

struct MatrixFile {
    AnyMatrix matrix;    // pattern entries are ones; integer values become doubles
    long duplicates = 0; // entries that were summed into another one of the same place
};

/// Which matrices are read: square ones with entries enough for every row; or of any shape, and then empty rows and
/// columns are good where a dense copy takes no more than half of the memory.
enum class Shape { square, any };

/// Reads a matrix, in coordinate or in array form. Throws InputError, naming file and line, for anything that
/// the format does not allow, for NaN and infinite values, and for matrices of another shape. Memory grows with what
/// the file holds, of a matrix of any shape also with its rows and columns, never with what the header promises beside.
MatrixFile read_matrix(common::LineReader lines, Shape shape = Shape::square);

/// Reads a dense n by k block in array form, general; a real file serves as a complex block, too.
template <class T> Block<T> read_block(common::LineReader lines, int n);

/// Writes a block in array form with 17 significant digits, which give each double back exactly.
template <class T> void write_block(const std::string& path, const Block<T>& block);

} // namespace solve
