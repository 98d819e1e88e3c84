// Cuts a stream of bytes into lines; zlib delivers the bytes of plain and of compressed files alike.
#include "line_reader.hpp"

#include "input_error.hpp"
#include "progress.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <zlib.h>

namespace common {

bool LineReader::next() {
    const auto find_newline = [this] {
        return static_cast<const char*>(std::memchr(buffer_.data() + begin_, '\n', end_ - begin_));
    };
    const char* newline = find_newline();
    while (newline == nullptr && end_ - begin_ <= kMaxLine && refill()) newline = find_newline();
    if (newline == nullptr && begin_ == end_) return false;
    ++number_;
    const char* first = buffer_.data() + begin_;
    const char* last = newline ? newline : buffer_.data() + end_;
    line_ = std::string_view(first, static_cast<std::size_t>(last - first));
    if (line_.size() > kMaxLine) fail("the line is longer than " + std::to_string(kMaxLine) + " characters");
    begin_ += line_.size() + (newline ? 1 : 0);
    if (line_.ends_with('\r')) line_.remove_suffix(1);
    return true;
}

/// Moves what is left to the front and reads behind it; false at the end of the file.
bool LineReader::refill() {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
    errno = 0;
    const long count = fill_(buffer_.data() + end_, buffer_.size() - end_);
    if (count < 0) throw InputError(name_, errno ? std::strerror(errno) : "damaged gzip data");
    end_ += static_cast<std::size_t>(count);
    return count > 0;
}

void LineReader::fail(const std::string& what) const { fail_at(number_, what); }

void LineReader::fail_at(long line, const std::string& what) const { throw InputError(name_, line, what); }

namespace {

/// An open file, and how much of it has been read.
struct Source {
    std::unique_ptr<gzFile_s, int (*)(gzFile)> file;
    double size = 0.0; // bytes, as stored; 0 when that is not known, as of a pipe
    Progress progress;

    explicit Source(const std::string& path)
        : file(gzopen(path.c_str(), "rb"), gzclose_r),
          progress("reading " + path) {
        if (!file) throw InputError(path, std::strerror(errno ? errno : ENOMEM));
        std::error_code fault;
        if (std::filesystem::is_regular_file(path, fault))
            size = static_cast<double>(std::filesystem::file_size(path, fault));
    }
    void show() { progress.show(size > 0.0 ? static_cast<double>(gzoffset(file.get())) / size : -1.0); }
};

} // namespace

LineReader open_lines(const std::string& path) {
    errno = 0;
    const auto source = std::make_shared<Source>(path);
    return LineReader(path, [source](char* to, std::size_t size) -> long {
        const gzFile file = source->file.get();
        const int count = gzread(file, to, static_cast<unsigned>(size));
        int status = Z_OK;
        gzerror(file, &status);
        // A compressed file that stops in its middle shows as Z_BUF_ERROR, with the bytes before it delivered.
        if (status != Z_ERRNO) errno = 0;
        const long result = count == 0 && status == Z_BUF_ERROR ? -1 : count;
        if (result > 0) source->show();
        return result;
    });
}

LineReader lines_of(std::string name, std::string_view text) {
    return LineReader(std::move(name), [text](char* to, std::size_t size) mutable -> long {
        const std::size_t count = std::min(size, text.size());
        std::copy_n(text.data(), count, to);
        text.remove_prefix(count);
        return static_cast<long>(count);
    });
}

} // namespace common
