// CBLAS levels 2 and 3: each routine in both orders and with every option, as the Fortran routine that it stands for.
#include "nxl_cblas.h"
#include "tests/support/blas_call.hpp"
#include <memory>
#include <tuple>
#include <utility>

namespace {

using namespace nxl_test;

/// Of the call that is being made; entries see pointers alone.
CBLAS_ORDER order;
const Routine* routine_called;
Shapes shapes;

/// A column-major matrix as the same matrix by rows, with NaN past its columns; all of it goes back at the end.
template <class T> class ByRows {
    const MatrixShape& shape_;
    T* const columns_;
    std::vector<T> rows_;

    std::size_t at(int i, int j) const { return static_cast<std::size_t>(std::int64_t{i} * ld() + j); }

  public:
    ByRows(const MatrixShape& shape, const T* columns)
        : shape_(shape),
          columns_(const_cast<T*>(columns)),
          rows_(at(shape.rows, 0) + 1, all_nan<T>()) {
        for (int j = 0; j < shape.cols; ++j)
            for (int i = 0; i < shape.rows; ++i) rows_[at(i, j)] = columns[shape.at(i, j)];
    }
    ~ByRows() {
        for (int j = 0; j < shape_.cols; ++j)
            for (int i = 0; i < shape_.rows; ++i)
                columns_[shape_.at(i, j)] = std::exchange(rows_[at(i, j)], all_nan<T>());
        for (const T& slack : rows_) EXPECT_TRUE(std::isnan(std::real(slack))) << in_progress.text();
    }
    ByRows(const ByRows&) = delete;
    ByRows& operator=(const ByRows&) = delete;

    int ld() const { return shape_.cols + 2; }
    T* data() { return rows_.data(); }
};

/// The shape of the routine's array number `index`, or null for a vector.
const MatrixShape* matrix_at(int index) {
    const bool no_b = routine_called->is({Family::syrk, Family::trm, Family::syr, Family::trv});
    const MatrixShape* const shape = index == 0 ? &shapes.a : index == 1 && !no_b ? &shapes.b : &shapes.c;
    if (routine_called->level3()) return shape;
    const bool update = routine_called->is({Family::ger, Family::syr, Family::syr2});
    return shape == (update ? &shapes.c : &shapes.a) ? shape : nullptr;
}

template <class Enum> Enum enumerator(const char* letter) {
    const char capital = static_cast<char>(std::toupper(*letter));
    if constexpr (std::is_same_v<Enum, CBLAS_TRANSPOSE>)
        return capital == 'N' ? CblasNoTrans : capital == 'T' ? CblasTrans : CblasConjTrans;
    else if constexpr (std::is_same_v<Enum, CBLAS_UPLO>) return capital == 'U' ? CblasUpper : CblasLower;
    else if constexpr (std::is_same_v<Enum, CBLAS_SIDE>) return capital == 'L' ? CblasLeft : CblasRight;
    else return capital == 'U' ? CblasUnit : CblasNonUnit;
}

/// An argument of an entry, and what stands for it in Fortran; complex numbers and arrays are untyped in C.
template <class C> struct Argument {
    using Fortran = std::conditional_t<std::is_enum_v<C>, const char*, const C*>;
    static C from(Fortran value) {
        if constexpr (std::is_enum_v<C>) return enumerator<C>(value);
        else return *value;
    }
};
template <class P> struct Argument<P*> {
    using Typed = std::conditional_t<std::is_const_v<P>, const zcomplex, zcomplex>;
    using Fortran = std::conditional_t<std::is_void_v<P>, Typed, P>*;
    static P* from(Fortran value) { return value; }
};

/// Calls the entry with its matrices in the order that is due. Arrays are the pointers before an integer.
template <auto entry, class... C> void as_fortran(typename Argument<C>::Fortran... values) {
    using T = std::conditional_t<(std::is_same_v<C, const void*> || ...), zcomplex, double>;
    std::tuple<C...> arguments{Argument<C>::from(values)...};
    std::vector<std::unique_ptr<ByRows<T>>> stored;
    int arrays = 0;
    const auto store_by_rows = [&]<std::size_t I>(std::integral_constant<std::size_t, I>) {
        using Next = std::tuple_element_t<std::min(I + 1, sizeof...(C) - 1), std::tuple<C...>>;
        auto& array = std::get<I>(arguments);
        if constexpr (std::is_pointer_v<std::tuple_element_t<I, std::tuple<C...>>> && std::is_same_v<Next, int>)
            if (const MatrixShape* shape = matrix_at(arrays++)) {
                stored.push_back(std::make_unique<ByRows<T>>(*shape, static_cast<const T*>(array)));
                array = stored.back()->data();
                std::get<I + 1>(arguments) = stored.back()->ld();
            }
    };
    if (order == CblasRowMajor)
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            (store_by_rows(std::integral_constant<std::size_t, I>()), ...);
        }(std::index_sequence_for<C...>());
    std::apply([](auto... argument) { entry(order, argument...); }, arguments);
}

template <Family family, auto entry> Routine cblas(const std::string& name, const std::string& product = {}) {
    const auto from = [&]<class... C>(void (*)(CBLAS_ORDER, C...)) {
        return routine<family>(name, as_fortran<entry, C...>, product);
    };
    return from(entry);
}

const Routine routines[] = {
    cblas<Family::gemv, cblas_dgemv>("dgemv"),
    cblas<Family::gemv, cblas_zgemv>("zgemv"),
    cblas<Family::ger, cblas_dger>("dger"),
    cblas<Family::ger, cblas_zgeru>("zgeru"),
    cblas<Family::ger, cblas_zgerc>("zgerc"),
    cblas<Family::symv, cblas_dsymv>("dsymv"),
    cblas<Family::symv, cblas_zhemv>("zhemv"),
    cblas<Family::syr, cblas_dsyr>("dsyr"),
    cblas<Family::syr, cblas_zher>("zher"),
    cblas<Family::syr2, cblas_dsyr2>("dsyr2"),
    cblas<Family::syr2, cblas_zher2>("zher2"),
    cblas<Family::trv, cblas_dtrmv>("dtrmv"),
    cblas<Family::trv, cblas_ztrmv>("ztrmv"),
    cblas<Family::trv, cblas_dtrsv>("dtrsv", "dtrmv"),
    cblas<Family::trv, cblas_ztrsv>("ztrsv", "ztrmv"),
    cblas<Family::gemm, cblas_dgemm>("dgemm"),
    cblas<Family::gemm, cblas_zgemm>("zgemm"),
    cblas<Family::symm, cblas_dsymm>("dsymm"),
    cblas<Family::symm, cblas_zsymm>("zsymm"),
    cblas<Family::symm, cblas_zhemm>("zhemm"),
    cblas<Family::syrk, cblas_dsyrk>("dsyrk"),
    cblas<Family::syrk, cblas_zsyrk>("zsyrk"),
    cblas<Family::syrk, cblas_zherk>("zherk"),
    cblas<Family::syr2k, cblas_dsyr2k>("dsyr2k"),
    cblas<Family::syr2k, cblas_zsyr2k>("zsyr2k"),
    cblas<Family::syr2k, cblas_zher2k>("zher2k"),
    cblas<Family::trm, cblas_dtrmm>("dtrmm"),
    cblas<Family::trm, cblas_ztrmm>("ztrmm"),
    cblas<Family::trm, cblas_dtrsm>("dtrsm", "dtrmm"),
    cblas<Family::trm, cblas_ztrsm>("ztrsm", "ztrmm"),
};

class Cblas : public ::testing::TestWithParam<Routine> {};
INSTANTIATE_TEST_SUITE_P(, Cblas, ::testing::ValuesIn(routines), name_of);

struct Sizes {
    int m, n, k; // the largest are too long for a vector's copy on the stack
};

TEST_P(Cblas, BothOrdersWithEveryOption) {
    Generator generator(1);
    routine_called = &GetParam();
    for (const BlasCall& letters : letters_of(GetParam()))
        for (const auto [m, n, k] :
             {Sizes{0, 3, 4}, {5, 0, 4}, {5, 3, 0}, {5, 3, 9}, {1, 3, 4}, {70, 3, 4}, {5, 66, 9}, {70, 66, 4}}) {
            BlasCall call = randomised(letters, generator);
            call.m = m, call.n = n, call.k = k;
            shapes = shapes_of(GetParam(), call);
            for (const CBLAS_ORDER each : {CblasRowMajor, CblasColMajor}) {
                order = each;
                ASSERT_TRUE(GetParam().check(call)) << "order " << order;
            }
        }
}

TEST(CblasZgemv, ScalarsOfZeroDropWhatTheyMultiply) { // where the order asks for conjugated copies too
    const zcomplex zero = 0.0;
    for (const CBLAS_TRANSPOSE op : {CblasNoTrans, CblasTrans, CblasConjTrans}) {
        std::vector<zcomplex> y(3, all_nan<zcomplex>());
        cblas_zgemv(CblasRowMajor, op, 3, 3, &zero, nullptr, 3, nullptr, 1, &zero, y.data(), 1);
        EXPECT_EQ(y, std::vector<zcomplex>(3, zero));
    }
}

} // namespace
