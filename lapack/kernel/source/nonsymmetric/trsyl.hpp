// Sylvester equations of Schur forms.
#pragma once
#include "service/matrix.hpp"

namespace nxl {

/// op(A) X + isgn X op(B) = scale C. Options are capitals. See dtrsyl in nxl.h.
template <class T>
void trsyl(const char& trana, const char& tranb, const i64& isgn, const i64& m, const i64& n, const T* a,
           const i64& lda, const T* b, const i64& ldb, T* c, const i64& ldc, double& scale, i64& info,
           int trana_length = 1, int tranb_length = 1);
inline constexpr auto nxl_lapack_dtrsyl = trsyl<double>;
inline constexpr auto nxl_lapack_ztrsyl = trsyl<zcomplex>;

/// The equation itself. A and B are Schur forms; with `adjoint_...` their adjoints are meant.
template <class T> struct SylvesterEquation {
    Matrix<const T> a, b;
    bool adjoint_a, adjoint_b;
    double sign;

    struct Answer {
        double scale;
        bool perturbed; // eigenvalues were so close that one was moved
    };
    /// C := X. `copy`: as many elements as C.
    Answer solve(const Matrix<T>& c, T* copy) const;
};

} // namespace nxl
