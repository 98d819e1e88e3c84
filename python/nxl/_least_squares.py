"""Nonlinear least squares by trust regions, and Jacobians by central differences, which keep inside the bounds."""

import ctypes
from dataclasses import dataclass

import numpy as np

from ._library import call, integer, library

_SUCCESS, _NO_MEMORY = 1501, 1503
_REASONS = {
    1: "the limit of iterations is reached",
    2: "the trust region has become too small",
    3: "the residual is as small as wanted",
    4: "the residual does not depend on the free variables",
    5: "the step is as small as wanted",
    6: "the model foretells no further change",
    -4: "the residual or its derivatives are not finite",
}


@dataclass
class Fit:
    """How a fit went."""

    x: np.ndarray  # the solution
    fun: np.ndarray  # residuals at x
    jac: np.ndarray  # derivatives at x or near it, m by n
    norm: float  # |fun|
    first_norm: float  # at the start
    iterations: int  # accepted steps
    nfev: int  # evaluations of the function, those for derivatives among them
    stop_code: int
    message: str
    success: bool


class _Handle:
    """Owns a handle of one of the families."""

    def __init__(self, family, *arguments):
        self.family, self.pointer = family, ctypes.c_void_p()
        self.alive = False
        _expect(call(family + "_init", self.pointer, *arguments), "bad sizes, tolerances or bounds")
        self.alive = True

    def __call__(self, step, *arguments):
        return call(f"{self.family}_{step}", self.pointer, *arguments)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.alive:
            getattr(library, self.family + "_delete")(ctypes.byref(self.pointer))


def _expect(status, text):
    if status == _NO_MEMORY:
        raise MemoryError("there is not enough memory")
    if status != _SUCCESS:
        raise ValueError(text)


class _Function:
    """The caller's function, counted, at points that are inside the bounds."""

    def __init__(self, fun, args, lower, upper):
        self.fun, self.args, self.lower, self.upper, self.calls = fun, args, lower, upper, 0

    def __call__(self, x):
        self.calls += 1
        return np.array(self.fun(np.clip(x, self.lower, self.upper), *self.args), dtype=np.float64).ravel()


def _differentiate(function, x, jac, step):
    """jac = J(x). Where a point of a difference lies beyond a bound, the bound serves instead."""
    n, m = x.size, jac.shape[0]
    low, high, request = np.empty(m), np.empty(m), integer()
    with _Handle("djacobi", n, m, x, jac, float(step)) as handle:
        while True:
            _expect(handle("solve", low, high, request), "no Jacobian")
            if request.value == 0:
                break
            (low if request.value == 1 else high)[:] = function(x)
    reach = np.where(step < np.abs(x), step * np.abs(x), step)
    taken = np.minimum(x + reach, function.upper) - np.maximum(x - reach, function.lower)
    jac *= np.divide(2.0 * reach, taken, out=np.zeros(n), where=taken > 0)


def _bounds(bounds, n):
    lower, upper = (np.array(np.broadcast_to(bound, n), dtype=np.float64) for bound in bounds)
    if not (lower <= upper).all():
        raise ValueError("bounds: each lower bound is expected not to be above its upper one")
    return lower, upper


def jacobian(fun, x, *, step=1e-5, bounds=(-np.inf, np.inf), args=()):
    """The derivatives of fun at x, m by n, by central differences of relative step `step`; inside `bounds`."""
    x = np.array(x, dtype=np.float64).ravel()
    function = _Function(fun, args, *_bounds(bounds, x.size))
    jac = np.empty((function(x).size, x.size), order="F")
    _differentiate(function, x, jac, step)
    return jac


def least_squares(fun, x0, jac=None, bounds=(-np.inf, np.inf), *, args=(), max_iterations=1000, radius=0.0,
                  tolerances=(1e-15,) * 6, step=1e-5):  # fmt: skip
    """Makes |fun(x)| small, from x0 on.

    fun: fun(x, *args) gives m >= n residuals; wanted inside the bounds only.
    jac: jac(x, *args) gives their derivatives, m by n; by default central differences of relative step `step` do.
    bounds: lower and upper ones, numbers or arrays, infinite ones allowed; equal ones hold a variable.
    max_iterations: most accepted steps.
    radius: of the first trust region, relative to x0, at most 100; 0 takes 100.
    tolerances: least radius, |fun| that is small enough, columns that count as 0 and changes as none, least step, and two
        more without effect.
    Returns a Fit. Its success means that the run ended by itself, by a finite residual; a minimum is where one of the
    reasons 3 to 6 ended it.
    """
    x = np.array(x0, dtype=np.float64).ravel()
    lower, upper = _bounds(bounds, x.size)
    bounded = np.isfinite(lower).any() or np.isfinite(upper).any()
    np.clip(x, lower, upper, out=x)
    function, eps = _Function(fun, args, lower, upper), np.array(tolerances, dtype=np.float64)
    if eps.shape != (6,):
        raise ValueError("tolerances: six numbers are expected")
    f = function(x)
    n, m = x.size, f.size
    derivatives = np.zeros((m, n), order="F")

    def differentiate():
        if jac is None:
            _differentiate(function, x, derivatives, step)
        else:
            derivatives[:] = np.reshape(jac(np.clip(x, lower, upper), *args), (m, n))

    family = "dtrnlspbc" if bounded else "dtrnlsp"
    limits = (lower, upper) if bounded else ()
    request, status = integer(), _SUCCESS
    with _Handle(family, n, m, x, *limits, eps, int(max_iterations), 100, float(radius)) as handle:
        while request.value >= 0 and status == _SUCCESS:
            status = handle("solve", f, derivatives, request)
            if request.value == 1:
                f[:] = function(x)
            elif request.value == 2:
                differentiate()
        iterations, code, first, last = integer(), integer(), ctypes.c_double(), ctypes.c_double()
        handle("get", iterations, code, first, last)
    if status == _NO_MEMORY:
        raise MemoryError("there is not enough memory")
    return Fit(x, f, derivatives, last.value, first.value, iterations.value, function.calls, code.value,
               _REASONS.get(code.value, ""), 2 <= code.value <= 6)  # fmt: skip
