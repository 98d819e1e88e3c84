// dshifted_rows, zshifted_rows: a few rows of (T - lambda I) x = b for many lambda at once, each in a lane.
#include "blas/kernels/kernels.hpp"
#include "blas/kernels/lapack/lane_numbers.hpp"

namespace nxl::NXL_TARGET {
namespace {

constexpr int kMostRows = shifted_rows + 1;

/// Unknowns of W lanes.
template <class T, int W, class Number> struct LaneGroup {
    static constexpr bool kReal = sizeof(Number) == sizeof(Whole<W>);

    const T* const t;
    const i64 ldt, first; // the row of T, of all, that t begins with
    T* const x;
    const i64 ldx, apart; // of real and imaginary parts
    const Number shift;
    const Vec<W> least, start;
    Number rows[kMostRows];

    [[gnu::always_inline]] Number load_row(i64 i) const {
        const double* const p = parts(x + i * ldx);
        if constexpr (kReal) return Number(load<W>(p));
        else if constexpr (kParts<T> == 1) return {load<W>(p), load<W>(p + apart)};
        else return deinterleaved(load<W>(p), load<W>(p + W), std::make_integer_sequence<int, W>{});
    }
    [[gnu::always_inline]] void store_row(i64 i, const Number& z) const {
        double* const p = parts(x + i * ldx);
        if constexpr (kReal) store<W>(p, z.value);
        else if constexpr (kParts<T> == 1) {
            store<W>(p, z.re);
            store<W>(p + apart, z.im);
        } else interleave(z, p, std::make_integer_sequence<int, W>{});
    }
    template <int... L>
    [[gnu::always_inline]] static Number deinterleaved(Vec<W> a, Vec<W> b, std::integer_sequence<int, L...>) {
        return {__builtin_shufflevector(a, b, 2 * L...), __builtin_shufflevector(a, b, (2 * L + 1)...)};
    }
    template <int... L>
    [[gnu::always_inline]] static void interleave(const Number& z, double* p, std::integer_sequence<int, L...>) {
        store<W>(p, __builtin_shufflevector(z.re, z.im, (L / 2 + L % 2 * W)...));
        store<W>(p + W, __builtin_shufflevector(z.re, z.im, ((W + L) / 2 + (W + L) % 2 * W)...));
    }

    [[gnu::always_inline]] auto element(i64 i, i64 j) const { return everywhere<W>(t[i + j * ldt]); }
    [[gnu::always_inline]] Number at_least(const Number& pivot) const {
        return pivot.or_if(pivot.size() < least, Number(least));
    }
    [[gnu::always_inline]] auto is_given(i64 i) const { return start <= splat<W>(static_cast<double>(first + i)); }

    /// A block of order 1, its right-hand side b.
    [[gnu::always_inline]] void solve_one(i64 i, const Number& b) {
        rows[i] = (b * at_least(element(i, i) - shift).inverse()).or_if(is_given(i), rows[i]);
    }
    [[gnu::always_inline]] void solve_two(i64 i, const Number& b1, const Number& b2) {
        const auto found =
            solve_pair(element(i, i) - shift, Number(element(i, i + 1)), Number(element(i + 1, i)),
                       element(i + 1, i + 1) - shift, b1, b2, [&](const Number& pivot) { return at_least(pivot); });
        rows[i] = found.first.or_if(is_given(i), rows[i]);
        rows[i + 1] = found.second.or_if(is_given(i), rows[i + 1]);
    }
    [[gnu::always_inline]] void solve(i64 count) {
        for (i64 end = count; end > 0;) {
            if (const bool pair = kParts<T> == 1 && end > 1 && !is_zero(t[end - 1 + (end - 2) * ldt]); !pair) {
                const i64 i = end - 1;
                Number b = rows[i];
                for (i64 k = end; k < count; ++k) b = b - rows[k] * element(i, k);
                solve_one(i, b);
                end = i;
            } else if constexpr (kParts<T> == 1) {
                const i64 i = end - 2;
                Number b1 = rows[i], b2 = rows[i + 1];
                for (i64 k = end; k < count; ++k) {
                    b1 = b1 - rows[k] * element(i, k);
                    b2 = b2 - rows[k] * element(i + 1, k);
                }
                solve_two(i, b1, b2);
                end = i;
            }
        }
    }
    /// Answers the sums of sizes, which NaN and infinity do not leave. Where they have left the room, all stays as it
    /// was.
    [[gnu::always_inline]] Vec<W> put_back(i64 count, Vec<W> room) const {
        Vec<W> sum{};
        for (i64 i = 0; i < count; ++i) sum += rows[i].size();
        for (i64 i = 0; i < count; ++i) store_row(i, load_row(i).or_if(sum <= room, rows[i]));
        return sum;
    }
};

template <class Number, int W> [[gnu::always_inline]] inline Number shifts_of(const ShiftedLanes& lanes, i64 lane) {
    if constexpr (sizeof(Number) == sizeof(Whole<W>)) return Number(load<W>(lanes.re + lane));
    else return {load<W>(lanes.re + lane), load<W>(lanes.im + lane)};
}

/// Groups of W lanes from number `lane` on, and then shorter ones. False where a lane has left its room.
template <class T, template <int> class Number, int W>
bool solve_lanes(i64 rows, const T* t, i64 ldt, i64 first, const ShiftedLanes& lanes, i64 lane, double room, T* x,
                 i64 ldx) {
    bool within = true;
    for (; lane + W <= lanes.count; lane += W) {
        LaneGroup<T, W, Number<W>> group{t,
                                         ldt,
                                         first,
                                         x + lane,
                                         ldx,
                                         lanes.count,
                                         shifts_of<Number<W>, W>(lanes, lane),
                                         load<W>(lanes.least + lane),
                                         load<W>(lanes.start + lane),
                                         {}};
        for (i64 i = 0; i < rows; ++i) group.rows[i] = group.load_row(i);
        group.solve(rows);
        const Vec<W> sizes = group.put_back(rows, splat<W>(room));
        store<W>(lanes.sizes + lane, sizes);
        for (int l = 0; l < W; ++l) within = within && sizes[l] <= room;
    }
    if constexpr (W > 1)
        if (lane < lanes.count)
            return solve_lanes<T, Number, W / 2>(rows, t, ldt, first, lanes, lane, room, x, ldx) && within;
    return within;
}

} // namespace

bool dshifted_rows(const i64& rows, const double* t, const i64& ldt, const i64& first, const ShiftedLanes& lanes,
                   const double& room, double* x, const i64& ldx) {
    if (!lanes.im) return solve_lanes<double, Whole, kWidest>(rows, t, ldt, first, lanes, 0, room, x, ldx);
    return solve_lanes<double, Split, kWidest>(rows, t, ldt, first, lanes, 0, room, x, ldx);
}

bool zshifted_rows(const i64& rows, const zcomplex* t, const i64& ldt, const i64& first, const ShiftedLanes& lanes,
                   const double& room, zcomplex* x, const i64& ldx) {
    return solve_lanes<Complex, Split, kWidest>(rows, scalars(t), ldt, first, lanes, 0, room, scalars(x), ldx);
}

} // namespace nxl::NXL_TARGET
