// dporfs, zporfs: refinement of solutions of positive definite systems.
#include "lapack/kernel/source/condition/porfs.hpp"
#include "lapack/kernel/source/condition/moduli.hpp"
#include "lapack/kernel/source/condition/refinement.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

template <class T> struct PositiveDefiniteSystem {
    char uplo;
    Matrix<const T> a, factor;

    i64 order() const { return a.rows; }
    i64 terms() const { return a.rows + 1; }
    void residual(const T* x, const T* b, T* r) const {
        copy(a.rows, b, 1, r, 1);
        hemv(uplo, -1.0, a, x, 1.0, r);
    }
    void sizes(const T* x, const T* b, double* w) const {
        set_moduli(a.rows, b, w);
        add_symmetric_product(triangle_of(uplo, a), true, x, w);
    }
    void solve(char, T* y) const { // A is its own adjoint
        trsv(uplo, uplo == 'U' ? 'C' : 'N', 'N', factor, y);
        trsv(uplo, uplo == 'U' ? 'N' : 'C', 'N', factor, y);
    }
};

} // namespace

template <class T>
void porfs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, const T* af, const i64& ldaf,
           const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work, Spare<T>* spare,
           i64& info, int) {
    Arguments arguments(routine<T>("PORFS"));
    arguments.letter(1, uplo, "UL").size(2, n).size(3, nrhs).leading(5, lda, n).leading(7, ldaf, n);
    if (arguments.leading(9, ldb, n).leading(11, ldx, n).refused(info)) return;
    const PositiveDefiniteSystem<T> system{uplo, {a, n, n, lda}, {af, n, n, ldaf}};
    refine<T>(system, {{b, n, nrhs, ldb}, {x, n, nrhs, ldx}, ferr, berr}, estimate_space(n, work, spare));
}
template decltype(porfs<double>) porfs<double>;
template decltype(porfs<zcomplex>) porfs<zcomplex>;

} // namespace nxl
