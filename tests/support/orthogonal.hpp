// Orthogonal factorisations by one name for both scalars, and the same call made to the reference.
#pragma once
#include "tests/support/lapack.hpp"
#include <functional>

namespace nxl_test {

template <class T> struct Orthogonal;
template <> struct Orthogonal<double> {
    static constexpr auto geqrf = dgeqrf, gelqf = dgelqf;
    static constexpr auto orgqr = dorgqr, orglq = dorglq;
    static constexpr auto ormqr = dormqr, ormlq = dormlq;
    static constexpr auto orgtr = dorgtr;
    static constexpr auto orghr = dorghr;
    static constexpr auto orgbr = dorgbr;
    static constexpr auto ormtr = dormtr;
    static constexpr auto gels = dgels;
    static constexpr char transposed = 'T';
};
template <> struct Orthogonal<zcomplex> {
    static constexpr auto geqrf = zgeqrf, gelqf = zgelqf;
    static constexpr auto orgqr = zungqr, orglq = zunglq;
    static constexpr auto ormqr = zunmqr, ormlq = zunmlq;
    static constexpr auto orgtr = zungtr;
    static constexpr auto orghr = zunghr;
    static constexpr auto orgbr = zungbr;
    static constexpr auto ormtr = zunmtr;
    static constexpr auto gels = zgels;
    static constexpr char transposed = 'C';
};

/// The arrays of a call; its other arguments belong to the call itself.
template <class T> struct Call {
    LapackMatrix<T> a, c{0, 0, 0};
    std::vector<T> tau = std::vector<T>(static_cast<std::size_t>(std::min(a.rows, a.cols)) + 1);
    int info = 77;

    explicit Call(LapackMatrix<T> matrix) : a(std::move(matrix)) {}
    Call(LapackMatrix<T> matrix, LapackMatrix<T> other) : a(std::move(matrix)), c(std::move(other)) {}
};

/// The name of a routine in the reference: dorgqr_ or zungqr_ of "orgqr".
template <class T> std::string published_name(const std::string& name) {
    if (!is_complex<T>) return "d" + name + "_";
    return (name.substr(0, 2) == "or" ? "zun" + name.substr(2) : "z" + name) + "_";
}
/// Entries and the reference differ in the type of hidden lengths alone, which the latter does not look at.
template <class T, class... P> auto* by_reference(void (*)(P...) noexcept, const std::string& name) {
    return reference<void(P...)>(published_name<T>(name).c_str());
}

template <class T> double largest_difference(const LapackMatrix<T>& x, const LapackMatrix<T>& y) {
    double largest = 0.0;
    for (int j = 0; j < x.cols; ++j)
        for (int i = 0; i < x.rows; ++i)
            if (const double error = std::abs(x.at(i, j) - y.at(i, j)); !(error <= largest))
                largest = error; // NaN stays
    return largest;
}

/// Makes a call here and by the reference. What a factorisation with reflectors leaves is settled but for rounding, so
/// that the arrays agree to n eps times the size of their elements.
template <class T, class Entry, class Make>
Call<T> same_as_reference(Entry entry, const std::string& name, const Call<T>& given, double size, const Make& make) {
    Call<T> ours = given, theirs = given;
    make(entry, ours);
    make(by_reference<T>(entry, name), theirs);
    const double allowed = 16.0 * size * eps * (given.a.rows + given.a.cols);
    EXPECT_EQ(ours.info, theirs.info) << name;
    EXPECT_LE(largest_difference(ours.a, theirs.a), allowed) << name << ": a";
    EXPECT_LE(largest_difference(ours.c, theirs.c), allowed) << name << ": c";
    for (std::size_t i = 0; i < ours.tau.size(); ++i)
        EXPECT_LE(std::abs(ours.tau[i] - theirs.tau[i]), allowed) << name << ": tau " << i;
    for (const LapackMatrix<T>& x : {std::cref(ours.a), std::cref(ours.c)}) {
        if (x.rows > 0) EXPECT_TRUE(x.slack_untouched()) << name;
    }
    return ours;
}

} // namespace nxl_test
