// Plane rotations of the vectors, kept until there are so many that the matrix is worth going through.
#pragma once
#include "service/matrix.hpp"
#include "service/scratch.hpp"

namespace nxl {

/// A QL sweep over elements l .. m of a block turns columns m and m - 1, then m - 1 and m - 2, down to l. The sweeps of
/// a batch have the same m.
class RotationBatch {
    static constexpr i64 most_sequences = 64;

    const i64 rows_, ld_; // of doubles
    double* const columns_;
    const Scratch<double> turns_;
    double* first_ = nullptr; // the column of m
    i64 step_ = 0, length_ = 0, count_ = 0;

  public:
    /// The columns of z are to be turned; a complex matrix under real rotations is a real one of twice the rows.
    template <class T>
    explicit RotationBatch(const Matrix<T>& z)
        : rows_(z.rows * i64{sizeof(T) / sizeof(double)}),
          ld_(z.ld * i64{sizeof(T) / sizeof(double)}),
          columns_(reinterpret_cast<double*>(z.data)),
          turns_(2 * most_sequences * z.columns) {}

    bool has_memory() const { return turns_.data() != nullptr; }

    /// Room for the cosines and sines of one more sequence of `length` rotations, the first of which turns columns
    /// `column` and column + step, step being 1 or -1. They become c x + s y and c y - s x.
    double* sequence(i64 column, i64 step, i64 length);
    /// Turns the columns by all that has been gathered.
    void apply();
};

} // namespace nxl
