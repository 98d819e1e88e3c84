// All that is compiled with CHOLMOD's header.
#include "bench/cholmod_peer.hpp"

#ifdef NXL_BENCH_CHOLMOD
#include "bench/clocks.hpp"
#include <algorithm>
#include <cholmod.h>
#include <dlfcn.h>
#include <stdexcept>

namespace nxl::bench {
namespace {

/// The routines of the library of the header's version.
struct Cholmod {
    void* handle = dlopen(("libcholmod.so." + std::to_string(CHOLMOD_MAIN_VERSION)).c_str(), RTLD_NOW | RTLD_LOCAL);
    decltype(&cholmod_start) start = nullptr;
    decltype(&cholmod_finish) finish = nullptr;
    decltype(&cholmod_allocate_sparse) allocate_sparse = nullptr;
    decltype(&cholmod_free_sparse) free_sparse = nullptr;
    decltype(&cholmod_analyze_p) analyze_p = nullptr;
    decltype(&cholmod_free_factor) free_factor = nullptr;

    Cholmod() {
        find("cholmod_start", start);
        find("cholmod_finish", finish);
        find("cholmod_allocate_sparse", allocate_sparse);
        find("cholmod_free_sparse", free_sparse);
        find("cholmod_analyze_p", analyze_p);
        find("cholmod_free_factor", free_factor);
    }
    bool complete() const { return start && finish && allocate_sparse && free_sparse && analyze_p && free_factor; }

  private:
    template <class Function> void find(const char* name, Function& function) const {
        if (handle) function = reinterpret_cast<Function>(dlsym(handle, name));
    }
};

class CholmodPeer final : public SparsePeer {
    Cholmod cholmod_;
    cholmod_common common_{};
    cholmod_sparse* matrix_ = nullptr;

    Analysis analyse(int ordering, int* perm) {
        common_.nmethods = 1;
        common_.method[0].ordering = ordering;
        common_.postorder = 1;
        common_.supernodal = CHOLMOD_SUPERNODAL;
        common_.memory_usage = common_.memory_inuse;
        const std::size_t before = common_.memory_inuse;
        const double start = thread_seconds(); // it does all on this thread
        cholmod_factor* factor = cholmod_.analyze_p(matrix_, perm, nullptr, 0, &common_);
        const double seconds = thread_seconds() - start;
        if (!factor) throw std::runtime_error("CHOLMOD ends with " + std::to_string(common_.status));
        cholmod_.free_factor(&factor, &common_);
        return {.seconds = seconds,
                .entries = common_.lnz,
                .peak_bytes = static_cast<double>(common_.memory_usage - before)};
    }

  public:
    CholmodPeer() {
        if (complete()) {
            cholmod_.start(&common_);
            common_.print = 0;
        }
    }
    ~CholmodPeer() override {
        if (!complete()) return;
        cholmod_.free_sparse(&matrix_, &common_);
        cholmod_.finish(&common_);
    }
    CholmodPeer(const CholmodPeer&) = delete;
    CholmodPeer& operator=(const CholmodPeer&) = delete;

    bool complete() const { return cholmod_.complete(); }
    std::string version() const override {
        return std::to_string(CHOLMOD_MAIN_VERSION) + '.' + std::to_string(CHOLMOD_SUB_VERSION) + '.' +
               std::to_string(CHOLMOD_SUBSUB_VERSION);
    }

    void set(const nxl_test::SparseProblem& problem) override {
        const auto n = static_cast<std::size_t>(problem.n);
        std::vector<std::vector<int>> columns(n); // of the upper triangle
        for (int i = 0; i < problem.n; ++i)
            for (int k = problem.ia.data()[i]; k < problem.ia.data()[i + 1]; ++k) {
                const int j = problem.ja.data()[k - 1] - 1;
                columns.data()[std::max(i, j)].push_back(std::min(i, j));
            }
        std::size_t entries = 0;
        for (auto& column : columns) {
            std::ranges::sort(column);
            column.erase(std::ranges::unique(column).begin(), column.end());
            entries += column.size();
        }
        cholmod_.free_sparse(&matrix_, &common_);
        matrix_ = cholmod_.allocate_sparse(n, n, entries, 1, 1, 1, CHOLMOD_PATTERN, &common_);
        if (!matrix_) throw std::runtime_error("no memory for CHOLMOD");
        int *start = static_cast<int*>(matrix_->p), *row = static_cast<int*>(matrix_->i);
        *start = 0;
        for (const auto& column : columns) {
            row = std::ranges::copy(column, row).out;
            start[1] = start[0] + static_cast<int>(column.size());
            ++start;
        }
    }
    Analysis analyse(SparseOrdering ordering) override {
        return analyse(ordering == SparseOrdering::metis ? CHOLMOD_METIS : CHOLMOD_AMD, nullptr);
    }
    double entries(const std::vector<int>& perm) override {
        std::vector<int> from_0(perm);
        for (int& index : from_0) --index;
        return analyse(CHOLMOD_GIVEN, from_0.data()).entries;
    }
};

} // namespace

std::unique_ptr<SparsePeer> cholmod_peer() {
    auto peer = std::make_unique<CholmodPeer>();
    if (!peer->complete()) return nullptr;
    return peer;
}

} // namespace nxl::bench

#else

namespace nxl::bench {

std::unique_ptr<SparsePeer> cholmod_peer() { return nullptr; }

} // namespace nxl::bench

#endif
