#include "solvers_ds/kernel/default/pardiso/out_of_core/configuration.hpp"
#include "service/environment.hpp"
#include "solvers_ds/kernel/default/pardiso/message.hpp"
#include <algorithm>
#include <cstdio>
#include <cstring>

namespace nxl::pardiso {
namespace {

constexpr int default_megabytes = 2000, line_length = 2048, path_length = 4096, name_length = 128;

/// What of a text fits into a line of messages.
struct ShortText {
    char text[400];
    explicit ShortText(const char* from) { std::snprintf(text, sizeof text, "%s", from); }
};

void set_stem(const OocContext& ooc, const char* text) {
    std::memset(ooc.stem, ' ', ooc_stem_bytes);
    std::memcpy(ooc.stem, text, strnlen(text, ooc_stem_length));
}

void set_number(const OocContext& ooc, OocWord word, const char* text) {
    int value = 0;
    if (std::sscanf(text, "%d", &value) == 1) ooc[word] = value;
}

/// The next piece of a text between characters of `separators`; empty at its end.
class Tokens {
    const char* rest_;
    const char* separators_;

  public:
    Tokens(const char* text, const char* separators) : rest_(text), separators_(separators) {}

    struct Piece {
        const char* begin;
        std::size_t length;
    };
    Piece next() {
        rest_ += std::strspn(rest_, separators_);
        const Piece piece{rest_, std::strcspn(rest_, separators_)};
        rest_ += piece.length;
        return piece;
    }
};

/// The first word before "=" or a tab, in small letters.
void read_key(const char* line, char* key) {
    const std::size_t end = std::strcspn(line, "=\t");
    const std::size_t begin = std::min(std::strspn(line, " "), end);
    const std::size_t length = std::min({std::strcspn(line + begin, " "), end - begin, std::size_t{name_length - 1}});
    std::transform(line + begin, line + begin + length, key,
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    key[length] = '\0';
}

/// All pieces after the first one, joined by blanks.
void read_path(const char* line, char* path) {
    Tokens tokens(line, "= ");
    tokens.next();
    std::size_t length = 0;
    for (auto piece = tokens.next(); piece.length > 0; piece = tokens.next()) {
        if (length > 0) path[length++] = ' ';
        std::memcpy(path + length, piece.begin, piece.length);
        length += piece.length;
    }
    path[length] = '\0';
}

GivenByVariable take_variables(const OocContext& ooc, char* file, bool messages) {
    const char *const folder = environment("NXL_PARDISO_OOC_CFG_PATH"),
                      *const name = environment("NXL_PARDISO_OOC_CFG_FILE_NAME"),
                      *const stem = environment("NXL_PARDISO_OOC_PATH"),
                      *const megabytes = environment("NXL_PARDISO_OOC_MAX_CORE_SIZE"),
                      *const keep = environment("NXL_PARDISO_OOC_KEEP_FILE");
    std::snprintf(file, path_length, "%s/%s", folder ? folder : ".", name ? name : "pardiso_ooc.cfg");
    if (stem) set_stem(ooc, stem);
    if (megabytes) set_number(ooc, OocWord::max_core_megabytes, megabytes);
    if (keep) set_number(ooc, OocWord::delete_files, keep);
    if (messages) {
        const auto number = [&](OocWord word) { return static_cast<int>(ooc[word]); };
        if (folder) pardiso_message(Text::ooc_cfg_path, ShortText(folder).text);
        if (name) pardiso_message(Text::ooc_cfg_file_name, ShortText(name).text);
        if (stem) pardiso_message(Text::ooc_path, ShortText(stem).text);
        if (megabytes) pardiso_message(Text::ooc_max_core_size, number(OocWord::max_core_megabytes));
        if (keep) pardiso_message(Text::ooc_keep_file, number(OocWord::delete_files));
    }
    return {stem != nullptr, megabytes != nullptr, keep != nullptr};
}

/// A line without its end; what is longer than a line may be is passed over. False at the end of the file.
bool read_line(std::FILE* file, char* line) {
    int length = 0, c = std::getc(file);
    if (c == EOF) return false;
    for (; c != EOF && c != '\n'; c = std::getc(file))
        if (length < line_length - 1) line[length++] = static_cast<char>(c);
    line[length] = '\0';
    return true;
}

} // namespace

void take_configuration_line(const OocContext& ooc, const char* text, const GivenByVariable& given) {
    char line[line_length], key[name_length], value[line_length];
    std::snprintf(line, sizeof line, "%s", text);
    line[std::strcspn(line, "#\n")] = '\0';
    if (!std::strchr(line, '=')) return;
    read_key(line, key);
    read_path(line, value);
    const auto is = [&](const char* name) { return std::strcmp(key, name) == 0; };
    if (is("nxl_pardiso_ooc_path") && !given.stem && *value) set_stem(ooc, value);
    if (is("nxl_pardiso_ooc_max_core_size") && !given.max_core) set_number(ooc, OocWord::max_core_megabytes, value);
    if (is("nxl_pardiso_ooc_keep_file") && !given.keep_file) set_number(ooc, OocWord::delete_files, value);
}

void read_ooc_configuration(const OocContext& ooc, bool messages) {
    set_stem(ooc, "ooc_temp");
    ooc[OocWord::max_core_megabytes] = default_megabytes;
    ooc[OocWord::delete_files] = 1;
    char path[path_length], line[line_length];
    const GivenByVariable given = take_variables(ooc, path, messages);
    if (given.all()) return;
    std::FILE* const file = std::fopen(path, "r+");
    if (!file) {
        if (messages) pardiso_message(Text::ooc_no_configuration, ShortText(path).text);
        return;
    }
    while (read_line(file, line)) take_configuration_line(ooc, line, given);
    std::fclose(file);
}

} // namespace nxl::pardiso
