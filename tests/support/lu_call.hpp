// Calls of the LU factorisation by one name for both scalars, on teams of any size.
#pragma once
#include "nxl.h"
#include "tests/support/lapack_matrices.hpp"

namespace nxl_test {

inline void getrf(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info) {
    dgetrf(m, n, a, lda, ipiv, info);
}
inline void getrf(const int* m, const int* n, zcomplex* a, const int* lda, int* ipiv, int* info) {
    zgetrf(m, n, a, lda, ipiv, info);
}

template <class T> struct Factored {
    LapackMatrix<T> factors;
    std::vector<int> ipiv;
    int info;
};

template <class T> Factored<T> factored(const LapackMatrix<T>& a) {
    Factored<T> result{a, std::vector<int>(static_cast<std::size_t>(std::min(a.rows, a.cols)), -1), -99};
    getrf(&a.rows, &a.cols, result.factors.data(), &a.lda, result.ipiv.data(), &result.info);
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
