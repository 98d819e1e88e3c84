"""What the solvers read of a matrix: compressed rows counted from 1, of one triangle or of all, with a whole diagonal."""

import numpy as np

LARGEST = np.iinfo(np.int32).max


def compressed(a):
    """A sparse matrix as compressed rows or columns, real or complex double, without duplicates, indices ascending."""
    if getattr(a, "format", None) not in ("csr", "csc"):
        if not hasattr(a, "tocsr"):
            raise TypeError(f"a sparse array is expected, as of scipy.sparse, not {type(a).__name__}")
        a = a.tocsr()
    if len(a.shape) != 2 or a.shape[0] != a.shape[1] or a.shape[0] == 0:
        raise ValueError(f"a square matrix is expected, not one of shape {a.shape}")
    if a.nnz + a.shape[0] >= LARGEST:
        raise ValueError("the matrix has more entries than 32-bit positions reach")
    if a.has_canonical_format:
        return a
    sorted_ = a.copy()
    sorted_.sum_duplicates()
    return sorted_


def order_of_entries(given, canonical):
    """Where the entries of a canonical matrix stand in the data of the one that it was made of; None: in the same places.
    Of one with duplicates there is none, and an array of size 0 says so."""
    if canonical is given or getattr(given, "format", None) != canonical.format:
        return None
    if canonical.nnz != given.nnz:
        return np.empty(0, dtype=np.intp)
    numbered = given.copy()
    numbered.data = np.arange(given.nnz, dtype=np.float64)
    numbered.sort_indices()
    return numbered.data.astype(np.intp)


def scalar_type(*arrays):
    """complex128 if one of them is complex, else float64."""
    return np.complex128 if any(np.dtype(a.dtype).kind == "c" for a in arrays) else np.float64


def values_of(data, dtype):
    """Finite numbers of that type; the array itself where it is so already."""
    data = np.ascontiguousarray(data, dtype=dtype)
    if not np.isfinite(data).all():
        raise ValueError("the matrix has entries that are infinite or no numbers")
    return data


def transposed_order(start, index):
    """Of a matrix in compressed rows: pointers and columns of its transpose, and where each entry comes from."""
    n = start.size - 1
    order = np.argsort(index, kind="stable")
    rows = np.repeat(np.arange(n, dtype=np.int32), np.diff(start))
    new_start = np.zeros(n + 1, dtype=np.int64)
    np.cumsum(np.bincount(index, minlength=n), out=new_start[1:])
    return new_start, rows[order], order


def is_self_adjoint(a, conjugate):
    """Whether A = A^T, or A^H, entry for entry."""
    other = a.T.asformat(a.format)  # by counting, so its indices ascend, too
    if not (np.array_equal(other.indptr, a.indptr) and np.array_equal(other.indices, a.indices)):
        return False
    return np.array_equal(other.data.conj() if conjugate else other.data, a.data)


class Pattern:
    """Rows counted from 1, and how the values of a matrix are put into them.

    `part` is "full", "upper" or "lower": what is read of a matrix in compressed rows; of one in compressed columns, whose
    arrays are the rows of its transpose, it is the other triangle. What is kept is the upper one. `order` is that of the
    entries in the data of whoever gives values later: order_of_entries().
    """

    def __init__(self, a, part, conjugate, order=None):
        self.order = order
        self.format, self.nnz, n = a.format, a.nnz, a.shape[0]
        self.source = (a.indptr, a.indices)
        self.by_columns = a.format == "csc"
        if self.by_columns and part != "full":
            part = "lower" if part == "upper" else "upper"
        # The triangle of the transpose of a Hermitian matrix has conjugate values.
        self.conjugated = conjugate and self.by_columns != (part == "lower")
        coordinates = a.tocoo(copy=False)
        rows = coordinates.col if self.by_columns else coordinates.row
        start, index, place = a.indptr, a.indices, None
        if part == "lower":
            place = np.argsort(index, kind="stable")
            rows, index = index.take(place), rows.take(place)
        if part != "full":
            kept = np.flatnonzero(index >= rows)
            place = kept if place is None else place.take(kept)
            rows, index = rows.take(kept), index.take(kept)
        diagonal = np.flatnonzero(index == rows)
        self.padded = diagonal.size < n
        if self.padded:
            start, index, place = self._with_diagonal(n, rows, index, place)
        elif part != "full":
            start = np.append(diagonal, index.size)  # a row of the triangle begins with its diagonal
        self.start = np.add(start, 1, dtype=np.int32, casting="unsafe")
        self.column = np.add(index, 1, dtype=np.int32, casting="unsafe")
        self.place = place

    @staticmethod
    def _with_diagonal(n, rows, index, place):
        missing = np.setdiff1d(np.arange(n), rows[index == rows])
        place = np.arange(index.size) if place is None else place
        rows = np.concatenate([rows, missing])
        index = np.concatenate([index, missing])
        place = np.concatenate([place, np.full(missing.size, -1)])
        order = np.lexsort((index, rows))
        start = np.append(0, np.cumsum(np.bincount(rows, minlength=n)))
        return start, index[order], place[order]

    def gather(self, data, dtype):
        """The values in the order of `column`, from those of the matrix; 0 where only the diagonal wants an entry."""
        if self.padded:
            data = np.append(data, data.dtype.type(0))  # which -1 picks
        if self.place is not None:
            data = data.take(self.place)
        data = values_of(data, dtype)
        return data.conj() if self.conjugated else data

    def has_positive_diagonal(self, values):
        """Of the values that gather() has given for a triangle, whose rows begin with the diagonal."""
        return bool((values.take(self.start[:-1] - 1).real > 0).all())

    def values_like(self, a, dtype):
        """Values of an array in the order of the first matrix's data, or of a matrix of the same pattern."""
        if isinstance(a, (np.ndarray, list, tuple)):
            a = np.asarray(a)
            if self.order is not None and self.order.size != self.nnz:
                raise ValueError("the matrix had duplicate entries: values have to come as a matrix")
            if a.shape != (self.nnz,):
                raise ValueError(f"{self.nnz} values are expected, not an array of shape {a.shape}")
            return self.gather(a if self.order is None else a[self.order], dtype)
        a = compressed(a)
        if a.format != self.format:
            a = a.asformat(self.format)
            a.sort_indices()
        if not (np.array_equal(a.indptr, self.source[0]) and np.array_equal(a.indices, self.source[1])):
            raise ValueError("the matrix has another pattern than the one that was analysed")
        return self.gather(a.data, dtype)
