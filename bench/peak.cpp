#include "bench/peak.hpp"
#include "bench/clocks.hpp"
#include <algorithm>
#include <barrier>
#include <benchmark/benchmark.h>
#include <bit>
#include <cstdint>
#include <limits>
#include <map>
#include <thread>
#include <tuple>
#include <vector>

namespace nxl::bench {
namespace {

template <int Bytes> using Register [[gnu::vector_size(Bytes)]] = double;

/// Twelve independent chains: more than two units with a latency of four or five need. Returns the operations done.
template <int Bytes> [[gnu::always_inline]] inline double multiply_add_chains(long steps) {
    constexpr int chains = 12, lanes = Bytes / sizeof(double);
    Register<Bytes> sum[chains] = {}, factor{}, term{};
    factor += 0.5;
    term += 1.0;
    for (long step = 0; step < steps; ++step) {
        for (auto& chain : sum) chain = chain * factor + term;
        for (auto& chain : sum) __asm__ volatile("" : "+x"(chain)); // in registers, and not folded away
    }
    return 2.0 * chains * lanes * static_cast<double>(steps);
}

double chains_128(long steps) { return multiply_add_chains<16>(steps); }
[[gnu::target("avx2,fma")]] double chains_256(long steps) { return multiply_add_chains<32>(steps); }
[[gnu::target("avx512f")]] double chains_512(long steps) { return multiply_add_chains<64>(steps); }

/// As many multiplications as additions, none of which waits for another chain. Returns the operations done.
template <int Chains> double separate_chains(long steps) {
    constexpr int lanes = 2;
    Register<16> product[Chains] = {}, sum[Chains] = {}, factor{}, term{};
    factor += 1.0;
    term += 1.0;
    __asm__("" : "+x"(factor), "+x"(term)); // a product by a known 1 would be left out
    for (long step = 0; step < steps; ++step) {
        for (auto& chain : product) chain *= factor;
        for (auto& chain : sum) chain += term;
        for (auto& chain : product) __asm__ volatile("" : "+x"(chain));
        for (auto& chain : sum) __asm__ volatile("" : "+x"(chain));
    }
    return 2.0 * Chains * lanes * static_cast<double>(steps);
}

/// The shortest of several runs: what else went on can only lengthen one.
template <class Work> double shortest_seconds(int runs, Clock now, const Work& work) {
    double shortest = std::numeric_limits<double>::infinity();
    for (int run = 0; run < runs; ++run) {
        const double start = now();
        work();
        shortest = std::min(shortest, now() - start);
    }
    return shortest;
}

double rate_of(double (*chains)(long)) {
    double operations = 0.0;
    const double seconds = shortest_seconds(20, thread_seconds, [&] { operations = chains(200'000); });
    return operations / seconds;
}

[[gnu::target_clones("avx2", "default")]] void read_pass(double* x, double*, double*, long n) {
    Register<32> sum[8] = {};
    for (long i = 0; i + 32 <= n; i += 32)
        for (int chain = 0; chain < 8; ++chain) {
            Register<32> value;
            __builtin_memcpy(&value, x + i + 4 * chain, sizeof value);
            sum[chain] += value;
        }
    for (auto& chain : sum) benchmark::DoNotOptimize(chain);
}

[[gnu::target_clones("avx2", "default")]] void update_pass(double* x, double*, double*, long n) {
    for (long i = 0; i < n; ++i) x[i] = 1.0 - x[i];
}

[[gnu::target_clones("avx2", "default")]] void copy_pass(double* x, double* y, double*, long n) {
    __builtin_memcpy(y, x, static_cast<std::size_t>(n) * sizeof(double));
}

[[gnu::target_clones("avx2", "default")]] void triad_pass(double* __restrict x, double* __restrict y,
                                                          double* __restrict z, long n) {
    for (long i = 0; i < n; ++i) z[i] = x[i] + 0.5 * y[i];
}

constexpr long line = 64 / sizeof(double); // of the cache: arrays start and end with one

long first_of_line(const double* memory) {
    return -static_cast<long>(reinterpret_cast<std::uintptr_t>(memory) / sizeof(double)) & (line - 1);
}

/// Seconds of the slowest of `threads` threads that all make `passes` passes, each over its own arrays.
class Team {
    const Traffic& traffic_;
    long n_, passes_;
    std::vector<std::vector<double>> memory_;

    void make_passes(std::vector<double>& memory) const {
        for (long pass = 0; pass < passes_; ++pass) {
            double* x = memory.data() + first_of_line(memory.data());
            double* y = x + (traffic_.arrays > 1 ? n_ : 0);
            traffic_.pass(x, y, y + (traffic_.arrays > 2 ? n_ : 0), n_);
            benchmark::ClobberMemory();
        }
    }

  public:
    Team(const Traffic& traffic, double bytes, int threads)
        : traffic_(traffic),
          n_(static_cast<long>(bytes / sizeof(double) / traffic.arrays) / line * line),
          passes_(std::max(1L, static_cast<long>(4e7 / bytes))),
          memory_(static_cast<std::size_t>(threads),
                  std::vector<double>(static_cast<std::size_t>(traffic.arrays * n_ + line), 0.5)) {}

    double bytes() const {
        return static_cast<double>(n_) * static_cast<double>(passes_) * traffic_.bytes_per_element *
               static_cast<double>(memory_.size());
    }

    double shortest_run(int runs) {
        const auto members = static_cast<std::ptrdiff_t>(memory_.size());
        std::barrier line_up(members);
        std::vector<std::jthread> others;
        for (std::size_t member = 1; member < memory_.size(); ++member)
            others.emplace_back([&, member] {
                for (int run = 0; run < runs; ++run) {
                    line_up.arrive_and_wait();
                    make_passes(memory_[member]);
                    line_up.arrive_and_wait();
                }
            });
        return shortest_seconds(runs, members > 1 ? wall_seconds : thread_seconds, [&] {
            line_up.arrive_and_wait();
            make_passes(memory_.front());
            line_up.arrive_and_wait();
        });
    }
};

} // namespace

const std::array<Traffic, 4> traffic_patterns = {{
    {"read", Traffic::reads, 1, 8, read_pass},
    {"update", Traffic::stores, 1, 16, update_pass},
    {"copy", Traffic::copies, 2, 16, copy_pass},
    {"triad", Traffic::stores, 3, 24, triad_pass},
}};

double peak_flops_per_second() {
    double best = rate_of(chains_128);
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) best = std::max(best, rate_of(chains_256));
    if (__builtin_cpu_supports("avx512f")) best = std::max(best, rate_of(chains_512));
    return best;
}

double peak_sse2_flops_per_second() {
    return std::max(
        {rate_of(chains_128), rate_of(separate_chains<5>), rate_of(separate_chains<6>), rate_of(separate_chains<7>)});
}

double bandwidth(const Traffic& traffic, double bytes, int threads) {
    Team team(traffic, bytes, threads);
    const double seconds = team.shortest_run(10);
    return team.bytes() / seconds;
}

double peak_bandwidth(Traffic::Kind kind, double bytes, int threads) {
    static std::map<std::tuple<Traffic::Kind, std::uint64_t, int>, double> known;
    const double inside = std::clamp(bytes, 16384.0, memory_bytes); // shorter loops would measure their own start
    const std::uint64_t size = std::bit_ceil(static_cast<std::uint64_t>(inside));
    double& best = known[{kind, size, threads}];
    if (best == 0.0)
        for (const Traffic& traffic : traffic_patterns)
            if (traffic.kind == kind || (kind == Traffic::stores && traffic.kind == Traffic::copies))
                best = std::max(best, bandwidth(traffic, static_cast<double>(size), threads));
    return best;
}

} // namespace nxl::bench
