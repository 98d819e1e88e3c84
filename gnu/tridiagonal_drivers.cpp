// LAPACK's drivers for symmetric tridiagonal matrices.
#include "gnu/eigenpairs.hpp"
#include "service/export.hpp"

using namespace nxl::gnu;

namespace {

struct Selection {
    const char *jobz, *range;
    int n;
    double vl, vu;
    int il, iu;
    double abstol;

    bool vectors() const { return is_letter(*jobz, 'V'); }
    bool all() const { return is_letter(*range, 'A') || (is_letter(*range, 'I') && il == 1 && iu == n); }
    void check(Arguments& arguments) const {
        constexpr int first_bound = 7;
        arguments.option(1, *jobz, "NV").option(2, *range, "AVI").size(3, n);
        arguments.expect(first_bound, !is_letter(*range, 'V') || n <= 0 || vl < vu);
        arguments.expect(first_bound + 1, !is_letter(*range, 'I') || (il >= 1 && il <= std::max(1, n)));
        arguments.expect(first_bound + 2, !is_letter(*range, 'I') || (iu >= std::min(n, il) && iu <= n));
    }
};

/// Values, vectors z of any type with their supports, and how many.
template <class T> struct Found {
    int* m;
    double* w;
    T* z;
    int ldz;
    int* support;

    T* column(int j) const { return z + static_cast<std::ptrdiff_t>(j) * ldz; }
    void tell_support(int n) const {
        for (int j = 0; j < *m; ++j) {
            int first = 0, last = n - 1;
            while (first < last && column(j)[first] == T(0.0)) ++first;
            while (last > first && column(j)[last] == T(0.0)) --last;
            support[2 * j] = first + 1;
            support[2 * j + 1] = last + 1;
        }
    }
};

template <class T> int all_vectors(int n, const double* d, const double* e, const Found<T>& found) {
    const auto order = static_cast<std::size_t>(n);
    const Array<double> z(order * order);
    if (!z) return no_memory;
    const int info = tridiagonal_pairs(n, d, e, found.w, z.data(), n);
    for (int j = 0; j < n; ++j)
        std::copy(z.data() + order * static_cast<std::size_t>(j), z.data() + order * static_cast<std::size_t>(j + 1),
                  found.column(j));
    return info;
}

/// By bisection and inverse iteration, in ascending order.
template <class T> int some_pairs(const Selection& wanted, const double* d, const double* e, const Found<T>& found) {
    const int n = wanted.n;
    const auto order = static_cast<std::size_t>(n);
    const Array<double> work(5 * order);
    const Array<int> iblock(order), isplit(order), iwork(3 * order), failed(order);
    if (!work || !iblock || !isplit || !iwork || !failed) return no_memory;
    int parts = 0, info = 0;
    dstebz(wanted.range, wanted.vectors() ? "B" : "E", &n, &wanted.vl, &wanted.vu, &wanted.il, &wanted.iu,
           &wanted.abstol, d, e, found.m, &parts, found.w, iblock.data(), isplit.data(), work.data(), iwork.data(),
           &info, 1, 1);
    if (info != 0 || !wanted.vectors() || *found.m == 0) return info;
    Symmetric<T>::stein(&n, d, e, found.m, found.w, iblock.data(), isplit.data(), found.z, &found.ldz, work.data(),
                        iwork.data(), failed.data(), &info);
    for (int i = 0; i + 1 < *found.m; ++i) {
        const int least = static_cast<int>(std::min_element(found.w + i, found.w + *found.m) - found.w);
        if (least == i) continue;
        std::swap(found.w[i], found.w[least]);
        std::swap_ranges(found.column(i), found.column(i) + n, found.column(least));
    }
    return info;
}

template <class T> int find_pairs(const Selection& wanted, double* d, double* e, const Found<T>& found) {
    *found.m = 0;
    if (wanted.n == 0) return 0;
    int info = 0;
    if (!wanted.all()) info = some_pairs(wanted, d, e, found);
    else {
        *found.m = wanted.n;
        if (wanted.vectors()) info = all_vectors(wanted.n, d, e, found);
        else {
            std::copy(d, d + wanted.n, found.w);
            dsterf(&wanted.n, found.w, e, &info);
        }
    }
    if (wanted.vectors() && info == 0) found.tell_support(wanted.n);
    return info;
}

/// dstev, dstevd.
void all_pairs(const char* name, const char* jobz, const int* n, double* d, double* e, double* z, const int* ldz,
               const Workspaces<double>& space, int* info) {
    const bool vectors = is_letter(*jobz, 'V');
    Arguments arguments(name);
    arguments.option(1, *jobz, "NV").size(2, *n).leading(6, *ldz, vectors ? *n : 1);
    space.check(arguments);
    if (arguments.refused(info)) return;
    space.tell();
    if (space.query() || *n == 0) return;
    if (!vectors) return dsterf(n, d, e, info);
    const Array<double> w(static_cast<std::size_t>(*n));
    *info = w ? tridiagonal_pairs(*n, d, e, w.data(), z, *ldz) : no_memory;
    if (w) std::copy(w.data(), w.data() + *n, d);
}

/// dstevr.
template <class T>
void selected_pairs(const char* name, const Selection& wanted, double* d, double* e, const Found<T>& found,
                    const Workspaces<double>& space, int* info) {
    Arguments arguments(name);
    wanted.check(arguments);
    arguments.leading(14, found.ldz, wanted.vectors() ? wanted.n : 1);
    space.check(arguments);
    if (arguments.refused(info)) return;
    space.tell();
    if (!space.query()) *info = find_pairs(wanted, d, e, found);
}

/// Columns that z has to have.
int columns_of(const Selection& wanted, const double* d, const double* e) {
    if (is_letter(*wanted.range, 'I')) return wanted.iu - wanted.il + 1;
    if (!is_letter(*wanted.range, 'V') || wanted.n == 0) return wanted.n;
    const auto order = static_cast<std::size_t>(wanted.n);
    const Array<double> reals(5 * order);
    const Array<int> integers(5 * order);
    if (!reals || !integers) return wanted.n;
    int count = 0, parts = 0, info = 0;
    dstebz("V", "E", &wanted.n, &wanted.vl, &wanted.vu, &wanted.il, &wanted.iu, &wanted.abstol, d, e, &count, &parts,
           reals.data(), integers.data(), integers.data() + order, reals.data() + order, integers.data() + 2 * order,
           &info, 1, 1);
    return count;
}

/// A column too few in z is bad argument 14; nzc -1 asks for how many there have to be, in z(1).
template <class T>
void robust_pairs(const char* name, const Selection& wanted, double* d, double* e, const Found<T>& found,
                  const int* nzc, int* tryrac, const Workspaces<double>& space, int* info) {
    Arguments arguments(name);
    wanted.check(arguments);
    arguments.leading(13, found.ldz, wanted.vectors() ? wanted.n : 1);
    space.check(arguments);
    if (arguments.refused(info)) return;
    space.tell();
    const int columns = wanted.vectors() ? columns_of(wanted, d, e) : 0;
    if (wanted.vectors() && *nzc == -1) found.z[0] = static_cast<double>(columns);
    if (space.query() || *nzc == -1) return;
    if (Arguments(name).expect(14, *nzc >= columns).refused(info)) return;
    *tryrac = 0; // whether small values are relatively exact has not been looked into
    *info = find_pairs(wanted, d, e, found);
}

/// z := z q of real q; a complex matrix is a real one of twice the rows.
template <class T> int multiply_by_real(int n, T* z, int ldz, const double* q) {
    constexpr int reals = sizeof(T) / sizeof(double);
    const auto order = static_cast<std::size_t>(n);
    const Array<T> copy(order * order);
    if (!copy) return no_memory;
    for (std::size_t j = 0; j < order; ++j)
        std::copy(z + j * static_cast<std::size_t>(ldz), z + j * static_cast<std::size_t>(ldz) + order,
                  copy.data() + j * order);
    const int rows = reals * n, ld = reals * ldz;
    const double one = 1.0, zero = 0.0;
    dgemm("N", "N", &rows, &n, &n, &one, reinterpret_cast<const double*>(copy.data()), &rows, q, &n, &zero,
          reinterpret_cast<double*>(z), &ld);
    return 0;
}

/// compz V: z is multiplied by the vectors; I: it becomes these.
template <class T>
void divide(const char* name, const char* compz, const int* n, double* d, double* e, T* z, const int* ldz,
            const Workspaces<T>& space, int* info) {
    const bool vectors = !is_letter(*compz, 'N');
    Arguments arguments(name);
    arguments.option(1, *compz, "NVI").size(2, *n).leading(6, *ldz, vectors ? *n : 1);
    space.check(arguments);
    if (arguments.refused(info)) return;
    space.tell();
    if (space.query() || *n == 0) return;
    if (!vectors) return dsterf(n, d, e, info);
    const auto order = static_cast<std::size_t>(*n);
    const Array<double> w(order), q(order * order);
    *info = w && q ? tridiagonal_pairs(*n, d, e, w.data(), q.data(), *n) : no_memory;
    if (*info != 0) return;
    std::copy(w.data(), w.data() + order, d);
    if (is_letter(*compz, 'V')) *info = multiply_by_real(*n, z, *ldz, q.data());
    else
        for (std::size_t j = 0; j < order; ++j)
            std::copy(q.data() + j * order, q.data() + (j + 1) * order, z + j * static_cast<std::size_t>(*ldz));
}

/// The least lengths of dstedc's workspaces.
struct DivideLengths {
    long complex, real, integer;

    DivideLengths(const char* compz, int order) : complex(1), real(1), integer(1) {
        constexpr int largest_small = 25;
        const long n = order;
        if (n <= 1 || is_letter(*compz, 'N')) return;
        long levels = 0;
        while ((1L << levels) < n) ++levels;
        const bool turns = is_letter(*compz, 'V');
        if (turns) complex = n * n;
        real = turns ? 1 + 3 * n + 2 * n * levels + 4 * n * n : 1 + 4 * n + n * n;
        integer = turns ? 6 + 6 * n + 5 * n * levels : 3 + 5 * n;
        if (n > largest_small) return;
        real = 2 * (n - 1);
        complex = integer = 1;
    }
};

/// Of dstevr and dstemr.
Workspaces<double> robust_space(double* work, const int* lwork, long least, int* iwork, const int* liwork,
                                long least_integers, int position) {
    return {work,    {position, lwork, std::max(least, 1L)},
            nullptr, {},
            iwork,   {position + 2, liwork, std::max(least_integers, 1L)}};
}
Workspaces<double> robust_space(const char* jobz, const int* n, double* work, const int* lwork, int* iwork,
                                const int* liwork) {
    const bool vectors = is_letter(*jobz, 'V');
    return robust_space(work, lwork, (vectors ? 18L : 12L) * *n, iwork, liwork, (vectors ? 10L : 8L) * *n, 18);
}

} // namespace

extern "C" {

NXL_EXPORT void dstev_(const char* jobz, const int* n, double* d, double* e, double* z, const int* ldz, double*,
                       int* info) noexcept {
    const int unasked = 1; // work(2n-2) is not told by its length, and not touched
    double answer = 0.0;
    all_pairs("DSTEV ", jobz, n, d, e, z, ldz, {&answer, {7, &unasked, 1}, nullptr, {}, nullptr, {}}, info);
}

NXL_EXPORT void dstevd_(const char* jobz, const int* n, double* d, double* e, double* z, const int* ldz, double* work,
                        const int* lwork, int* iwork, const int* liwork, int* info) noexcept {
    const long size = *n;
    const bool large = is_letter(*jobz, 'V') && size > 1;
    all_pairs(
        "DSTEVD", jobz, n, d, e, z, ldz,
        robust_space(work, lwork, large ? 1 + 4 * size + size * size : 1, iwork, liwork, large ? 3 + 5 * size : 1, 8),
        info);
}

NXL_EXPORT void dstevr_(const char* jobz, const char* range, const int* n, double* d, double* e, const double* vl,
                        const double* vu, const int* il, const int* iu, const double* abstol, int* m, double* w,
                        double* z, const int* ldz, int* isuppz, double* work, const int* lwork, int* iwork,
                        const int* liwork, int* info) noexcept {
    selected_pairs<double>("DSTEVR", {jobz, range, *n, *vl, *vu, *il, *iu, *abstol}, d, e, {m, w, z, *ldz, isuppz},
                           robust_space(work, lwork, 20L * *n, iwork, liwork, 10L * *n, 17), info);
}

NXL_EXPORT void dstemr_(const char* jobz, const char* range, const int* n, double* d, double* e, const double* vl,
                        const double* vu, const int* il, const int* iu, int* m, double* w, double* z, const int* ldz,
                        const int* nzc, int* isuppz, int* tryrac, double* work, const int* lwork, int* iwork,
                        const int* liwork, int* info) noexcept {
    robust_pairs<double>("DSTEMR", {jobz, range, *n, *vl, *vu, *il, *iu, 0.0}, d, e, {m, w, z, *ldz, isuppz}, nzc,
                         tryrac, robust_space(jobz, n, work, lwork, iwork, liwork), info);
}
NXL_EXPORT void zstemr_(const char* jobz, const char* range, const int* n, double* d, double* e, const double* vl,
                        const double* vu, const int* il, const int* iu, int* m, double* w, nxl_z* z, const int* ldz,
                        const int* nzc, int* isuppz, int* tryrac, double* work, const int* lwork, int* iwork,
                        const int* liwork, int* info) noexcept {
    robust_pairs<nxl_z>("ZSTEMR", {jobz, range, *n, *vl, *vu, *il, *iu, 0.0}, d, e, {m, w, z, *ldz, isuppz}, nzc,
                        tryrac, robust_space(jobz, n, work, lwork, iwork, liwork), info);
}

NXL_EXPORT void dstedc_(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz, double* work,
                        const int* lwork, int* iwork, const int* liwork, int* info) noexcept {
    const DivideLengths least(compz, *n);
    divide<double>("DSTEDC", compz, n, d, e, z, ldz,
                   {work, {8, lwork, least.real}, nullptr, {}, iwork, {10, liwork, least.integer}}, info);
}
NXL_EXPORT void zstedc_(const char* compz, const int* n, double* d, double* e, nxl_z* z, const int* ldz, nxl_z* work,
                        const int* lwork, double* rwork, const int* lrwork, int* iwork, const int* liwork,
                        int* info) noexcept {
    const DivideLengths least(compz, *n);
    divide<nxl_z>(
        "ZSTEDC", compz, n, d, e, z, ldz,
        {work, {8, lwork, least.complex}, rwork, {10, lrwork, least.real}, iwork, {12, liwork, least.integer}}, info);
}

} // extern "C"
