// The C library's file operations as a test has them fail. Linking host_files.cpp puts them before the library's.
#pragma once

namespace nxl_test {

struct HostFiles {
    int operations = 0; // of the kinds that may fail, since this was last set to 0
    int fail_at = 0;    // the operation that fails, counted from 1; 0: none
};
extern HostFiles host_files;

} // namespace nxl_test
