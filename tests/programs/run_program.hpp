// Runs a program as a user does, in a folder of its own.
#pragma once

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace program_test {

struct Outcome {
    int status;
    std::string out, err;
};

/// A command line that does not work, its status, and its one line on standard error behind the program's name; of a
/// message that begins with three dots, what stands in that line.
struct Refusal {
    std::string arguments;
    int status;
    std::string message;
};

class Program : public ::testing::Test {
  protected:
    const std::string program_;
    std::filesystem::path folder_ =
        std::filesystem::path(::testing::TempDir()) / ("nxl_program_test_" + std::to_string(getpid()));

    explicit Program(std::string program) : program_(std::move(program)) {}

    void SetUp() override { std::filesystem::create_directories(folder_); }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string read(const std::string& name) const {
        std::ifstream file(folder_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }
    /// `before` stands before the program on the shell's line.
    Outcome run(const std::string& arguments, const std::string& before = "") const {
        const std::string line =
            "cd '" + folder_.string() + "' && " + before + " '" + program_ + "' " + arguments + " >out 2>err";
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read("out"), read("err")};
    }
    void expect_refused(const Refusal& refusal) const {
        const auto& [arguments, status, message] = refusal;
        const auto run = this->run(arguments);
        const std::string name = std::filesystem::path(program_).filename().string() + ": ";
        EXPECT_EQ(run.status, status) << arguments;
        EXPECT_TRUE(run.err.starts_with(name) && run.err.find('\n') == run.err.size() - 1) << arguments << run.err;
        if (message.starts_with("...")) EXPECT_NE(run.err.find(message.substr(3)), std::string::npos) << run.err;
        else EXPECT_EQ(run.err, name + message + "\n") << arguments;
        if (status == 2) EXPECT_EQ(run.out, "") << arguments;
    }
    void expect_refused(std::initializer_list<Refusal> refusals) const {
        for (const Refusal& refusal : refusals) expect_refused(refusal);
    }
};

/// The number behind a word in a report.
inline double number_after(const std::string& report, const std::string& word) {
    const auto at = report.find(word);
    return at == std::string::npos ? std::nan("") : std::strtod(report.c_str() + at + word.size(), nullptr);
}

} // namespace program_test
