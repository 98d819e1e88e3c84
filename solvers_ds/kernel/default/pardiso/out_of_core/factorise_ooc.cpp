#include "solvers_ds/kernel/default/pardiso/out_of_core/factorise_ooc.hpp"
#include "service/scratch.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/assembler.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/progress.hpp"
#include "solvers_ds/kernel/default/pardiso/numeric/update.hpp"

namespace nxl::pardiso {
namespace {

constexpr i32 no_row = 2147483647;

/// Which supernodes update which of the group, as WaitingLists has them; those whose next row lies behind the group
/// wait outside until theirs comes.
class GroupLists {
    const Supernodes& supernodes_;
    FromOne<i32> link_, length_, next_row_;
    i32 last_column_ = 0;

  public:
    GroupLists(const Supernodes& supernodes, FromOne<i32> link, FromOne<i32> length, FromOne<i32> next_row)
        : supernodes_(supernodes),
          link_(link),
          length_(length),
          next_row_(next_row) {}

    void aim(i32 first, i32 last) {
        last_column_ = supernodes_.last(last);
        for (i32 s = first; s <= last; ++s) link_[s] = 0;
    }
    bool concerns_group(i32 source) const { return next_row_[source] <= last_column_; }

    void wait(i32 source, const i32* list) {
        const i32 row = length_[source] > 0 ? list[supernodes_.rows(source) - length_[source]] : no_row;
        next_row_[source] = row;
        if (row > last_column_) return;
        i32& head = link_[supernodes_.snode[row]];
        link_[source] = head;
        head = source;
    }
    void finish(i32 source, const i32* list) {
        length_[source] = supernodes_.rows(source) - supernodes_.width(source);
        wait(source, list);
    }
    /// An update for the target; `list_of` and `taken` as the piece of the sources has them. A source of 0 is none.
    template <class ListOf, class Taken> WaitingUpdate pop(i32 target, const ListOf& list_of, const Taken& taken) {
        const i32 source = link_[target];
        if (source == 0) return {};
        link_[target] = link_[source];
        const i32 offset = supernodes_.rows(source) - length_[source];
        length_[source] -= taken(source, offset);
        wait(source, list_of(source));
        return {source, offset};
    }
};

template <class M> class GroupwiseFactorisation {
    using T = typename M::T;

    const NumericView<T>& view_;
    const FactorOnFiles<T>& factor_;
    const WindowMemory<T>& memory_;
    Updater<M> updater_;
    GroupLists lists_;
    FactorProgress progress_;
    PivotCounts counts_;
    i32 code_ = 0;
    Piece<T> group_{factor_, parts}, source_{factor_, parts};

    static constexpr PieceParts parts{true, M::has_u};

    bool fail(i32 code) {
        code_ = code;
        return false;
    }

    i32 last_of_group(i32 first) const {
        i32 last = first;
        while (last < view_.supernodes.count && Piece<T>::fits(factor_, parts, memory_.group, first, last + 1)) ++last;
        return last;
    }

    /// All updates of `target` that wait, from sources of the piece.
    bool take_updates(i32 target, const Piece<T>& piece) {
        const Supernodes supernodes = piece.supernodes();
        updater_.aim(group_.block(target));
        const auto list_of = [&](i32 source) { return supernodes.list(source); };
        const auto taken = [&](i32 source, i32 offset) { return updater_.columns_from(supernodes, source, offset); };
        for (;;) {
            const WaitingUpdate waiting = lists_.pop(target, list_of, taken);
            if (waiting.source == 0) return true;
            const i32 columns = taken(waiting.source, waiting.offset);
            if (!updater_.update(piece.block(waiting.source), waiting.offset, columns)) return fail(small_buffer);
        }
    }

    i32 next_source(i32 from) const {
        while (from < group_.first() && !lists_.concerns_group(from)) ++from;
        return from;
    }

    /// The last supernode of a run of sources that are read at once: few others lie between them.
    i32 last_source(i32 first) const {
        constexpr i32 others = 8;
        i32 last = first;
        for (i32 s = first + 1; s < group_.first() && s - last <= others; ++s) {
            if (!Piece<T>::fits(factor_, parts, memory_.source, first, s)) break;
            if (lists_.concerns_group(s)) last = s;
        }
        return last;
    }

    /// The updates from what is on the files, run by run.
    bool update_group() {
        for (i32 first = next_source(1); first < group_.first();) {
            source_.place(first, last_source(first), memory_.source);
            const i32 next = next_source(source_.last() + 1);
            if (!source_.read_lists(": read lindx") || !source_.read_factor(" read lnz", " read unz")) return false;
            if (next < group_.first()) {
                Piece<T> ahead(factor_, parts);
                ahead.place(next, last_source(next), memory_.source);
                ahead.expect();
            }
            const Supernodes supernodes = source_.supernodes();
            for (i32 s = source_.first(); s <= source_.last(); ++s)
                if (lists_.concerns_group(s)) lists_.wait(s, supernodes.list(s));
            for (i32 target = group_.first(); target <= group_.last(); ++target)
                if (!take_updates(target, source_)) return false;
            first = next;
        }
        return true;
    }

    bool factor_group() {
        for (i32 s = group_.first(); s <= group_.last() && !progress_.stopped(); ++s) {
            progress_.come_to(0, view_.factor.xlnz[view_.supernodes.first(s)] - 1);
            if (!take_updates(s, group_)) return false;
            const FactorBlock<T> own = group_.block(s);
            if (!factor_block<M>(own, view_.rule, counts_)) return fail(failed_pivot);
            lists_.finish(s, own.list);
        }
        return true;
    }

    bool finish_group(i32 first) {
        group_.place(first, last_of_group(first), memory_.group);
        lists_.aim(group_.first(), group_.last());
        if (!group_.read_lists(": read 1 lindx")) return false;
        const Assembler<M> assembler(view_);
        for (i32 s = group_.first(); s <= group_.last(); ++s) assembler.assemble(group_.block(s));
        return update_group() && factor_group() && group_.write_factor(" store lnz", " store unz");
    }

  public:
    GroupwiseFactorisation(const NumericView<T>& view, const FactorOnFiles<T>& factor, const WindowMemory<T>& memory,
                           const UpdateWork<T>& work, FromOne<i32> next_row)
        : view_(view),
          factor_(factor),
          memory_(memory),
          updater_(work),
          lists_(view.supernodes, view.link, view.length, next_row),
          progress_(view.factor_size, view.messages) {}

    NumericResult run() {
        bool good = true;
        for (i32 s = 1; s <= view_.supernodes.count && good && !progress_.stopped(); s = group_.last() + 1)
            good = finish_group(s);
        if (good && !progress_.stopped()) progress_.finish();
        return {code_, progress_.stopped(), counts_};
    }
};

} // namespace

template <class M>
NumericResult factorise_with_files(const NumericView<typename M::T>& view, const FactorOnFiles<typename M::T>& factor,
                                   const WindowMemory<typename M::T>& memory) {
    using T = typename M::T;
    const i64 n = view.n, widest = view.supernodes.widest();
    const Scratch<i32> maps(2 * n), next_row(view.supernodes.count);
    const Scratch<T> scaled(M::has_d ? widest * widest : 0);
    if (!maps.data() || !next_row.data() || (M::has_d && !scaled.data())) return {small_buffer, false, {}};
    const UpdateWork<T> work{maps.data(), maps.data() + n, view.temp, view.temp_size, scaled.data()};
    return GroupwiseFactorisation<M>(view, factor, memory, work, next_row.data()).run();
}

template NumericResult factorise_with_files<Member<double, Form::cholesky>>(const NumericView<double>&,
                                                                            const FactorOnFiles<double>&,
                                                                            const WindowMemory<double>&);
template NumericResult factorise_with_files<Member<zcomplex, Form::cholesky, true>>(const NumericView<zcomplex>&,
                                                                                    const FactorOnFiles<zcomplex>&,
                                                                                    const WindowMemory<zcomplex>&);
template NumericResult factorise_with_files<Member<double, Form::ldl>>(const NumericView<double>&,
                                                                       const FactorOnFiles<double>&,
                                                                       const WindowMemory<double>&);
template NumericResult factorise_with_files<Member<zcomplex, Form::ldl>>(const NumericView<zcomplex>&,
                                                                         const FactorOnFiles<zcomplex>&,
                                                                         const WindowMemory<zcomplex>&);
template NumericResult factorise_with_files<Member<zcomplex, Form::ldl, true>>(const NumericView<zcomplex>&,
                                                                               const FactorOnFiles<zcomplex>&,
                                                                               const WindowMemory<zcomplex>&);
template NumericResult factorise_with_files<Member<double, Form::lu>>(const NumericView<double>&,
                                                                      const FactorOnFiles<double>&,
                                                                      const WindowMemory<double>&);
template NumericResult factorise_with_files<Member<zcomplex, Form::lu>>(const NumericView<zcomplex>&,
                                                                        const FactorOnFiles<zcomplex>&,
                                                                        const WindowMemory<zcomplex>&);
template NumericResult factorise_with_files<Member<double, Form::lu_full_pivoting>>(const NumericView<double>&,
                                                                                    const FactorOnFiles<double>&,
                                                                                    const WindowMemory<double>&);
template NumericResult factorise_with_files<Member<zcomplex, Form::lu_full_pivoting>>(const NumericView<zcomplex>&,
                                                                                      const FactorOnFiles<zcomplex>&,
                                                                                      const WindowMemory<zcomplex>&);

} // namespace nxl::pardiso
