// Sparse systems of the kinds that a direct solver meets, as the solver takes them: compressed rows that count from 1,
// columns ascending, of symmetric matrices the upper triangle with its whole diagonal.
#pragma once
#include <string>
#include <vector>

namespace nxl_test {

struct SparseProblem {
    int n = 0;
    int mtype = 11; // 2 symmetric positive definite, -2 symmetric indefinite, 11 unsymmetric; 4, 6, 13 complex
    std::vector<int> ia, ja;
    std::vector<double> a; // of complex types pairs

    bool upper() const { return mtype % 2 == 0; }
    bool complex() const { return mtype == 4 || mtype == 6 || mtype == 13; }
};

/// -div grad u on the unit square or cube by differences, `side` unknowns along each edge; u = 0 around it.
SparseProblem poisson2d(int side);
SparseProblem poisson3d(int side);

/// A cube of linear elastic material, Poisson's ratio 0.3, held at one face: side^3 nodes of three displacements each,
/// trilinear bricks.
SparseProblem elasticity3d(int side);

/// -div grad u + c . grad u on the unit square or cube, upwind differences.
SparseProblem convection2d(int side);
SparseProblem convection3d(int side);

/// Waves: -div grad u - k^2 u on the square or cube by differences, ten points to a wave. Symmetric indefinite.
SparseProblem shifted2d(int side);
SparseProblem shifted3d(int side);

/// Nodal equations of a circuit of side^2 nodes: conductances between near nodes and to one of a few rails, and
/// controlled sources, which make it unsymmetric.
SparseProblem circuit(int side);

/// Stokes flow in the unit square on a staggered grid of side^2 cells: velocities on the edges between cells, a
/// pressure with diagonal 0 in each cell, but in the first, where it is held.
SparseProblem saddle(int side);

/// D A E of a real problem, with diagonals of complex numbers of modulus 1: Hermitian with E = D^H for type 2,
/// symmetric with E = D for -2.
SparseProblem in_complex(SparseProblem problem);

/// The problem of one of the names above, or of one with "-complex" behind it. Throws std::invalid_argument for another
/// name, and for a side below 2 or so large that entries could not be counted.
SparseProblem sparse_problem(const std::string& name, int side);

} // namespace nxl_test
