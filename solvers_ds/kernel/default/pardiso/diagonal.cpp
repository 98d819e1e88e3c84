#include "solvers_ds/kernel/default/pardiso/diagonal.hpp"
#include "service/threads.hpp"
#include "solvers_ds/kernel/default/pardiso/matrix_type.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// a(i) is the entry of row i; `negative` counts all that are not real and positive.
template <class T> i32 inspect(const Call& call, const T* a, i32& positive, i32& negative) {
    for (i32 i = 1; i <= call.neqns; ++i) {
        if (i64{call.ia[i]} - call.ia[i - 1] != 1) return i;
        const T entry = a[i - 1];
        if (entry == T{}) return -i;
        if constexpr (std::is_same_v<T, double>) ++(entry > 0.0 ? positive : negative);
        else ++negative;
    }
    return 0;
}

template <class T> void divide(const T* b, const T* a, T* x, i64 neqns, i64 nb, int threads) {
    if (nb < 2) {
#pragma omp parallel for num_threads(threads) if (threads > 1)
        for (i64 i = 0; i < neqns * nb; ++i) x[i] = b[i] / a[i];
        return;
    }
#pragma omp parallel for num_threads(threads) if (threads > 1)
    for (i64 k = 0; k < nb; ++k)
        for (i64 i = k * neqns; i < (k + 1) * neqns; ++i) x[i] = b[i] / a[i - k * neqns];
}

template <class T> i32 solve(const Call& call, bool with_solution) {
    const T* a = static_cast<const T*>(call.a);
    i32 positive = 0, negative = 0;
    const i32 report = inspect(call, a, positive, negative);
    call.iparam[Iparam::positive_pivots] = positive;
    call.iparam[Iparam::negative_pivots] = negative;
    if (report != 0 || !with_solution || call.nb < 1) return report;
    T *b = static_cast<T*>(call.b), *x = static_cast<T*>(call.x);
    const i64 length = i64{call.neqns} * call.nb;
    constexpr i64 worth_a_thread = 20000; // divisions, some ten microseconds
    const int threads = static_cast<int>(std::clamp<i64>(length / worth_a_thread, 1, max_threads(domain_all)));
    divide(b, a, x, call.neqns, call.nb, threads);
    if (call.iparam[Iparam::solution_in_b] == 1) std::copy_n(x, length, b);
    return 0;
}

} // namespace

i32 solve_diagonal(const Call& call, bool with_solution) {
    return is_complex(call.mtype) ? solve<zcomplex>(call, with_solution) : solve<double>(call, with_solution);
}

} // namespace nxl::pardiso
