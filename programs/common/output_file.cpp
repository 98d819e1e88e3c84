// Tries whether a file can be written, without writing it.
#include "output_file.hpp"

#include "input_error.hpp"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace common {
namespace {

/// 0, or what is in the way.
int try_existing(const char* path, const struct stat& file) {
    if (S_ISDIR(file.st_mode)) return EISDIR;
    // Opening a pipe or a device would be felt at its other end.
    if (!S_ISREG(file.st_mode)) return access(path, W_OK) == 0 ? 0 : errno;
    const int descriptor = open(path, O_WRONLY | O_CLOEXEC); // without O_TRUNC
    if (descriptor < 0) return errno;
    close(descriptor);
    return 0;
}

int try_new(const char* path) {
    constexpr mode_t kMode = 0600;
    const int descriptor = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    // A link that leads nowhere, or somebody was faster: writing will tell.
    if (descriptor < 0) return errno == EEXIST ? 0 : errno;
    close(descriptor);
    unlink(path);
    return 0;
}

} // namespace

void expect_writable(const std::string& path) {
    struct stat file{};
    const int fault = stat(path.c_str(), &file) == 0 ? try_existing(path.c_str(), file)
                      : errno == ENOENT              ? try_new(path.c_str())
                                                     : errno;
    if (fault != 0) throw InputError(path, std::strerror(fault));
}

} // namespace common
