// dsylvester_leaf, zsylvester_leaf: Sylvester equations of a few rows and columns. Column by column of X, or two of
// them as the parts of one complex column; rows of all matrices are copied to where they fill registers.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/lane_numbers.hpp"

namespace nxl::NXL_TARGET {
namespace {

constexpr i64 kMost = sylvester_leaf + 1, kRows = (kMost + 7) / 8 * 8;

/// A column, with zeros behind it.
struct alignas(64) Rows {
    double re[kRows], im[kRows];
};
template <class T, int W> using Element = std::conditional_t<kParts<T> == 1, Whole<W>, Split<W>>;

template <int W> [[gnu::always_inline]] inline void get(const Rows& x, i64 i, Whole<W>& value) {
    value.value = load<W>(x.re + i);
}
template <int W> [[gnu::always_inline]] inline void get(const Rows& x, i64 i, Split<W>& value) {
    value.re = load<W>(x.re + i);
    value.im = load<W>(x.im + i);
}
template <class Number> [[gnu::always_inline]] inline Number number_at(const Rows& x, i64 i) {
    Number value;
    get(x, i, value);
    return value;
}
template <int W> [[gnu::always_inline]] inline void put(Rows& x, i64 i, const Whole<W>& value) {
    store<W>(x.re + i, value.value);
}
template <int W> [[gnu::always_inline]] inline void put(Rows& x, i64 i, const Split<W>& value) {
    store<W>(x.re + i, value.re);
    store<W>(x.im + i, value.im);
}
template <int W> [[gnu::always_inline]] inline Whole<W> in_all_lanes(const Whole<1>& x) {
    return everywhere<W>(x.value[0]);
}
template <int W> [[gnu::always_inline]] inline Split<W> in_all_lanes(const Split<1>& x) {
    return everywhere<W>(Complex{x.re[0], x.im[0]});
}

template <class T> class Leaf {
    const i64 p_, q_;
    const T* const b_;
    const i64 ldb_;
    const double sign_, least_;
    Rows a_[kMost], x_[kMost]; // columns of A and X
    double smallest_pivot_ = __builtin_inf();

    static void copy_in(double value, Rows& to, i64 i) { to.re[i] = value; }
    static void copy_in(Complex value, Rows& to, i64 i) {
        to.re[i] = value.re;
        to.im[i] = value.im;
    }
    static void copy_out(const Rows& from, i64 i, double& value) { value = from.re[i]; }
    static void copy_out(const Rows& from, i64 i, Complex& value) { value = {from.re[i], from.im[i]}; }

    T of_b(i64 i, i64 j) const { return b_[i + j * ldb_]; }

    /// Rows 0 .. end - 1 of z, less what columns of A, or of X, give them.
    template <class Number> static void take_off(i64 end, const Rows& column, const Number& factor, Rows& z) {
        constexpr int W = kWidest;
        const auto f = in_all_lanes<W>(factor);
        for (i64 i = 0; i < end; i += W)
            put(z, i, number_at<std::remove_const_t<decltype(f)>>(z, i) - f * number_at<Element<T, W>>(column, i));
    }
    template <class Number>
    static void take_off(i64 end, const Rows* columns, const Unknowns<Number>& factors, Rows& z) {
        constexpr int W = kWidest;
        const auto f = in_all_lanes<W>(factors.first), g = in_all_lanes<W>(factors.second);
        for (i64 i = 0; i < end; i += W)
            put(z, i,
                number_at<std::remove_const_t<decltype(f)>>(z, i) - f * number_at<Element<T, W>>(columns[0], i) -
                    g * number_at<Element<T, W>>(columns[1], i));
    }
    /// (A - shift I) x = z; x takes the place of z.
    template <class Number> void solve_column(const Number& shift, Rows& z) {
        const auto at_least = [&](const Number& pivot) {
            const Vec<1> size = pivot.size();
            if (size[0] < smallest_pivot_) smallest_pivot_ = size[0];
            return pivot.or_if(size < splat<1>(least_), Number(splat<1>(least_)));
        };
        const auto element = [&](i64 i, i64 j) { return number_at<Element<T, 1>>(a_[j], i); };
        Rows found;
        for (i64 end = p_; end > 0;) {
            const i64 i = end - 1;
            if (kParts<T> == 1 && i > 0 && !is_zero(a_[i - 1].re[i])) {
                const i64 k = i - 1;
                const auto pair =
                    solve_pair(element(k, k) - shift, Number(element(k, i)), Number(element(i, k)),
                               element(i, i) - shift, number_at<Number>(z, k), number_at<Number>(z, i), at_least);
                take_off(k, a_ + k, pair, z);
                put(found, k, pair.first);
                put(found, i, pair.second);
                end = k;
            } else {
                const Number value = number_at<Number>(z, i) * at_least(element(i, i) - shift).inverse();
                take_off(i, a_[i], value, z);
                put(found, i, value);
                end = i;
            }
        }
        for (i64 i = 0; i < p_; ++i) put(z, i, number_at<Number>(found, i));
    }

    /// A column of X; those before it are known.
    void solve_single(i64 l, Rows& z) {
        using Number = Element<T, 1>;
        for (i64 j = 0; j < l; ++j) take_off(p_, x_[j], everywhere<1>(of_b(j, l) * sign_), z);
        solve_column<Number>(everywhere<1>(-(of_b(l, l) * sign_)), z);
        x_[l] = z;
    }
    /// Columns l and l + 1 with a block [b w; u b]: for d^2 = -u / w, (1, i d) is an eigenvector of its transpose, so
    /// that x1 + i d x2 is what solves A with a complex shift.
    void solve_two_columns(i64 l, Rows& z) {
        const double w = of_b(l, l + 1), d = __builtin_sqrt(-of_b(l + 1, l) / w);
        for (i64 j = 0; j < l; ++j)
            take_off(p_, x_[j], everywhere<1>(Complex{of_b(j, l) * sign_, of_b(j, l + 1) * sign_}), z);
        for (i64 i = 0; i < p_; ++i) z.im[i] *= d;
        solve_column<Split<1>>(everywhere<1>(Complex{-(of_b(l, l) * sign_), -(d * w * sign_)}), z);
        const double inverse = 1.0 / d;
        for (i64 i = 0; i < p_; ++i) {
            x_[l].re[i] = z.re[i];
            x_[l + 1].re[i] = z.im[i] * inverse;
        }
    }
    /// Columns of X from number l on, one or two.
    i64 solve_columns(i64 l, const T* c, i64 row_step, i64 ldc) {
        Rows z{};
        for (i64 i = 0; i < p_; ++i) copy_in(c[i * row_step], z, i);
        if constexpr (kParts<T> == 1)
            if (l + 1 < q_ && !is_zero(of_b(l + 1, l))) {
                for (i64 i = 0; i < p_; ++i) z.im[i] = c[i * row_step + ldc];
                solve_two_columns(l, z);
                return 2;
            }
        solve_single(l, z);
        return 1;
    }

  public:
    Leaf(i64 rows, i64 columns, const T* form_a, i64 lda, const T* form_b, i64 ld, double sign_of_b, double least_pivot)
        : p_(rows),
          q_(columns),
          b_(form_b),
          ldb_(ld),
          sign_(sign_of_b),
          least_(least_pivot) {
        for (i64 j = 0; j < p_; ++j) {
            const i64 end = kParts<T> == 1 ? smaller(j + 2, p_) : j + 1;
            a_[j] = {};
            for (i64 i = 0; i < end; ++i) copy_in(form_a[i + j * lda], a_[j], i);
        }
        for (i64 j = 0; j < q_; ++j) x_[j] = {};
    }
    SylvesterLeafAnswer solve(T* c, i64 row_step, i64 ldc) {
        Vec<kWidest> sizes{};
        for (i64 l = 0; l < q_;)
            for (const i64 end = l + solve_columns(l, c + l * ldc, row_step, ldc); l < end; ++l) {
                for (i64 i = 0; i < p_; i += kWidest) sizes += number_at<Element<T, kWidest>>(x_[l], i).size();
                for (i64 i = 0; i < p_; ++i) copy_out(x_[l], i, c[i * row_step + l * ldc]);
            }
        return {sum_lanes<kWidest>(sizes), smallest_pivot_};
    }
};

} // namespace

SylvesterLeafAnswer dsylvester_leaf(const i64& p, const i64& q, const double* a, const i64& lda, const double* b,
                                    const i64& ldb, const double& sign, const double& least, double* c,
                                    const i64& row_step, const i64& ldc) {
    return Leaf<double>(p, q, a, lda, b, ldb, sign, least).solve(c, row_step, ldc);
}

SylvesterLeafAnswer zsylvester_leaf(const i64& p, const i64& q, const zcomplex* a, const i64& lda, const zcomplex* b,
                                    const i64& ldb, const double& sign, const double& least, zcomplex* c,
                                    const i64& row_step, const i64& ldc) {
    return Leaf<Complex>(p, q, scalars(a), lda, scalars(b), ldb, sign, least).solve(scalars(c), row_step, ldc);
}

} // namespace nxl::NXL_TARGET
