// Nonsymmetric eigenproblems by one name for both scalars, and what is true of their results.
#pragma once
#include "tests/support/lapack.hpp"
#include "tests/support/orthogonal.hpp"

namespace nxl_test {

template <class T> struct Nonsymmetric;
template <> struct Nonsymmetric<double> {
    static constexpr auto gebal = dgebal;
    static constexpr auto gebak = dgebak;
    static constexpr auto gehrd = dgehrd;
    static constexpr auto trsna = dtrsna;
    static constexpr auto trsyl = dtrsyl;
    static constexpr auto gemm = dgemm;
};
template <> struct Nonsymmetric<zcomplex> {
    static constexpr auto gebal = zgebal;
    static constexpr auto gebak = zgebak;
    static constexpr auto gehrd = zgehrd;
    static constexpr auto trsna = ztrsna;
    static constexpr auto trsyl = ztrsyl;
    static constexpr auto gemm = zgemm;
};

/// op(A) op(B)
template <class T>
LapackMatrix<T> product(const LapackMatrix<T>& a, const LapackMatrix<T>& b, char opa = 'N', char opb = 'N') {
    const int m = opa == 'N' ? a.rows : a.cols, k = opa == 'N' ? a.cols : a.rows, n = opb == 'N' ? b.cols : b.rows;
    LapackMatrix<T> c(m, n, 0);
    const T one = 1.0, zero{};
    Nonsymmetric<T>::gemm(&opa, &opb, &m, &n, &k, &one, a.elements.data(), &a.lda, b.elements.data(), &b.lda, &zero,
                          c.data(), &c.lda);
    return c;
}
/// The largest modulus, NaN where there is one.
template <class T> double largest(const LapackMatrix<T>& a) {
    LapackMatrix<T> zero(a.rows, a.cols, 0);
    for (int j = 0; j < a.cols; ++j) zero.clear_column(j);
    return largest_difference(a, zero);
}
template <class T> LapackMatrix<T> identity(int n) {
    LapackMatrix<T> result(n, n, 2);
    for (int j = 0; j < n; ++j) {
        result.clear_column(j);
        result.at(j, j) = T(1.0);
    }
    return result;
}

/// hseqr, its eigenvalues in one array for both scalars.
template <class T>
int call_hseqr(char job, char compz, int ilo, int ihi, LapackMatrix<T>& h, LapackMatrix<T>& z,
               std::vector<zcomplex>& w) {
    const int n = h.cols, lwork = std::max(n, 1);
    const auto room = static_cast<std::size_t>(lwork);
    std::vector<T> work(room);
    int info = -99;
    w.assign(static_cast<std::size_t>(n), {});
    if constexpr (is_complex<T>)
        zhseqr(&job, &compz, &n, &ilo, &ihi, h.data(), &h.lda, w.data(), z.data(), &z.lda, work.data(), &lwork, &info,
               1, 1);
    else {
        std::vector<double> wr(room), wi(room);
        dhseqr(&job, &compz, &n, &ilo, &ihi, h.data(), &h.lda, wr.data(), wi.data(), z.data(), &z.lda, work.data(),
               &lwork, &info, 1, 1);
        for (std::size_t i = 0; i < w.size(); ++i) w[i] = {wr[i], wi[i]};
    }
    return info;
}

/// A = Z T Z^H, by way of Hessenberg form in rows ilo to ihi.
template <class T> struct SchurForm {
    LapackMatrix<T> t, z;
    std::vector<zcomplex> w;
    int info = -99;

    explicit SchurForm(const LapackMatrix<T>& a, int ilo = 1, int ihi = -1) : t(a), z(0, 0, 0) {
        const int n = a.cols, last = ihi < 0 ? n : ihi, lwork = std::max(1, n);
        std::vector<T> tau(static_cast<std::size_t>(lwork)), work(tau.size());
        Nonsymmetric<T>::gehrd(&n, &ilo, &last, t.data(), &t.lda, tau.data(), work.data(), &lwork, &info);
        EXPECT_EQ(info, 0);
        z = t;
        Orthogonal<T>::orghr(&n, &ilo, &last, z.data(), &z.lda, tau.data(), work.data(), &lwork, &info);
        EXPECT_EQ(info, 0);
        info = call_hseqr('S', 'V', ilo, last, t, z, w);
        EXPECT_TRUE(t.slack_untouched() && z.slack_untouched());
    }
};

/// What is below the diagonal is zero but for standard blocks, and w tells the eigenvalues of the diagonal.
template <class T> bool is_standard(const LapackMatrix<T>& t, const std::vector<zcomplex>& w) {
    for (int j = 0; j < t.cols; ++j) {
        const bool pair = !is_complex<T> && j + 1 < t.cols && t.at(j + 1, j) != T{};
        const auto at = static_cast<std::size_t>(j);
        for (int i = j + 1 + pair; i < t.cols; ++i)
            if (t.at(i, j) != T{}) return false;
        if (!pair && w[at] != zcomplex(t.at(j, j))) return j > 0 && w[at - 1] == std::conj(w[at]);
        if (!pair) continue;
        const double b = std::real(t.at(j, j + 1)), c = std::real(t.at(j + 1, j)), imaginary = w[at].imag();
        if (t.at(j, j) != t.at(j + 1, j + 1) || std::signbit(b) == std::signbit(c) || w[at] != std::conj(w[at + 1]))
            return false;
        if (!(imaginary > 0.0 &&
              std::fabs(imaginary - std::sqrt(std::fabs(b)) * std::sqrt(std::fabs(c))) <= 4 * eps * imaginary))
            return false;
        if (j + 2 < t.cols && t.at(j + 2, j + 1) != T{}) return false;
        ++j;
    }
    return true;
}

/// |A Z - Z T| / (n eps |A|) and |Z^H Z - I| / (n eps), the larger one.
template <class T> double schur_error(const LapackMatrix<T>& a, const SchurForm<T>& s) {
    const double unit = std::max(1, a.cols) * eps, size = largest(a);
    const double residual = largest_difference(product(a, s.z), product(s.z, s.t));
    const double turned = largest_difference(product(s.z, s.z, 'C'), identity<T>(a.cols));
    return std::max(residual / (size > 0.0 ? size : 1.0), turned) / unit;
}

} // namespace nxl_test
