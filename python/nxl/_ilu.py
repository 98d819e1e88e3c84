"""Incomplete LU factors, and their application by levels: rows that do not need each other are solved together."""

import numpy as np

from . import _matrix
from ._library import call, integer

_ERRORS = {
    -101: "a row has no entry, or none on the diagonal",
    -102: "a pivot is zero or small; replace= sets what takes its place",
    -103: "a pivot is small; replace= sets what takes its place",
}


def _ranges(first, count):
    """All numbers of the ranges [first, first + count), one range after the other."""
    ends = np.cumsum(count)
    return np.repeat(first - (ends - count), count) + np.arange(ends[-1] if ends.size else 0)


def _levels(start, column):
    """Rows by levels: those without entries, then those whose columns are among the rows before, and so on."""
    by_column, rows, _ = _matrix.transposed_order(start, column)
    waiting = np.diff(start)
    front = np.flatnonzero(waiting == 0)
    levels = []
    while front.size:
        levels.append(front)
        released, times = np.unique(rows[_ranges(by_column[front], by_column[front + 1] - by_column[front])],
                                    return_counts=True)  # fmt: skip
        waiting[released] -= times
        front = released[waiting[released] == 0]
    return levels


class _Triangle:
    """Rows of a triangle without its diagonal, which is given, or ones."""

    def __init__(self, start, column, value, diagonal=None):
        self.steps = []
        for rows in _levels(start, column):
            count = start[rows + 1] - start[rows]
            entries = _ranges(start[rows], count)
            self.steps.append((rows, np.cumsum(count) - count, column[entries], value[entries],
                               None if diagonal is None else diagonal[rows]))  # fmt: skip

    def solve(self, b):
        x = np.empty_like(b)
        for rows, first, column, value, diagonal in self.steps:
            part = b[rows]
            if column.size:
                part = part - np.add.reduceat(value * x[column], first)
            x[rows] = part if diagonal is None else part / diagonal
        return x


class IncompleteLU:
    """A sparse L U close to A: a preconditioner for cg and gmres."""

    dtype = np.dtype(np.float64)

    def __init__(self, start, column, value):
        n = start.size - 1
        self.shape, self.nnz = (n, n), value.size
        self._rows = start, column, value
        row = np.repeat(np.arange(n), np.diff(start))
        lower, upper = column < row, column > row
        diagonal = np.empty(n)
        diagonal[row[column == row]] = value[column == row]

        def part(kept, own):
            pointers = np.zeros(n + 1, dtype=np.int64)
            np.cumsum(np.bincount(row[kept], minlength=n), out=pointers[1:])
            return _Triangle(pointers, column[kept], value[kept], own)

        self._lower, self._upper = part(lower, None), part(upper, diagonal)

    def solve(self, b):
        """U^-1 L^-1 b, for a vector."""
        b = np.asarray(b, dtype=np.float64)
        if b.shape != self.shape[:1]:
            raise ValueError(f"{self.shape[0]} elements are expected, not an array of shape {b.shape}")
        return self._upper.solve(self._lower.solve(b))

    def factors(self):
        """L, with its unit diagonal, and U as sparse arrays of SciPy's."""
        from scipy import sparse

        start, column, value = self._rows
        both = sparse.csr_array((value, column, start), shape=self.shape)
        return sparse.csr_array(sparse.tril(both, -1) + sparse.eye(self.shape[0])), sparse.csr_array(sparse.triu(both))

    def __repr__(self):
        return f"<nxl.IncompleteLU: {self.shape[0]} rows, {self.nnz} entries>"


def _real_rows(A):
    a = _matrix.compressed(A)
    if np.dtype(a.dtype).kind == "c":
        raise TypeError("incomplete factors are of real matrices")
    a = a.tocsr()
    a.sort_indices()
    return a, _matrix.values_of(a.data, np.float64), a.indptr.astype(np.int32) + np.int32(1), a.indices + np.int32(1)


def _options(replace):
    """ipar and dpar, silent; no pivot is replaced unless it is said by what."""
    ipar, dpar = np.zeros(128, dtype=np.int32), np.zeros(128)
    ipar[1], ipar[6], ipar[30] = 6, 1, replace is not None
    dpar[30], dpar[31] = 1e-16, replace or 0.0
    return ipar, dpar


def _check(error):
    if error.value == -104:
        raise MemoryError("there is not enough memory")
    if error.value < 0:
        raise np.linalg.LinAlgError(_ERRORS.get(error.value, f"error {error.value}"))


def ilu0(A, *, replace=None):
    """Incomplete factors in the pattern of a real A, whose diagonal is stored.

    replace: what takes the place of a pivot of 0; by default that is a LinAlgError.
    """
    a, values, start, column = _real_rows(A)
    ipar, dpar = _options(replace)
    factors, error = np.empty_like(values), integer()
    call("DCSRILU0", a.shape[0], values, start, column, factors, ipar, dpar, error)
    _check(error)
    return IncompleteLU(a.indptr, a.indices, factors)


def ilut(A, *, drop=1e-3, fill=10, replace=None):
    """Incomplete factors of a real A by size.

    drop: what is smaller, relative to the root mean square of its row, is left out.
    fill: the most entries that a row keeps on either side of its diagonal.
    replace: small pivots become this times that mean; by default they are a LinAlgError. Not below drop.
    """
    if not drop >= 0 or fill < 0 or (replace is not None and not replace >= drop):
        raise ValueError("drop >= 0, fill >= 0 and replace >= drop are expected")
    a, values, start, column = _real_rows(A)
    n = a.shape[0]
    fill = min(int(fill), n - 1)
    room = n * (2 * fill + 1)
    if room > _matrix.LARGEST:
        raise ValueError("fill: the factors may have more entries than 32-bit positions reach")
    ipar, dpar = _options(replace)
    dpar[30] = drop if replace is None else replace
    factors, factor_column = np.empty(room), np.empty(room, dtype=np.int32)
    factor_start, error = np.empty(n + 1, dtype=np.int32), integer()
    call("DCSRILUT", n, values, start, column, factors, factor_start, factor_column, float(drop), fill, ipar, dpar,
         error)  # fmt: skip
    _check(error)
    entries = factor_start[-1] - 1
    return IncompleteLU(factor_start - 1, factor_column[:entries] - 1, factors[:entries].copy())
