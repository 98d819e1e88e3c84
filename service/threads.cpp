// The thread counts and their queries. The environment is read once, at the first query, and fills only what the
// program left unset. There is no lock: threads that arrive together repeat the step and write the same.
#include "service/threads.hpp"
#include "service/environment.hpp"
#include "service/openmp_runtimes.hpp"
#include "service/physical_cores.hpp"
#include "service/thread_environment.hpp"
#include <atomic>

namespace nxl {
namespace {

constexpr int dynamic_not_set = -1;

/// A domain's count and who set it, stored as one.
struct Setting {
    int count;
    CountSource by;
};
constexpr Setting not_set = {count_not_set, CountSource::openmp};

constinit std::atomic<Setting> stores[thread_domain_count] = {not_set, not_set, not_set, not_set};
constinit std::atomic<int> dynamic_flag{dynamic_not_set};
constinit std::atomic<int> physical_core_count{1};
constinit std::atomic<bool> environment_pending{true};

template <class Value> void store_if(std::atomic<Value>& store, Value unset, Value value) {
    store.compare_exchange_strong(unset, value, std::memory_order_relaxed); // a 0 that the program stored stays too
}

void offer_count(int domain, int count, CountSource source) {
    if (count > 0) store_if(stores[domain], not_set, {count, source});
}

void finish_environment_step() {
    if (environment_pending.load(std::memory_order_acquire)) [[unlikely]]
        nxl_threads_read_env();
}

bool known_domain(int domain) { return domain >= 0 && domain < thread_domain_count; }

ThreadChoice choice_of(Setting setting, int domain) {
    return {setting.count, setting.count, domain, setting.by, CountLimit::none};
}

ThreadChoice requested_threads(int domain) {
    if (known_domain(domain)) {
        const Setting own = stores[domain].load(std::memory_order_relaxed);
        if (own.count > 0) return choice_of(own, domain);
    }
    const Setting all = stores[domain_all].load(std::memory_order_relaxed);
    return choice_of(all.count > 0 ? all : Setting{default_thread_count(), CountSource::openmp}, domain_all);
}

void hold(ThreadChoice& choice, int count, CountLimit limit) {
    choice.count = count;
    choice.limit = limit;
}

} // namespace

void nxl_threads_read_env() {
    if (const char* text = environment("NXL_NUM_THREADS"))
        offer_count(domain_all, thread_count_from(text), CountSource::num_threads_variable);
    if (const char* text = environment("NXL_DOMAIN_NUM_THREADS")) {
        const DomainCounts counts = domain_counts_from(text);
        for (int domain = 0; domain < thread_domain_count; ++domain)
            offer_count(domain, counts.of[domain], CountSource::domain_variable);
    }
    const char* dynamic = environment("NXL_DYNAMIC");
    store_if(dynamic_flag, dynamic_not_set, int{!dynamic || dynamic_from(dynamic)});
    find_gnu_runtime();
    physical_core_count.store(nxl_count_physical_cores(), std::memory_order_relaxed);
    environment_pending.store(false, std::memory_order_release);
}

ThreadChoice thread_choice(int domain) {
    finish_environment_step();
    ThreadChoice choice = requested_threads(domain);
    if (dynamic_flag.load(std::memory_order_relaxed) == 0) return choice;
    const int cores = physical_core_count.load(std::memory_order_relaxed);
    if (in_parallel_region()) hold(choice, 1, CountLimit::parallel_region);
    else if (cores < choice.count) hold(choice, cores, CountLimit::physical_cores);
    return choice;
}

bool dynamic_threads() {
    finish_environment_step();
    return dynamic_flag.load(std::memory_order_relaxed) != 0;
}

void set_num_threads(int count) {
    if (count > 0) stores[domain_all].store({count, CountSource::program}, std::memory_order_relaxed);
}

bool domain_set_num_threads(int count, int domain) {
    if (count < 0 || !known_domain(domain)) return false;
    stores[domain].store({count, CountSource::program}, std::memory_order_relaxed);
    return true;
}

void set_dynamic(bool on) { dynamic_flag.store(on, std::memory_order_relaxed); }

} // namespace nxl
