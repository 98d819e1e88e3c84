// The lines of a text file, plain or gzip, or of a buffer in memory: one after the other, with their numbers.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace common {

class LineReader {
  public:
    /// Reads up to `size` bytes to `to`; returns how many there were, 0 at the end, -1 on an error (errno tells which).
    using Fill = std::function<long(char* to, std::size_t size)>;

    /// Longer lines are refused: memory use must not depend on what a file claims to be.
    static constexpr std::size_t kMaxLine = 8192;

    LineReader(std::string name, Fill fill) : name_(std::move(name)), fill_(std::move(fill)), buffer_(4 * kMaxLine) {}

    /// Moves to the next line; false at the end of the file. The line ends without its newline or carriage return.
    bool next();
    /// The current line; valid until the next call of next().
    std::string_view line() const { return line_; }

    [[noreturn]] void fail(const std::string& what) const;
    [[noreturn]] void fail_at(long line, const std::string& what) const;

    long number() const { return number_; }
    const std::string& name() const { return name_; }

  private:
    bool refill();

    std::string name_;
    Fill fill_;
    std::vector<char> buffer_;
    std::size_t begin_ = 0, end_ = 0; // the bytes of buffer_ that were read and not yet handed out
    std::string_view line_;
    long number_ = 0;
};

/// Opens a file, plain or gzip; throws InputError when that fails.
LineReader open_lines(const std::string& path);

/// Lines of `text`, which must outlive the reader; `name` is for messages.
LineReader lines_of(std::string name, std::string_view text);

} // namespace common
