// How every program ends: an exit status, and one line on standard error for what went wrong.
#pragma once

#include "common/input_error.hpp"

#include <cstdio>
#include <exception>
#include <new>

namespace common {

enum ExitStatus { kDone = 0, kBadInput = 1, kBadUsage = 2, kNotConverged = 3 };

inline int complain(const char* program, const std::string& what, ExitStatus status) {
    std::fprintf(stderr, "%s: %s\n", program, what.c_str());
    return status;
}

/// The status that body() returns, or the one of what it throws. A Refusal, the program's own, is about `subject`, a
/// file or the like, which the body names as soon as it knows.
template <class Refusal, class Body> int run_program(const char* program, const std::string& subject,
                                                     const Body& body) {
    try {
        return body();
    } catch (const Refusal& refusal) {
        return complain(program, subject + ": " + refusal.what(), kBadInput);
    } catch (const UsageError& error) {
        return complain(program, error.what(), kBadUsage);
    } catch (const std::bad_alloc&) {
        return complain(program, "not enough memory", kBadInput);
    } catch (const std::exception& error) {
        return complain(program, error.what(), kBadInput);
    }
}

} // namespace common
