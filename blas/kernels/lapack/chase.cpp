// dchase_diagonal, dchase_column, dchase_row and z forms: what a reflector does to the blocks of a band while a bulge
// is chased along it. Blocks are small and columns short, so that every pass is over whole registers, four columns at
// once.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/registers.hpp"

namespace nxl::NXL_TARGET {
namespace {

constexpr int kColumns = 4; // that go together

/// result(i) := the sum of vector i of four.
template <int W> [[gnu::always_inline]] inline void sum_each(const Vec<W>* v, double* result) {
    if constexpr (W == 8) {
        Vec<4> halves[4];
        for (int i = 0; i < 4; ++i)
            halves[i] =
                __builtin_shufflevector(v[i], v[i], 0, 1, 2, 3) + __builtin_shufflevector(v[i], v[i], 4, 5, 6, 7);
        sum_each<4>(halves, result);
    } else if constexpr (W == 4) {
        Vec<4> pairs[2];
        for (int i = 0; i < 2; ++i)
            pairs[i] = __builtin_shufflevector(v[2 * i], v[2 * i + 1], 0, 4, 2, 6) +
                       __builtin_shufflevector(v[2 * i], v[2 * i + 1], 1, 5, 3, 7);
        store<4>(result, __builtin_shufflevector(pairs[0], pairs[1], 0, 1, 4, 5) +
                             __builtin_shufflevector(pairs[0], pairs[1], 2, 3, 6, 7));
    } else {
        for (int i = 0; i < 4; i += 2)
            store<2>(result + i,
                     __builtin_shufflevector(v[i], v[i + 1], 0, 2) + __builtin_shufflevector(v[i], v[i + 1], 1, 3));
    }
}

/// The inner products of columns, conjugated, with one vector.
template <int W, int Count>
[[gnu::always_inline]] inline void totals(const InnerProduct<double, W> (&of)[Count], double* result) {
    if constexpr (Count == kColumns) {
        Vec<W> sums[Count];
        for (int k = 0; k < Count; ++k) sums[k] = of[k].sum;
        sum_each<W>(sums, result);
    } else {
        for (int k = 0; k < Count; ++k) result[k] = of[k].template total<true>();
    }
}
template <int W, int Count>
[[gnu::always_inline]] inline void totals(const InnerProduct<Complex, W> (&of)[Count], Complex* result) {
    if constexpr (Count == kColumns) {
        Vec<W> re[Count], im[Count];
        for (int k = 0; k < Count; ++k) {
            re[k] = of[k].straight;
            im[k] = of[k].crossed * alternate<W>(1.0, -1.0);
        }
        double real[Count], imaginary[Count];
        sum_each<W>(re, real);
        sum_each<W>(im, imaginary);
        for (int k = 0; k < Count; ++k) result[k] = {real[k], imaginary[k]};
    } else {
        for (int k = 0; k < Count; ++k) result[k] = of[k].template total<true>();
    }
}

/// body(j) by template argument for groups of columns from `j` to n - 1.
template <class Body> [[gnu::always_inline]] inline void for_columns(i64 n, const Body& body) {
    i64 j = 0;
    for (; j + kColumns <= n; j += kColumns) body.template operator()<kColumns>(j);
    for (; j < n; ++j) body.template operator()<1>(j);
}

/// A block whose columns are looked at a register at a time: what stands there beyond its m rows is read, and stored as
/// it was. Vectors have zeros there.
template <class T> struct Block {
    static constexpr int W = kWidest, P = kParts<T>;

    i64 m, n;
    T* a;
    i64 ld;

    i64 doubles() const { return (m * P + W - 1) / W * W; }
    double* column(i64 j) const { return parts(a + j * ld); }

    static void clear_rest(T* x, i64 count, i64 doubles_in_all) {
        double* const p = parts(x);
        for (i64 i = count * P; i < doubles_in_all; ++i) p[i] = 0.0;
    }

    template <int Count> [[gnu::always_inline]] void multiply_rows(i64 row, const T* v, double* y) const {
        Combination<T, W> sums[2][Count];
        for (auto& sum : sums)
            for (int r = 0; r < Count; ++r) sum[r].start(Vec<W>{});
        const auto add = [&](i64 j, Combination<T, W>* sum) __attribute__((always_inline)) {
            Coefficient<T, W> x;
            x.set(v[j]);
            for (int r = 0; r < Count; ++r) sum[r].add(x, load<W>(column(j) + row + r * W));
        };
        i64 j = 0;
        for (; j + 2 <= n; j += 2) {
            add(j, sums[0]);
            add(j + 1, sums[1]);
        }
        if (j < n) add(j, sums[0]);
        for (int r = 0; r < Count; ++r) store<W>(y + row + r * W, sums[0][r].total() + sums[1][r].total());
    }
    /// y := A v
    void multiply(const T* v, T* y) const {
        const i64 end = doubles();
        i64 row = 0;
        for (; row + 4 * W <= end; row += 4 * W) multiply_rows<4>(row, v, parts(y));
        for (; row < end; row += W) multiply_rows<1>(row, v, parts(y));
        clear_rest(y, m, end);
    }
    /// sums(k) := the inner product of column j + k, conjugated, with u.
    template <int Count> [[gnu::always_inline]] void project(i64 j, const T* u, T* sums) const {
        InnerProduct<T, W> products[Count];
        for (i64 row = 0; row < doubles(); row += W) {
            const Operand<T, W> operand(parts(u) + row);
            repeat<Count>(
                [&](auto k) __attribute__((always_inline)) { products[k].add(load<W>(column(j + k) + row), operand); });
        }
        totals<W>(products, sums);
    }
    /// Column j + k less x times x_factors(k) and y times y_factors(k).
    template <int Count>
    [[gnu::always_inline]] void take_off(i64 j, const T* x, const T* x_factors, const T* y, const T* y_factors) const {
        Factor<T, W> of_x[Count], of_y[Count];
        for (int k = 0; k < Count; ++k) {
            of_x[k].set(-x_factors[k]);
            of_y[k].set(-y_factors[k]);
        }
        for (i64 row = 0; row < doubles(); row += W) {
            const Operand<T, W> x_here(parts(x) + row), y_here(parts(y) + row);
            repeat<Count>([&](auto k) __attribute__((always_inline)) {
                double* const here = column(j + k) + row;
                store<W>(here, of_y[k].added_to(of_x[k].added_to(load<W>(here), x_here), y_here));
            });
        }
    }
};

/// The inner product of n elements, x conjugated.
template <class T> [[gnu::always_inline]] inline T inner_product(i64 n, const T* x, const T* y) {
    const Block<T> vector{n, 1, const_cast<T*>(x), n};
    T result;
    vector.template project<1>(0, y, &result);
    return result;
}

[[gnu::always_inline]] inline double square(double v) { return v * v; }
[[gnu::always_inline]] inline double square(Complex v) { return v.re * v.re + v.im * v.im; }
[[gnu::always_inline]] inline double tau_of(double alpha, double beta) { return (beta - alpha) / beta; }
[[gnu::always_inline]] inline Complex tau_of(Complex alpha, double beta) {
    return {(beta - alpha.re) / beta, -alpha.im / beta};
}
[[gnu::always_inline]] inline bool is_real(double) { return true; }
[[gnu::always_inline]] inline bool is_real(Complex v) { return v.im == 0.0; }

/// x, whose n elements are followed by zeros, becomes the vector, its first element 1, of the reflector H = I - tau x
/// x^H with H^H x = (beta; 0); the result is beta, which is real.
template <class T> double make_reflector(i64 n, T* x, T& tau) {
    constexpr double least = 0x1p-900, most = 0x1p900;
    const T alpha = x[0];
    x[0] = from_real<T>(0.0);
    double rest = real_part(inner_product(n, x, x)), unit = 1.0;
    double sum = rest + square(alpha);
    if (!(sum >= least && sum <= most)) { // a power of two brings the largest element near 1
        double largest = abs1(alpha);
        for (i64 i = 1; i < n; ++i) largest = abs1(x[i]) > largest ? abs1(x[i]) : largest;
        if (largest > 0.0 && largest < __builtin_inf()) {
            unit = __builtin_ldexp(1.0, __builtin_ilogb(largest) < -1000 ? -1000 : __builtin_ilogb(largest));
            for (i64 i = 1; i < n; ++i) x[i] = x[i] / unit;
            rest = real_part(inner_product(n, x, x));
            sum = rest + square(alpha / unit);
        }
    }
    const T first = alpha / unit;
    if (rest == 0.0 && is_real(alpha)) {
        tau = from_real<T>(0.0);
        for (i64 i = 0; i < n; ++i) x[i] = from_real<T>(i == 0 ? 1.0 : 0.0);
        return real_part(alpha);
    }
    const double beta = -__builtin_copysign(__builtin_sqrt(sum), real_part(first));
    tau = tau_of(first, beta);
    const T scale = reciprocal(first - from_real<T>(beta));
    for (i64 i = 1; i < n; ++i) x[i] = x[i] * scale;
    x[0] = from_real<T>(1.0);
    return beta * unit;
}

/// One triangle of a block on the diagonal. Lanes above the diagonal are stored as they were.
template <class T> class Triangle {
    using View = Block<T>;
    static constexpr int W = View::W, P = View::P;
    const View a_;

    /// By element: whether that of row r, r = 0 being the first of the vector at `row`, is at least j.
    [[gnu::always_inline]] static auto from_row(i64 row, i64 j) {
        Vec<W> index;
        for (int lane = 0; lane < W; ++lane) {
            const int element = lane / P;
            index[lane] = element;
        }
        const i64 first = j - row / P;
        return index >= splat<W>(static_cast<double>(first));
    }
    /// body(row, in_triangle) where the columns j .. j + Count - 1 have elements.
    template <int Count, class Inside, class Below>
    [[gnu::always_inline]] void for_rows(i64 j, const Inside& across, const Below& below) const {
        i64 row = j * P / W * W;
        for (; row < (j + Count) * P && row < a_.doubles(); row += W) across(row);
        for (; row < a_.doubles(); row += W) below(row);
    }

    template <int Count> [[gnu::always_inline]] void add_product(i64 j, const T* v, T* w, T* mirrored) const {
        Coefficient<T, W> x[Count];
        for (int k = 0; k < Count; ++k) x[k].set(v[j + k]);
        InnerProduct<T, W> products[Count];
        const auto add = [&](i64 row, const auto& own, const auto& other) __attribute__((always_inline)) {
            const Operand<T, W> operand(parts(v) + row);
            Combination<T, W> sum;
            sum.start(parts(w) + row);
            repeat<Count>([&](auto k) __attribute__((always_inline)) {
                const Vec<W> column = load<W>(a_.column(j + k) + row);
                sum.add(x[k], own(column, k));
                products[k].add(other(column, k), operand);
            });
            store<W>(parts(w) + row, sum.total());
        };
        const auto whole = [](const Vec<W>& v, auto) __attribute__((always_inline)) { return v; };
        for_rows<Count>(
            j,
            [&](i64 row) __attribute__((always_inline)) {
                add(
                    row,
                    [&](const Vec<W>& v, auto k)
                        __attribute__((always_inline)) { return from_row(row, j + k) ? v : Vec<W>{}; },
                    [&](const Vec<W>& v, auto k)
                        __attribute__((always_inline)) { return from_row(row, j + k + 1) ? v : Vec<W>{}; });
            },
            [&](i64 row) __attribute__((always_inline)) { add(row, whole, whole); });
        totals<W>(products, mirrored + j);
    }

    template <int Count> [[gnu::always_inline]] void take_off(i64 j, const T* v, const T* w) const {
        Factor<T, W> of_v[Count], of_w[Count];
        for (int k = 0; k < Count; ++k) {
            of_v[k].set(-conj(w[j + k]));
            of_w[k].set(-conj(v[j + k]));
        }
        const auto update = [&](i64 row, const auto& pick) __attribute__((always_inline)) {
            const Operand<T, W> v_here(parts(v) + row), w_here(parts(w) + row);
            repeat<Count>([&](auto k) __attribute__((always_inline)) {
                double* const here = a_.column(j + k) + row;
                const Vec<W> old = load<W>(here);
                store<W>(here, pick(of_w[k].added_to(of_v[k].added_to(old, v_here), w_here), old, k));
            });
        };
        for_rows<Count>(
            j,
            [&](i64 row) __attribute__((always_inline)) {
                update(row, [&](const Vec<W>& turned, const Vec<W>& old, auto k)
                                __attribute__((always_inline)) { return from_row(row, j + k) ? turned : old; });
            },
            [&](i64 row) __attribute__((always_inline)) {
                update(row,
                       [](const Vec<W>& turned, const Vec<W>&, auto) __attribute__((always_inline)) { return turned; });
            });
        if constexpr (P == 2)
            for (int k = 0; k < Count; ++k) a_.a[(j + k) * (a_.ld + 1)].im = 0.0;
    }

  public:
    explicit Triangle(const View& a) : a_(a) {}

    /// A := H^H A H for H = I - tau v v^H. w, mirrored: as many elements as v, and its zeros.
    void reflect(const T* v, T tau, T* w, T* mirrored) const {
        const i64 n = a_.n;
        View::clear_rest(w, 0, a_.doubles());
        for_columns(n, [&]<int Count>(i64 j) __attribute__((always_inline)) { add_product<Count>(j, v, w, mirrored); });
        for (i64 i = 0; i < n; ++i) w[i] = tau * (w[i] + mirrored[i]);
        View::clear_rest(w, n, a_.doubles());
        const T factor = tau * inner_product(n, w, v) * -0.5;
        for (i64 i = 0; i < n; ++i) w[i] = w[i] + factor * v[i];
        for_columns(n, [&]<int Count>(i64 j) __attribute__((always_inline)) { take_off<Count>(j, v, w); });
    }
};

template <class T> void chase_diagonal(i64 n, T* a, i64 lda, const T* v, T tau, T* work) {
    const Block<T> block{n, n, a, lda};
    Triangle<T>(block).reflect(v, tau, work, work + block.doubles() / kParts<T>);
}

template <class T> void chase_column(const Block<T>& c, const T* v, T tau, T* next, T& next_tau, T* y) {
    c.multiply(v, y);
    for (i64 i = 0; i < c.m; ++i) {
        y[i] = y[i] * tau;
        next[i] = c.a[i] - y[i];
    }
    Block<T>::clear_rest(next, c.m, c.doubles());
    const double beta = make_reflector(c.m, next, next_tau);
    for (i64 i = 0; i < c.m; ++i) c.a[i] = from_real<T>(i == 0 ? beta : 0.0);
    const T of_y = inner_product(c.m, next, y), factor = conj(next_tau);
    const Block<T> others{c.m, c.n - 1, c.a + c.ld, c.ld};
    for_columns(c.n - 1, [&]<int Count>(i64 j) __attribute__((always_inline)) {
        T of_next[Count], of_v[Count];
        others.template project<Count>(j, next, of_next);
        for (int k = 0; k < Count; ++k) {
            of_v[k] = conj(v[j + 1 + k]);
            of_next[k] = factor * (conj(of_next[k]) - of_y * of_v[k]);
        }
        others.template take_off<Count>(j, y, of_v, next, of_next);
    });
}

template <class T> void chase_row(const Block<T>& c, const T* u, T tau, T* next, T& next_tau, T* work) {
    T *const y = work, *const of_u = work + c.doubles() / kParts<T>;
    T sum = from_real<T>(0.0);
    for_columns(c.n,
                [&]<int Count>(i64 j) __attribute__((always_inline)) { c.template project<Count>(j, u, of_u + j); });
    for (i64 j = 0; j < c.n; ++j) {
        of_u[j] = conj(tau * of_u[j]);
        next[j] = conj(c.a[j * c.ld] - of_u[j]);
    }
    Block<T>::clear_rest(next, c.n, (Block<T>{c.n, 0, nullptr, 0}).doubles());
    const double beta = make_reflector(c.n, next, next_tau);
    for (i64 j = 0; j < c.n; ++j) sum = sum + of_u[j] * next[j];
    c.multiply(next, y);
    for (i64 i = 0; i < c.m; ++i) y[i] = next_tau * (y[i] - u[i] * sum);
    for_columns(c.n, [&]<int Count>(i64 j) __attribute__((always_inline)) {
        T of_y[Count];
        for (int k = 0; k < Count; ++k) of_y[k] = conj(next[j + k]);
        c.template take_off<Count>(j, u, of_u + j, y, of_y);
    });
    for (i64 j = 0; j < c.n; ++j) c.a[j * c.ld] = from_real<T>(j == 0 ? beta : 0.0);
}

} // namespace

void dchase_diagonal(const i64& n, double* a, const i64& lda, const double* v, const double& tau, double* work) {
    chase_diagonal(n, a, lda, v, tau, work);
}
void zchase_diagonal(const i64& n, zcomplex* a, const i64& lda, const zcomplex* v, const zcomplex& tau,
                     zcomplex* work) {
    chase_diagonal(n, scalars(a), lda, scalars(v), scalar(tau), scalars(work));
}

void dchase_column(const i64& m, const i64& n, double* a, const i64& lda, const double* v, const double& tau,
                   double* next, double& next_tau, double* work) {
    chase_column(Block<double>{m, n, a, lda}, v, tau, next, next_tau, work);
}
void zchase_column(const i64& m, const i64& n, zcomplex* a, const i64& lda, const zcomplex* v, const zcomplex& tau,
                   zcomplex* next, zcomplex& next_tau, zcomplex* work) {
    chase_column(Block<Complex>{m, n, scalars(a), lda}, scalars(v), scalar(tau), scalars(next), *scalars(&next_tau),
                 scalars(work));
}

void dchase_row(const i64& m, const i64& n, double* a, const i64& lda, const double* u, const double& tau, double* next,
                double& next_tau, double* work) {
    chase_row(Block<double>{m, n, a, lda}, u, tau, next, next_tau, work);
}
void zchase_row(const i64& m, const i64& n, zcomplex* a, const i64& lda, const zcomplex* u, const zcomplex& tau,
                zcomplex* next, zcomplex& next_tau, zcomplex* work) {
    chase_row(Block<Complex>{m, n, scalars(a), lda}, scalars(u), scalar(tau), scalars(next), *scalars(&next_tau),
              scalars(work));
}

} // namespace nxl::NXL_TARGET
