// The singular value decomposition, with what of the vectors is wanted.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// How the bidiagonal matrix is made diagonal.
enum class DiagonalBy { qr, division };

/// A = U S V^H, the vectors as their letters want them: A all, S the first min(m, n), O the same in the place of A, N
/// none. s: S, descending.
template <class T> struct Decomposition {
    DiagonalBy by;
    char left, right; // letters of U and V^H, not both O
    Matrix<T> a;      // destroyed
    double* s;
    T* u;
    i64 ldu;
    T* vt;
    i64 ldvt;
    double* off = nullptr; // where the superdiagonal goes when values have not converged, if anywhere: min(m, n) - 1

    /// 0; how many values have not converged; or -1 when there was no memory.
    i64 run() const;
};

} // namespace nxl
