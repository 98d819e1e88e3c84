// dgelss, zgelss, dgelsd, zgelsd: arguments, and how long the published workspaces are.
#include "lapack/kernel/source/least_squares/gelss.hpp"
#include "lapack/kernel/source/common/reports.hpp"
#include "lapack/kernel/source/least_squares/svd_solution.hpp"
#include "service/arguments.hpp"
#include "service/scalars.hpp"
#include <algorithm>
#include <cmath>

namespace nxl {
namespace {

template <class T> struct Problem {
    i64 m, n, nrhs;
    T* a;
    i64 lda;
    T* b;
    i64 ldb;

    i64 order() const { return std::min(m, n); }
    i64 longer() const { return std::max(m, n); }

    void check(Arguments& arguments) const {
        arguments.size(1, m).size(2, n).size(3, nrhs).leading(5, lda, m).leading(7, ldb, longer());
    }
    void solve(const RoutineLetters& name, double* s, double rcond, bool keeps_vectors, i64& rank, i64& info) const {
        rank = 0;
        if (order() == 0) return;
        info = SvdSolution<T>{{a, m, n, lda}, {b, longer(), nrhs, ldb}, s, rcond, keeps_vectors, rank}.run();
        if (info < 0) refuse_for_memory(name, info);
    }
};

/// The smallest part that the published division ends in, and its levels.
constexpr i64 smallest_part = 25;
i64 levels(i64 order) {
    if (order < 1) return 0; // sizes have not been checked yet
    const double halvings = std::log2(static_cast<double>(order) / static_cast<double>(smallest_part + 1));
    return std::max(static_cast<i64>(halvings) + 1, i64{0});
}
i64 integers_for_division(i64 order) { return std::max(3 * order * levels(order) + 11 * order, i64{1}); }

} // namespace

template <class T>
void gelss(const i64& m, const i64& n, const i64& nrhs, T* a, const i64& lda, T* b, const i64& ldb, double* s,
           const double& rcond, i64& rank, T* work, const i64& lwork, i64& info) {
    constexpr RoutineLetters name = routine<T>("GELSS");
    const Problem<T> problem{m, n, nrhs, a, lda, b, ldb};
    const i64 order = problem.order(), longest = std::max(problem.longer(), nrhs);
    const i64 least =
        std::max(is_complex_scalar<T> ? 2 * order + longest : 3 * order + std::max(2 * order, longest), i64{1});
    const Workspace<T> space(work, lwork, least, least);
    Arguments arguments(name);
    problem.check(arguments);
    if (arguments.workspace(12, space).refused(info) || space.is_query()) return;
    problem.solve(name, s, rcond, true, rank, info);
}
template decltype(gelss<double>) gelss<double>;
template decltype(gelss<zcomplex>) gelss<zcomplex>;

void nxl_lapack_dgelsd(const i64& m, const i64& n, const i64& nrhs, double* a, const i64& lda, double* b,
                       const i64& ldb, double* s, const double& rcond, i64& rank, double* work, const i64& lwork,
                       i64* iwork, i64& info) {
    constexpr RoutineLetters name = "DGELSD";
    const Problem<double> problem{m, n, nrhs, a, lda, b, ldb};
    const i64 order = problem.order(), part = smallest_part;
    const i64 least = std::max(
        12 * order + 2 * order * part + 8 * order * levels(order) + order * nrhs + (part + 1) * (part + 1), i64{1});
    const Workspace<double> space(work, lwork, least, least);
    Arguments arguments(name);
    problem.check(arguments);
    if (arguments.workspace(12, space).refused(info)) return;
    iwork[0] = integers_for_division(order);
    if (!space.is_query()) problem.solve(name, s, rcond > 0.0 && rcond < 1.0 ? rcond : -1.0, false, rank, info);
}

void nxl_lapack_zgelsd(const i64& m, const i64& n, const i64& nrhs, zcomplex* a, const i64& lda, zcomplex* b,
                       const i64& ldb, double* s, const double& rcond, i64& rank, zcomplex* work, const i64& lwork,
                       double* rwork, i64* iwork, i64& info) {
    constexpr RoutineLetters name = "ZGELSD";
    const Problem<zcomplex> problem{m, n, nrhs, a, lda, b, ldb};
    const i64 order = problem.order(), part = smallest_part;
    const i64 least = std::max(2 * order + std::max(order * nrhs, problem.longer()), i64{1});
    const i64 reals = 10 * order + 2 * order * part + 8 * order * levels(order) + 3 * part * nrhs +
                      std::max((part + 1) * (part + 1), order * (1 + nrhs) + 2 * nrhs);
    const Workspace<zcomplex> space(work, lwork, std::max(2 * order + order * nrhs, i64{1}), least);
    Arguments arguments(name);
    problem.check(arguments);
    if (arguments.workspace(12, space).refused(info)) return;
    iwork[0] = integers_for_division(order);
    rwork[0] = static_cast<double>(reals);
    if (!space.is_query()) problem.solve(name, s, rcond > 0.0 && rcond < 1.0 ? rcond : -1.0, false, rank, info);
}

} // namespace nxl
