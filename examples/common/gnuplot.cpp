// Feeds gnuplot a script through a pipe.
#include "gnuplot.hpp"

#include "input_error.hpp"

#include <csignal>
#include <sys/wait.h>

namespace common {

/// Within single quotes only a single quote is special.
std::string quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "''" : std::string(1, c);
    return quoted + "'";
}

bool draw(const std::string& path, const std::string& title, const std::function<void(std::FILE*)>& script) {
    if (path.find('\n') != std::string::npos) throw InputError(path, "no plot: the name holds a newline");
    std::signal(SIGPIPE, SIG_IGN); // without gnuplot nobody reads the pipe; its status says so
    std::FILE* pipe = popen("exec gnuplot >/dev/null 2>&1", "w");
    if (pipe == nullptr) throw InputError(path, "no plot: gnuplot could not be started");
    std::fprintf(pipe,
                 "set terminal svg size 800,500 background 'white'\nset output %s\nset title %s noenhanced\n"
                 "set grid\n",
                 quoted(path).c_str(), quoted(title).c_str());
    script(pipe);
    const int status = pclose(pipe);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 127) return false; // the shell found no program of that name
    if (status != 0) throw InputError(path, "no plot: gnuplot could not draw it");
    return true;
}

} // namespace common
