// dsytrf, zsytrf, zhetrf: panel after panel. What is left of A after each is the next one's matrix.
#include "lapack/kernel/source/indefinite/sytrf.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/indefinite/panel.hpp"
#include "lapack/kernel/source/indefinite/pivots.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/scratch.hpp"

namespace nxl {
namespace {

/// `work`: n by width.
template <class T, Symmetry kind> i64 factor(char uplo, const Matrix<T>& a, i64 width, T* work, i64* ipiv) {
    const PivotOrder order{uplo == 'U', a.rows};
    i64 zero_pivot = 0;
    for (i64 step = 0; step < order.n;) {
        const Slice rest = order.rest(step);
        const Matrix<T> left = a.block(rest.start, rest.start, rest.count, rest.count);
        const Matrix<T> w{work, rest.count, std::min(width, rest.count), a.rows};
        const PanelResult panel = factor_panel<T, kind>(uplo, left, w, ipiv + rest.start, rest.start);
        step += panel.columns;
        if (zero_pivot == 0) zero_pivot = panel.zero_pivot;
    }
    return zero_pivot;
}

} // namespace

template <class T, Symmetry kind>
void sytrf(const char& uplo, const i64& n, T* a, const i64& lda, i64* ipiv, T* work, const i64& lwork, i64& info, int) {
    constexpr RoutineLetters name = routine_of<T, kind>("TRF");
    const Workspace<T> space(work, lwork, 1, std::max(n * block_of(name), i64{1}));
    Arguments arguments(name);
    if (arguments.letter(1, uplo, "UL").size(2, n).leading(4, lda, n).workspace(7, space).refused(info)) return;
    if (space.is_query() || n == 0) return;
    const i64 width = indefinite_panel(n); // the workspace is for the published 64 columns in any case
    const Matrix<T> whole{a, n, n, lda};
    if (lwork >= n * width) {
        info = factor<T, kind>(uplo, whole, width, work, ipiv);
        return;
    }
    const Scratch<T> own(n * width);
    if (!own.data()) return refuse_for_memory(name, info);
    info = factor<T, kind>(uplo, whole, width, own.data(), ipiv);
}
template decltype(sytrf<double, Symmetry::symmetric>) sytrf<double, Symmetry::symmetric>;
template decltype(sytrf<zcomplex, Symmetry::symmetric>) sytrf<zcomplex, Symmetry::symmetric>;
template decltype(sytrf<zcomplex, Symmetry::hermitian>) sytrf<zcomplex, Symmetry::hermitian>;

} // namespace nxl
