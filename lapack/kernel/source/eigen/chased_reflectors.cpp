// Reflectors of equal step and neighbouring sweeps overlap but for a row, and make a diamond:
//
//     1           V of sweeps j, j + 1, j + 2 and b = 4. As I - V T V^H it is applied by two matrix products, at the
//     v 1         price of the zeros. A diamond of earlier sweeps, or a later step, touches none of those rows that
//     v v 1       one of later sweeps and an earlier step does, so that of what the order of the reflectors asks for,
//     v v v       this remains: for Q C later sweeps come first, and of some sweeps those of earlier steps. Several
//       v v       groups of sweeps go down the rows of C together, one diamond behind the other, in rows that are still
//         v       in the cache.
//
// Haidar, Ltaief and Dongarra, SC '11 (2011); Bischof, Lang and Sun, ACM TOMS 26 (2000).
#include "lapack/kernel/source/eigen/chased_reflectors.hpp"
#include "blas/calls.hpp"
#include "lapack/kernel/source/orthogonal/block_reflector.hpp"
#include "service/scalars.hpp"
#include "service/scratch.hpp"
#include "service/threads.hpp"
#include "service/workspace.hpp"

namespace nxl {
namespace {

/// Sweeps of a diamond: more would be more zeros, fewer are slower products.
constexpr i64 group_width = 16;
/// Groups that go together: their rows of a chunk, and their diamonds of one step, stay in the second cache.
constexpr i64 groups_at_once = 4;
/// Columns of C that are worked on at once.
template <class T> constexpr i64 chunk_width = 256 * i64{sizeof(double)} / i64{sizeof(T)};

/// Diamonds of some groups of sweeps, made.
template <class T> class Diamonds {
    const ChasedReflectors<T>& q_;
    const i64 first_, groups_, steps_; // first sweep; groups from there on
    T* const memory_;

    struct Diamond {
        Slice rows;
        Matrix<T> v, vt; // V and V T
    };
    /// A null slice of rows where there is none.
    Diamond at(i64 group, i64 step) const {
        const i64 j = first_ + group * group_width, start = j + 1 + step * q_.b;
        const i64 count = std::min({group_width, q_.n - 1 - j, q_.n - start});
        if (count <= 0) return {{0, 0}, {}, {}};
        const i64 height = q_.rows(j + count - 1, step).end() - start, size = size_of(q_.b);
        T* const place = memory_ + (step * groups_ + group) * 2 * size;
        return {{start, height}, {place, height, count, height}, {place + size, height, count, height}};
    }
    static constexpr i64 size_of(i64 b) { return (b + group_width) * group_width; }

    void make(i64 group, i64 step) const {
        const auto [rows, v, vt] = at(group, step);
        if (rows.count == 0) return;
        const i64 j = first_ + group * group_width;
        for (i64 c = 0; c < v.columns; ++c) {
            const Slice own = q_.rows(j + c, step);
            T* const column = v.at(0, c);
            std::fill(column, column + v.rows, T{});
            std::copy_n(q_.vectors.at(own.start, j + c), own.count, column + c);
            std::copy_n(column, v.rows, vt.at(0, c));
        }
        T square[group_width * group_width];
        const Matrix<T> t{square, v.columns, v.columns, group_width};
        make_factor(Reflectors<T>{v, Order::forward, Storage::columns}, q_.scalars(j, step), t);
        trmm('R', 'U', 'N', 'N', 1.0, t, vt);
    }

  public:
    Diamonds(const ChasedReflectors<T>& q, i64 first, i64 groups, T* memory)
        : q_(q),
          first_(first),
          groups_(groups),
          steps_((q.n - 2 - first) / q.b + 1),
          memory_(memory) {}
    static i64 room(i64 n, i64 b) { return 2 * groups_at_once * ((n - 2) / b + 1) * size_of(b); }

    void make(int threads) const {
        parallel_blocks(threads, static_cast<int>(steps_), [&](int step) {
            for (i64 group = 0; group < groups_; ++group) make(group, step);
        });
    }
    /// w: group_width by the columns of C.
    void apply(const Matrix<T>& c, T* w) const {
        for (i64 step = 0; step < steps_; ++step)
            for (i64 group = groups_ - 1; group >= 0; --group) {
                const auto [rows, v, vt] = at(group, step);
                if (rows.count == 0) continue;
                const Matrix<T> part = c.rows_from(rows.start, rows.count), product{w, v.columns, c.columns, v.columns};
                gemm('C', 'N', 1.0, v, part, 0.0, product);
                gemm('N', 'N', -1.0, vt, product, 1.0, part);
            }
    }
};

/// With `identity` C is that, and no column is touched before it has to be.
template <class T> bool apply_all(const ChasedReflectors<T>& q, const Matrix<T>& c, bool identity) {
    constexpr i64 narrowest = 32, sweeps_at_once = groups_at_once * group_width;
    if (q.n < 2 || c.columns == 0) return true;
    const int most = region_would_be_serial() ? 1 : max_threads(domain_all);
    const i64 share = round_up((c.columns + most - 1) / most, 8);
    const i64 width = std::clamp(share, narrowest, chunk_width<T>);
    const Scratch<T> memory(Diamonds<T>::room(q.n, q.b)), work(group_width * round_up(c.columns, width));
    if (!memory.data() || !work.data()) return false;
    for (i64 first = round_down(q.n - 2, sweeps_at_once); first >= 0; first -= sweeps_at_once) {
        const i64 groups = std::min(groups_at_once, (q.n - 2 - first) / group_width + 1);
        const i64 start = identity ? first + 1 : 0, columns = c.columns - start, chunks = (columns + width - 1) / width;
        const Diamonds<T> diamonds(q, first, groups, memory.data());
        diamonds.make(most);
        parallel_blocks(static_cast<int>(std::min(chunks, i64{most})), static_cast<int>(chunks), [&](int k) {
            const i64 own = k * width;
            diamonds.apply(c.columns_from(start + own, std::min(width, columns - own)),
                           work.data() + own * group_width);
        });
    }
    return true;
}

} // namespace

template <class T> bool apply_chased(const ChasedReflectors<T>& q, const Matrix<T>& c) {
    return apply_all(q, c, false);
}

template <class T> bool form_chased(const ChasedReflectors<T>& q, const Matrix<T>& to) {
    for (i64 j = 0; j < q.n; ++j) {
        std::fill(to.at(0, j), to.at(0, j) + q.n, T{});
        to(j, j) = 1.0;
    }
    return apply_all(q, to, true);
}

#define NXL_INSTANTIATE(T)                                                                                             \
    template bool apply_chased(const ChasedReflectors<T>&, const Matrix<T>&);                                          \
    template bool form_chased(const ChasedReflectors<T>&, const Matrix<T>&)
NXL_INSTANTIATE(double);
NXL_INSTANTIATE(zcomplex);
#undef NXL_INSTANTIATE

} // namespace nxl
