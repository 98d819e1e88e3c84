#include "bench/family_cases.hpp"
#include <algorithm>
#include <iterator>

namespace nxl::bench {
namespace {

/// A routine with the option letters to time it with.
struct Variants {
    const char* routine;
    std::vector<const char*> options = {""};
};

std::vector<Case> cases_of(const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
    std::vector<Case> cases;
    for (const Variants& variants : routines)
        for (const char* options : variants.options)
            for (const Size& size : sizes) cases.push_back({variants.routine, options, size});
    return cases;
}

} // namespace

std::vector<Case> with_sizes(const std::vector<Case>& cases, const std::vector<int>& orders) {
    if (orders.empty()) return cases;
    std::vector<Case> result;
    for (const Case& which : cases)
        if (std::ranges::find(result, which.label(), &Case::label) == result.end())
            for (const int order : orders) result.push_back({which.routine, which.options, order});
    return result;
}

std::vector<Case> level1_cases() {
    return cases_of({{"ddot"},  {"daxpy"}, {"dscal"},  {"dcopy"},  {"dswap"}, {"dasum"}, {"idamax"},
                     {"drot"},  {"dnrm2"}, {"zdotc"},  {"zdotu"},  {"zaxpy"}, {"zscal"}, {"zdscal"},
                     {"zcopy"}, {"zswap"}, {"dzasum"}, {"izamax"}, {"zdrot"}, {"dznrm2"}},
                    {100, 1'000, 10'000, 10'000'000});
}

std::vector<Case> level2_cases() {
    return cases_of({{"dgemv", {"N", "T"}},
                     {"dger"},
                     {"dsymv", {"L", "U"}},
                     {"dsyr", {"L", "U"}},
                     {"dsyr2", {"L"}},
                     {"dtrmv", {"LNN", "UTN"}},
                     {"dtrsv", {"LNN", "UTN"}},
                     {"zgemv", {"N", "T", "C"}},
                     {"zgeru"},
                     {"zgerc"},
                     {"zhemv", {"L", "U"}},
                     {"zher", {"L", "U"}},
                     {"zher2", {"L"}},
                     {"ztrmv", {"LNN", "UTN"}},
                     {"ztrsv", {"LNN", "UTN"}}},
                    {100, 1'000, 5'000});
}

std::vector<Case> level3_cases() {
    std::vector<Case> cases = cases_of({{"dtrsm", {"LLNN", "LUTN", "RLNN", "RUTN"}},
                                        {"dtrmm", {"LLNN", "LUTN", "RLNN", "RUTN"}},
                                        {"dsyrk", {"LN", "UT"}},
                                        {"dsyr2k", {"LN", "UT"}},
                                        {"dsymm", {"LL", "RU"}},
                                        {"ztrsm", {"LLNN", "LUTN", "RLNN", "RUTN"}},
                                        {"ztrmm", {"LLNN", "LUTN", "RLNN", "RUTN"}},
                                        {"zherk", {"LN", "UC"}},
                                        {"zsyrk", {"LN", "UT"}},
                                        {"zher2k", {"LN", "UC"}},
                                        {"zhemm", {"LL", "RU"}},
                                        {"zsymm", {"LL", "RU"}}},
                                       {128, 512, 2'000});
    // Few right-hand sides.
    std::ranges::copy(cases_of({{"dtrsm", {"LLNN", "LUTN"}}, {"ztrsm", {"LLNN", "LUTN"}}}, {{1'000, 8, 1'000}}),
                      std::back_inserter(cases));
    std::ranges::copy(cases_of({{"dtrsm", {"RLNN", "RUTN"}}, {"ztrsm", {"RLNN", "RUTN"}}}, {{8, 1'000, 1'000}}),
                      std::back_inserter(cases));
    return cases;
}

std::vector<Case> gemm_cases() {
    return cases_of({{"dgemm", {"NN", "TN", "NT", "TT"}}, {"zgemm", {"NN", "TN", "NT", "TT", "NC"}}},
                    {16,
                     32,
                     64,
                     128,
                     256,
                     512,
                     1'000,
                     1'001,
                     2'000, // 1001: columns off every boundary
                     {2'000, 2'000, 32},
                     {2'000, 8, 2'000},
                     {8, 2'000, 2'000},
                     {100'000, 16, 16}});
}

std::vector<Case> narrow_cases() {
    return cases_of({{"dgemm", {"NN", "TN"}}, {"zgemm", {"NN", "TN"}}}, {64, 256, 1'000, 2'000});
}

std::vector<Case> level1_threads_cases() { return cases_of({{"ddot"}, {"daxpy"}}, {10'000'000}); }

std::vector<Case> level3_threads_cases() {
    return cases_of({{"dgemm", {"NN"}},
                     {"zgemm", {"NN"}},
                     {"dtrsm", {"LLNN"}},
                     {"ztrsm", {"LLNN"}},
                     {"dsyrk", {"LN"}},
                     {"zherk", {"LN"}},
                     {"dsyr2k", {"LN"}},
                     {"dtrmm", {"LLNN"}},
                     {"dsymm", {"LL"}}},
                    {2'000});
}

std::vector<Case> factor_cases() {
    std::vector<Case> cases = cases_of({{"dgetrf"}, {"dpotrf", {"L", "U"}}, {"zgetrf"}, {"zpotrf", {"L", "U"}}},
                                       {100, 300, 500, 1'000, 2'000, 4'000});
    const auto add = [&](const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
        std::ranges::copy(cases_of(routines, sizes), std::back_inserter(cases));
    };
    add({{"dgetrs", {"N", "T"}}}, {{100, 100, 100}, {300, 100, 300}, {1'000, 100, 1'000}, {2'000, 100, 2'000}});
    add({{"zgetrs", {"N", "T"}}}, {{1'000, 100, 1'000}});
    add({{"dgetrf"}, {"zgetrf"}}, {{4'000, 200, 200}, {10'000, 100, 100}, {1'000, 50, 50}});
    for (const int few : {1, 8})
        add({{"dgetrs", {"N", "T"}},
             {"zgetrs", {"N", "C"}},
             {"dpotrs", {"L", "U"}},
             {"zpotrs", {"L", "U"}},
             {"dtrtrs", {"LNN", "UTN"}},
             {"ztrtrs", {"LNN", "UTN"}}},
            {{100, few, 100}, {1'000, few, 1'000}, {4'000, few, 4'000}});
    add({{"dgetri"}, {"dpotri", {"L", "U"}}, {"dtrtri", {"LN", "UN"}}}, {100, 300, 1'000, 2'000});
    add({{"zgetri"}, {"zpotri", {"L", "U"}}, {"ztrtri", {"LN", "UN"}}}, {1'000});
    return cases;
}

std::vector<Case> lapack_cases() {
    std::vector<Case> cases =
        cases_of({{"dsytrf", {"L", "U"}}, {"zsytrf", {"L", "U"}}, {"zhetrf", {"L", "U"}}}, {100, 500, 1'000, 2'000});
    const auto add = [&](const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
        std::ranges::copy(cases_of(routines, sizes), std::back_inserter(cases));
    };
    add({{"dsytrs", {"L", "U"}}, {"zsytrs", {"L"}}, {"zhetrs", {"L"}}}, {{1'000, 100, 1'000}});
    for (const int width : {5, 50, 200}) {
        add({{"dgbtrf"}, {"zgbtrf"}, {"dpbtrf", {"L", "U"}}, {"zpbtrf", {"L"}}}, {{5'000, 5'000, width}});
        for (const int right_hand_sides : {1, 100})
            add({{"dgbtrs", {"N", "T"}}, {"zgbtrs", {"N"}}, {"dpbtrs", {"L", "U"}}, {"zpbtrs", {"L"}}},
                {{5'000, right_hand_sides, width}});
    }
    add({{"dgecon", {"O", "I"}},
         {"zgecon", {"O"}},
         {"dpocon", {"L", "U"}},
         {"zpocon", {"L"}},
         {"dtrcon", {"OLN", "OUN"}},
         {"ztrcon", {"OLN"}},
         {"dsycon", {"L", "U"}},
         {"zhecon", {"L"}}},
        {1'000});
    add({{"dgerfs", {"N", "T"}}, {"zgerfs", {"N"}}, {"dporfs", {"L", "U"}}, {"zporfs", {"L"}}}, {{1'000, 10, 1'000}});
    add({{"dgeqrf"}, {"zgeqrf"}}, {100, 256, 500, 1'000, 2'000});
    add({{"dgeqrf"}}, {{2'000, 50, 50}, {10'000, 100, 100}, {100'000, 20, 20}});
    add({{"dgelqf"}}, {500});
    add({{"dgeqp3"}}, {500, 1'000});
    add({{"dorgqr"}, {"dormqr", {"LN", "LT", "RN", "RT"}}}, {500, 1'000, 2'000});
    add({{"zungqr"}, {"zunmqr", {"LN", "RC"}}}, {1'000});
    add({{"dgels", {"N"}}}, {{1'000, 100, 100}, {2'000, 500, 500}});
    add({{"dsytrd", {"L", "U"}}, {"zhetrd", {"L"}}}, {100, 300, 500, 1'000, 2'000});
    add({{"dsterf"}, {"dsteqr", {"I"}}}, {300, 1'000});
    return cases;
}

std::vector<Case> svd_cases() {
    std::vector<Case> cases = cases_of({{"dgebrd"}, {"zgebrd"}}, {300, 500, 1'000});
    const auto add = [&](const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
        std::ranges::copy(cases_of(routines, sizes), std::back_inserter(cases));
    };
    add({{"dgesdd", {"N", "S", "A"}}}, {100, 300, 600, 1'000, {2'000, 200, 200}, {200, 2'000, 200}});
    add({{"dgesvd", {"NN", "SS"}}, {"dbdsqr", {"U"}}}, {300, 600});
    add({{"dgelsd"}, {"dgelss"}}, {{1'000, 500, 500}});
    return cases;
}

std::vector<Case> eigen_cases() {
    std::vector<Case> cases;
    const auto add = [&](const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
        std::ranges::copy(cases_of(routines, sizes), std::back_inserter(cases));
    };
    for (const int n : {100, 300, 500, 1'000, 2'000}) {
        add({{"dsytrd", {"L"}}, {"zhetrd", {"L"}}}, {n});
        add({{"dsyevr", {"VAL", "NAL"}}, {"dsyevx", {"VAL"}}}, {{n, n, n}});
        add({{"dsyevr", {"VIL"}}}, {{n, n, n / 10}}); // a tenth of the spectrum
    }
    add({{"zheevr", {"VAL", "NAL"}}}, {500, 1'000});
    add({{"dsbevd", {"VL"}}}, {{500, 500, 20}, {2'000, 2'000, 20}});
    add({{"zhbevd", {"VL"}}}, {{500, 500, 20}});
    add({{"dsteqr", {"I"}}, {"dsterf"}, {"dstebz", {"AE"}}}, {300, 1'000});
    return cases;
}

std::vector<Case> nonsymmetric_cases() {
    std::vector<Case> cases = cases_of({{"dgehrd"}, {"zgehrd"}, {"dhseqr", {"EN", "SI"}}}, {200, 500, 1'000});
    const auto add = [&](const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
        std::ranges::copy(cases_of(routines, sizes), std::back_inserter(cases));
    };
    add({{"dgeev", {"NN", "NV"}}}, {100, 200, 400, 1'000});
    add({{"zhseqr", {"EN", "SI"}}, {"zgeev", {"NN", "NV"}}}, {200, 500});
    add({{"dtrevc", {"RB", "LB"}}, {"ztrevc", {"RB"}}, {"dtrsyl", {"NN", "TN"}}, {"ztrsyl", {"NN"}}}, {500, 1'000});
    return cases;
}

std::vector<Case> primitive_cases() {
    std::vector<Case> cases =
        cases_of({{"AddValue_d"},     {"AddValuec_d"},     {"SubFromValuecd_d"}, {"DivideValue_d"},
                  {"DivideValuec_d"}, {"ScaleByValuec_d"}, {"AddVeccd_d"},       {"MulVeccd_d"},
                  {"DivVeccc_d"},     {"ConjMulcc_d"},     {"Sgndd_d"},          {"SgnMul_d"},
                  {"Rem_d"},          {"RemVal_d"},        {"Ceil_d"},           {"Floor_d"},
                  {"CumSum_d"},       {"CumSumDelta_d"},   {"Product_d"},        {"Reverse_d"},
                  {"Flip_d"},         {"MulI_d"},          {"Rampc_d"},          {"PackByMask_d"},
                  {"vdpacki"},        {"vdpackv"},         {"vdpackm"},          {"vdunpackv"}},
                 {1'000, 10'000'000});
    const auto add = [&](const std::vector<Variants>& routines, const std::vector<Size>& sizes) {
        std::ranges::copy(cases_of(routines, sizes), std::back_inserter(cases));
    };
    // Rows of 4096 doubles lie a power of two apart, those of 4001 begin at ever other places of a cache line.
    add({{"TransposeMatrix_d"}, {"TransposeSquareMatrix_d"}}, {100, 1'000, 4'000, 4'001, 4'096});
    add({{"TransposeMatrixc_d"}, {"AdjungateMatrixc_d"}, {"TransposeSquareMatrixc_d"}}, {100, 1'000, 2'000});
    add({{"CopySubMatrix_d"},
         {"ResizeMatrix_d"},
         {"LowerTriangle_d"},
         {"UpperTriangle_d"},
         {"ZeroLowerTriangle_d"},
         {"ZeroUpperTriangle_d"},
         {"RowExchange_d"},
         {"ColExchange_d"}},
        {100, 1'000, 4'000});
    return cases;
}

} // namespace nxl::bench
