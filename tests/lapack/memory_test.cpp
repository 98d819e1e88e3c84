// QR, singular values and least squares when the k-th allocation fails, for every k: what is computed is as ever, or
// that there was no memory is told, once, and no memory stays behind.
#include "nxl.h"
#include "tests/support/captured.hpp"
#include "tests/support/host_allocator.hpp"
#include "tests/support/singular.hpp"

namespace nxl_test {
namespace {

/// The arrays of a call, whichever it is.
template <class T> struct Problem {
    LapackMatrix<T> a, b, u, vt;
    std::vector<double> s, e, reals = std::vector<double>(20000);
    std::vector<T> tau, other_tau, work = std::vector<T>(70000);
    std::vector<int> integers = std::vector<int>(20000);
    int m = a.rows, n = a.cols, nrhs = b.cols, rank = 0, info = -99;
    int lwork = static_cast<int>(work.size());

    Problem(Given given, int rows, int columns)
        : a(given_matrix<T>(given, rows, columns)),
          b(matrix_of<T>(MatrixKind::random, std::max(rows, columns), 3, 3, 5)),
          u(rows, std::min(rows, columns), 3),
          vt(std::min(rows, columns), columns, 3),
          s(static_cast<std::size_t>(std::min(rows, columns))),
          e(s),
          tau(s.size()),
          other_tau(s.size()) {}
};

using Magnitudes = std::vector<double>; // of what is settled but for signs
template <class T> void add(Magnitudes& all, const LapackMatrix<T>& x, int rows) {
    for (int j = 0; j < x.cols; ++j)
        for (int i = 0; i < rows; ++i) all.push_back(std::abs(x.at(i, j)));
}

template <class T> struct Routine {
    const char* name; // without its first letter
    Magnitudes (*run)(Problem<T>&);
};

template <class T> Magnitudes of_singular(const Problem<T>& p, bool vectors) {
    Magnitudes all = p.s;
    if (vectors) add(all, p.u, p.u.rows), add(all, p.vt, p.vt.rows);
    return all;
}
template <class T, char job> Magnitudes by_qr(Problem<T>& p) {
    const char letter = job;
    const auto go = [&](auto... reals) {
        Singular<T>::gesvd(&letter, &letter, &p.m, &p.n, p.a.data(), &p.a.lda, p.s.data(), p.u.data(), &p.u.lda,
                           p.vt.data(), &p.vt.lda, p.work.data(), &p.lwork, reals..., &p.info, 1, 1);
    };
    if constexpr (is_complex<T>) go(p.reals.data());
    else go();
    return of_singular(p, job == 'S');
}
template <class T, char job> Magnitudes by_division(Problem<T>& p) {
    const char letter = job;
    const auto go = [&](auto... reals) {
        Singular<T>::gesdd(&letter, &p.m, &p.n, p.a.data(), &p.a.lda, p.s.data(), p.u.data(), &p.u.lda, p.vt.data(),
                           &p.vt.lda, p.work.data(), &p.lwork, reals..., p.integers.data(), &p.info, 1);
    };
    if constexpr (is_complex<T>) go(p.reals.data());
    else go();
    return of_singular(p, job == 'S');
}
template <class T, bool vectors> Magnitudes shortest(Problem<T>& p) {
    const double rcond = 1e-8;
    const auto go = [&](auto entry, auto... last) {
        entry(&p.m, &p.n, &p.nrhs, p.a.data(), &p.a.lda, p.b.data(), &p.b.lda, p.s.data(), &rcond, &p.rank,
              p.work.data(), &p.lwork, last..., &p.info);
    };
    if constexpr (vectors && is_complex<T>) go(zgelss, p.reals.data());
    else if constexpr (vectors) go(dgelss);
    else if constexpr (is_complex<T>) go(zgelsd, p.reals.data(), p.integers.data());
    else go(dgelsd, p.integers.data());
    Magnitudes all; // values that are 0 but for rounding are not settled
    for (int k = 0; k < p.rank; ++k) all.push_back(p.s[static_cast<std::size_t>(k)]);
    add(all, p.b, p.n);
    return all;
}
template <class T> Magnitudes bidiagonal(Problem<T>& p) {
    Singular<T>::gebrd(&p.m, &p.n, p.a.data(), &p.a.lda, p.s.data(), p.e.data(), p.tau.data(), p.other_tau.data(),
                       p.work.data(), &p.lwork, &p.info);
    Magnitudes all;
    for (std::size_t k = 0; k < p.s.size(); ++k) all.push_back(std::abs(p.s[k])), all.push_back(std::abs(p.e[k]));
    return all;
}
/// The factorisation, and Q formed of it or applied: any of the calls may be the one without memory.
template <class T> Magnitudes orthogonal(Problem<T>& p) {
    using R = Orthogonal<T>;
    const int k = std::min(p.m, p.n);
    const auto factor = p.m >= p.n ? R::geqrf : R::gelqf;
    factor(&p.m, &p.n, p.a.data(), &p.a.lda, p.tau.data(), p.work.data(), &p.lwork, &p.info);
    const auto apply = p.m >= p.n ? R::ormqr : R::ormlq;
    const auto form = p.m >= p.n ? R::orgqr : R::orglq;
    const int longer = std::max(p.m, p.n);
    if (p.info == 0)
        apply("L", &R::transposed, &longer, &p.nrhs, &k, p.a.data(), &p.a.lda, p.tau.data(), p.b.data(), &p.b.lda,
              p.work.data(), &p.lwork, &p.info, 1, 1);
    if (p.info == 0) form(&p.m, &p.n, &k, p.a.data(), &p.a.lda, p.tau.data(), p.work.data(), &p.lwork, &p.info);
    Magnitudes all;
    add(all, p.a, p.m), add(all, p.b, longer);
    return all;
}
template <class T> Magnitudes solved(Problem<T>& p) {
    Orthogonal<T>::gels("N", &p.m, &p.n, &p.nrhs, p.a.data(), &p.a.lda, p.b.data(), &p.b.lda, p.work.data(), &p.lwork,
                        &p.info, 1);
    Magnitudes all;
    add(all, p.b, p.n);
    return all;
}
Magnitudes pivoted(Problem<double>& p) {
    std::fill(p.integers.begin(), p.integers.end(), 0);
    std::vector<double> tau(p.s.size());
    dgeqp3(&p.m, &p.n, p.a.data(), &p.a.lda, p.integers.data(), tau.data(), p.work.data(), &p.lwork, &p.info);
    Magnitudes all(p.integers.begin(), p.integers.begin() + p.n);
    add(all, p.a, p.m);
    return all;
}

template <class T> class Memory : public ::testing::Test {
  protected:
    static std::vector<Routine<T>> routines() {
        std::vector<Routine<T>> all{
            {"ORG or ORM", orthogonal<T>},  {"GELS", solved<T>},          {"GEBRD", bidiagonal<T>},
            {"GESVD", by_qr<T, 'N'>},       {"GESVD", by_qr<T, 'S'>},     {"GESDD", by_division<T, 'N'>},
            {"GESDD", by_division<T, 'S'>}, {"GELSS", shortest<T, true>}, {"GELSD", shortest<T, false>}};
        if constexpr (!is_complex<T>) all.push_back({"GEQP3", pivoted});
        return all;
    }
};
TYPED_TEST_SUITE(Memory, Scalars);

TYPED_TEST(Memory, EveryAllocationMayFail) {
    using T = TypeParam;
    for (const Given given : {Given::random, Given::short_rank})
        for (const auto [m, n] : {std::array{50, 40}, {40, 50}, {110, 40}})
            for (const Routine<T>& routine : TestFixture::routines()) {
                SCOPED_TRACE(::testing::Message() << routine.name << " " << m << " x " << n << " kind " << int(given));
                // Vectors of values that are 0, and solutions without full rank, are settled by nothing.
                const std::string name = routine.name;
                if (given == Given::short_rank && name != "GELSS" && name != "GELSD") continue;
                const Problem<T> problem(given, m, n);
                Problem<T> whole = problem;
                const Magnitudes expected = routine.run(whole);
                ASSERT_EQ(whole.info, 0);
                NXL_FreeBuffers();
                const long before = live_blocks();
                int reports = 0;
                bool all_succeeded = false;
                for (long failing = 1; !all_succeeded; failing += 1 + failing / 8) { // many are alike, of products
                    Problem<T> p = problem;
                    Magnitudes found;
                    NXL_FreeBuffers();
                    const long start = allocations();
                    fail_allocation(failing);
                    const std::string printed = printed_by([&] { found = routine.run(p); });
                    fail_allocation(0);
                    all_succeeded = allocations() - start < failing;
                    EXPECT_EQ(p.info, printed.empty() ? 0 : -1000) << failing;
                    reports += !printed.empty();
                    if (!printed.empty()) EXPECT_EQ(std::count(printed.begin(), printed.end(), '\n'), 1) << printed;
                    if (p.info != 0) continue;
                    ASSERT_EQ(found.size(), expected.size());
                    for (std::size_t k = 0; k < found.size(); ++k)
                        ASSERT_NEAR(found[k], expected[k], 1e-9 * (1.0 + expected[k])) << failing << " " << k;
                }
                NXL_FreeBuffers();
                EXPECT_EQ(live_blocks(), before);
                EXPECT_TRUE(reports > 0 || name[0] != 'G' || name == "GELS" || name == "GEQP3") << reports;
            }
}

} // namespace
} // namespace nxl_test
