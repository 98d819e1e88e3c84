// How many threads a call may use: the stores set by the program and by the environment, and the core count.
// The one parallel region that drivers run stands in parallel.hpp.
#pragma once
#include "service/types.hpp"

namespace nxl {

/// Whose thread count is asked for. Domains other than `all` fall back to it when they hold no count.
enum ThreadDomain : int { domain_all = 0, domain_blas = 1, domain_fft = 2, domain_vml = 3 };
inline constexpr int thread_domain_count = 4;

void set_num_threads(int count);
int max_threads(int domain);
bool domain_set_num_threads(int count, int domain);
void set_dynamic(bool on);
bool dynamic_threads();

} // namespace nxl
