// Every Bessel function anywhere in the plane as a sum of I and K at one argument of the right half plane.
#pragma once
#include "primitives/bessel/scaled.hpp"

namespace nxl::bessel {

enum class Function { i, j, k, y, h1, h2 };

/// What stands before I or K of order nu: factor exp(i pi/2 quarters nu), or of that exponential its real part alone.
struct Coefficient {
    zcomplex factor = 0.0; // 0: no such term
    int quarters = 0;
    bool cosine = false;

    bool present() const { return factor != 0.0; }
};

/// f(nu, z) = scale (i I(nu, t) + k K(nu, t)), Re t >= 0, or its conjugate. With `on_axis`, where results are real but
/// for a phase, J(nu, x) and Y(nu, x) stand for I and K, t = -i x, x >= 0: they are real parts of theirs.
struct Continuation {
    zcomplex t;
    Coefficient i = {}, k = {};
    Scaled scale = {1.0, 0.0};
    bool on_axis = false;
    bool conjugate = false;
};

/// `scaled`: with the exponential factor of KODE 2. z != 0 but for I and J.
Continuation continue_to(Function function, zcomplex z, bool scaled);

} // namespace nxl::bessel
