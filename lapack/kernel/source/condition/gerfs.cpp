// dgerfs, zgerfs: refinement of solutions of general systems.
#include "lapack/kernel/source/condition/gerfs.hpp"
#include "lapack/kernel/source/condition/moduli.hpp"
#include "lapack/kernel/source/condition/refinement.hpp"
#include "lapack/kernel/source/lu/laswp.hpp"
#include "service/arguments.hpp"

namespace nxl {
namespace {

template <class T> struct GeneralSystem {
    char trans;
    Matrix<const T> a, factors;
    const i64* ipiv;

    i64 order() const { return a.rows; }
    i64 terms() const { return a.rows + 1; }
    void residual(const T* x, const T* b, T* r) const {
        copy(a.rows, b, 1, r, 1);
        gemv(trans, a.rows, a.rows, -1.0, a.data, a.ld, x, 1, 1.0, r, 1);
    }
    void sizes(const T* x, const T* b, double* w) const {
        set_moduli(a.rows, b, w);
        add_product(trans, all_of(a), x, w);
    }
    void solve(char op, T* y) const {
        const i64 n = a.rows;
        if (const char way = applied(op, trans); way == 'N') {
            laswp(1, y, n, 1, n, ipiv, 1);
            trsv('L', 'N', 'U', factors, y);
            trsv('U', 'N', 'N', factors, y);
        } else {
            trsv('U', way, 'N', factors, y);
            trsv('L', way, 'U', factors, y);
            laswp(1, y, n, 1, n, ipiv, -1);
        }
    }
};

} // namespace

template <class T>
void gerfs(const char& trans, const i64& n, const i64& nrhs, const T* a, const i64& lda, const T* af, const i64& ldaf,
           const i64* ipiv, const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work,
           Spare<T>* spare, i64& info, int) {
    Arguments arguments(routine<T>("GERFS"));
    arguments.letter(1, trans, "NTC").size(2, n).size(3, nrhs).leading(5, lda, n).leading(7, ldaf, n);
    if (arguments.leading(10, ldb, n).leading(12, ldx, n).refused(info)) return;
    const GeneralSystem<T> system{trans, {a, n, n, lda}, {af, n, n, ldaf}, ipiv};
    refine<T>(system, {{b, n, nrhs, ldb}, {x, n, nrhs, ldx}, ferr, berr}, estimate_space(n, work, spare));
}
template decltype(gerfs<double>) gerfs<double>;
template decltype(gerfs<zcomplex>) gerfs<zcomplex>;

} // namespace nxl
