// The handle `pt` and all memory behind it. Blocks come from the allocator under the memory service, not from a
// thread's cache: a handle may be released on another thread than the one that built it. Every block is taken by
// `Handle::take`, which counts it.
#pragma once
#include "solvers_ds/kernel/default/pardiso/call.hpp"
#include "solvers_ds/kernel/default/pardiso/control.hpp"
#include <bit>

namespace nxl::pardiso {

/// The figure of iparam(15..17) in which an allocation counts.
enum class Account : int { peak, permanent, numeric, none };

/// A slot of the factor table: what one factorisation keeps.
struct FactorSlot {
    i64 factor; ///< address of the factor storage; 0 when the slot is empty
    i64 bytes;  ///< of the storage
    i64 mtype;  ///< of the matrix whose factor it holds; 0 while it holds none
    i64 other[3];

    void set_empty() { *this = {0, unset_slot, 0, {0, 0, 0}}; }
};

/// What a handle keeps for out-of-core work: three blocks, and the block that points to them.
struct OocContext {
    char* stem; ///< of the file names, filled up with blanks
    i64* settings;
    i64* statistics;

    i64& operator[](OocWord word) const { return settings[static_cast<int>(word)]; }
    double& operator[](OocFigure figure) const {
        return reinterpret_cast<double*>(statistics)[static_cast<int>(figure)];
    }
    OocMode mode() const { return static_cast<OocMode>((*this)[OocWord::mode]); }
    bool out_of_core() const { return mode() == OocMode::out_of_core; }
};

class Handle {
    i64* words_;

    template <class T> Fault take_part(T*& part, i64 bytes, Tag tag) const;

  public:
    explicit Handle(i64* pt) : words_(pt) {}

    i64& operator[](HandleWord word) const { return words_[static_cast<int>(word)]; }
    bool live() const { return (*this)[HandleWord::calls] != 0; }
    bool analysed() const { return (*this)[HandleWord::struc_fi] != 0; }
    bool out_of_core() const { return ooc()[OocWord::mode] != 0; }

    Control control() const { return Control(block<i64>(HandleWord::control)); }
    OocContext& ooc() const { return *block<OocContext>(HandleWord::ooc_context); }
    FactorSlot* slots() const { return block<FactorSlot>(HandleWord::factor_table); }

    /// The block of a word; null where there is none.
    template <class T> T* block(HandleWord word) const { return std::bit_cast<T*>((*this)[word]); }

    /// An array by its name; valid until its block is taken anew, shrunk or freed.
    template <class T> T* array(ArrayBase base) const {
        return reinterpret_cast<T*>(block<i32>(block_of(base)) + control()[base]);
    }

    /// The storage of a factor, `bytes` bytes of it, for a slot. One of the same size is kept as it is.
    Fault take_factor(FactorSlot& slot, i64 bytes, Account account) const;

    /// A block of `bytes` bytes, unset, for an array word that is free.
    Fault take(HandleWord word, i64 bytes, Tag tag, Account account) const;

    /// Shortens a block to its first `bytes` bytes. Its arrays may move.
    void shrink(HandleWord word, i64 bytes) const;

    /// Frees a block; no array, or one marked as not there, is no fault.
    void release(HandleWord word) const;

    /// Control block, factor table and out-of-core context, in words that hold nothing yet.
    Fault build(i32 max_fac_store) const;

    /// Empties a slot. Whether there was a factor in it.
    bool delete_factor(i64 slot) const;

    /// Empties all slots and frees all arrays. The number of factors that there were.
    i32 delete_contents() const;

    /// Everything: the words are as before the first call.
    void dismantle() const;
};

} // namespace nxl::pardiso
