// The strategy that classes 2 and 3 share for complex products: threads work in pairs. A pair has its own columns of C
// and packs its panel of B once; its two threads take half of the rows each.
#pragma once
#include "blas/kernel/default_em64t/level3/gemm_strategies.hpp"
#include "service/parallel.hpp"
#include <algorithm>

namespace nxl {

///              pair 0      pair 1                 pair 0      pair 1
///            +---------+---------+              +---------+---------+
///     C      | th. 0   | th. 2   |       B      | packed  | packed  |     one stretch of columns at a time
///            +---------+---------+              | by 0    | by 2    |
///            | th. 1   | th. 3   |              +---------+---------+
///            +---------+---------+
///
/// Two threads per panel halve the packing of B; more would leave them waiting for one. A is packed by each thread for
/// itself, within tile_pb.
///
/// `Form` names the kernels of a class (blocks, copy_bn, copy_bt, copy_bc, tile_pb), what rows and columns of a thread
/// are multiples of (row_unit, column_unit), what k is padded to (depth_unit), and the columns of a panel (panel).
template <class Form> class ZgemmInPairs {
    /// What all pairs work on between two joins: some columns of each pair's stretch, and some steps of k.
    struct Round {
        i64 from, width;
        Slice depth;

        i64 ldbuf() const { return Form::panel * round_up(depth.count, Form::depth_unit); }
    };

    const GemmCall<zcomplex>& call_;
    const GemmPairs pairs_;
    const GemmBlocks blocks_;
    const i64 nb_;
    const i64 stretch_; // elements of a packed panel
    const PageBuffer<zcomplex> buffer_;

    int threads() const { return static_cast<int>(2 * pairs_.pairs); }
    zcomplex* panel(i64 pair) const { return buffer_.data() + pair * stretch_; }

    void pack(const Round& round, i64 pair) const {
        const Slice columns = pairs_.columns(pair, round.from, round.width);
        if (columns.count < 1) return;
        const zcomplex* b = call_.b_at(round.depth.start, columns.start);
        const i64 ldbuf = round.ldbuf();
        if (is_not_transposed(call_.transb))
            Form::copy_bn(round.depth.count, columns.count, b, call_.ldb, panel(pair), ldbuf);
        else if (is_transposed_plainly(call_.transb))
            Form::copy_bt(round.depth.count, columns.count, b, call_.ldb, panel(pair), ldbuf);
        else Form::copy_bc(round.depth.count, columns.count, b, call_.ldb, panel(pair), ldbuf);
    }

    void multiply(const Round& round, i64 index) const {
        const i64 pair = pairs_.pair_of(index);
        const Slice rows = pairs_.rows(index), columns = pairs_.columns(pair, round.from, round.width);
        if (rows.count < 1 || columns.count < 1) return;
        Form::tile_pb(call_.transa, call_.transb, rows.count, columns.count, round.depth.count, call_.alpha,
                      call_.a_at(rows.start, round.depth.start), call_.lda,
                      call_.b_at(round.depth.start, columns.start), call_.ldb, panel(pair), round.ldbuf(), call_.beta,
                      call_.c_at(rows.start, columns.start), call_.ldc);
    }

    /// The join of the first region makes the panels complete; the join of the second leaves them free.
    void run(const Round& round) const {
        parallel_blocks(threads(), threads(), [this, &round](int index) {
            if (index % 2 == 0) pack(round, pairs_.pair_of(index));
        });
        parallel_blocks(threads(), threads(), [this, &round](int index) { multiply(round, index); });
    }

  public:
    ZgemmInPairs(i64 nt, const GemmCall<zcomplex>& call)
        : call_(call),
          pairs_(call.shape(), even_threads(nt), Form::row_unit, Form::column_unit),
          blocks_(blocks_by(Form::blocks, call.shape())),
          nb_(std::min(blocks_.nb, pairs_.last_width)),
          stretch_(round_up(blocks_.kb, Form::depth_unit) * nb_ + pack_spare<zcomplex>),
          buffer_(threads() * stretch_ + pack_spare<zcomplex>) {}

    void run() const {
        if (!buffer_.data()) return call_.run_serial();
        for (i64 from = 0; from < pairs_.last_width; from += nb_)
            for (i64 depth = 0; depth < call_.k; depth += blocks_.kb)
                run({from, nb_, {depth, std::min(blocks_.kb, call_.k - depth)}});
    }
};

} // namespace nxl
