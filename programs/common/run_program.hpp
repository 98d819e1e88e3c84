// How every program ends: an exit status, and one line on standard error for what went wrong.
#pragma once

#include "common/input_error.hpp"
#include "common/interrupted.hpp"

#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

namespace common {

/// Done; the work failed; it was asked for in a way that makes no sense; or it came to its end, but not to the result.
enum ExitStatus { kDone = 0, kBadInput = 1, kBadUsage = 2, kNotConverged = 3 };

inline int complain(const char* program, const std::string& what, ExitStatus status) {
    std::fprintf(stderr, "%s: %s\n", program, what.c_str());
    return status;
}

/// The status that body() returns, or the one of what it throws. Output that cannot be written is a failure too.
template <class Body> int run_program(const char* program, const Body& body) {
    try {
        const int status = body();
        const bool written = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
        return written || status != kDone ? status : complain(program, "cannot write to standard output", kBadInput);
    } catch (const Interrupted& stop) {
        std::fflush(stdout); // a signal ends the program without
        complain(program, stop.what(), kBadInput);
        std::signal(stop.signal(), SIG_DFL);
        std::raise(stop.signal()); // so that the shell sees what has ended it
        return kBadInput;
    } catch (const UsageError& error) {
        return complain(program, error.what(), kBadUsage);
    } catch (const std::bad_alloc&) {
        return complain(program, "not enough memory", kBadInput);
    } catch (const std::exception& error) {
        return complain(program, error.what(), kBadInput);
    }
}

/// The same, where a Refusal, the program's own, is about `subject`, a file or the like, which the body names as soon
/// as it knows.
template <class Refusal, class Body> int run_program(const char* program, const std::string& subject,
                                                     const Body& body) {
    return run_program(program, [&]() -> int {
        try {
            return body();
        } catch (const Refusal& refusal) {
            throw InputError(subject, refusal.what());
        }
    });
}

} // namespace common
