// Feeds gnuplot a script through a pipe.
#include "gnuplot.hpp"

#include "input_error.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>

namespace common {
namespace {

/// ".svg" of "plots/A.SVG".
std::string ending_of(const std::string& path) {
    std::string ending = std::filesystem::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(), [](unsigned char c) { return std::tolower(c); });
    return ending;
}

/// A string of gnuplot's: within single quotes only a single quote is special.
std::string in_quotes(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "''" : std::string(1, c);
    return quoted + "'";
}

/// How many bytes the UTF-8 character at the front has; 0 when there is none, or none to be seen.
std::size_t character_at(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t size = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
    const auto rest = text.substr(1, size == 0 ? 0 : size - 1);
    const bool whole = rest.size() + 1 == size &&
                       std::all_of(rest.begin(), rest.end(), [](unsigned char c) { return (c & 0xC0) == 0x80; });
    return whole && lead >= ' ' && lead != 0x7F ? size : 0;
}

/// Cairo's letters and lines are the better ones, but some builds of gnuplot are without it.
void choose_terminal(std::FILE* gnuplot, const std::string& path, Extent extent) {
    const auto [width, height] = extent;
    if (ending_of(path) == ".svg")
        std::fprintf(gnuplot, "set terminal svg size %d,%d font 'sans,12' background 'white'\n", width, height);
    else
        std::fprintf(gnuplot,
                     "if (strstrt(GPVAL_TERMINALS, 'pngcairo')) { set terminal pngcairo size %d,%d font 'sans,12' "
                     "fontscale 2 linewidth 2 pointscale 2 background 'white' } else { set terminal png truecolor "
                     "size %d,%d font 'sans' 24 linewidth 2 background '#ffffff' }\n",
                     2 * width, 2 * height, 2 * width, 2 * height);
}

/// gnuplot itself does not look whether what it writes arrives.
bool is_complete(const std::string& path) {
    constexpr long longest = 32; // of the ends of both formats
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const long size = static_cast<long>(file.tellg());
    file.seekg(std::max(0L, size - longest));
    char tail[longest] = {};
    file.read(tail, longest);
    const std::string_view end(tail, static_cast<std::size_t>(std::max<std::streamsize>(0, file.gcount())));
    return end.find("</svg>") != end.npos || end.find("IEND") != end.npos;
}

/// Why gnuplot failed, as far as the file tells.
std::string reason_of(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "a");
    if (file == nullptr) return std::strerror(errno);
    std::fclose(file);
    return "gnuplot could not draw it";
}

} // namespace

std::string label(const std::string& text) {
    std::string shown;
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t size = character_at(rest);
        shown += size == 0 ? "?" : rest.substr(0, size);
        rest.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return in_quotes(shown);
}

std::string fault_of_drawing(const std::string& path) {
    const std::string ending = ending_of(path);
    return ending == ".svg" || ending == ".png" ? "" : "'" + path + "' ends neither in .svg nor in .png";
}

void draw(const std::string& path, const std::string& title, const std::function<void(std::FILE*)>& script,
          Extent extent) {
    const auto fail = [&](const std::string& why) { throw InputError(path, "no plot: " + why); };
    if (path.find('\n') != std::string::npos) fail("the name holds a newline");
    const auto before = std::signal(SIGPIPE, SIG_IGN); // without gnuplot nobody reads the pipe; its status says so
    std::FILE* pipe = popen("exec gnuplot >/dev/null 2>&1", "w"); // NOLINT(cert-env33-c): the one of the user's path
    if (pipe == nullptr) fail("gnuplot could not be started");
    choose_terminal(pipe, path, extent);
    // A name that began with | would be a command, and one with ~ somebody's home.
    std::fprintf(pipe, "set output %s\nset title %s noenhanced\nset grid\n",
                 in_quotes(path.starts_with('/') ? path : "./" + path).c_str(), label(title).c_str());
    script(pipe);
    const int status = pclose(pipe);
    std::signal(SIGPIPE, before);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) fail("gnuplot is not installed"); // told by the shell
    if (status != 0) fail(reason_of(path));
    if (!is_complete(path)) fail("it could not be written whole");
}

} // namespace common
