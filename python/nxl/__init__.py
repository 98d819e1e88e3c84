"""Sparse systems, iterative solvers and least squares of the nxl library, for arrays of NumPy and SciPy.

    x = nxl.spsolve(A, b)
    factors = nxl.splu(A)           # or cholesky(A), ldl(A)
    x = factors.solve(b)
    factors.refactor(B.data)        # another matrix of the same pattern
    x, info = nxl.gmres(A, b, M=nxl.ilu0(A))
    fit = nxl.least_squares(residuals, start, bounds=(lower, upper))
"""

from ._ilu import IncompleteLU, ilu0, ilut
from ._iterative import cg, gmres
from ._least_squares import Fit, jacobian, least_squares
from ._sparse import AccuracyWarning, Factorization, Inertia, cholesky, ldl, splu, spsolve

__all__ = [
    "AccuracyWarning", "Factorization", "Fit", "IncompleteLU", "Inertia", "cg", "cholesky", "gmres", "ilu0", "ilut",
    "jacobian", "ldl", "least_squares", "splu", "spsolve",
]  # fmt: skip
