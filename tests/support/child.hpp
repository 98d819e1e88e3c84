// Runs this test program once more, in a process of its own: for what a process settles once and for all, such as the
// environment. The program's main() has to look for the arguments before it starts GoogleTest.
#pragma once
#include <cstring>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace nxl_test {

struct ChildResult {
    int exit_status; // -1 when it did not exit by itself
    std::string output;
};

/// The parent's environment without the variables that steer the library and OpenMP, and `settings` ("NAME=value").
inline std::vector<std::string> child_environment(const std::vector<std::string>& settings) {
    std::vector<std::string> result = settings;
    for (char** entry = environ; *entry; ++entry)
        if (std::strncmp(*entry, "NXL_", 4) != 0 && std::strncmp(*entry, "OMP_", 4) != 0) result.emplace_back(*entry);
    return result;
}

inline std::vector<char*> pointers_to(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (std::string& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

inline std::string read_to_end(int pipe_end) {
    std::string text;
    char piece[4096];
    for (ssize_t n; (n = read(pipe_end, piece, sizeof piece)) > 0;) text.append(piece, static_cast<std::size_t>(n));
    return text;
}

inline ChildResult run_self(std::vector<std::string> arguments, const std::vector<std::string>& settings) {
    arguments.insert(arguments.begin(), "/proc/self/exe");
    std::vector<std::string> variables = child_environment(settings);
    int ends[2];
    if (pipe(ends) != 0) return {-1, "no pipe"};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    pid_t child = 0;
    const int failed = posix_spawn(&child, "/proc/self/exe", &actions, nullptr, pointers_to(arguments).data(),
                                   pointers_to(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    ChildResult result{-1, failed ? "not started" : read_to_end(ends[0])};
    close(ends[0]);
    int status = 0;
    if (!failed && waitpid(child, &status, 0) == child && WIFEXITED(status)) result.exit_status = WEXITSTATUS(status);
    return result;
}

} // namespace nxl_test
