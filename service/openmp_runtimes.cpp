// Questions to libomp, by its header, and to libgomp, by the names it exports. Both read the same environment.
#include "service/openmp_runtimes.hpp"
#include "service/environment.hpp"
#include "service/thread_environment.hpp"
#include <atomic>
#include <dlfcn.h>
#include <omp.h>

namespace nxl {
namespace {

using Question = int (*)();

constinit std::atomic<Question> gnu_in_parallel{nullptr};
constinit std::atomic<Question> gnu_max_threads{nullptr};
constinit std::atomic<int> standard_count{1};

Question exported(void* library, const char* name) { return reinterpret_cast<Question>(dlsym(library, name)); }

int count_without_program() {
    const char* text = environment("OMP_NUM_THREADS");
    const int count = text ? outer_level_count_from(text) : count_not_set;
    return count > 0 ? count : omp_get_num_procs();
}

} // namespace

// The library is held from then on: a plug-in may have brought it, and go.
void find_gnu_runtime() {
    void* libgomp = dlopen("libgomp.so.1", RTLD_LAZY | RTLD_NOLOAD);
    const Question in_parallel = libgomp ? exported(libgomp, "omp_in_parallel") : nullptr;
    const Question max_threads = libgomp ? exported(libgomp, "omp_get_max_threads") : nullptr;
    dlerror(); // what was not found is no error that the host should read
    if (!in_parallel || !max_threads) return;
    standard_count.store(count_without_program(), std::memory_order_relaxed);
    gnu_in_parallel.store(in_parallel, std::memory_order_relaxed);
    gnu_max_threads.store(max_threads, std::memory_order_relaxed);
}

bool in_parallel_region() {
    const Question gnu = gnu_in_parallel.load(std::memory_order_relaxed);
    return omp_in_parallel() || (gnu && gnu());
}

int default_thread_count() {
    const Question gnu = gnu_max_threads.load(std::memory_order_relaxed);
    const int own = omp_get_max_threads();
    return gnu ? spoken_count(own, gnu(), standard_count.load(std::memory_order_relaxed)) : own;
}

} // namespace nxl
