"""The sparse direct solver: one analysis, many factorisations, each for many right-hand sides."""

import threading
import warnings
from typing import NamedTuple

import numpy as np

from . import _matrix
from ._library import call, integer

_ORDERINGS = {"auto": 0, "minimum-degree": 0, "constrained": 1, "nested-dissection": 2}
_ON_FILES = {False: 0, "auto": 1, True: 2}
_PLACES = {  # of iparam, from 0
    "given": 0, "ordering": 1, "refined": 6, "refine": 7, "perturbation": 9, "scaling": 10, "transposed": 11,
    "matching": 12, "perturbed": 13, "entries": 17, "mflop": 18, "pivoting": 20, "positive": 21, "negative": 22,
    "out_of_core": 59,
}  # fmt: skip
_POSITIVE_DEFINITE, _HERMITIAN, _SYMMETRIC, _GENERAL = "positive definite", "Hermitian", "symmetric", "general"
_TYPES = {
    (_POSITIVE_DEFINITE, False): 2, (_POSITIVE_DEFINITE, True): 4, (_HERMITIAN, False): -2, (_HERMITIAN, True): -4,
    (_SYMMETRIC, False): -2, (_SYMMETRIC, True): 6, (_GENERAL, False): 11, (_GENERAL, True): 13,
}  # fmt: skip
_ERRORS = {
    -2: (MemoryError, "there is not enough memory"),
    -3: (ValueError, "the matrix has no order of elimination"),
    -4: (np.linalg.LinAlgError, "a pivot is zero, or not positive"),
    -6: (np.linalg.LinAlgError, "the matrix is structurally singular"),
    -7: (np.linalg.LinAlgError, "a diagonal matrix has a zero on its diagonal"),
    -8: (OverflowError, "the graph or the factors are too large for their integers"),
    -9: (MemoryError, "the memory that out-of-core work may take is too small"),
    -10: (OSError, "a file for the factors cannot be opened"),
    -11: (OSError, "a file of the factors cannot be read or written"),
}


class Inertia(NamedTuple):
    """How many pivots, and so eigenvalues of a symmetric or Hermitian matrix, have each sign."""

    positive: int
    negative: int


class AccuracyWarning(UserWarning):
    """A solution whose residual says that the matrix is singular to working precision."""


class Factorization:
    """The factors of a sparse matrix; made by splu, cholesky and ldl. Several threads may share one: calls wait for each
    other."""

    def __init__(self, given, a, kind, part, *, trial=False, ordering="auto", refine=None, out_of_core=False):
        if ordering not in _ORDERINGS:
            raise ValueError(f"ordering: one of {', '.join(_ORDERINGS)} is expected, not {ordering!r}")
        if out_of_core not in _ON_FILES:
            raise ValueError("out_of_core: True, False or 'auto' is expected")
        if refine is not None and not 0 <= refine <= 1000:
            raise ValueError("refine: 0 to 1000 steps are expected")
        if ordering == "auto" and out_of_core:
            ordering = "nested-dissection"  # the smaller files
        self._handle = np.zeros(64, dtype=np.int64)
        self._lock = threading.RLock()
        self.shape, self.dtype = a.shape, np.dtype(_matrix.scalar_type(a))
        complex_ = self.dtype.kind == "c"
        self._pattern = _matrix.Pattern(a, part, complex_ and kind in (_POSITIVE_DEFINITE, _HERMITIAN),
                                        _matrix.order_of_entries(given, a))  # fmt: skip
        self._values = self._pattern.gather(a.data, self.dtype)
        if trial and not self._pattern.has_positive_diagonal(self._values):
            kind = _HERMITIAN
        self._kind, self._type = kind, _TYPES[kind, complex_]
        self._parameters = np.zeros(64, dtype=np.int32)
        self._set(given=2, ordering=_ORDERINGS[ordering], refine=refine or 0, out_of_core=_ON_FILES[out_of_core],
                  entries=-1, mflop=-1)  # fmt: skip
        self._set_pivoting()
        self._run(11)
        # Chen, Davis, Hager and Rajamanickam, ACM Trans. Math. Softw. 35 (2008): where a factor entry costs few operations,
        # minimum degree is as good as nested dissection, which takes the longer to find.
        if ordering == "auto" and 1e6 * self.mflop > 500 * self.nnz:
            self._set(ordering=_ORDERINGS["nested-dissection"], entries=-1, mflop=-1)
            self._run(11)
        try:
            self._run(22)
        except np.linalg.LinAlgError:
            if not trial or kind != _POSITIVE_DEFINITE:
                raise
            self._kind, self._type = _HERMITIAN, -self._type  # the same arrays, the same analysis
            self._set_pivoting()
            self._run(22)

    def __del__(self):
        if getattr(self, "_parameters", None) is not None and self._handle[0] != 0:
            self._run(-1)

    def _set_pivoting(self):
        general, indefinite = self._type > 10, self._type in (-2, -4, 6)
        self._set(matching=general, scaling=general, pivoting=indefinite,
                  perturbation=13 if general else 8 if indefinite else 0)  # fmt: skip

    def _set(self, **entries):
        for name, value in entries.items():
            self._parameters[_PLACES[name]] = value

    def _get(self, name):
        return int(self._parameters[_PLACES[name]])

    def _run(self, step, b=None, x=None):
        error, nothing = integer(), np.zeros(1, dtype=np.int32)
        columns = 1 if b is None or b.ndim == 1 else b.shape[1]
        with self._lock:
            call("PARDISO", self._handle, 1, 1, self._type, step, self.shape[0], self._values, self._pattern.start,
                 self._pattern.column, nothing, columns, self._parameters, 0, nothing if b is None else b,
                 nothing if x is None else x, error)  # fmt: skip
        if error.value != 0 and step != -1:
            kind, text = _ERRORS.get(error.value, (RuntimeError, f"error {error.value} of PARDISO"))
            raise kind(text)

    def refactor(self, values):
        """Factors another matrix of the same pattern, without another analysis. `values` is a matrix of that pattern, or
        an array in the order of the first matrix's data; where that was neither of compressed rows nor columns, in the
        order of its tocsr()."""
        with self._lock:
            self._values = self._pattern.values_like(values, self.dtype)
            self._run(22)
        return self

    def solve(self, b, trans="N"):
        """A^-1 b for one vector or the columns of an array; with trans "T" of the transpose, with "H" of the conjugate
        transpose."""
        if trans not in ("N", "T", "H"):
            raise ValueError(f"trans: 'N', 'T' or 'H' is expected, not {trans!r}")
        b = np.asarray(b)
        if b.ndim not in (1, 2) or b.shape[0] != self.shape[0]:
            raise ValueError(f"{self.shape[0]} rows are expected, not an array of shape {b.shape}")
        if b.dtype.kind == "c" and self.dtype.kind != "c":
            return self._solve_parts(b, trans)
        # A^H y = b is A^T conj(y) = conj(b), and the transpose of a Hermitian matrix is its conjugate.
        self_adjoint = self._kind in (_POSITIVE_DEFINITE, _HERMITIAN)
        conjugate = self.dtype.kind == "c" and trans == ("T" if self_adjoint else "H")
        transposed = self._kind == _GENERAL and (trans != "N") != self._pattern.by_columns
        given = np.array(b, dtype=self.dtype, order="F")
        if conjugate:
            np.conj(given, out=given)
        x = np.empty_like(given)
        if given.size:
            with self._lock:
                if self._handle[0] != 0:  # a diagonal matrix has a mark there
                    self._set(transposed=transposed)
                self._run(33, given, x)
                if self._get("out_of_core") and np.isnan(x).any() and np.isfinite(given).all():
                    raise OSError(_ERRORS[-11][1])  # step 33 tells it so
        return np.conj(x, out=x) if conjugate else x

    def _solve_parts(self, b, trans):
        """A real matrix, complex right-hand sides."""
        parts = np.column_stack([b.real, b.imag]) if b.ndim == 1 else np.hstack([b.real, b.imag])
        x = self.solve(parts, trans)
        half = x.shape[1] // 2
        x = x[:, :half] + 1j * x[:, half:]
        return x[:, 0] if b.ndim == 1 else x

    @property
    def inertia(self):
        """Signs of the pivots; None where they tell nothing: of general and complex symmetric matrices."""
        if self._kind == _POSITIVE_DEFINITE:
            return Inertia(self.shape[0], 0)
        if self._type in (11, 13, 6):
            return None
        return Inertia(self._get("positive"), self._get("negative"))

    @property
    def nnz(self):
        """Entries of the factors, diagonal blocks whole."""
        return max(self._get("entries"), self.shape[0])

    @property
    def mflop(self):
        """Millions of operations of a factorisation."""
        return max(self._get("mflop"), 0)

    @property
    def perturbed(self):
        """Pivots that were too small and have been replaced; solutions are refined then."""
        return self._get("perturbed")

    @property
    def refined(self):
        """Steps of refinement of the last solution."""
        return self._get("refined")

    def __repr__(self):
        return f"<nxl.Factorization: {self._kind}, {self.dtype}, {self.shape[0]} rows, {self.nnz} entries>"


def splu(A, **options):
    """Factors a square sparse matrix: L U with rows matched to columns, and pivots within supernodes.

    A: a sparse array of SciPy's, real or complex. Compressed rows and columns are read as they stand.
    ordering: "nested-dissection", "minimum-degree" or "constrained"; "auto" (default) takes minimum degree where it is
        good enough. Many factorisations with one analysis may repay nested dissection.
    refine: steps of refinement of each solution; by default two where pivots were replaced.
    out_of_core: True keeps the factors on files, "auto" where memory does not do for them.
    Raises LinAlgError where A is structurally singular, MemoryError, OSError of files, ValueError of a bad matrix.
    """
    return Factorization(A, _matrix.compressed(A), _GENERAL, "full", **options)


def _symmetric(A, triangle, conjugate):
    a = _matrix.compressed(A)
    if triangle is None:
        if not _matrix.is_self_adjoint(a, conjugate):
            raise ValueError("the matrix is not " + ("Hermitian" if conjugate else "symmetric")
                             + "; triangle='lower' or 'upper' reads one of its triangles")  # fmt: skip
        return a, "upper" if a.format == "csr" else "lower"  # what is the upper one of its rows
    if triangle not in ("lower", "upper"):
        raise ValueError(f"triangle: 'lower' or 'upper' is expected, not {triangle!r}")
    return a, triangle


def cholesky(A, *, triangle=None, **options):
    """Factors a symmetric or Hermitian positive definite matrix: L L^H.

    triangle: "lower" or "upper" reads that one alone; by default A is whole, and is checked to be symmetric.
    Other options are those of splu. Raises LinAlgError where A is not positive definite.
    """
    a, part = _symmetric(A, triangle, conjugate=_is_complex(A))
    return Factorization(A, a, _POSITIVE_DEFINITE, part, **options)


def ldl(A, *, triangle=None, hermitian=True, **options):
    """Factors a symmetric or Hermitian matrix, definite or not: L D L^H with pivots of order 1 and 2.

    triangle: as of cholesky.
    hermitian: False for a complex symmetric matrix: L D L^T.
    Other options are those of splu.
    """
    a, part = _symmetric(A, triangle, conjugate=hermitian and _is_complex(A))
    return Factorization(A, a, _HERMITIAN if hermitian else _SYMMETRIC, part, **options)


def _is_complex(a):
    return np.dtype(getattr(a, "dtype", np.float64)).kind == "c"


def _factor_by_look(A, **options):
    """Cholesky's factors where the matrix allows for them, else L D L^H where it is symmetric, else L U."""
    a = _matrix.compressed(A)
    if not _matrix.is_self_adjoint(a, _is_complex(a)):
        return Factorization(A, a, _GENERAL, "full", **options)
    part = "upper" if a.format == "csr" else "lower"
    return Factorization(A, a, _POSITIVE_DEFINITE, part, trial=True, **options)


def _solves(A, x, b):
    """Whether the residual is small beside b; NaN is not."""
    return np.abs(A @ x - b).max(initial=0.0) <= 1e-8 * np.abs(b).max(initial=0.0)


def spsolve(A, b, *, assume_a=None, **options):
    """Solves A x = b.

    A: a square sparse array of SciPy's, real or complex; b: a vector, an array of columns, or a sparse array, which makes
    x one, too.
    assume_a: "gen", "sym", "her" or "pos" says what A is, and saves the look; symmetric ones are then read by their upper
    triangle. By default A is looked at: symmetric and Hermitian matrices with a positive diagonal are tried as definite.
    Other options are those of splu. Warns (AccuracyWarning) of a solution with a large residual.
    """
    makers = {
        None: _factor_by_look,
        "gen": splu,
        "sym": lambda a, **o: ldl(a, triangle="upper", hermitian=False, **o),
        "her": lambda a, **o: ldl(a, triangle="upper", **o),
        "pos": lambda a, **o: cholesky(a, triangle="upper", **o),
    }
    if assume_a not in makers:
        raise ValueError(f"assume_a: 'gen', 'sym', 'her' or 'pos' is expected, not {assume_a!r}")
    sparse = hasattr(b, "tocsr")
    given = b.toarray() if sparse else np.asarray(b)
    factors = makers[assume_a](A, **options)
    x = factors.solve(given)
    if factors.perturbed > 0 and assume_a in (None, "gen") and not _solves(A, x, given):
        warnings.warn("the matrix is singular to working precision", AccuracyWarning, stacklevel=2)
    return type(b)(x) if sparse else x
