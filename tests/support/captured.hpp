// What a piece of code leaves behind: bytes on standard output, files in the current directory.
#pragma once
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace nxl_test {

template <class Body> std::string printed_by(Body&& body) {
    testing::internal::CaptureStdout();
    body();
    return testing::internal::GetCapturedStdout();
}

/// A fresh current directory, gone at the end of the scope.
class TemporaryDirectory {
    std::filesystem::path before_ = std::filesystem::current_path();
    std::string path_ = std::filesystem::temp_directory_path() / "nxl-test-XXXXXX";

  public:
    TemporaryDirectory() {
        if (!mkdtemp(path_.data())) std::abort();
        std::filesystem::current_path(path_);
    }
    ~TemporaryDirectory() {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(path_);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
};

inline std::string contents(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace nxl_test
