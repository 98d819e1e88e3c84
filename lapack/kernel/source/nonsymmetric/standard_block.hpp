// Blocks of order 2 on the diagonal of a Schur form, and the plane rotations that bring them there.
#pragma once
#include "lapack/kernel/source/common/length.hpp"
#include "service/kernel_slot.hpp"
#include "service/matrix.hpp"
#include "service/scalars.hpp"

namespace nxl {

/// G = [c s; -conj(s) c], c real.
template <class T> struct PlaneTurn {
    double cosine = 1.0;
    T sine{};

    /// G C for the two rows of C that begin at c and c + 1.
    void turn_rows(i64 columns, T* c, i64 ld) const { turn(columns, c, ld, c + 1, ld, sine); }
    /// C G^H for the two columns that begin at c and c + ld.
    void turn_columns(i64 rows, T* c, i64 ld) const { turn(rows, c, 1, c + ld, 1, conj_if<true>(sine)); }

  private:
    void turn(i64 count, T* x, i64 incx, T* y, i64 incy, const T& s) const {
        slot_of<T, &KernelTable::drot, &KernelTable::zrot>()(count, x, incx, y, incy, cosine, s);
    }
};

/// G with G (f; g) = (length; 0).
template <class T> PlaneTurn<T> turn_onto_first(const T& f, const T& g) {
    const double size = length_of(f), other = length_of(g);
    if (other == 0.0) return {};
    if (size == 0.0) return {0.0, conj_if<true>(g) / other};
    const double length = length_of(size, other);
    return {size / length, conj_if<true>(g / length) * (f / size)};
}

/// [a b; c d]
template <class T> struct Block2 {
    T a, b, c, d;
};

/// Brings a block to its standard form G B G^H. Real: upper triangular, or with equal elements on the diagonal and off
/// it elements of opposite signs, its eigenvalues being a +- i sqrt|b| sqrt|c|. Complex: upper triangular.
template <class T> PlaneTurn<T> make_standard(Block2<T>& block);

/// Eigenvalues; those of a real block that are not real are conjugate, and the first has the positive imaginary part.
struct Eigenpair {
    zcomplex first, second;
};
template <class T> Eigenpair eigenvalues_of(Block2<T> block);

/// Of a block in standard form.
template <class T> Eigenpair eigenvalues_of_standard(const Block2<T>& block) {
    if constexpr (!is_complex_scalar<T>)
        if (block.c != 0.0) {
            const double part = std::sqrt(std::fabs(block.b)) * std::sqrt(std::fabs(block.c));
            return {{block.a, part}, {block.d, -part}};
        }
    return {block.a, block.d};
}

} // namespace nxl
