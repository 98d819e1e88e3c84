#include "solvers_ds/kernel/default/pardiso/out_of_core/files.hpp"
#include "solvers_ds/kernel/default/pardiso/message.hpp"
#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace nxl::pardiso {
namespace {

int shown(i64 number) { return static_cast<int>(std::min<i64>(number, 2147483647)); }

/// An operation that is not begun, since the one before it failed.
bool failed_before(bool messages, OocStatus& status) {
    if (status == OocStatus::done) return false;
    if (messages) pardiso_message(Text::ooc_input_error, static_cast<int>(status));
    status = OocStatus::input;
    return true;
}

i64 size_of(std::FILE* file) { return fseeko(file, 0, SEEK_END) == 0 ? i64{ftello(file)} : -1; }

/// Makes the file as long as `position`, by a byte before it that is read back.
bool reach(std::FILE* file, i64 position) {
    if (size_of(file) >= position) return true;
    char byte = 0;
    return fseeko(file, position - 1, SEEK_SET) == 0 && std::fwrite(&byte, 1, 1, file) == 1 && std::fflush(file) == 0 &&
           fseeko(file, position - 1, SEEK_SET) == 0 && std::fread(&byte, 1, 1, file) == 1;
}

i64 position_of(const OocItems& items, i64 k) { return (items.stride * k + items.first - 1) * items.size; }

bool overlap(const OocItems& items) { return items.repeat > 1 && items.stride < items.count; }

OocStatus write_record(std::FILE* file, i64 position, const OocItems& items, const char* data, int msglvl) {
    const auto say = [&](Text text) {
        if (msglvl > 0) pardiso_message(text);
    };
    if (!reach(file, position)) {
        say(Text::ooc_write_eof);
        return OocStatus::write_end;
    }
    if (fseeko(file, position, SEEK_SET) != 0) {
        say(Text::ooc_write_seek);
        return OocStatus::write_seek;
    }
    const auto count = static_cast<std::size_t>(items.count);
    const std::size_t written = std::fwrite(data, static_cast<std::size_t>(items.size), count, file);
    const bool error = std::ferror(file) != 0 || std::fflush(file) != 0;
    if (!error && written == count) {
        if (msglvl > 1) pardiso_message(Text::ooc_wrote, shown(items.count));
        return OocStatus::done;
    }
    if (!error && written == 0) return OocStatus::nothing_written;
    say(Text::ooc_write_error);
    return error ? OocStatus::write_end : OocStatus::not_all_written;
}

OocStatus read_record(std::FILE* file, i64 position, const OocItems& items, char* data, int msglvl) {
    if (fseeko(file, position, SEEK_SET) != 0) {
        if (msglvl > 0) pardiso_message(Text::ooc_read_seek);
        return OocStatus::read_seek;
    }
    const auto count = static_cast<std::size_t>(items.count);
    const std::size_t read = std::fread(data, static_cast<std::size_t>(items.size), count, file);
    if (read == count) {
        if (msglvl > 1) pardiso_message(Text::ooc_items_read, shown(items.count));
        return OocStatus::done;
    }
    if (msglvl > 0) pardiso_message(Text::ooc_read_error);
    if (std::ferror(file) != 0) return OocStatus::read_end;
    return read == 0 ? OocStatus::nothing_read : OocStatus::not_all_read;
}

} // namespace

OocFileName::OocFileName(const char* stem, OocFileKind kind) {
    std::size_t length = strnlen(stem, ooc_stem_length);
    while (length > 0 && std::strchr(" \t\r\n", stem[length - 1])) --length;
    const char* const ending = kind == OocFileKind::structure ? ".ind" : kind == OocFileKind::lower ? ".lnz" : ".unz";
    std::memcpy(text, stem, length);
    std::strcpy(text + length, ending); // NOLINT(clang-analyzer-security.insecureAPI.strcpy): there is room for it
}

std::FILE* ooc_open(const char* stem, OocFileKind kind, char mode, bool messages, OocStatus& status) {
    if (failed_before(messages, status)) return nullptr;
    const bool anew = mode == 'w';
    if (!anew && mode != 'r' && mode != 'R') {
        status = OocStatus::open_mode;
        return nullptr;
    }
    std::FILE* const file = std::fopen(OocFileName(stem, kind).text, anew ? "w+b" : "r+b");
    if (!file) status = OocStatus::open;
    return file;
}

void ooc_close(std::FILE* file, bool messages, OocStatus& status) {
    if (failed_before(messages, status)) return;
    if (std::fclose(file) == 0) return;
    if (messages) pardiso_message(Text::ooc_not_closed);
    status = OocStatus::close;
}

void pardiso_write_ooc_file(std::FILE* file, const OocItems& items, const void* data, int msglvl, OocStatus& status) {
    if (msglvl > 1) pardiso_message(Text::ooc_write_type, shown(items.size));
    if (overlap(items)) {
        status = OocStatus::write_parameters;
        return;
    }
    const char* from = static_cast<const char*>(data);
    for (i64 k = 0; k < items.repeat && status == OocStatus::done; ++k, from += items.count * items.size)
        status = write_record(file, position_of(items, k), items, from, msglvl);
}

void pardiso_read_ooc_file(std::FILE* file, const OocItems& items, void* data, int msglvl, OocStatus& status) {
    if (msglvl > 1) pardiso_message(Text::ooc_read_type, shown(items.size));
    if (overlap(items)) {
        status = OocStatus::read_parameters;
        return;
    }
    char* to = static_cast<char*>(data);
    for (i64 k = 0; k < items.repeat && status == OocStatus::done; ++k, to += items.count * items.size)
        status = read_record(file, position_of(items, k), items, to, msglvl);
}

void ooc_report(OocStatus status, bool fatal, const char* text) {
    constexpr int last = static_cast<int>(OocStatus::write_parameters);
    const int number = static_cast<int>(status);
    if (number == 0) return;
    if (number <= last) pardiso_message(static_cast<int>(Text::first_ooc_status) + number - 1, text);
    else pardiso_message(Text::ooc_unknown_status, number, text);
    if (fatal) std::exit(2);
}

} // namespace nxl::pardiso
