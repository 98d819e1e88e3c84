// How many threads a call may use: the counts set by the program and by the environment, and the physical cores.
// The one parallel region that drivers run stands in parallel.hpp.
#pragma once

namespace nxl {

/// Whose thread count is asked for. A domain that holds no count of its own goes by `domain_all`.
enum ThreadDomain : int { domain_all = 0, domain_blas = 1, domain_fft = 2, domain_vml = 3 };
inline constexpr int thread_domain_count = 4;

/// What a thread count was taken from.
enum class CountSource : int { openmp, program, num_threads_variable, domain_variable };

/// Why a count is lower than the one asked for.
enum class CountLimit : int { none, physical_cores, parallel_region };

/// A thread count and how it came about.
struct ThreadChoice {
    int count;     ///< that a call may use, at least 1
    int requested; ///< the same before the limit
    int store;     ///< the domain whose count was taken
    CountSource source;
    CountLimit limit;
};

/// The threads that a call in `domain` may use. An unknown domain is answered as `domain_all`.
ThreadChoice thread_choice(int domain);
inline int max_threads(int domain) { return thread_choice(domain).count; }

/// Whether counts are held to the physical cores, and to 1 inside a parallel region. On unless the host said otherwise.
bool dynamic_threads();

/// Counts below 1 are ignored.
void set_num_threads(int count);

/// False, and nothing changed, for a negative count or an unknown domain. A count of 0 is stored and reads as not set.
bool domain_set_num_threads(int count, int domain);

void set_dynamic(bool on);

/// Fills what the program has not set from the environment, and counts the cores. Runs by itself at the first query.
void nxl_threads_read_env();

} // namespace nxl
