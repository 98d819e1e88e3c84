"""The sparse solvers of the Python package against SciPy and against what they are to fulfil."""

import inspect
import threading

import numpy as np
import pytest
import scipy.sparse as sp
import scipy.sparse.linalg as sl

import nxl

SIZE = 60


def matrix(kind, dtype, layout):
    """Of that kind and size, sparse, with some of its diagonal missing unless it is definite."""
    random = np.random.default_rng(7)
    a = sp.random(SIZE, SIZE, 0.08, random_state=random, data_rvs=random.standard_normal)
    if dtype == np.complex128:
        a = a + 1j * sp.random(SIZE, SIZE, 0.08, random_state=random, data_rvs=random.standard_normal)
    a = sp.csr_array(a) + sp.diags([2.0], [SIZE // 2], shape=a.shape) + sp.diags([3.0], [-SIZE // 2], shape=a.shape)
    adjoint = a.conj().T
    whole = {
        "general": a,
        "hermitian": a + adjoint,
        "symmetric": a + a.T,
        "definite": a @ adjoint + sp.eye(SIZE),
    }[kind]
    return sp.csr_array(whole).asformat(layout).astype(dtype)


def right_hand_sides(dtype, columns=3):
    b = np.random.default_rng(6).standard_normal((SIZE, columns, 2)) @ [1, 1j if dtype == np.complex128 else 0]
    return b.astype(dtype)


def residual(a, x, b):
    return np.abs(a @ x - b).max() / (np.abs(x).max() * np.abs(a).max() + np.abs(b).max())


MAKERS = {
    "splu": ("general", nxl.splu),
    "ldl": ("hermitian", nxl.ldl),
    "ldl_symmetric": ("symmetric", lambda a, **o: nxl.ldl(a, hermitian=False, **o)),
    "cholesky": ("definite", nxl.cholesky),
}
everything = [
    pytest.mark.parametrize("layout", ["csr", "csc", "coo"]),
    pytest.mark.parametrize("dtype", [np.float64, np.complex128]),
    pytest.mark.parametrize("name", MAKERS),
]


def each(test):
    for mark in everything:
        test = mark(test)
    return test


@each
def test_factors_solve_with_the_matrix_and_its_transposes(name, dtype, layout):
    kind, make = MAKERS[name]
    a, b = matrix(kind, dtype, layout), right_hand_sides(dtype)
    kept = a.copy()
    factors = make(a)
    for trans, same in {"N": a, "T": a.T, "H": a.conj().T}.items():
        assert residual(same, factors.solve(b, trans), b) < 1e-12
    x = factors.solve(b[:, 1])
    assert x.shape == (SIZE,) and x.dtype == dtype and residual(a, x, b[:, 1]) < 1e-12
    assert residual(a, factors.solve(b[::-1, ::2]), b[::-1, ::2]) < 1e-12  # strides of the caller's
    if name in ("ldl", "cholesky"):
        values = np.linalg.eigvalsh(a.toarray())
        assert factors.inertia == ((values > 0).sum(), (values < 0).sum())
    assert (a != kept).nnz == 0


@each
def test_refactors_by_values_and_by_matrix(name, dtype, layout):
    kind, make = MAKERS[name]
    a, b = matrix(kind, dtype, layout), right_hand_sides(dtype)
    factors = make(a)
    for other in (a * 3.0, a * 0.5):
        values = other.asformat("csr" if layout == "coo" else layout).data
        assert residual(other, factors.refactor(values).solve(b), b) < 1e-12
        assert residual(other, factors.refactor(other).solve(b), b) < 1e-12
    with pytest.raises(ValueError, match="pattern"):
        factors.refactor(sp.csr_array(sp.eye(SIZE)))
    with pytest.raises(ValueError, match="values"):
        factors.refactor(np.ones(3))


@pytest.mark.parametrize("triangle", ["lower", "upper"])
@pytest.mark.parametrize("dtype", [np.float64, np.complex128])
@pytest.mark.parametrize("layout", ["csr", "csc"])
def test_one_triangle_is_enough(triangle, dtype, layout):
    part = sp.tril if triangle == "lower" else sp.triu
    for make, kind in ((nxl.cholesky, "definite"), (nxl.ldl, "hermitian")):
        a, b = matrix(kind, dtype, "csr"), right_hand_sides(dtype)
        assert residual(a, make(sp.csr_array(part(a)).asformat(layout), triangle=triangle).solve(b), b) < 1e-12


@pytest.mark.parametrize("kind", ["general", "hermitian", "symmetric", "definite"])
@pytest.mark.parametrize("dtype", [np.float64, np.complex128])
def test_spsolve_looks_at_the_matrix(kind, dtype):
    a, b = matrix(kind, dtype, "csc"), right_hand_sides(dtype)
    expected = np.linalg.solve(a.toarray(), b)
    for x in (nxl.spsolve(a, b), nxl.spsolve(a, b, ordering="nested-dissection", refine=2)):
        assert np.allclose(x, expected, rtol=1e-9, atol=1e-11)
    sparse = nxl.spsolve(a, sp.csc_array(b))
    assert sp.issparse(sparse) and np.allclose(sparse.toarray(), expected, rtol=1e-9, atol=1e-11)
    if dtype == np.float64:  # complex right-hand sides of a real matrix
        assert np.allclose(nxl.spsolve(a, b[:, 0] * (1 + 2j)), expected[:, 0] * (1 + 2j))


def test_bad_matrices_are_refused():
    with pytest.raises(np.linalg.LinAlgError):
        nxl.cholesky(matrix("hermitian", np.float64, "csr"))
    with pytest.raises(ValueError, match="not symmetric"):
        nxl.ldl(matrix("general", np.float64, "csr"))
    with pytest.raises(np.linalg.LinAlgError, match="structurally singular"):
        nxl.splu(sp.csr_array(np.diag([1.0, 1.0], 1)))
    with pytest.raises(ValueError, match="square"):
        nxl.splu(sp.csr_array(np.ones((2, 3))))
    with pytest.raises(ValueError, match="no numbers"):
        nxl.splu(sp.csr_array(np.array([[np.nan, 1.0], [1.0, 1.0]])))
    with pytest.raises(TypeError, match="ndarray"):
        nxl.splu(np.eye(2))
    with pytest.raises(ValueError, match="rows"):
        nxl.splu(matrix("general", np.float64, "csr")).solve(np.ones(3))
    with pytest.warns(nxl.AccuracyWarning):
        nxl.spsolve(sp.csr_array(np.ones((2, 2))), [1.0, 2.0])


def test_threads_share_factors_and_leave_the_interpreter_to_others():
    a = sp.csr_array(sp.kron(sp.eye(40), matrix("definite", np.float64, "csr")))
    factors, wrong = nxl.cholesky(a), []

    def work(seed):
        b = np.random.default_rng(seed).standard_normal(a.shape[0])
        for trans in "NTNT":
            if residual(a, factors.solve(b, trans), b) > 1e-13:
                wrong.append(seed)

    threads = [threading.Thread(target=work, args=(seed,)) for seed in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not wrong


@pytest.mark.parametrize("dtype", [np.float64, np.complex128])
def test_iterations_end_at_the_tolerance_in_as_many_steps_as_scipys(dtype):
    a, b = matrix("definite", dtype, "csr"), right_hand_sides(dtype)[:, 0]
    counts = {"nxl": 0, "scipy": 0}

    def count(who):
        def step(_):
            counts[who] += 1

        return step

    x, info = nxl.cg(a, b, rtol=1e-9, callback=count("nxl"))
    assert info == 0 and np.linalg.norm(b - a @ x) <= 1.01e-9 * np.linalg.norm(b)
    name = "rtol" if "rtol" in inspect.signature(sl.cg).parameters else "tol"  # before SciPy 1.12
    sl.cg(a, b, **{name: 1e-9}, atol=0.0, callback=count("scipy"))
    assert abs(counts["nxl"] - counts["scipy"]) <= 2
    exact, info = nxl.cg(a, b, rtol=1e-9, M=nxl.cholesky(a), maxiter=3)
    assert info == 0 and residual(a, exact, b) < 1e-9
    assert nxl.cg(a, b, rtol=1e-14, maxiter=2)[1] == 2
    assert nxl.cg(-a, b)[1] == 0 and nxl.cg(matrix("hermitian", dtype, "csr"), 0 * b)[1] == 0
    for restart in (5, 200):
        x, info = nxl.gmres(sl.aslinearoperator(a), b, rtol=1e-9, restart=restart, maxiter=5000)
        assert info == 0 and np.linalg.norm(b - a @ x) <= 1e-9 * np.linalg.norm(b)
    assert nxl.gmres(lambda v: a @ v, b, rtol=1e-14, maxiter=3)[1] == 3


def grid(side):
    line = sp.diags([-1.5, 2.6, -1.0], [-1, 0, 1], shape=(side, side))
    return sp.csr_array(sp.kron(sp.eye(side), line) + sp.kron(line, sp.eye(side)))


def test_incomplete_factors_are_applied_and_help():
    a = grid(20)
    b = np.random.default_rng(2).standard_normal(a.shape[0])
    counts = []
    for m in (None, nxl.ilu0(a), nxl.ilut(a, drop=1e-4, fill=20)):
        steps = []
        x, info = nxl.gmres(a, b, rtol=1e-10, M=m, callback=steps.append)
        assert info == 0 and residual(a, x, b) < 1e-10
        counts.append(len(steps))
        if m is not None:
            low, up = m.factors()
            assert np.allclose(low @ (up @ m.solve(b)), b)
    assert counts[0] > 2 * counts[1] > 2 * counts[2]
    low, up = nxl.ilu0(a).factors()
    difference = abs(low @ up - a)
    assert difference[a.nonzero()].max() < 1e-14  # A is met on its own pattern
    zero_pivot = sp.csr_array(([0.0, 1.0, 1.0, 1.0], ([0, 0, 1, 1], [0, 1, 0, 1])))
    for make in (nxl.ilu0, nxl.ilut):
        with pytest.raises(np.linalg.LinAlgError, match="pivot"):
            make(zero_pivot)
        assert np.isfinite(make(zero_pivot, replace=0.1).solve(np.ones(2))).all()


def test_factors_on_files_solve_and_their_files_have_one_owner(tmp_path, monkeypatch):
    monkeypatch.setenv("NXL_PARDISO_OOC_PATH", str(tmp_path / "factors"))
    a, b = sp.csr_array(grid(20) @ grid(20).T), np.ones(400)
    assert residual(a, nxl.spsolve(a, b, out_of_core=True), b) < 1e-12
    factors = nxl.cholesky(a, out_of_core=True)
    assert residual(a, factors.solve(b), b) < 1e-12
    with pytest.raises(OSError, match="file"):
        nxl.cholesky(a, out_of_core=True)
    del factors
    assert not list(tmp_path.iterdir())
