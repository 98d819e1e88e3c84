// What the CBLAS entries share: enumerators as BLAS letters, the check of a call's arguments, conjugated vectors.
#pragma once
#include "nxl_cblas.h"
#include "service/arguments.hpp"
#include <cstddef>
#include <cstdlib>

namespace nxl::cblas {

// ---- Letters: 0 stands for a value that is no enumerator ----

inline char letter(CBLAS_TRANSPOSE t) {
    return t == CblasNoTrans ? 'N' : t == CblasTrans ? 'T' : t == CblasConjTrans ? 'C' : '\0';
}
inline char letter(CBLAS_UPLO u) { return u == CblasUpper ? 'U' : u == CblasLower ? 'L' : '\0'; }
inline char letter(CBLAS_DIAG d) { return d == CblasNonUnit ? 'N' : d == CblasUnit ? 'U' : '\0'; }
inline char letter(CBLAS_SIDE s) { return s == CblasLeft ? 'L' : s == CblasRight ? 'R' : '\0'; }

/// What the letters become for the transposed problem.
inline char other_triangle(char uplo) { return uplo == 'U' ? 'L' : 'U'; }
inline char other_side(char side) { return side == 'L' ? 'R' : 'L'; }

/// The tests of a call's arguments; the first bad one is told with its value.
class CblasArguments : public ArgumentTests<CblasArguments> {
    const char* const routine_;

  public:
    CblasArguments(const char* routine, CBLAS_ORDER order) : routine_(routine) {
        expect(1, order == CblasRowMajor || order == CblasColMajor, order);
    }
    template <class Enum> CblasArguments& option(int position, Enum value) {
        return expect(position, letter(value) != '\0', value);
    }
    /// An operation that is one of two: not transposed, or `permitted`.
    CblasArguments& operation(int position, CBLAS_TRANSPOSE value, CBLAS_TRANSPOSE permitted) {
        return expect(position, value == CblasNoTrans || value == permitted, value);
    }
    bool reported() const {
        if (bad() != 0) cblas_xerbla(bad(), routine_, "Its value is %d.\n", static_cast<int>(value()));
        return bad() != 0;
    }
};

// ---- Complex operands ----

inline const zcomplex* z(const void* p) { return static_cast<const zcomplex*>(p); }
inline zcomplex* z(void* p) { return static_cast<zcomplex*>(p); }
inline zcomplex conjugate(const zcomplex& value) { return {value.real(), -value.imag()}; }

/// Conjugates the n elements of a vector in their place. Twice leaves every bit as it was.
inline void conjugate_in_place(int n, zcomplex* x, int incx) {
    const i64 step = std::abs(i64{incx});
    for (i64 i = 0; i < n; ++i) x[i * step] = conjugate(x[i * step]);
}

/// A conjugated copy of a vector, with increment 1. Short ones lie in the object itself.
class ConjugateCopy {
    static constexpr int room = 64;
    alignas(zcomplex) unsigned char near_[room * sizeof(zcomplex)];
    zcomplex* data_ = reinterpret_cast<zcomplex*>(near_);

  public:
    /// Without memory `routine` is reported, and data() is null.
    ConjugateCopy(const char* routine, int n, const zcomplex* x, int incx) {
        if (n > room) data_ = static_cast<zcomplex*>(std::malloc(static_cast<std::size_t>(n) * sizeof(zcomplex)));
        if (!data_) {
            cblas_xerbla(0, routine, "%s: no memory for a copy of %d elements.\n", routine, n);
            return;
        }
        const i64 step = incx;
        const i64 first = step < 0 ? (1 - i64{n}) * step : 0;
        for (i64 i = 0; i < n; ++i) data_[i] = conjugate(x[first + i * step]);
    }
    ~ConjugateCopy() {
        if (data_ != reinterpret_cast<zcomplex*>(near_)) std::free(data_);
    }
    ConjugateCopy(const ConjugateCopy&) = delete;
    ConjugateCopy& operator=(const ConjugateCopy&) = delete;
    const zcomplex* data() const { return data_; }
};

} // namespace nxl::cblas
