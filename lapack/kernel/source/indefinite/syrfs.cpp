// dsyrfs, zsyrfs, zherfs: the refinement that all families share, over products with one triangle and solutions from
// the factors.
#include "lapack/kernel/source/indefinite/syrfs.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/condition/moduli.hpp"
#include "lapack/kernel/source/condition/refinement.hpp"
#include "lapack/kernel/source/indefinite/solve.hpp"

namespace nxl {
namespace {

template <class T, Symmetry kind> struct IndefiniteSystem {
    char uplo;
    Matrix<const T> a, factors;
    const i64* ipiv;
    const SolveSpace<T>& space;

    i64 order() const { return a.rows; }
    i64 terms() const { return a.rows + 1; }
    void residual(const T* x, const T* b, T* r) const {
        copy(a.rows, b, 1, r, 1);
        if constexpr (kind == Symmetry::hermitian) hemv(uplo, -1.0, a, x, 1.0, r);
        else symv(uplo, -1.0, a, x, 1.0, r);
    }
    void sizes(const T* x, const T* b, double* w) const {
        set_moduli(a.rows, b, w);
        add_symmetric_product(triangle_of(uplo, a), kind == Symmetry::hermitian, x, w);
    }
    void solve(char op, T* y) const { solve_factored_one<T, kind>(op, uplo, factors, ipiv, y, space); }
};

} // namespace

template <class T, Symmetry kind>
void syrfs(const char& uplo, const i64& n, const i64& nrhs, const T* a, const i64& lda, const T* af, const i64& ldaf,
           const i64* ipiv, const T* b, const i64& ldb, T* x, const i64& ldx, double* ferr, double* berr, T* work,
           Spare<T>* spare, i64& info, int) {
    constexpr RoutineLetters name = routine_of<T, kind>("RFS");
    Arguments arguments(name);
    arguments.letter(1, uplo, "UL").size(2, n).size(3, nrhs).leading(5, lda, n).leading(7, ldaf, n);
    if (arguments.leading(10, ldb, n).leading(12, ldx, n).refused(info)) return;
    const SolveSpace<T> space(1);
    if (!space.there()) return refuse_for_memory(name, info);
    const IndefiniteSystem<T, kind> system{uplo, {a, n, n, lda}, {af, n, n, ldaf}, ipiv, space};
    refine(system, Solutions<T>{{b, n, nrhs, ldb}, {x, n, nrhs, ldx}, ferr, berr}, estimate_space(n, work, spare));
}
template decltype(syrfs<double, Symmetry::symmetric>) syrfs<double, Symmetry::symmetric>;
template decltype(syrfs<zcomplex, Symmetry::symmetric>) syrfs<zcomplex, Symmetry::symmetric>;
template decltype(syrfs<zcomplex, Symmetry::hermitian>) syrfs<zcomplex, Symmetry::hermitian>;

} // namespace nxl
