// All that is compiled with the headers of MUMPS, the sequential one.
#include "bench/direct_solver.hpp"

#ifdef NXL_BENCH_MUMPS
#include "bench/loaded.hpp"
#include <algorithm>
#include <dmumps_c.h>
#include <stdexcept>
#include <zmumps_c.h>

namespace nxl::bench {
namespace {

struct Mumps {
    void (*d)(DMUMPS_STRUC_C*) = nullptr;
    void (*z)(ZMUMPS_STRUC_C*) = nullptr;
    bool complete = false;

    Mumps() {
        // The package has the version in the library's name: its two first numbers.
        const std::string text = MUMPS_VERSION, version = text.substr(0, text.find('.', text.find('.') + 1));
        LoadedLibrary real("libdmumps_seq-" + version + ".so"), complex("libzmumps_seq-" + version + ".so");
        real.find("dmumps_c", d);
        complex.find("zmumps_c", z);
        complete = real.complete() && complex.complete();
    }
};

const Mumps& mumps() {
    static const Mumps library;
    return library;
}

void call(DMUMPS_STRUC_C& id) { mumps().d(&id); }
void call(ZMUMPS_STRUC_C& id) { mumps().z(&id); }

template <class Id> class MumpsSolver final : public DirectSolver {
    std::vector<int> row_, column_;
    std::vector<double> value_;
    Id id_{};

    void run(int job) {
        id_.job = job;
        call(id_);
        if (id_.infog[0] < 0) throw std::runtime_error("MUMPS ends with " + std::to_string(id_.infog[0]));
    }
    int& icntl(int k) { return id_.icntl[k - 1]; }

  public:
    MumpsSolver(const SparseProblem& problem, SparseOrdering ordering) : column_(problem.ja), value_(problem.a) {
        row_.reserve(column_.size());
        for (int i = 0; i < problem.n; ++i)
            row_.insert(row_.end(), static_cast<std::size_t>(problem.ia.data()[i + 1] - problem.ia.data()[i]), i + 1);
        constexpr int host_works = 1, no_communicator = -987654, begin = -1;
        id_.par = host_works;
        id_.comm_fortran = no_communicator;
        id_.sym = problem.mtype == 2 ? 1 : problem.upper() ? 2 : 0;
        run(begin);
        constexpr int metis = 5, amd = 0, room = 100; // room: in per cent
        for (const int output : {1, 2, 3, 4}) icntl(output) = 0;
        icntl(7) = ordering == SparseOrdering::metis ? metis : amd;
        icntl(14) = room;
        id_.n = problem.n;
        id_.nnz = static_cast<MUMPS_INT8>(column_.size());
        id_.irn = row_.data();
        id_.jcn = column_.data();
        id_.a = reinterpret_cast<decltype(id_.a)>(value_.data());
    }
    ~MumpsSolver() override {
        id_.job = -2;
        call(id_);
    }
    MumpsSolver(const MumpsSolver&) = delete;
    MumpsSolver& operator=(const MumpsSolver&) = delete;

    void analyse() override { run(1); }
    void factorise() override { run(2); }
    void solve(const std::vector<double>& b, std::vector<double>& x, int nb) override {
        std::ranges::copy(b, x.begin());
        id_.nrhs = nb;
        id_.lrhs = id_.n;
        id_.rhs = reinterpret_cast<decltype(id_.rhs)>(x.data());
        run(3);
    }
    double peak_bytes() const override { return 1e6 * id_.infog[21]; } // INFOG(22)
};

} // namespace

std::vector<DirectContender> mumps_direct() {
    if (!mumps().complete) return {};
    const auto takes = [](const SparseProblem& problem) { return problem.mtype != 4; }; // it has no Hermitian type
    const auto with = [](SparseOrdering ordering) {
        return [=](const SparseProblem& problem) -> std::unique_ptr<DirectSolver> {
            if (problem.complex()) return std::make_unique<MumpsSolver<ZMUMPS_STRUC_C>>(problem, ordering);
            return std::make_unique<MumpsSolver<DMUMPS_STRUC_C>>(problem, ordering);
        };
    };
    return {{"MUMPS", MUMPS_VERSION ", sequential, METIS", takes, with(SparseOrdering::metis)},
            {"MUMPS/A", MUMPS_VERSION ", sequential, AMD", takes, with(SparseOrdering::minimum_degree)}};
}

} // namespace nxl::bench

#else

namespace nxl::bench {

std::vector<DirectContender> mumps_direct() { return {}; }

} // namespace nxl::bench

#endif
