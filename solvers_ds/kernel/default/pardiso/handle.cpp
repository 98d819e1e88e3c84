#include "solvers_ds/kernel/default/pardiso/handle.hpp"
#include "service/allocator_hooks.hpp"
#include <cstring>
#include <ctime>

namespace nxl::pardiso {
namespace {

/// Null when there is no memory. A size of no bytes is a block too: its address says that it was taken. Zeroed pages
/// come from the system untouched, so that a table of many empty slots costs what is used of it.
void* raw_block(i64 bytes) { return allocator.calloc(bytes < 1 ? 1 : static_cast<std::size_t>(bytes), 1); }

void count(Control control, i64 bytes, Account account) {
    if (account == Account::none) return;
    constexpr Word counters[] = {Word::peak_memory, Word::permanent_memory, Word::numeric_memory};
    control[counters[static_cast<int>(account)]] += (bytes >> 10) + 1;
}

void give_back(void* block) {
    if (block) allocator.free(block);
}

} // namespace

double wall_seconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

Fault Handle::take(HandleWord word, i64 bytes, Tag tag, Account account) const {
    const double start = wall_seconds();
    void* block = raw_block(bytes);
    if (!block) return {Error::memory, static_cast<i32>(tag), bytes};
    (*this)[word] = std::bit_cast<i64>(block);
    const Control control = this->control();
    control.seconds(Timer::malloc) += wall_seconds() - start;
    control.touched(Timer::malloc) = 1;
    count(control, bytes, account);
    return {};
}

void Handle::shrink(HandleWord word, i64 bytes) const {
    void* shorter = allocator.realloc(block<void>(word), static_cast<std::size_t>(bytes));
    if (shorter) (*this)[word] = std::bit_cast<i64>(shorter);
}

void Handle::release(HandleWord word) const {
    if ((*this)[word] == unset_slot) return;
    give_back(block<void>(word));
    (*this)[word] = 0;
}

Fault Handle::take_factor(FactorSlot& slot, i64 bytes, Account account) const {
    slot.mtype = 0;
    if (slot.factor != 0 && slot.bytes == bytes) return {};
    if (slot.factor != 0) allocator.free(std::bit_cast<void*>(slot.factor));
    slot.set_empty();
    const Control control = this->control();
    const Stopwatch watch(control, Timer::malloc);
    void* const block = raw_block(bytes);
    if (!block) return {Error::memory, static_cast<i32>(Tag::factor), bytes};
    slot.factor = std::bit_cast<i64>(block);
    slot.bytes = bytes;
    count(control, bytes, account);
    return {};
}

template <class T> Fault Handle::take_part(T*& part, i64 bytes, Tag tag) const {
    part = static_cast<T*>(raw_block(bytes));
    return part ? Fault{} : Fault{Error::memory, static_cast<i32>(tag), bytes};
}

Fault Handle::build(i32 max_fac_store) const {
    for (int word = 1; word < handle_words; ++word) words_[word] = 0;
    if (const Fault fault = take(HandleWord::control, control_words * 8, Tag::control, Account::permanent))
        return fault;
    const i64 table_slots = max_fac_store < 0 ? 0 : max_fac_store;
    control().reset();
    control()[Word::table_slots] = table_slots;
    if (const Fault fault = take(HandleWord::factor_table, table_slots * i64{sizeof(FactorSlot)}, Tag::factor_table,
                                 Account::permanent))
        return fault;
    if (const Fault fault = take(HandleWord::ooc_context, sizeof(OocContext), Tag::ooc_stem, Account::permanent))
        return fault;
    if (const Fault fault = take_part(ooc().stem, ooc_stem_bytes, Tag::ooc_stem)) return fault;
    std::memset(ooc().stem, ' ', ooc_stem_bytes);
    if (const Fault fault = take_part(ooc().settings, ooc_words * 8, Tag::ooc_words)) return fault;
    return take_part(ooc().statistics, ooc_words * 8, Tag::ooc_words);
}

bool Handle::delete_factor(i64 slot) const {
    FactorSlot& freed = slots()[slot];
    if (freed.factor == 0) return false;
    give_back(std::bit_cast<void*>(freed.factor));
    freed.set_empty();
    return true;
}

i32 Handle::delete_contents() const {
    i32 factors = 0;
    for (i64 slot = 0; slot < control()[Word::table_slots]; ++slot) factors += delete_factor(slot);
    for (int word = last_array_word; word >= first_array_word; --word) release(static_cast<HandleWord>(word));
    return factors;
}

void Handle::dismantle() const {
    if (control() && slots()) delete_contents();
    if ((*this)[HandleWord::ooc_context] != 0) {
        give_back(ooc().statistics);
        give_back(ooc().settings);
        give_back(ooc().stem);
    }
    release(HandleWord::ooc_context);
    release(HandleWord::factor_table);
    release(HandleWord::control);
    (*this)[HandleWord::calls] = 0;
}

} // namespace nxl::pardiso
