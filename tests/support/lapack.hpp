// LAPACK by one name for both scalars: the entries, the reference's factorisations, LU of a test's matrix, and teams of
// any size.
#pragma once
#include "nxl.h"
#include "tests/support/lapack_matrices.hpp"
#include "tests/support/reference_blas.hpp"

namespace nxl_test {

template <class T> struct Lapack;
template <> struct Lapack<double> {
    static constexpr auto getrf = dgetrf;
    static constexpr auto getrs = dgetrs;
    static constexpr auto getri = dgetri;
    static constexpr auto potrf = dpotrf;
    static constexpr auto potrs = dpotrs;
    static constexpr auto potri = dpotri;
    static constexpr auto trtri = dtrtri;
    static constexpr auto trtrs = dtrtrs;
    static constexpr auto trsm = dtrsm;
    static constexpr auto trsv = dtrsv;
    static constexpr const char *reference_lu = "dgetrf_", *reference_cholesky = "dpotrf_";
};
template <> struct Lapack<zcomplex> {
    static constexpr auto getrf = zgetrf;
    static constexpr auto getrs = zgetrs;
    static constexpr auto getri = zgetri;
    static constexpr auto potrf = zpotrf;
    static constexpr auto potrs = zpotrs;
    static constexpr auto potri = zpotri;
    static constexpr auto trtri = ztrtri;
    static constexpr auto trtrs = ztrtrs;
    static constexpr auto trsm = ztrsm;
    static constexpr auto trsv = ztrsv;
    static constexpr const char *reference_lu = "zgetrf_", *reference_cholesky = "zpotrf_";
};

template <class T> auto* reference_lu() {
    return reference<void(const int*, const int*, T*, const int*, int*, int*)>(Lapack<T>::reference_lu);
}

template <class T> struct Factored {
    LapackMatrix<T> factors;
    std::vector<int> ipiv;
    int info;
};

template <class T> Factored<T> factored(const LapackMatrix<T>& a) {
    Factored<T> result{a, std::vector<int>(static_cast<std::size_t>(std::min(a.rows, a.cols)), -1), -99};
    Lapack<T>::getrf(&a.rows, &a.cols, result.factors.data(), &a.lda, result.ipiv.data(), &result.info);
    return result;
}

/// The library works with this many threads in the scope, more than there are cores too.
class Team {
    int dynamic_ = NXL_Get_Dynamic(), before_ = NXL_Get_Max_Threads();

  public:
    explicit Team(int threads) {
        NXL_Set_Dynamic(0);
        NXL_Set_Num_Threads(threads);
    }
    ~Team() {
        NXL_Set_Dynamic(dynamic_);
        NXL_Set_Num_Threads(before_);
    }
    Team(const Team&) = delete;
    Team& operator=(const Team&) = delete;
};

} // namespace nxl_test
