// The OpenMP runtimes of the process: the one that the library runs on, libomp, and libgomp, which a program built by
// GCC brings with it. A program speaks to its own, so both are asked. Regions of drivers are libomp's alone.
#pragma once

namespace nxl {

/// Looks whether libgomp is in the process, and loads nothing. One that comes later is not seen.
void find_gnu_runtime();

/// Whether the calling thread is inside a parallel region of either runtime.
bool in_parallel_region();

/// The threads that a region of the calling thread would get by default: the program's word to the runtime that it
/// uses, as chosen by `spoken_count`.
int default_thread_count();

/// Of two counts, the one that a program has set, which is the one that is not the `standard` of either runtime, from
/// `OMP_NUM_THREADS` or the processors. The smaller one when both were set.
constexpr int spoken_count(int own, int gnu, int standard) {
    if (own == standard) return gnu;
    if (gnu == standard) return own;
    return own < gnu ? own : gnu;
}

} // namespace nxl
