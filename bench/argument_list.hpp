// The arguments of a published routine, all of which are passed by reference, told by words.
#pragma once
#include "bench/library.hpp"
#include "bench/operands.hpp"
#include <vector>

namespace nxl::bench {

/// A word for each argument, a blank between them:
///
/// - m n k: sizes of the case
/// - letter: the next option letter of the case; its length stands behind the arguments, as compilers pass it
/// - a b c x y: arrays; x2 and y2: their second columns
/// - lda ldb ldc ldx: their leading dimensions
/// - ipiv: integers that go in or come out
/// - work rwork iwork: scratch memory, with lwork lrwork liwork the lengths
/// - value: a real result; count info: integer results
/// - zero one: numbers, real ones for `unit`
class ArgumentList {
    using Address = void* (*)(Operands& operands, int letter);
    std::vector<Address> addresses_;
    std::vector<int> letters_; // that come before each argument
    int letter_count_ = 0;

  public:
    explicit ArgumentList(const char* words);
    void call(Symbol routine, Operands& operands, i64 calls) const;
};

} // namespace nxl::bench
