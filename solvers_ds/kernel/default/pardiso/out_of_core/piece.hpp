// Consecutive supernodes of a factor on files, as they lie in memory: what the kernels see is a part of the arrays that
// they would see in core.
#pragma once
#include "solvers_ds/kernel/default/pardiso/numeric/factor.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/factor_files.hpp"

namespace nxl::pardiso {

/// Memory for a piece.
template <class T> struct PieceMemory {
    T* scalars;
    i64 scalar_count;
    i32* lists;
    i64 list_count;
};

/// A factor whose L and U are on files. D and the interchanges are in memory.
template <class T> struct FactorOnFiles {
    Supernodes supernodes; ///< its lists are on a file too
    Factor<T> resident;    ///< without L and U
    i64 l_size, u_size;    ///< of one record; a matrix has record `record`
    i64 record;
    FactorFiles& files;
    OocFigure read_seconds, megabytes_read; ///< where reading counts
};

/// Which of the arrays a piece has.
struct PieceParts {
    bool l, u;
};

template <class T> class Piece {
    static constexpr i64 word = 8, words = i64{sizeof(T)} / word;

    const FactorOnFiles<T>& factor_;
    PieceParts parts_;
    i32 first_ = 1, last_ = 0;
    T *l_ = nullptr, *u_ = nullptr;
    i32* list_ = nullptr;

    static i64 size(FromOne<const i64> start, const Supernodes& s, i32 first, i32 last) {
        return start[s.xsup[last + 1]] - start[s.xsup[first]];
    }
    i64 l_count() const { return l_count(factor_, first_, last_); }
    i64 u_count() const { return u_count(factor_, first_, last_); }
    static i64 l_count(const FactorOnFiles<T>& f, i32 first, i32 last) {
        return size(f.resident.xlnz, f.supernodes, first, last);
    }
    static i64 u_count(const FactorOnFiles<T>& f, i32 first, i32 last) {
        return size(f.resident.xunz, f.supernodes, first, last);
    }
    i64 list_count() const { return factor_.supernodes.xlindx[last_ + 1] - factor_.supernodes.xlindx[first_]; }

    i32 first_column() const { return factor_.supernodes.xsup[first_]; }
    OocItems lists() const { return {i64{sizeof(i32)}, factor_.supernodes.xlindx[first_], list_count()}; }
    OocItems l_items() const {
        return {word, words * (factor_.record * factor_.l_size + factor_.resident.xlnz[first_column()] - 1) + 1,
                words * l_count()};
    }
    OocItems u_items() const {
        return {word, words * (factor_.record * factor_.u_size + factor_.resident.xunz[first_column()] - 1) + 1,
                words * u_count()};
    }

  public:
    Piece(const FactorOnFiles<T>& factor, PieceParts parts) : factor_(factor), parts_(parts) {}

    /// Whether supernodes first .. last fit into memory.
    static bool fits(const FactorOnFiles<T>& f, PieceParts parts, const PieceMemory<T>& memory, i32 first, i32 last) {
        const i64 scalars = (parts.l ? l_count(f, first, last) : 0) + (parts.u ? u_count(f, first, last) : 0);
        return scalars <= memory.scalar_count &&
               f.supernodes.xlindx[last + 1] - f.supernodes.xlindx[first] <= memory.list_count;
    }

    void place(i32 first, i32 last, const PieceMemory<T>& memory) {
        first_ = first;
        last_ = last;
        l_ = memory.scalars;
        u_ = l_ + (parts_.l ? l_count() : 0);
        list_ = memory.lists;
    }
    i32 first() const { return first_; }
    i32 last() const { return last_; }

    bool read_lists(const char* text) const {
        return factor_.files.read(OocFileKind::structure, lists(), list_, factor_.read_seconds, factor_.megabytes_read,
                                  text);
    }
    bool read_factor(const char* l_text, const char* u_text) const {
        const auto read = [&](OocFileKind kind, const OocItems& items, T* to, const char* text) {
            return factor_.files.read(kind, items, to, factor_.read_seconds, factor_.megabytes_read, text);
        };
        return (!parts_.l || read(OocFileKind::lower, l_items(), l_, l_text)) &&
               (!parts_.u || read(OocFileKind::upper, u_items(), u_, u_text));
    }
    bool write_factor(const char* l_text, const char* u_text) const {
        return (!parts_.l || factor_.files.write(OocFileKind::lower, l_items(), l_, l_text)) &&
               (!parts_.u || factor_.files.write(OocFileKind::upper, u_items(), u_, u_text));
    }
    void expect() const {
        factor_.files.expect(OocFileKind::structure, lists());
        if (parts_.l) factor_.files.expect(OocFileKind::lower, l_items());
        if (parts_.u) factor_.files.expect(OocFileKind::upper, u_items());
    }

    /// The supernodes and the factor for the kernels, which look at those of the piece alone.
    Supernodes supernodes() const {
        Supernodes view = factor_.supernodes;
        view.lindx = list_ - (view.xlindx[first_] - 1);
        return view;
    }
    Factor<T> factor() const {
        Factor<T> view = factor_.resident;
        view.l = l_ - (view.xlnz[first_column()] - 1);
        view.u = u_ - (view.xunz[first_column()] - 1);
        return view;
    }
    FactorBlock<T> block(i32 s) const { return block_of(supernodes(), factor(), s); }
};

} // namespace nxl::pardiso
