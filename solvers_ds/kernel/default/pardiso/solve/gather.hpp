// psol_fwgath and psol_bwscat: right-hand sides into the order of the factor, solutions out of it. Work memory has the
// `width` columns of a block side by side: element k of position i is at i * width + k.
#pragma once
#include "solvers_ds/kernel/default/pardiso/solve/solve.hpp"

namespace nxl::pardiso {

/// Positions that a thread should have at least.
inline constexpr i64 positions_per_thread = 50000;

template <class T> void psol_fwgath(const SolveView<T>& view, const T* b, i64 width, T* work) {
    const Places places = view.transposed ? view.places.transposed() : view.places;
    const i32* const from = view.steps.forward ? places.rows : places.columns;
    const double* const scale = view.steps.forward ? places.row_scale : nullptr;
    const i64 n = view.n;
#pragma omp parallel for num_threads(view.threads) if (view.threads > 1 && n * width > positions_per_thread)
    for (i64 i = 0; i < n; ++i) {
        const T* const source = b + (from[i] - 1);
        const double factor = scale ? scale[i] : 1.0;
        for (i64 k = 0; k < width; ++k) work[i * width + k] = source[k * n] * factor;
    }
}

template <class T> void psol_bwscat(const SolveView<T>& view, const T* work, i64 width, T* x) {
    const Places places = view.transposed ? view.places.transposed() : view.places;
    const double* const scale = view.steps.backward ? places.column_scale : nullptr;
    const i64 n = view.n;
#pragma omp parallel for num_threads(view.threads) if (view.threads > 1 && n * width > positions_per_thread)
    for (i64 i = 0; i < n; ++i) {
        T* const target = x + (places.columns[i] - 1);
        const double factor = scale ? scale[i] : 1.0;
        for (i64 k = 0; k < width; ++k) target[k * n] = work[i * width + k] * factor;
    }
}

} // namespace nxl::pardiso
