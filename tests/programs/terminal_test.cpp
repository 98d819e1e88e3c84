// nxl-solve on a terminal: the line of progress, and what Ctrl-C leaves behind.
#include "common/progress.hpp"
#include "terminal.hpp"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

TEST(ProgressLine, FitsEveryTerminalAndTellsTheShareWhereItCan) {
    const std::string umlaut = "reading \xc3\xa4\xc3\xb6\xc3\xbc.mtx";
    for (const auto& stage : {std::string("solving"), umlaut, std::string(300, 'x')}) {
        for (const double share : {-1.0, 0.0, 0.07, 0.994, 1.0, 1.2}) {
            for (int columns = 0; columns <= 300; ++columns) {
                const auto line = common::progress_line(columns, share, stage, "iteration 7");
                EXPECT_LE(line.size(), static_cast<std::size_t>(std::max(columns - 3, 0)));
                const bool cut_in_character = !line.empty() && line.back() == '\xc3';
                EXPECT_FALSE(cut_in_character) << line;
                if (share >= 0.0 && columns >= 8) EXPECT_NE(line.find(" %"), std::string::npos) << line;
            }
        }
    }
    EXPECT_EQ(common::progress_line(45, 0.5, "solving", "iteration 7"), "solving [######.......]  50 %  iteration 7");
}

TEST(Terminal, CtrlCEndsTheProgramAndLeavesANewLine) {
    const std::pair<std::string, std::vector<std::string>> stages[] = {
        {"factorising", {"--generate", "poisson2d:80", "--method", "lu"}},
        {"factorising", {"--generate", "poisson2d:80", "--method", "cholesky"}},
        {"solving", {"--generate", "truss:3000", "--method", "cg", "--tolerance", "1e-12"}},
        {"generating the matrix", {"--generate", "kriging:20000"}},
    };
    for (const auto& [stage, arguments] : stages) {
        const auto session = program_test::interrupt_at(stage, NXL_SOLVE_PROGRAM, arguments);
        const std::string& shown = session.shown;
        EXPECT_TRUE(session.interrupted()) << stage << shown;
        EXPECT_TRUE(shown.ends_with("\r\n")) << shown;
        EXPECT_EQ(shown.find("residual    "), std::string::npos) << "a report: " << shown;
        for (std::size_t at = 0, next = 0; next != std::string::npos; at = next + 1) {
            next = shown.find('\r', at);
            const auto line = shown.substr(at, next - at);
            EXPECT_LE(line.size(), 50 + std::string("\n\x1b[K^C").size()) << line;
        }
    }
}

} // namespace
