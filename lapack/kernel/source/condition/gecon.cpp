// dgecon, zgecon: |A^-1| = |U^-1 L^-1 P| is estimated. The interchanges P change neither norm.
#include "lapack/kernel/source/condition/gecon.hpp"
#include "lapack/kernel/source/condition/reciprocal_condition.hpp"
#include "lapack/kernel/source/condition/safe_solve.hpp"
#include "service/arguments.hpp"

namespace nxl {

template <class T>
void gecon(const char& norm, const i64& n, const T* a, const i64& lda, const double& anorm, double& rcond, T* work,
           Spare<T>* spare, i64& info, int) {
    Arguments arguments(routine<T>("GECON"));
    arguments.letter(1, norm, "1OI").size(2, n).leading(4, lda, n).expect(5, !(anorm < 0.0));
    if (arguments.refused(info)) return;
    if (no_condition_to_find(n, anorm, rcond)) return;
    const auto space = estimate_space(n, work, spare);
    const Matrix<const T> factors{a, n, n, lda};
    const SafeTriangle<T> lower('L', 'U', triangle_of('L', factors), space.sizes);
    const SafeTriangle<T> upper('U', 'N', triangle_of('U', factors), space.sizes + n);
    rcond = reciprocal_condition(n, anorm, norm == 'I', space.v, space.x, [&](char op, T* x) {
        if (op == 'N') return lower.solve('N', x) * upper.solve('N', x);
        return upper.solve('C', x) * lower.solve('C', x);
    });
}
template decltype(gecon<double>) gecon<double>;
template decltype(gecon<zcomplex>) gecon<zcomplex>;

} // namespace nxl
