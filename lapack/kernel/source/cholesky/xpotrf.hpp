// The blocked Cholesky factorisation on the caller's thread, and the unblocked one.
#pragma once
#include "service/arguments.hpp"
#include "service/matrix.hpp"

namespace nxl {

/// The six letters by which errors and progress know the factorisation.
template <class T> inline constexpr RoutineLetters potrf_name = routine<T>("POTRF");

/// A = U^H U or L L^H, uplo being U or L, without blocks. `info`: 0, or the order of the first leading minor that is
/// not positive.
template <class T> void potf2(char uplo, const Matrix<T>& a, i64& info);

/// The same by blocks. The host hears of each finished block of columns: `thread` is doing them, `offset` columns of
/// its matrix lie before a. True when the host asks to stop, with the matrix left as it is then.
template <class T> bool potrf_serial(char uplo, const Matrix<T>& a, i64& info, i64 thread, i64 offset);

} // namespace nxl
