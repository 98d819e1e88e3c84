#include "solvers_ds/kernel/default/pardiso/out_of_core/solve_ooc.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/gather.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/several.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/single.hpp"
#include "solvers_ds/kernel/default/pardiso/solve/steps.hpp"
#include <algorithm>

namespace nxl::pardiso {
namespace {

/// Right-hand sides in blocks of columns, in the order of the factor.
template <class T> class ColumnBlocks {
    static constexpr i64 widest = widest_block; // as in core

    const SolveView<T>& view_;
    const i64 nb_;
    const Scratch<T> work_, buffer_;

  public:
    ColumnBlocks(const SolveView<T>& view, i64 nb)
        : view_(view),
          nb_(nb),
          work_(view.n * nb),
          buffer_(view.tallest * std::min(nb, widest)) {}

    bool has_memory() const { return work_.data() && buffer_.data(); }

    /// Calls body(first column, number of columns, their work memory).
    template <class Body> void each(const Body& body) const {
        for (i64 c = 0; c < nb_; c += widest) body(c, std::min(widest, nb_ - c), work_.data() + c * view_.n);
    }
    /// The same with what works on the columns.
    template <class Body> void each_with_kernels(const Body& body) const {
        each([&](i64, i64 width, T* work) {
            if (width == 1) body(SingleColumn<T>(width, work, buffer_.data()));
            else body(SeveralColumns<T>(width, work, buffer_.data()));
        });
    }
};

/// Cuts the supernodes into pieces that fit into the window, and reads one after the other.
template <class T> class Pieces {
    const FactorOnFiles<T>& factor_;
    const PieceMemory<T>& window_;
    const PieceParts parts_;

    i32 last_of(i32 first) const {
        i32 last = first;
        while (last < factor_.supernodes.count && Piece<T>::fits(factor_, parts_, window_, first, last + 1)) ++last;
        return last;
    }
    i32 first_of(i32 last) const {
        i32 first = last;
        while (first > 1 && Piece<T>::fits(factor_, parts_, window_, first - 1, last)) --first;
        return first;
    }
    void expect(i32 first, i32 last) const {
        Piece<T> ahead(factor_, parts_);
        ahead.place(first, last, window_);
        ahead.expect();
    }

  public:
    Pieces(const FactorOnFiles<T>& factor, const PieceMemory<T>& window, PieceParts parts)
        : factor_(factor),
          window_(window),
          parts_(parts) {}

    template <class Body> bool forward(const Body& body) const {
        Piece<T> piece(factor_, parts_);
        for (i32 first = 1; first <= factor_.supernodes.count; first = piece.last() + 1) {
            piece.place(first, last_of(first), window_);
            if (!piece.read_lists(" read 1 lindx") ||
                !piece.read_factor(" read for forward step", " read unz for forward step"))
                return false;
            if (piece.last() < factor_.supernodes.count) expect(piece.last() + 1, last_of(piece.last() + 1));
            body(piece);
        }
        return true;
    }
    template <class Body> bool backward(const Body& body) const {
        Piece<T> piece(factor_, parts_);
        for (i32 last = factor_.supernodes.count; last >= 1; last = piece.first() - 1) {
            piece.place(first_of(last), last, window_);
            if (!piece.read_lists(" read lindx for backward step") ||
                !piece.read_factor(" read lnz for backward step", " read unz for backward step"))
                return false;
            if (piece.first() > 1) expect(first_of(piece.first() - 1), piece.first() - 1);
            body(piece);
        }
        return true;
    }
};

} // namespace

template <class M>
bool solve_with_files(const SolveView<typename M::T>& view, const FactorOnFiles<typename M::T>& factor,
                      const PieceMemory<typename M::T>& window, const typename M::T* b, typename M::T* x, i64 nb) {
    using T = typename M::T;
    const ColumnBlocks<T> blocks(view, nb);
    if (!blocks.has_memory()) return false;
    const i64 n = view.n;
    const auto on_piece = [&](const auto& step) {
        return [&](const Piece<T>& piece) {
            SolveView<T> part = view;
            part.supernodes = piece.supernodes();
            part.factor = piece.factor();
            blocks.each_with_kernels(
                [&](const auto& columns) { step(part, SupernodeRange{piece.first(), piece.last()}, columns); });
        };
    };
    blocks.each([&](i64 c, i64 width, T* work) { psol_fwgath(view, b + c * n, width, work); });
    if (view.steps.forward) {
        const Pieces<T> pieces(factor, window, {true, M::has_u && view.transposed});
        if (!pieces.forward(on_piece([](const auto&... of) { forward_step<M>(of...); }))) return false;
    }
    if (view.steps.diagonal) blocks.each([&](i64, i64 width, T* work) { diagonal_step<M>(view, width, work); });
    if (view.steps.backward) {
        const Pieces<T> pieces(factor, window, {true, M::has_u && !view.transposed});
        blocks.each([&](i64, i64 width, T* work) { conjugate<M>(n * width, work); });
        if (!pieces.backward(on_piece([](const auto&... of) { backward_step<M>(of...); }))) return false;
        blocks.each([&](i64, i64 width, T* work) { conjugate<M>(n * width, work); });
    }
    blocks.each([&](i64 c, i64 width, T* work) { psol_bwscat(view, work, width, x + c * n); });
    return true;
}

template bool solve_with_files<Member<double, Form::cholesky>>(const SolveView<double>&, const FactorOnFiles<double>&,
                                                               const PieceMemory<double>&, const double*, double*, i64);
template bool solve_with_files<Member<zcomplex, Form::cholesky, true>>(const SolveView<zcomplex>&,
                                                                       const FactorOnFiles<zcomplex>&,
                                                                       const PieceMemory<zcomplex>&, const zcomplex*,
                                                                       zcomplex*, i64);
template bool solve_with_files<Member<double, Form::ldl>>(const SolveView<double>&, const FactorOnFiles<double>&,
                                                          const PieceMemory<double>&, const double*, double*, i64);
template bool solve_with_files<Member<zcomplex, Form::ldl>>(const SolveView<zcomplex>&, const FactorOnFiles<zcomplex>&,
                                                            const PieceMemory<zcomplex>&, const zcomplex*, zcomplex*,
                                                            i64);
template bool solve_with_files<Member<zcomplex, Form::ldl, true>>(const SolveView<zcomplex>&,
                                                                  const FactorOnFiles<zcomplex>&,
                                                                  const PieceMemory<zcomplex>&, const zcomplex*,
                                                                  zcomplex*, i64);
template bool solve_with_files<Member<double, Form::lu>>(const SolveView<double>&, const FactorOnFiles<double>&,
                                                         const PieceMemory<double>&, const double*, double*, i64);
template bool solve_with_files<Member<zcomplex, Form::lu>>(const SolveView<zcomplex>&, const FactorOnFiles<zcomplex>&,
                                                           const PieceMemory<zcomplex>&, const zcomplex*, zcomplex*,
                                                           i64);
template bool solve_with_files<Member<double, Form::lu_full_pivoting>>(const SolveView<double>&,
                                                                       const FactorOnFiles<double>&,
                                                                       const PieceMemory<double>&, const double*,
                                                                       double*, i64);
template bool solve_with_files<Member<zcomplex, Form::lu_full_pivoting>>(const SolveView<zcomplex>&,
                                                                         const FactorOnFiles<zcomplex>&,
                                                                         const PieceMemory<zcomplex>&, const zcomplex*,
                                                                         zcomplex*, i64);

} // namespace nxl::pardiso
