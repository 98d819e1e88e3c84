#include "solvers_ds/kernel/default/pardiso/out_of_core/factor_files.hpp"
#include "service/spin_lock.hpp"
#include <fcntl.h>
#include <sys/stat.h>

namespace nxl::pardiso {
namespace {

constexpr char save_text[] = "do_all: save lindx";
constexpr OocFileKind all_kinds[] = {OocFileKind::structure, OocFileKind::lower, OocFileKind::upper};

/// Handles that hold files, linked through their settings. Creating and removing files is rare: one at a time.
constinit SpinLock holders_lock;
i64* holders = nullptr;

i64& word_of(i64* settings, OocWord word) { return settings[static_cast<int>(word)]; }

bool is_held(const struct stat& file) {
    for (i64* h = holders; h; h = std::bit_cast<i64*>(word_of(h, OocWord::next_holder)))
        if (word_of(h, OocWord::device) == static_cast<i64>(file.st_dev) &&
            word_of(h, OocWord::inode) == static_cast<i64>(file.st_ino))
            return true;
    return false;
}

/// Makes the first file. Null when it cannot be made, or `held` is set: another handle has it.
std::FILE* claim(const OocContext& ooc, bool messages, OocStatus& status, bool& held) {
    const SpinGuard guard(holders_lock);
    struct stat file{};
    const OocFileName name(ooc.stem, OocFileKind::structure);
    held = stat(name.text, &file) == 0 && is_held(file);
    if (held) return nullptr;
    std::FILE* const stream = ooc_open(ooc.stem, OocFileKind::structure, 'w', messages, status);
    if (!stream) return nullptr;
    fstat(fileno(stream), &file);
    ooc[OocWord::device] = static_cast<i64>(file.st_dev);
    ooc[OocWord::inode] = static_cast<i64>(file.st_ino);
    ooc[OocWord::next_holder] = std::bit_cast<i64>(holders);
    ooc[OocWord::files] = 1;
    holders = ooc.settings;
    return stream;
}

void disclaim(const OocContext& ooc) {
    const SpinGuard guard(holders_lock);
    i64* before = nullptr;
    for (i64* h = holders; h != ooc.settings; h = std::bit_cast<i64*>(word_of(h, OocWord::next_holder))) before = h;
    i64* const next = std::bit_cast<i64*>(ooc[OocWord::next_holder]);
    if (before) word_of(before, OocWord::next_holder) = std::bit_cast<i64>(next);
    else holders = next;
    ooc[OocWord::files] = 0;
}

OocStatus create_empty(const OocContext& ooc, OocFileKind kind, bool messages) {
    OocStatus status = OocStatus::done;
    std::FILE* const file = ooc_open(ooc.stem, kind, 'w', messages, status);
    if (file) ooc_close(file, messages, status);
    return status;
}

} // namespace

FactorFiles::~FactorFiles() { close(); }

bool FactorFiles::settle(const char* text) {
    if (status_ == OocStatus::done) return true;
    if (messages_) {
        char place[80];
        std::snprintf(place, sizeof place, "%s%s", kernel_, text);
        ooc_report(status_, false, place);
    }
    ooc_[OocWord::error] = static_cast<i64>(error_of(status_));
    return false;
}

bool FactorFiles::open(OocFileKind kind, char mode, const char* text) {
    file(kind) = ooc_open(ooc_.stem, kind, mode, messages_, status_);
    return settle(text);
}

bool FactorFiles::write(OocFileKind kind, const OocItems& items, const void* data, const char* text) {
    const double start = wall_seconds();
    pardiso_write_ooc_file(file(kind), items, data, messages_, status_);
    ooc_[OocFigure::write_seconds] += wall_seconds() - start;
    ooc_[OocFigure::megabytes_written] += static_cast<double>(items.count * items.size) * 1e-6;
    return settle(text);
}

bool FactorFiles::read(OocFileKind kind, const OocItems& items, void* data, OocFigure seconds, OocFigure megabytes,
                       const char* text) {
    if (items.count == 0) return true;
    const double start = wall_seconds();
    pardiso_read_ooc_file(file(kind), items, data, messages_, status_);
    ooc_[seconds] += wall_seconds() - start;
    ooc_[megabytes] += static_cast<double>(items.count * items.size) * 1e-6;
    return settle(text);
}

void FactorFiles::expect(OocFileKind kind, const OocItems& items) {
    if (items.count > 0)
        posix_fadvise(fileno(file(kind)), (items.first - 1) * items.size, items.count * items.size,
                      POSIX_FADV_WILLNEED);
}

bool FactorFiles::close() {
    for (std::FILE*& file : files_) {
        OocStatus status = OocStatus::done;
        if (file) ooc_close(file, messages_, status);
        file = nullptr;
        if (status_ != OocStatus::done || status == OocStatus::done) continue;
        status_ = status;
        settle(": close");
    }
    return status_ == OocStatus::done;
}

OocStatus create_factor_files(const OocContext& ooc, const i32* lindx, i64 count, bool messages) {
    OocStatus status = OocStatus::done;
    bool held = false;
    std::FILE* const file = claim(ooc, messages, status, held);
    if (held) return OocStatus::open;
    if (!file) ooc_report(status, true, save_text);
    pardiso_write_ooc_file(file, {.size = i64{sizeof(i32)}, .first = 1, .count = count}, lindx, messages, status);
    OocStatus closed = OocStatus::done;
    ooc_close(file, messages, closed);
    if (status == OocStatus::done) status = closed;
    if (status != OocStatus::done) ooc_report(status, true, save_text);
    for (const OocFileKind kind : {OocFileKind::lower, OocFileKind::upper})
        if (status == OocStatus::done) status = create_empty(ooc, kind, messages);
    return status;
}

void remove_factor_files(const OocContext& ooc, bool messages) {
    if (ooc[OocWord::files] == 0) return;
    if (ooc[OocWord::delete_files] != 0)
        for (const OocFileKind kind : all_kinds) {
            if (std::remove(OocFileName(ooc.stem, kind).text) == 0) continue;
            ooc[OocWord::error] = static_cast<i64>(error_of(OocStatus::remove));
            if (messages) ooc_report(OocStatus::remove, false, "do_all: clean");
        }
    disclaim(ooc);
}

} // namespace nxl::pardiso
