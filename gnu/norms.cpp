// Norms of general matrices, which SciPy, Octave and R take before they ask for a condition: a pass over the matrix
// that is worth a few per cent of the factorisation.
#include "nxl.h"
#include "service/export.hpp"

#include <cmath>
#include <cstddef>

namespace {

double sum_of_magnitudes(int n, const double* x) {
    const int one = 1;
    return dasum(&n, x, &one);
}
double sum_of_magnitudes(int n, const nxl_z* x) { // dzasum adds the parts
    double sum = 0.0;
    for (int i = 0; i < n; ++i) sum += std::abs(x[i]);
    return sum;
}
double length(int n, const double* x) {
    const int one = 1;
    return dnrm2(&n, x, &one);
}
double length(int n, const nxl_z* x) {
    const int one = 1;
    return dznrm2(&n, x, &one);
}

/// The larger one; NaN if either is.
double larger(double a, double b) { return a >= b || std::isnan(a) ? a : b; }

template <class T> double largest_element(int m, const T* x) {
    double most = 0.0;
    for (int i = 0; i < m; ++i) most = larger(most, std::abs(x[i]));
    return most;
}

/// The largest sum of a row, by sums of all rows in work(m).
template <class T> double largest_row(int m, int n, const T* a, std::ptrdiff_t lda, double* work) {
    for (int i = 0; i < m; ++i) work[i] = 0.0;
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < m; ++i) work[i] += std::abs(a[i + j * lda]);
    return largest_element(m, work);
}

/// norm M: the largest element; 1 or O: column sum; I: row sum; F or E: Frobenius' norm. Any other gives 0.
template <class T> double norm_of(char norm, int m, int n, const T* a, std::ptrdiff_t lda, double* work) {
    const char letter = static_cast<char>(norm & ~32);
    if (m < 1 || n < 1) return 0.0;
    if (letter == 'I') return largest_row(m, n, a, lda, work);
    double result = 0.0;
    for (int j = 0; j < n; ++j) {
        const T* column = a + j * lda;
        if (letter == 'M') result = larger(result, largest_element(m, column));
        else if (norm == '1' || letter == 'O') result = larger(result, sum_of_magnitudes(m, column));
        else if (letter == 'F' || letter == 'E') {
            const double size = length(m, column);
            result = std::isnan(size) ? size : std::isnan(result) ? result : std::hypot(result, size);
        }
    }
    return result;
}

} // namespace

extern "C" {

NXL_EXPORT double dlange_(const char* norm, const int* m, const int* n, const double* a, const int* lda,
                          double* work) noexcept {
    return norm_of(*norm, *m, *n, a, *lda, work);
}
NXL_EXPORT double zlange_(const char* norm, const int* m, const int* n, const nxl_z* a, const int* lda,
                          double* work) noexcept {
    return norm_of(*norm, *m, *n, a, *lda, work);
}

} // extern "C"
