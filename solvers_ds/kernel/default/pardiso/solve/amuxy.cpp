#include "solvers_ds/kernel/default/pardiso/solve/amuxy.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

constexpr i64 entries_per_fork = 50000;

/// Calls body(row, column, value) for each stored entry of a row and for its mirror image; indices count from 0.
template <class T, class Body> void for_each_product(const CallerMatrix<T>& m, const Body& body) {
    for (i32 i = 0; i < m.n; ++i)
        for (i32 k = m.ia[i] - 1; k < m.ia[i + 1] - 1; ++k) {
            const i32 j = m.ja[k] - 1;
            const T value = m.a[k];
            if (m.transposed) body(j, i, value);
            else body(i, j, value);
            if (m.triangle && i != j) body(j, i, m.hermitian ? conj_if<true>(value) : value);
        }
}

/// Rows are apart from each other: threads share them.
template <class T> bool by_rows(const CallerMatrix<T>& m) { return !m.triangle && !m.transposed; }

/// The unevaluated sum of two doubles, the second at most half an ulp of the first. D. E. Knuth, The Art of Computer
/// Programming 2, 4.2.2; T. J. Dekker, Numer. Math. 18 (1971) 224-242.
struct Pair {
    double high, low;

    void add(double x) {
        const double sum = high + x, part = sum - high;
        low += (high - (sum - part)) + (x - part);
        high = sum;
    }
    void add_product(double x, double y) {
        const double product = x * y;
        add(product);
        low += std::fma(x, y, -product);
    }
    void settle() {
        const double sum = high + low;
        low -= sum - high;
        high = sum;
    }
};

template <class T> struct PairOf;
template <> struct PairOf<double> {
    Pair re;

    PairOf(double high, double low) : re{high, low} {}
    void subtract_product(double a, double x) { re.add_product(-a, x); }
    void add(double x) { re.add(x); }
    void settle() { re.settle(); }
    double high() const { return re.high; }
    double low() const { return re.low; }
};
template <> struct PairOf<zcomplex> {
    Pair re, im;

    PairOf(const zcomplex& high, const zcomplex& low) : re{high.real(), low.real()}, im{high.imag(), low.imag()} {}
    void subtract_product(const zcomplex& a, const zcomplex& x) {
        re.add_product(-a.real(), x.real());
        re.add_product(a.imag(), x.imag());
        im.add_product(-a.real(), x.imag());
        im.add_product(-a.imag(), x.real());
    }
    void add(const zcomplex& x) {
        re.add(x.real());
        im.add(x.imag());
    }
    void settle() {
        re.settle();
        im.settle();
    }
    zcomplex high() const { return {re.high, im.high}; }
    zcomplex low() const { return {re.low, im.low}; }
};

template <class T> void store(PairOf<T> sum, T& high, T& low) {
    sum.settle();
    high = sum.high();
    low = sum.low();
}

} // namespace

template <class T> void amuxy(const CallerMatrix<T>& m, const T* x, T* y) {
    if (!by_rows(m)) {
        std::fill_n(y, m.n, T{});
        return for_each_product(m, [&](i32 i, i32 j, const T& value) { y[i] += value * x[j]; });
    }
#pragma omp parallel for num_threads(m.threads) if (m.threads > 1 && m.ia[m.n] > entries_per_fork)
    for (i32 i = 0; i < m.n; ++i) {
        T sum{};
        for (i32 k = m.ia[i] - 1; k < m.ia[i + 1] - 1; ++k) sum += m.a[k] * x[m.ja[k] - 1];
        y[i] = sum;
    }
}

template <class T>
void extended_residual(const CallerMatrix<T>& m, const T* b, const T* x, const T* x_low, T* r, T* low) {
    if (!by_rows(m)) {
        std::copy_n(b, m.n, r);
        std::fill_n(low, m.n, T{});
        for_each_product(m, [&](i32 i, i32 j, const T& value) {
            PairOf<T> sum(r[i], low[i]);
            sum.subtract_product(value, x[j]);
            sum.subtract_product(value, x_low[j]);
            store(sum, r[i], low[i]);
        });
        return;
    }
#pragma omp parallel for num_threads(m.threads) if (m.threads > 1 && m.ia[m.n] > entries_per_fork)
    for (i32 i = 0; i < m.n; ++i) {
        PairOf<T> sum(b[i], T{});
        for (i32 k = m.ia[i] - 1; k < m.ia[i + 1] - 1; ++k) {
            const i32 j = m.ja[k] - 1;
            sum.subtract_product(m.a[k], x[j]);
            sum.subtract_product(m.a[k], x_low[j]);
        }
        store(sum, r[i], low[i]);
    }
}

template <class T> void extended_add(i64 n, const T* d, T* x, T* x_low) {
    for (i64 i = 0; i < n; ++i) {
        PairOf<T> sum(x[i], x_low[i]);
        sum.add(d[i]);
        store(sum, x[i], x_low[i]);
    }
}

template void amuxy(const CallerMatrix<double>&, const double*, double*);
template void amuxy(const CallerMatrix<zcomplex>&, const zcomplex*, zcomplex*);
template void extended_residual(const CallerMatrix<double>&, const double*, const double*, const double*, double*,
                                double*);
template void extended_residual(const CallerMatrix<zcomplex>&, const zcomplex*, const zcomplex*, const zcomplex*,
                                zcomplex*, zcomplex*);
template void extended_add(i64, const double*, double*, double*);
template void extended_add(i64, const zcomplex*, zcomplex*, zcomplex*);

} // namespace nxl::pardiso
