// What the drivers for symmetric and Hermitian eigenproblems share: routines by type, pairs by divide and
// conquer.
#pragma once
#include "gnu/arguments.hpp"
#include "gnu/array.hpp"

namespace nxl::gnu {

template <class T> struct Symmetric;
template <> struct Symmetric<double> {
    static constexpr auto syevr = dsyevr;
    static constexpr auto sytrd = dsytrd;
    static constexpr auto ormtr = dormtr;
    static constexpr auto potrf = dpotrf;
    static constexpr auto sygst = dsygst;
    static constexpr auto trsm = dtrsm;
    static constexpr auto trmm = dtrmm;
    static constexpr auto stein = dstein;
};
template <> struct Symmetric<nxl_z> {
    static constexpr auto syevr = zheevr;
    static constexpr auto sytrd = zhetrd;
    static constexpr auto ormtr = zunmtr;
    static constexpr auto potrf = zpotrf;
    static constexpr auto sygst = zhegst;
    static constexpr auto trsm = ztrsm;
    static constexpr auto trmm = ztrmm;
    static constexpr auto stein = zstein;
};

/// Values w(n), ascending, and vectors z(n,n) of the tridiagonal matrix d(n), e(n-1). Returns info.
int tridiagonal_pairs(int n, const double* d, const double* e, double* w, double* z, int ldz);

/// The same of triangle uplo of a(n,n), whose vectors take its place, or with jobz N are not looked for.
template <class T> int full_pairs(char jobz, char uplo, int n, T* a, int lda, double* w);
extern template int full_pairs(char, char, int, double*, int, double*);
extern template int full_pairs(char, char, int, nxl_z*, int, double*);

/// A workspace: the position of its length, which is -1 for a query, and the least one. Position 0: there is none.
struct Length {
    int position;
    const int* given;
    long least;
};

/// Tells the least lengths where there is a query, or checks them.
template <class T> struct Workspaces {
    T* work;
    Length main;
    double* rwork;
    Length real; // position 0 where there is none
    int* iwork;
    Length integer;

    bool query() const {
        return *main.given == -1 || (real.position != 0 && *real.given == -1) ||
               (integer.position != 0 && *integer.given == -1);
    }
    void check(Arguments& arguments) const {
        for (const Length& length : {main, real, integer})
            if (length.position != 0) arguments.expect(length.position, query() || *length.given >= length.least);
    }
    void tell() const {
        work[0] = T(static_cast<double>(main.least));
        if (real.position != 0) rwork[0] = static_cast<double>(real.least);
        if (integer.position != 0) iwork[0] = static_cast<int>(integer.least);
    }
};

inline bool is_letter(char option, char letter) { return option == letter || option == (letter | 32); }

} // namespace nxl::gnu
