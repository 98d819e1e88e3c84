// The tests that drivers of LAPACK make of their arguments, with a report through the handler of GNU programs.
#pragma once
#include "nxl.h"
#include <algorithm>

namespace nxl::gnu {

/// The first bad argument is reported, in six letters, and told as info.
class Arguments {
    const char* routine_;
    int bad_ = 0;

  public:
    explicit Arguments(const char* routine) : routine_(routine) {}
    Arguments& expect(int position, bool right) {
        if (!right && bad_ == 0) bad_ = position;
        return *this;
    }
    /// One of the letters, large or small.
    Arguments& option(int position, char letter, const char* letters) {
        bool known = false;
        for (; *letters != '\0'; ++letters) known = known || letter == *letters || letter == (*letters | 32);
        return expect(position, known);
    }
    Arguments& triangle(int position, char uplo) { return option(position, uplo, "UL"); }
    Arguments& size(int position, int value) { return expect(position, value >= 0); }
    Arguments& leading(int position, int value, long least) { return expect(position, value >= std::max(least, 1L)); }
    bool refused(int* info) const {
        *info = -bad_;
        if (bad_ != 0) XERBLA(routine_, &bad_, 6);
        return bad_ != 0;
    }
};

} // namespace nxl::gnu
