// The thread counts and their queries. The environment is read once, at the first query, and fills only what the
// program left unset. There is no lock: threads that arrive together repeat the step and write the same.
#include "service/threads.hpp"
#include "service/environment.hpp"
#include "service/physical_cores.hpp"
#include "service/thread_environment.hpp"
#include <algorithm>
#include <atomic>
#include <omp.h>

namespace nxl {
namespace {

constexpr int dynamic_not_set = -1;

constinit std::atomic<int> stores[thread_domain_count] = {count_not_set, count_not_set, count_not_set, count_not_set};
constinit std::atomic<int> dynamic_flag{dynamic_not_set};
constinit std::atomic<int> physical_core_count{1};
constinit std::atomic<bool> environment_pending{true};

void store_if_unset(std::atomic<int>& store, int value) {
    int unset = -1;
    store.compare_exchange_strong(unset, value, std::memory_order_relaxed); // a 0 that the program stored stays too
}

void offer_count(int domain, int count) {
    if (count > 0) store_if_unset(stores[domain], count);
}

void finish_environment_step() {
    if (environment_pending.load(std::memory_order_acquire)) [[unlikely]]
        nxl_threads_read_env();
}

bool known_domain(int domain) { return domain >= 0 && domain < thread_domain_count; }

int requested_threads(int domain) {
    if (known_domain(domain)) {
        const int own = stores[domain].load(std::memory_order_relaxed);
        if (own > 0) return own;
    }
    const int all = stores[domain_all].load(std::memory_order_relaxed);
    return all > 0 ? all : omp_get_max_threads();
}

} // namespace

void nxl_threads_read_env() {
    if (const char* text = environment("NXL_NUM_THREADS")) offer_count(domain_all, thread_count_from(text));
    if (const char* text = environment("NXL_DOMAIN_NUM_THREADS")) {
        const DomainCounts counts = domain_counts_from(text);
        for (int domain = 0; domain < thread_domain_count; ++domain) offer_count(domain, counts.of[domain]);
    }
    const char* dynamic = environment("NXL_DYNAMIC");
    store_if_unset(dynamic_flag, !dynamic || dynamic_from(dynamic));
    physical_core_count.store(nxl_count_physical_cores(), std::memory_order_relaxed);
    environment_pending.store(false, std::memory_order_release);
}

int max_threads(int domain) {
    finish_environment_step();
    if (dynamic_flag.load(std::memory_order_relaxed) == 0) return requested_threads(domain);
    if (omp_in_parallel()) return 1;
    return std::min(requested_threads(domain), physical_core_count.load(std::memory_order_relaxed));
}

bool dynamic_threads() {
    finish_environment_step();
    return dynamic_flag.load(std::memory_order_relaxed) != 0;
}

void set_num_threads(int count) {
    if (count > 0) stores[domain_all].store(count, std::memory_order_relaxed);
}

bool domain_set_num_threads(int count, int domain) {
    if (count < 0 || !known_domain(domain)) return false;
    stores[domain].store(count, std::memory_order_relaxed);
    return true;
}

void set_dynamic(bool on) { dynamic_flag.store(on, std::memory_order_relaxed); }

} // namespace nxl
