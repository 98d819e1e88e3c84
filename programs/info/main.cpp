// nxl-info: what the library decides on this machine, in this environment, and why.
#include "common/command_line.hpp"
#include "common/run_program.hpp"
#include "findings.hpp"

namespace info {
namespace {

constexpr const char* kProgram = "nxl-info";

int run(int argc, char** argv) {
    bool json = false;
    CLI::App app("Tells what nxl decides on this machine, in this environment, and why.", kProgram);
    app.set_version_flag("--version", "nxl-info " NXL_INFO_VERSION);
    app.add_flag("--json", json, "Print one JSON object, with the warnings in it");
    app.footer("Exit status: 0 done, also with warnings, 1 no memory or no output, 2 bad usage.\n"
               "Example: NXL_NUM_THREADS=4 nxl-info");
    if (!common::parse(app, argc, argv)) return common::kDone;

    const Findings findings = find_out();
    const std::vector<std::string> lines = warnings(findings);
    if (json) {
        print_json(findings, lines);
        return common::kDone;
    }
    print_text(findings);
    std::fflush(stdout); // before what goes to standard error
    for (const std::string& line : lines) common::complain(kProgram, "warning: " + line, common::kDone);
    return common::kDone;
}

} // namespace
} // namespace info

int main(int argc, char** argv) {
    return common::run_program(info::kProgram, [&] { return info::run(argc, argv); });
}
