"""Fits with and without bounds, and the numeric Jacobian, against known solutions and SciPy."""

import numpy as np
import pytest
import scipy.optimize as so

import nxl

T = np.linspace(0.0, 4.0, 30)
BOUNDS = {
    "none": (-np.inf, np.inf),
    "at the solution's sides": ([0.0, 0.0, -1.0], [5.0, 5.0, 1.0]),
    "one active": ([0.0, 0.0, 0.6], [5.0, 5.0, np.inf]),
    "one fixed": ([-np.inf, 1.0, -np.inf], [np.inf, 1.0, np.inf]),
}


def decay(x):
    return x[0] * np.exp(-x[1] * T) + x[2] - (2.0 * np.exp(-0.8 * T) + 0.5 + 0.01 * np.cos(9.0 * T))


def slopes(x):
    return np.column_stack([np.exp(-x[1] * T), -x[0] * T * np.exp(-x[1] * T), np.ones_like(T)])


@pytest.mark.parametrize("jac", [None, slopes])
@pytest.mark.parametrize("bounds", BOUNDS)
def test_fits_as_scipy_does(bounds, jac):
    lower, upper = (np.broadcast_to(bound, 3) for bound in BOUNDS[bounds])
    free = lower < upper

    def inside(x):
        assert (lower <= x).all() and (x <= upper).all()
        return decay(x)

    fit = nxl.least_squares(inside, np.ones(3), jac, (lower, upper))

    def of_free(y):
        x = np.ones(3)
        x[free] = y
        return decay(x)

    reference = so.least_squares(of_free, np.ones(free.sum()), bounds=(lower[free], upper[free]), xtol=1e-12, ftol=1e-12)
    assert fit.success and np.allclose(fit.x[free], reference.x, rtol=1e-5, atol=1e-6)
    assert fit.norm == pytest.approx(np.linalg.norm(decay(fit.x)), rel=1e-9)
    assert np.array_equal(fit.fun, decay(fit.x)) and fit.jac.shape == (30, 3)


@pytest.mark.parametrize("x", [[1.0, 2.0, -3.0], [0.0, 0.0, 0.0]])
def test_jacobian_is_that_of_the_formula_on_bounds_too(x):
    x = np.array(x)
    for bounds, tolerance in (((-np.inf, np.inf), 1e-8), ((x, np.inf), 1e-3), ((x - 1e-7, x), 1e-3)):
        assert np.allclose(nxl.jacobian(decay, x, bounds=bounds), slopes(x), rtol=tolerance, atol=tolerance)


def test_bad_calls_and_faults_of_the_function_come_out():
    with pytest.raises(ValueError, match="bounds"):
        nxl.least_squares(decay, np.ones(3), bounds=(1.0, 0.0))
    with pytest.raises(ValueError, match="sizes"):
        nxl.least_squares(lambda x: x[:1], np.ones(3))
    with pytest.raises(ZeroDivisionError):
        nxl.least_squares(lambda x: [1 / 0] * 3, np.ones(3))
    failed = nxl.least_squares(lambda x: np.full(3, np.nan), np.ones(3))
    assert not failed.success and failed.stop_code == -4
