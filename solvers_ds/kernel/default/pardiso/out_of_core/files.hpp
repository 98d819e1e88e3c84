// The file layer of out-of-core work: three binary files of a stem, read and written by items at computed places.
#pragma once
#include "solvers_ds/kernel/default/pardiso/handle.hpp"
#include <cstdio>

namespace nxl::pardiso {

enum class OocFileKind : int { structure = 1, lower = 2, upper = 3 };

/// What became of an operation.
enum class OocStatus : int {
    done = 0,
    open_mode = 1,
    open = 2,
    close = 3,
    remove = 4,
    nothing_read = 5,
    not_all_read = 6,
    read_end = 7,
    read_seek = 8,
    read_parameters = 9,
    nothing_written = 10,
    not_all_written = 11,
    write_end = 12,
    write_seek = 13,
    write_parameters = 14,
    input = 15
};

/// The name of a file: the stem without its trailing blanks and line ends, and the ending of the kind.
struct OocFileName {
    char text[ooc_stem_bytes + 8];
    OocFileName(const char* stem, OocFileKind kind);
};

/// Opens a file, 'w' to write it anew, 'r' or 'R' to read and write what is there. `status` is done before and after.
std::FILE* ooc_open(const char* stem, OocFileKind kind, char mode, bool messages, OocStatus& status);
void ooc_close(std::FILE* file, bool messages, OocStatus& status);

/// Items of one file: `count` of them for each k below `repeat`, from item first + k stride on, which counts from 1.
struct OocItems {
    i64 size, first, count, stride = 0, repeat = 1;
};

/// Writes items, repeats one after the other from `data`, flushing after each. msglvl above 1 tells what is done.
void pardiso_write_ooc_file(std::FILE* file, const OocItems& items, const void* data, int msglvl, OocStatus& status);
void pardiso_read_ooc_file(std::FILE* file, const OocItems& items, void* data, int msglvl, OocStatus& status);

/// Prints what a status means, for the place in the work that `text` names. A fatal one ends the process with code 2.
void ooc_report(OocStatus status, bool fatal, const char* text);

/// The error of a call that ended with a status: files that could not be opened, and all else.
inline Error error_of(OocStatus status) {
    if (status == OocStatus::done) return Error::none;
    return status == OocStatus::open || status == OocStatus::open_mode ? Error::ooc_open : Error::ooc_transfer;
}

} // namespace nxl::pardiso
