#include "solvers_ds/kernel/default/pardiso/out_of_core/ooc_stage.hpp"
#include "solvers_ds/kernel/default/pardiso/analysis_memory.hpp"
#include "solvers_ds/kernel/default/pardiso/message.hpp"
#include "solvers_ds/kernel/default/pardiso/out_of_core/configuration.hpp"
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace nxl::pardiso {
namespace {

/// Of the configured memory: what streams, packed operands and the heap between blocks take beside all that is counted.
/// Small problems have small operands.
i64 reserve_kilobytes(i64 max_core_megabytes) {
    constexpr i64 least = 1024, most = 3072;
    return std::clamp(1024 * max_core_megabytes / 4, least, most);
}

i64 update_kilobytes(Control control) { return (8 * control[Word::update_words] >> 10) + 1; }

i64 factor_bytes_in_core(const Call& call, Control control) {
    return with_member(call.mtype, [&](auto member) {
        using M = decltype(member);
        return FactorLayout::of(M{}, control[Word::l_size], control[Word::u_size], control[Word::neqns])
            .template bytes<typename M::T>();
    });
}

OocDemand demand_of(const Handle& handle, const Call& call) {
    const Control control = handle.control();
    const i64 structure = structure_bytes(handle);
    return {.structure_bytes = structure,
            .reduced = (structure - 4 * control[Word::structure_length]) >> 10,
            .peak = control[Word::peak_memory],
            .numeric = (factor_bytes_in_core(call, control) >> 10) + 1 + update_kilobytes(control)};
}

void store_figures(const Call& call, const OocDemand& demand) {
    const auto figure = [](i64 megabytes) { return static_cast<i32>(std::min<i64>(megabytes, 2147483647)); };
    call.iparam[Iparam::ooc_peak_memory] = figure(demand.peak_megabytes());
    call.iparam[Iparam::ooc_permanent_memory] = figure(demand.structure_megabytes());
    call.iparam[Iparam::ooc_numeric_memory] = figure(demand.numeric_megabytes());
}

Fault too_little_memory(const Handle& handle, i64 figure) {
    handle.ooc()[OocWord::error] = static_cast<i64>(Error::ooc_memory);
    return {Error::ooc_memory, static_cast<i32>(std::min<i64>(figure, 2147483647))};
}

void tell_mode(OocMode asked, OocMode mode) {
    const bool out = mode == OocMode::out_of_core;
    if (asked == OocMode::decide) pardiso_message(out ? Text::ooc_needed : Text::ooc_not_needed);
    else if (asked == OocMode::in_core) pardiso_message(Text::ooc_not_asked);
    else if (out) pardiso_message(Text::ooc_asked);
}

Fault put_lists_on_file(const Handle& handle, const Call& call) {
    const OocContext& ooc = handle.ooc();
    const Control control = handle.control();
    const OocStatus status =
        create_factor_files(ooc, handle.array<i32>(ArrayBase::lindx), control[Word::structure_length], call.messages);
    if (status != OocStatus::done) {
        if (call.messages) ooc_report(status, false, "do_all: create files");
        ooc[OocWord::error] = static_cast<i64>(error_of(status));
        return {error_of(status), static_cast<i32>(status)};
    }
    control[Word::permanent_memory] -= 4 * control[Word::structure_length] >> 10;
    return {};
}

void store_maxima(const Handle& handle, bool has_u) {
    const OocContext& ooc = handle.ooc();
    const Supernodes supernodes = supernodes_of(handle);
    i64 lower = 0, upper = 0;
    for (i32 s = 1; s <= supernodes.count; ++s) {
        const i64 width = supernodes.width(s), rows = supernodes.rows(s);
        lower = std::max(lower, rows * width);
        upper = std::max(upper, (rows - width) * width);
    }
    ooc[OocWord::largest_block] = lower;
    ooc[OocWord::largest_upper_block] = has_u ? upper + 1 : 0; // an empty U has one entry
}

WindowNeed need_of(const Handle& handle, bool has_u) {
    const Control control = handle.control();
    const OocContext& ooc = handle.ooc();
    const i64 n = control[Word::neqns], supernodes = control[Word::supernodes];
    return {.scalar_words = control[Word::scalar_words],
            .tallest = control[Word::tallest_column],
            .widest = supernodes_of(handle).widest(),
            .largest_block = ooc[OocWord::largest_block],
            .largest_upper = ooc[OocWord::largest_upper_block],
            .factor = control[Word::l_size] + (has_u ? control[Word::u_size] : 0),
            .lists = control[Word::structure_length],
            .permanent = control[Word::permanent_memory],
            .index_arrays = update_kilobytes(control) + ((12 * n + 4 * supernodes) >> 10) +
                            reserve_kilobytes(ooc[OocWord::max_core_megabytes])};
}

} // namespace

void start_out_of_core(const Handle& handle, const Call& call) {
    const OocContext& ooc = handle.ooc();
    ooc[OocWord::mode] = call.iparam[Iparam::out_of_core];
    ooc[OocWord::message_level] = call.messages;
    if (ooc.mode() != OocMode::in_core) read_ooc_configuration(ooc, call.messages);
}

Fault settle_mode(const Handle& handle, const Call& call) {
    const OocContext& ooc = handle.ooc();
    const OocMode asked = ooc.mode();
    const OocDemand demand = demand_of(handle, call);
    const i64 max_core = ooc[OocWord::max_core_megabytes];
    store_figures(call, demand);
    if (asked != OocMode::in_core && demand.least_megabytes() > max_core) {
        handle.control()[Word::peak_memory] = demand.least_megabytes(); // which iparam(15) tells then
        return too_little_memory(handle, demand.least_megabytes());
    }
    const OocMode mode = decided_mode(asked, demand, max_core);
    ooc[OocWord::mode] = static_cast<i64>(mode);
    if (call.messages) tell_mode(asked, mode);
    return mode == OocMode::out_of_core ? put_lists_on_file(handle, call) : Fault{};
}

void return_free_memory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

Fault take_window(const Handle& handle, const Call& call) {
    const OocContext& ooc = handle.ooc();
    const bool has_u = with_member(call.mtype, [](auto member) { return decltype(member)::has_u; });
    if (handle[HandleWord::struc_s2] != 0) return {};
    store_maxima(handle, has_u);
    const OocWindow window = window_for(need_of(handle, has_u), ooc[OocWord::max_core_megabytes]);
    if (!window.fits) return too_little_memory(handle, ooc[OocWord::max_core_megabytes]);
    ooc[OocWord::whole_window] = window.whole;
    ooc[OocWord::window_words] = window.words;
    ooc[OocWord::window_list_words] = window.list_words;
    return handle.take(HandleWord::struc_s2, 8 * window.words + 4 * window.list_words, Tag::factor, account_of(call));
}

} // namespace nxl::pardiso
