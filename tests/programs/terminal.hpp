// Runs a program on a terminal, and presses Ctrl-C.
#pragma once

#include <array>
#include <csignal>
#include <cstdlib>
#include <pty.h>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

namespace program_test {

struct Session {
    std::string shown;
    int status = 0;
    bool interrupted() const { return WIFSIGNALED(status) && WTERMSIG(status) == SIGINT; }
};

/// On a terminal of 50 columns; where the line of the stage appears, the user presses Ctrl-C.
inline Session interrupt_at(const std::string& stage, const std::string& program, std::vector<std::string> arguments) {
    winsize size{.ws_row = 24, .ws_col = 50, .ws_xpixel = 0, .ws_ypixel = 0};
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        arguments.insert(arguments.begin(), program);
        std::vector<char*> words;
        for (std::string& word : arguments) words.push_back(word.data());
        words.push_back(nullptr);
        setenv("TERM", "xterm", 1);
        execv(program.c_str(), words.data());
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

} // namespace program_test
