// dsytrd, zhetrd on one thread: by panels, each followed by one update of rank 2 k. Golub and Van Loan, Matrix
// Computations, 4th ed., section 8.3.1.
#include "lapack/kernel/source/eigen/xsytrd.hpp"
#include "lapack/kernel/source/eigen/two_sided.hpp"
#include "lapack/kernel/source/orthogonal/reflector.hpp"

namespace nxl {
template <class T> void sytd2(char uplo, const Matrix<T>& a, double* d, double* e, T* tau) {
    const i64 n = a.rows;
    if (n == 0) return;
    const i64 corner = uplo == 'L' ? 0 : n - 1; // tau(n) is workspace until its elements are settled
    a(corner, corner) = real_part(a(corner, corner));
    for (i64 step = 0; step + 1 < n; ++step) {
        const bool lower = uplo == 'L';
        const i64 i = lower ? step : n - 1 - step, count = n - 1 - step, first = lower ? i + 1 : 0;
        T& alpha = a(lower ? i + 1 : i - 1, i);
        T* const others = a.at(lower ? std::min(i + 2, n - 1) : 0, i);
        const i64 place = lower ? i : i - 1;
        const T scalar = make_reflector(count - 1, alpha, others, 1);
        e[place] = real_part(alpha);
        if (scalar != T{}) {
            alpha = 1.0;
            reflect_both_sides(uplo, a.block(first, first, count, count), a.at(first, i), scalar,
                               lower ? tau + i : tau);
        }
        alpha = e[place];
        d[i] = real_part(a(i, i));
        tau[place] = scalar;
        const i64 next = lower ? i + 1 : i - 1;
        a(next, next) = real_part(a(next, next));
    }
    d[n - 1 - corner] = real_part(a(n - 1 - corner, n - 1 - corner));
}

template <class T>
void sytrd_serial(const char& uplo, const i64& n, T* a, const i64& lda, double* d, double* e, T* tau, T* work,
                  const i64& lwork, i64& info) {
    const Workspace<T> space{work, lwork, 1, std::max(n * tridiagonal_sizes<T>.block, i64{1})};
    if (refused(uplo, n, lda, space, info) || space.is_query() || n == 0) return;
    const TridiagonalReduction<T> reduction(uplo, {a, n, n, lda}, d, e, tau, work, lwork);
    reduction.run(1, static_cast<T*>(nullptr),
                  [&](const Matrix<T>& c, Operand<T> v, Operand<T> w) { her2k(uplo, 'N', -1.0, v, w, 1.0, c); });
}

template void sytd2<double>(char, const Matrix<double>&, double*, double*, double*);
template void sytd2<zcomplex>(char, const Matrix<zcomplex>&, double*, double*, zcomplex*);
template void sytrd_serial<double>(const char&, const i64&, double*, const i64&, double*, double*, double*, double*,
                                   const i64&, i64&);
template void sytrd_serial<zcomplex>(const char&, const i64&, zcomplex*, const i64&, double*, double*, zcomplex*,
                                     zcomplex*, const i64&, i64&);

} // namespace nxl
