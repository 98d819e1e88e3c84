"""Conjugate gradients and GMRES by reverse communication: products and preconditioners are the caller's, in Python.

A complex system of n rows is iterated as the real one of 2n that its real and imaginary parts make: complex vectors seen
as pairs of doubles, so that inner products are the real parts of the complex ones.
"""

import numpy as np

from . import _matrix
from ._library import call, integer

_PRODUCT, _TEST, _PRECONDITION, _IS_ZERO = 1, 2, 3, 4
_LIMIT, _TEST_LIMIT, _TEST_CALLER, _PRECONDITIONED = 4, 7, 9, 10  # of ipar, from 0


def _operator(a, names):
    """What applies `a` to a vector: one of the methods of these names, the product, or `a` itself."""
    for name in names:
        if hasattr(a, name):
            return getattr(a, name)
    if hasattr(a, "__matmul__"):
        return lambda v: a @ v
    if callable(a):
        return a
    raise TypeError(f"a matrix, an operator or a function is expected, not {type(a).__name__}")


class _System:
    """A x = b with everything seen as real vectors."""

    def __init__(self, A, b, x0, M, rtol, atol):
        b = np.asarray(b)
        if b.ndim != 1 or b.size == 0:
            raise ValueError(f"b: a vector is expected, not an array of shape {b.shape}")
        if not rtol >= 0 or not atol >= 0:
            raise ValueError("rtol and atol: numbers from 0 on are expected")
        if getattr(A, "shape", (b.size, b.size)) != (b.size, b.size):
            raise ValueError(f"a matrix of {b.size} rows and columns is expected, not one of shape {A.shape}")
        self.dtype = _matrix.scalar_type(b, *[part for part in (A, x0) if getattr(part, "dtype", None) is not None])
        self.n = b.size * (2 if self.dtype == np.complex128 else 1)
        self.b = np.ascontiguousarray(b, dtype=self.dtype).view(np.float64)
        x = np.zeros(b.size, self.dtype) if x0 is None else np.array(x0, dtype=self.dtype)
        if x.shape != b.shape:
            raise ValueError(f"x0: an array of shape {b.shape} is expected, not {x.shape}")
        self.x = x.view(np.float64)
        self._multiply = _operator(A, ("matvec",))
        self._precondition = None if M is None else _operator(M, ("solve", "matvec"))
        self.target = max(rtol * np.linalg.norm(self.b), atol)
        self.preconditioned = M is not None

    def _apply(self, operator, source, to):
        to[:] = np.ascontiguousarray(operator(source.view(self.dtype)), dtype=self.dtype).view(np.float64)

    def answer(self, request, source, to):
        self._apply(self._multiply if request == _PRODUCT else self._precondition, source, to)

    def residual(self):
        r = np.empty_like(self.b)
        self._apply(self._multiply, self.x, r)
        return float(np.linalg.norm(self.b - r))

    def solution(self):
        return self.x.view(self.dtype)


def _run(system, name, tmp, limit, **more):
    """Arrays of a run with defaults, silent, with the caller's own test."""
    ipar, dpar, request = np.zeros(128, dtype=np.int32), np.zeros(128), integer()
    arguments = (system.n, system.x, system.b, request, ipar, dpar, tmp)
    call(name + "_INIT", *arguments)
    ipar[5] = ipar[6] = 0  # no reports
    ipar[_LIMIT], ipar[_TEST_LIMIT], ipar[_TEST_CALLER] = limit, 1, 1
    ipar[_PRECONDITIONED] = system.preconditioned
    for place, value in more.items():
        ipar[int(place[1:])] = value
    call(name + "_CHECK", *arguments)
    return request, ipar, dpar, arguments


def cg(A, b, x0=None, *, rtol=1e-5, atol=0.0, maxiter=None, M=None, callback=None):
    """Solves A x = b, A symmetric or Hermitian positive definite, by conjugate gradients.

    A: a sparse or dense array, a LinearOperator, or a function that gives A v.
    rtol, atol: done when |b - A x| <= max(rtol |b|, atol); the residual is that of the recurrence.
    maxiter: most iterations [10 n].
    M: a preconditioner close to A^-1: one of ilu0, a Factorization, an operator, a function; symmetric positive definite.
    callback: called with x after each iteration.
    Returns x and info: 0 done, above 0 the iterations made without, -1 A or M is not positive definite.
    """
    system = _System(A, b, x0, M, rtol, atol)
    n = system.n
    limit = 10 * n if maxiter is None else int(maxiter)
    p, ap, r, z = tmp = np.zeros((4, n))
    request, ipar, _, arguments = _run(system, "DCG", tmp, limit)
    seen = 0
    while True:
        call("DCG", *arguments)
        if request.value == _PRODUCT:
            system.answer(_PRODUCT, p, ap)
        elif request.value == _PRECONDITION:
            system.answer(_PRECONDITION, r, z)
        else:
            if callback is not None and ipar[3] >= seen:
                seen = ipar[3] + 1
                callback(system.solution())
            if np.linalg.norm(r) <= system.target:
                return system.solution(), 0
            if request.value != _TEST:
                return system.solution(), -1 if request.value < 0 else max(int(ipar[3]), 1)


def gmres(A, b, x0=None, *, rtol=1e-5, atol=0.0, restart=30, maxiter=None, M=None, callback=None):
    """Solves A x = b for a square A by flexible GMRES: M may change from one application to the next.

    A, rtol, atol: as of cg; at the end the residual has been evaluated.
    restart: iterations until the space is given up; its vectors take 2 restart n doubles.
    maxiter: most iterations over all restarts [10 n].
    M: a preconditioner close to A^-1: one of ilu0 or ilut, a Factorization, an operator, a function.
    callback: called with the norm of the residual after each iteration.
    Returns x and info: 0 done, above 0 the iterations made without, -1 a breakdown.
    """
    system = _System(A, b, x0, M, rtol, atol)
    n = system.n
    restart = max(1, min(int(restart), n))
    room = (2 * restart + 1) * n + restart * (restart + 9) // 2 + 1
    if room > _matrix.LARGEST:
        raise ValueError("restart: 32-bit positions do not reach over so many vectors")
    tmp = np.empty(room)
    limit, made, before = 10 * n if maxiter is None else int(maxiter), 0, np.inf
    while True:  # rounding lets the residual of the recurrence fall below the true one: each run begins with that
        true = system.residual()
        if true <= system.target:
            return system.solution(), 0
        if made >= limit or not true < 0.5 * before:
            return system.solution(), max(made, 1) if np.isfinite(true) else -1
        before = true
        steps, broken = _gmres_run(system, tmp, restart, limit - made, callback)
        made += steps
        if broken:
            return system.solution(), 0 if system.residual() <= system.target else -1


def _gmres_run(system, tmp, restart, limit, callback):
    """Iterates from x on, and moves x. Returns the iterations, and whether the space is exhausted."""
    n, iterations = system.n, integer()
    request, ipar, dpar, arguments = _run(system, "DFGMRES", tmp, limit, _11=1, _14=restart)
    while True:
        call("DFGMRES", *arguments)
        if request.value in (_PRODUCT, _PRECONDITION):
            source, to = ipar[21] - 1, ipar[22] - 1
            system.answer(request.value, tmp[source : source + n], tmp[to : to + n])
            continue
        if callback is not None and ipar[3] > 0:
            callback(float(dpar[4]))
        if request.value != _TEST or dpar[4] <= system.target:
            break
    exhausted = request.value < 0 or (request.value == 0 and ipar[3] < limit)
    call("DFGMRES_GET", *arguments, iterations)
    return iterations.value, exhausted
