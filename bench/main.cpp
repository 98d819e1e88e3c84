// nxl-bench: times nxl and the peers found on this machine, side by side in one run.
#include "bench/families.hpp"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>

namespace {

using nxl::bench::families;
using nxl::bench::Request;

std::string family_list() {
    std::string list = "Families:";
    for (const auto& family : families())
        list += "\n  " + std::string(family.name) + std::string(12 - std::string(family.name).size(), ' ') +
                family.description;
    return list;
}

int run(const Request& request) {
    const auto family = std::ranges::find(families(), request.family, &nxl::bench::Family::name);
    return family->run(request);
}

} // namespace

int main(int argc, char** argv) try {
    Request request;
    std::vector<std::string> names;
    for (const auto& family : families()) names.emplace_back(family.name);

    CLI::App app("Times nxl and other libraries on the same data, in turn, in one run.", "nxl-bench");
    app.footer(family_list());
    app.set_version_flag("--version", "nxl-bench " NXL_BENCH_VERSION);
    app.add_option("family", request.family, "What to measure")->required()->check(CLI::IsMember(names));
    app.add_option("--filter", request.filter, "Only cases whose name matches, as in 'ddot/1000/'");
    app.add_option("--library", request.library, "Another build of libnxl.so to measure");
    app.add_option("--csv", request.csv, "Write all figures to this file");
    app.add_option("--plot", request.plot,
                   "Draw ratios, or rates of matrix products and factorisations, to this SVG file");
    CLI11_PARSE(app, argc, argv);

    std::signal(SIGPIPE, SIG_IGN); // a missing gnuplot is reported, not died of
    return run(request);
} catch (const std::exception& error) {
    std::fprintf(stderr, "nxl-bench: %s\n", error.what());
    return 1;
}
