// Blocks of reflectors one after the other. All their factors T are made first, so that threads need not wait for each
// other afterwards.
#include "lapack/kernel/source/orthogonal/apply_q.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "service/parallel.hpp"
#include "service/scratch.hpp"
#include "service/workspace.hpp"
#include "service/worthwhile_threads.hpp"
#include <algorithm>

namespace nxl {
namespace {

/// One product. `others` is the side of C that Q does not touch: columns for L, rows for R.
template <class T> struct Application {
    const char side;
    const bool adjoint;
    const Reflectors<T>& v;
    const T* const tau;
    const Matrix<T>& c;
    const i64 nb;

    i64 others() const { return side == 'L' ? c.columns : c.rows; }
    i64 blocks() const { return (v.count() + nb - 1) / nb; }
    i64 width(i64 block) const { return std::min(nb, v.count() - block * nb); }
    Matrix<T> factor(T* factors, i64 block) const {
        return {factors + block * nb * nb, width(block), width(block), nb};
    }

    void make_factors(T* factors, int threads) const {
        parallel_blocks(threads, static_cast<int>(blocks()), [&](int block) {
            const ReflectorBlock<T> part = block_of_reflectors(v, block * nb, width(block));
            make_factor(part.vectors, tau + block * nb, factor(factors, block));
        });
    }

    /// Whether the first block comes first. The factor next to C does: the last one of P for P C.
    bool ascending() const { return ((side == 'L') == adjoint) == (v.order == Order::forward); }

    /// Everything, on this thread, for rows or columns `own` of C. `work`: nb elements for each.
    void apply(const Slice& own, T* factors, T* work) const {
        const i64 last = blocks() - 1;
        for (i64 step = 0; step <= last; ++step) {
            const i64 block = ascending() ? step : last - step;
            const auto [vectors, elements] = block_of_reflectors(v, block * nb, width(block));
            const i64 k = width(block);
            const Matrix<T> target = side == 'L' ? c.block(elements.start, own.start, elements.count, own.count)
                                                 : c.block(own.start, elements.start, own.count, elements.count);
            const Matrix<T> w =
                side == 'L' ? Matrix<T>{work, k, own.count, k} : Matrix<T>{work, own.count, k, own.count};
            apply_block(side, adjoint ? 'C' : 'N', vectors, factor(factors, block), target, w);
        }
    }
};

/// Reflectors at once: fewer for a narrow C, for which the factors would cost more than the product.
i64 reflectors_at_once(i64 count, i64 others) {
    return std::min({qr_panel(count), std::max(round_up(others, 8), i64{8}), count});
}

template <class T> int threads_for(const Application<T>& work) {
    constexpr i64 least = 16; // rows or columns of C for a thread
    if (region_would_be_serial()) return 1;
    const double flops = 2.0 * flops_of<T>(work.v.length(), work.v.count(), work.others());
    const int threads = threads_for_work(flops, max_threads(domain_all));
    return static_cast<int>(std::clamp(work.others() / least, i64{1}, i64{std::max(threads, 1)}));
}

/// Columns of C go through all blocks a strip at a time. Rows of C gain nothing by it.
template <class T> i64 strips_of(const Application<T>& work, int threads) {
    constexpr i64 widest = columns_at_once<T>;
    return work.side == 'L' ? round_up((work.others() + widest - 1) / widest, threads) : threads;
}

} // namespace

template <class T> ReflectorBlock<T> block_of_reflectors(const Reflectors<T>& v, i64 first, i64 count) {
    const i64 n = v.length(), k = v.count();
    const Slice elements = v.order == Order::forward ? Slice{first, n - first} : Slice{0, n - k + first + count};
    const Matrix<const T> part = v.by_columns() ? v.v.block(elements.start, first, elements.count, count)
                                                : v.v.block(first, elements.start, count, elements.count);
    return {{part, v.order, v.storage}, elements};
}

template <class T>
bool apply_reflectors(char side, bool adjoint, const Reflectors<T>& v, const T* tau, const Matrix<T>& c) {
    if (v.count() == 0 || c.rows == 0 || c.columns == 0) return true;
    const i64 others = side == 'L' ? c.columns : c.rows;
    const Application<T> work{side, adjoint, v, tau, c, reflectors_at_once(v.count(), others)};
    const int threads = threads_for(work);
    const i64 strips = strips_of(work, threads), width = round_up((others + strips - 1) / strips, 8);
    const Scratch<T> memory(work.nb * (work.nb * work.blocks() + threads * width));
    if (!memory.data()) return false;
    Sections<T> sections(memory.data());
    T* const factors = sections.take(work.nb * work.nb * work.blocks());
    T* const products = sections.take(work.nb * threads * width);
    work.make_factors(factors, threads);
    const auto apply_share = [&](int part) {
        for (i64 strip = part; strip < strips; strip += threads)
            work.apply(slice_of(others, width, strip, strips), factors, products + part * work.nb * width);
    };
    if (threads == 1) apply_share(0);
    else parallel_blocks(threads, threads, apply_share);
    return true;
}

#define NXL_INSTANTIATE(T)                                                                                             \
    template ReflectorBlock<T> block_of_reflectors(const Reflectors<T>&, i64, i64);                                    \
    template bool apply_reflectors(char, bool, const Reflectors<T>&, const T*, const Matrix<T>&)
NXL_INSTANTIATE(double);
NXL_INSTANTIATE(zcomplex);
#undef NXL_INSTANTIATE

} // namespace nxl
