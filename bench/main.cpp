// nxl-bench: times nxl and the peers found on this machine, side by side in one run.
#include "bench/direct_solver.hpp"
#include "bench/families.hpp"
#include "bench/krylov_peer.hpp"
#include "bench/machine.hpp"
#include "common/command_line.hpp"
#include "common/gnuplot.hpp"
#include "common/output_file.hpp"
#include "common/run_program.hpp"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace nxl::bench {
namespace {

constexpr const char* program = "nxl-bench";

struct CommandLine {
    Request request;
    std::vector<std::string> families;
    bool list = false;
};

const Family& family_of(const std::string& name) { return *std::ranges::find(families(), name, &Family::name); }

std::string family_list() {
    std::string list = "Families:";
    for (const auto& family : families())
        list += "\n  " + std::string(family.name) + std::string(12 - std::string(family.name).size(), ' ') +
                family.description;
    return list;
}

void declare(CLI::App& app, CommandLine& line) {
    Request& request = line.request;
    std::vector<std::string> names;
    for (const auto& family : families()) names.emplace_back(family.name);
    app.footer(
        family_list() +
        "\n\nExit status: 0 done, 1 a file, plot or library cannot be used, 2 bad usage, 3 results differ: such a case "
        "has no figure.\nExample: nxl-bench gemm level3 --sizes 100,1000 --csv figures.csv");
    app.set_version_flag("--version", "nxl-bench " NXL_BENCH_VERSION);
    app.add_option("FAMILY", line.families, "What to measure, see below; several run one after the other")
        ->check(CLI::IsMember(names))
        ->option_text("...");
    app.add_flag("--list", line.list, "List the families, and the libraries found here with what each offers");
    app.add_option("--filter", request.filter, "Only cases whose name matches, as in 'ddot/1000/'")
        ->option_text("REGEX");
    app.add_option("--sizes", request.sizes, "Orders of matrices, or lengths, instead of the family's own")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::Range(1, 1'000'000'000))
        ->option_text("N,N,...");
    app.add_option("--threads", request.threads, "Threads of every library, instead of the family's own")
        ->check(CLI::Range(1, 1024))
        ->option_text("N");
    app.add_flag("--self-check", request.self_check,
                 "Time only from fresh operands, and count only what ends in a peer's results");
    app.add_option("--library", request.library, "Another build of libnxl.so to measure")->option_text("FILE.so");
    app.add_option("--peer", request.peers, "Another library to compare with, of Fortran's names; may be repeated")
        ->allow_extra_args(false)
        ->option_text("FILE.so");
    app.add_option("--matrices", request.matrices, "Also the Matrix Market files in this folder, plain or gzip")
        ->check(CLI::ExistingDirectory)
        ->option_text("FOLDER");
    app.add_option("--csv", request.csv, "Write all figures; of several families, each to FILE-FAMILY.csv")
        ->option_text("FILE.csv");
    app.add_option("--plot", request.plot,
                   "Draw ratios, or rates of matrix products and factorisations; of several as --csv")
        ->check(common::fault_of_drawing)
        ->option_text("FILE.svg|FILE.png");
}

/// Options that a family would pass over are refused.
void check(const CLI::App& app, const CommandLine& line) {
    if (line.families.empty()) throw common::UsageError("a family is expected; --list names them");
    for (const std::string& name : line.families)
        for (const CLI::Option* option : app.get_options()) {
            const auto& heeded = family_of(name).options;
            const std::string text = option->get_name();
            if (text.starts_with("--") && option->count() > 0 && std::ranges::find(heeded, text) == heeded.end())
                throw common::UsageError(text + " does not belong to family " + name);
        }
}

int list(const Request& request) {
    std::vector<Library> libraries = {Library::nxl(request.library)};
    for (Library& peer : Library::peers()) libraries.push_back(std::move(peer));
    for (const std::string& file : request.peers) libraries.push_back(Library::peer(file));
    std::printf("%s\n\nLibraries:\n", family_list().c_str());
    print_offers(libraries);
    if (libraries.size() == 1) std::printf("  no peer is installed here\n");
    if (const std::string version = eigen_version(); !version.empty())
        std::printf("  %-10s  %s\n%14sGMRES, for krylov\n", "Eigen", version.c_str(), "");
    for (const auto peers : {cholmod_direct, mumps_direct, umfpack_direct, superlu_direct})
        for (const DirectContender& peer : peers())
            std::printf("  %-10s  %s\n%14sfor sparse\n", peer.name.c_str(), peer.version.c_str(), "");
    return common::kDone;
}

/// "figures.csv" of a family among several is "figures-gemm.csv".
std::string file_of(const std::string& file, const std::string& family) {
    const auto name = file.rfind('/') + 1, dot = file.rfind('.'); // npos + 1 is 0
    const auto end = dot == std::string::npos || dot <= name ? file.size() : dot;
    return file.empty() ? file : file.substr(0, end) + '-' + family + file.substr(end);
}

int run(const Request& request) {
    for (const std::string& file : {request.csv, request.plot})
        if (!file.empty()) common::expect_writable(file);
    return family_of(request.family).run(request);
}

/// Libraries are loaded and settle their environment once per process, so each of several families has its own.
int run_apart(const Request& request) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("cannot start another process");
    if (child == 0) std::exit(common::run_program(program, [&] { return run(request); }));
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    return common::complain(program, request.family + ": ended by signal " + std::to_string(WTERMSIG(status)),
                            common::kBadInput);
}

int run_all(const CommandLine& line) {
    int worst = common::kDone;
    for (const std::string& family : line.families) {
        Request request = line.request;
        request.family = family;
        if (line.families.size() == 1) return run(request);
        if (&family != line.families.data()) std::printf("\n");
        request.csv = file_of(request.csv, family);
        request.plot = file_of(request.plot, family);
        worst = std::max(worst, run_apart(request));
    }
    return worst;
}

int run(int argc, char** argv) {
    CommandLine line;
    CLI::App app("Times nxl and other libraries on the same data, in turn, in one run.", program);
    declare(app, line);
    if (!common::parse(app, argc, argv)) return common::kDone;
    if (line.list) return list(line.request);
    check(app, line);
    return run_all(line);
}

} // namespace
} // namespace nxl::bench

int main(int argc, char** argv) {
    return common::run_program(nxl::bench::program, [&] { return nxl::bench::run(argc, argv); });
}
