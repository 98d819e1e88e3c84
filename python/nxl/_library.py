"""libnxl.so, loaded once: beside this package, where NXL_LIBRARY says, or where the dynamic linker looks."""

import ctypes
import os
from pathlib import Path

import numpy as np

_NAME = "libnxl.so.0"


def _candidates():
    if "NXL_LIBRARY" in os.environ:
        return [os.environ["NXL_LIBRARY"]]
    folder = Path(__file__).resolve().parents[3]  # lib/python3/dist-packages/nxl stands in lib
    beside = [folder, *sorted(folder.glob("*-linux-gnu")), folder.parent / "lib64"]
    return [str(place / _NAME) for place in beside if (place / _NAME).exists()] + [_NAME]


def _load():
    reasons = []
    for path in _candidates():
        try:
            return ctypes.CDLL(path)
        except OSError as reason:
            reasons.append(str(reason))
    raise ImportError("libnxl.so cannot be loaded; NXL_LIBRARY can name its file (" + "; ".join(reasons) + ")")


library = _load()


def integer(value=0):
    """An integer as the routines take it, by reference, and write it."""
    return ctypes.c_int(value)


def call(name, *arguments):
    """Calls a routine: arrays by their first element, c_int by reference, numbers as constants. The interpreter lock is
    released meanwhile. Arrays are contiguous and of the type that the routine wants; that is the caller's part."""
    return getattr(library, name)(*[_reference(argument) for argument in arguments])


def _reference(argument):
    if isinstance(argument, np.ndarray):
        return ctypes.c_void_p(argument.ctypes.data)
    if isinstance(argument, float):
        return ctypes.byref(ctypes.c_double(argument))
    if isinstance(argument, int):
        return ctypes.byref(ctypes.c_int(argument))
    return ctypes.byref(argument)
