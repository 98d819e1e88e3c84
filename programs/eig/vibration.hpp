// How the truss bridge swings: K u = omega^2 M u as an ordinary eigenproblem, and a drawing of its modes.
#pragma once

#include "spectrum.hpp"
#include "truss.hpp"

#include <string>

namespace eig {

/// M^-1/2 K M^-1/2 of the unknowns; its eigenvalues are squares of angular frequencies, in 1/s^2.
solve::SparseMatrix<double> vibration_matrix(const solve::Truss& truss);

/// Draws the bridge in each of the first modes, up to six, seen from the side and a little from above. Throws
/// InputError.
void draw_modes(const std::string& path, const std::string& title, const solve::Truss& truss, const Spectrum& spectrum);

} // namespace eig
