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
};

/// The number behind a word in a report.
inline double number_after(const std::string& report, const std::string& word) {
    const auto at = report.find(word);
    return at == std::string::npos ? std::nan("") : std::strtod(report.c_str() + at + word.size(), nullptr);
}

} // namespace program_test
