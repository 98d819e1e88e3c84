// How the steps of nxl.hpp and its like end: errors as values, with a text.
#pragma once
#include <string_view>

namespace nxl {

/// How a step ended: the routine's own code, 0 or below, and what it means.
class [[nodiscard]] Status {
    int code_ = 0;
    std::string_view text_ = "success";

  public:
    Status() = default;
    /// The text is kept as it is given, not copied.
    Status(int code, std::string_view text) : code_(code), text_(text) {}

    /// Whether the step was done.
    bool ok() const { return code_ == 0; }
    /// The same.
    explicit operator bool() const { return ok(); }
    /// 0, or what the routine returned as its error.
    int code() const { return code_; }
    /// One line for a reader; lives as long as the program.
    std::string_view text() const { return text_; }
};

} // namespace nxl
