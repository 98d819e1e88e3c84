// The cost of a call on one element, for each step of its road: the kernel called directly, through its slot, and
// through the entry of the shared library; and the entries of the peers.
#include "bench/families.hpp"
#include "bench/interleaved.hpp"
#include "bench/machine.hpp"
#include "common/run_program.hpp"
#include "service/kernel_slot.hpp"
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>

namespace nxl::bench {
namespace {

constexpr i64 one = 1;
constexpr int rounds = 2000;
constexpr int entry = 2; // the place of the entry in a row; peers follow

/// The kernel's address, and no way for the compiler to know it.
template <auto Member> auto kernel_address() {
    auto address = kernels_of(nxl_cpu_class()).*Member;
    benchmark::DoNotOptimize(address);
    return address;
}

template <class Callee> Batch ddot_calls(Callee callee) {
    return [callee](i64 calls) {
        const double x = 1.5, y = 2.5;
        for (i64 call = 0; call < calls; ++call) benchmark::DoNotOptimize(callee(one, &x, one, &y, one));
    };
}

template <class Callee> Batch dscal_calls(Callee callee) {
    constexpr double factors[2] = {2.0, 0.5};
    return [callee, factors](i64 calls) {
        double x = 1.5;
        for (i64 call = 0; call < calls; ++call) callee(one, factors[call & 1], &x, one);
    };
}

Batch entry_calls(const Library& library, const std::string& name, Operands& operands) {
    const Routine& row = routine(name);
    return [&row, &operands, symbol = library.symbol(name)](i64 calls) { row.run(symbol, operands, calls); };
}

void print_row(const std::string& name, const std::vector<Batch>& batches) {
    Interleaved timing(batches);
    for (int round = 0; round < rounds; ++round) timing.round();
    std::printf("%-8s", name.c_str());
    const std::vector<double> seconds = timing.seconds();
    for (const double value : seconds) std::printf(" %12.2f", value * 1e9);
    const auto best = std::min_element(seconds.begin() + entry + 1, seconds.end());
    std::printf("   %9.2f", (seconds[1] - seconds[0]) * 1e9);
    if (best != seconds.end()) std::printf(" %12.2f", *best / seconds[entry]);
    std::printf("\n");
}

} // namespace

int run_overhead(const Request& request) {
    limit_threads_of_peers(1);
    const Library nxl = Library::nxl(request.library);
    const std::vector<Library> peers = Library::peers();
    print_machine();
    print_libraries(nxl, peers);
    std::printf("\nns a call  %10s %12s %12s", "kernel", "by slot", "nxl entry");
    for (const Library& peer : peers) std::printf(" %12s", peer.name.c_str());
    std::printf("   slot adds%s\n", peers.empty() ? "" : "  / best peer");

    Operands operands(Case{"", "", 1}, Layout{.x = {1, 1}, .y = {1, 1}});
    const auto with_entries = [&](const char* name, std::vector<Batch> batches) {
        batches.push_back(entry_calls(nxl, name, operands));
        for (const Library& peer : peers) batches.push_back(entry_calls(peer, name, operands));
        print_row(name, batches);
    };
    with_entries("ddot", {ddot_calls(kernel_address<&KernelTable::ddot>()),
                          ddot_calls([](auto&&... arguments) { return slot<&KernelTable::ddot>(arguments...); })});
    with_entries("dscal", {dscal_calls(kernel_address<&KernelTable::dscal>()),
                           dscal_calls([](auto&&... arguments) { slot<&KernelTable::dscal>(arguments...); })});
    return common::kDone;
}

} // namespace nxl::bench
