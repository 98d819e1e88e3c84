// Eigenvalues and vectors of 2 by 2 matrices.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Of [a b; b c]: rt1 is the eigenvalue of larger modulus, (cs1, sn1) its vector of length 1; (-sn1, cs1) is the other.
void laev2(double a, double b, double c, double& rt1, double& rt2, double& cs1, double& sn1);

/// Of [a b; conj(b) c], whose a and c count by their real parts: [cs1 conj(sn1); -sn1 cs1] makes it diagonal.
void nxl_lapack_zlaev2(const zcomplex& a, const zcomplex& b, const zcomplex& c, double& rt1, double& rt2, double& cs1,
                       zcomplex& sn1);

} // namespace nxl
