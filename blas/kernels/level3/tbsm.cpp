// dtbsm, ztbsm: B := op(A)^-1 B for a triangle of a narrow band, or the L of a band's LU factors with its interchanges.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/level2/triangular.hpp"
#include "blas/kernels/transpose.hpp"

namespace nxl::NXL_TARGET {
namespace {

// A narrow band leaves nothing to do at once within a right-hand side, so that some of them go side by side, each
// element of the band meeting registers full of them. Of B a window is transposed at a time, in the order of
// substitution:
//
//     base          processed          filled         the last k of them are carried on: rows to come may
//     | r r r r r r r r | r r r r r r r r |           still take from them, and interchanges reach as far
//
// Counted in that order, a row takes from the k before it, forwards and backwards, whatever triangle is stored.
constexpr int W = kWidest;
constexpr int kVectors = 16 / W; // in a row of the window
template <class T> constexpr i64 kGroup = 16 / kParts<T>;
constexpr i64 kWindow = 128; // rows beside those carried on, so that the window stays in the first cache

template <Form F, class T> class RowsOfGroup {
    static constexpr int P = kElements<T, W>;

    const StoredTriangle<F, T> band_;
    const i64 n_, k_;
    const i64* const ipiv_; // counted from 1; null without interchanges
    double (&window_)[(kWindow + tbsm_band) * 16];
    i64 base_ = 0;

    /// Row i of the window, i in the order of substitution; and where that row is in the matrix.
    [[gnu::always_inline]] double* row(i64 i) const { return window_ + (i - base_) * 16; }
    [[gnu::always_inline]] i64 place(i64 i) const { return F.forward() ? i : n_ - 1 - i; }
    /// What row i takes of the one `distance` before is diagonal(i)[distance * step()].
    [[gnu::always_inline]] const T* diagonal(i64 i) const { return band_.a + place(i) * (band_.lda + 1); }
    [[gnu::always_inline]] i64 step() const {
        const i64 along_column = F.upper ? -1 : 1;
        return F.transposed ? along_column : -along_column * band_.lda;
    }

    /// Calls block(row, column, columns) for P rows and at most as many columns; for what is left, element(row,
    /// column).
    template <class Block, class Element>
    [[gnu::always_inline]] void for_places(i64 first, i64 end, i64 columns, const Block& block,
                                           const Element& element) const {
        i64 i = first;
        for (; i + P <= end; i += P)
            for (i64 c = 0; c < columns; c += P) block(i, c, smaller(P, columns - c));
        for (; i < end; ++i)
            for (i64 c = 0; c < columns; ++c) element(i, c);
    }
    /// The register for row i + r of a block: of the matrix's rows the first comes first.
    [[gnu::always_inline]] static int turned(int r) { return F.forward() ? r : P - 1 - r; }

    void gather(i64 first, i64 end, i64 columns, const T* b, i64 ldb) const {
        for_places(
            first, end, columns,
            [&](i64 i, i64 c, i64 count) __attribute__((always_inline)) {
                const T* const from = b + smaller(place(i), place(i + P - 1)) + c * ldb;
                Vec<W> v[P];
                repeat<P>([&](auto k) { v[k] = k < count ? load<W>(parts(from + k * ldb)) : Vec<W>{}; });
                transpose<T, W>(v);
                repeat<P>([&](auto r) { store<W>(row(i + r) + c * kParts<T>, v[turned(r)]); });
            },
            [&](i64 i, i64 c) { scalars<T>(row(i))[c] = b[place(i) + c * ldb]; });
    }
    void scatter(i64 first, i64 end, i64 columns, T* b, i64 ldb) const {
        for_places(
            first, end, columns,
            [&](i64 i, i64 c, i64 count) __attribute__((always_inline)) {
                T* const to = b + smaller(place(i), place(i + P - 1)) + c * ldb;
                Vec<W> v[P];
                repeat<P>([&](auto r) { v[turned(r)] = load<W>(row(i + r) + c * kParts<T>); });
                transpose<T, W>(v);
                repeat<P>([&](auto k) {
                    if (k < count) store<W>(parts(to + k * ldb), v[k]);
                });
            },
            [&](i64 i, i64 c) { b[place(i) + c * ldb] = scalars<T>(row(i))[c]; });
    }

    using Row = Vec<W>[kVectors];
    [[gnu::always_inline]] static void read(Row& v, const double* from) {
        repeat<kVectors>([&](auto l) { v[l] = load<W>(from + l * W); });
    }
    [[gnu::always_inline]] static void write(double* to, const Row& v) {
        repeat<kVectors>([&](auto l) { store<W>(to + l * W, v[l]); });
    }
    [[gnu::always_inline]] static void exchange_rows(double* a, double* b) {
        if (a == b) return;
        Row x, y;
        read(x, a);
        read(y, b);
        write(a, y);
        write(b, x);
    }

    /// The row just before comes last, since it has only now become known.
    [[gnu::always_inline]] void take(i64 i) const {
        double* const own = row(i);
        const T* const element = diagonal(i);
        Combination<T, W> sum[kVectors];
        repeat<kVectors>([&](auto l) { sum[l].start(own + l * W); });
        for (i64 distance = smaller(k_, i); distance > 0; --distance) {
            Coefficient<T, W> factor;
            factor.set(-conj_if<F.conjugated>(element[distance * step()]));
            const double* const from = own - distance * 16;
            repeat<kVectors>([&](auto l) { sum[l].add(factor, load<W>(from + l * W)); });
        }
        Row v;
        repeat<kVectors>([&](auto l) { v[l] = sum[l].total(); });
        if (!band_.unit) divide(v, conj_if<F.conjugated>(*element));
        write(own, v);
    }
    [[gnu::always_inline]] static void divide(Row& v, T pivot) {
        if (has_reciprocal(pivot)) {
            const Factor<T, W> factor(reciprocal(pivot));
            repeat<kVectors>([&](auto l) { v[l] = factor.times(v[l]); });
        } else {
            T element[kGroup<T>];
            write(parts(element), v);
            for (T& e : element) e = e / pivot;
            read(v, parts(element));
        }
    }

    /// Of L: the rows after this one may change places yet, so that each has to get its share at once.
    [[gnu::always_inline]] void give(i64 i) const {
        const double* const own = row(i);
        const T* const element = diagonal(i);
        Operand<T, W> v[kVectors];
        repeat<kVectors>([&](auto l) { v[l] = Operand<T, W>(own + l * W); });
        for (i64 distance = 1; distance <= smaller(k_, n_ - 1 - i); ++distance) {
            const Factor<T, W> factor(-element[distance]);
            double* const to = row(i + distance);
            repeat<kVectors>([&](auto l) { store<W>(to + l * W, factor.added_to(load<W>(to + l * W), v[l])); });
        }
    }

    [[gnu::always_inline]] void solve_row(i64 i) const {
        if constexpr (!F.upper)
            if (ipiv_ != nullptr) {
                const i64 distance = ipiv_[place(i)] - 1 - place(i);
                if constexpr (F.transposed) {
                    take(i);
                    exchange_rows(row(i), row(i - distance));
                } else {
                    exchange_rows(row(i), row(i + distance));
                    give(i);
                }
                return;
            }
        take(i);
    }

  public:
    RowsOfGroup(i64 n, i64 k, const StoredTriangle<F, T>& band, const i64* ipiv,
                double (&window)[(kWindow + tbsm_band) * 16])
        : band_(band),
          n_(n),
          k_(k),
          ipiv_(ipiv),
          window_(window) {}

    void solve(i64 columns, T* b, i64 ldb) {
        const bool gives = ipiv_ != nullptr && !F.transposed;
        for (i64 filled = 0, processed = 0; base_ < n_;) {
            const i64 end = smaller(n_, base_ + kWindow + k_);
            gather(filled, end, columns, b, ldb);
            filled = end;
            const i64 done = filled == n_ ? n_ : filled - k_, until = gives ? done : filled;
            for (; processed < until; ++processed) solve_row(processed);
            scatter(base_, done, columns, b, ldb);
            __builtin_memmove(window_, row(done), static_cast<std::size_t>(filled - done) * 16 * sizeof(double));
            base_ = done;
        }
    }
};

template <class T>
void tbsm(char uplo, char trans, char diag, i64 n, i64 k, const T* a, i64 lda, const i64* ipiv, i64 columns, T* b,
          i64 ldb) {
    alignas(64) double window[(kWindow + tbsm_band) * 16] = {};
    for (i64 c = 0; c < columns; c += kGroup<T>)
        with_form<T, Task::solution>(uplo, trans, [&]<Form F>() {
            RowsOfGroup<F, T>(n, k, StoredTriangle<F, T>{a, lda, diag == 'U'}, ipiv, window)
                .solve(smaller(kGroup<T>, columns - c), b + c * ldb, ldb);
        });
}

} // namespace

void dtbsm(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k, const double* a,
           const i64& lda, const i64* ipiv, const i64& columns, double* b, const i64& ldb) {
    tbsm(uplo, trans, diag, n, k, a, lda, ipiv, columns, b, ldb);
}

void ztbsm(const char& uplo, const char& trans, const char& diag, const i64& n, const i64& k, const zcomplex* a,
           const i64& lda, const i64* ipiv, const i64& columns, zcomplex* b, const i64& ldb) {
    tbsm(uplo, trans, diag, n, k, scalars(a), lda, ipiv, columns, scalars(b), ldb);
}

} // namespace nxl::NXL_TARGET
