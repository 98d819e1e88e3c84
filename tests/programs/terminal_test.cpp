// nxl-solve on a terminal: the line of progress, and what Ctrl-C leaves behind.
#include "common/progress.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <gtest/gtest.h>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

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

struct Session {
    std::string shown;
    int status = 0;
};

/// Runs the program on a terminal of 50 columns; where the line of the stage appears, the user presses Ctrl-C.
Session interrupt_at(const std::string& stage, std::vector<std::string> arguments) {
    winsize size{.ws_row = 24, .ws_col = 50, .ws_xpixel = 0, .ws_ypixel = 0};
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        arguments.insert(arguments.begin(), NXL_SOLVE_PROGRAM);
        std::vector<char*> words;
        for (std::string& word : arguments) words.push_back(word.data());
        words.push_back(nullptr);
        setenv("TERM", "xterm", 1);
        execv(NXL_SOLVE_PROGRAM, words.data());
        _exit(127);
    }
    Session session;
    bool pressed = false;
    std::array<char, 4096> bytes{};
    for (ssize_t count = 0; (count = read(terminal, bytes.data(), bytes.size())) > 0;) {
        session.shown.append(bytes.data(), static_cast<std::size_t>(count));
        if (!pressed && session.shown.find(stage) != std::string::npos) pressed = write(terminal, "\x03", 1) == 1;
    }
    waitpid(child, &session.status, 0);
    close(terminal);
    return session;
}

TEST(Terminal, CtrlCEndsTheProgramAndLeavesANewLine) {
    const std::pair<std::string, std::vector<std::string>> stages[] = {
        {"factorising", {"--generate", "poisson2d:80", "--method", "lu"}},
        {"factorising", {"--generate", "poisson2d:80", "--method", "cholesky"}},
        {"solving", {"--generate", "truss:3000", "--method", "cg", "--tolerance", "1e-12"}},
        {"generating the matrix", {"--generate", "kriging:20000"}},
    };
    for (const auto& [stage, arguments] : stages) {
        const auto [shown, status] = interrupt_at(stage, arguments);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << stage << shown;
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
