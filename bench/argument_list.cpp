#include "bench/argument_list.hpp"
#include <algorithm>
#include <array>
#include <cstddef>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

namespace nxl::bench {
namespace {

struct Word {
    const char* text;
    void* (*address)(Operands& operands, int letter);
};

int zero = 0, one = 1;
double unit = 1.0, nothing = 0.0;

constexpr Word words[] = {
    {"letter", [](Operands& o, int letter) -> void* { return const_cast<char*>(o.option(std::size_t(letter))); }},
    {"m", [](Operands& o, int) -> void* { return &o.size.m; }},
    {"n", [](Operands& o, int) -> void* { return &o.size.n; }},
    {"k", [](Operands& o, int) -> void* { return &o.size.k; }},
    {"a", [](Operands& o, int) -> void* { return o.a(); }},
    {"b", [](Operands& o, int) -> void* { return o.b(); }},
    {"c", [](Operands& o, int) -> void* { return o.c(); }},
    {"x", [](Operands& o, int) -> void* { return o.x(); }},
    {"y", [](Operands& o, int) -> void* { return o.y(); }},
    {"x2", [](Operands& o, int) -> void* { return o.second_x(); }},
    {"y2", [](Operands& o, int) -> void* { return o.second_y(); }},
    {"lda", [](Operands& o, int) -> void* { return &o.lda; }},
    {"ldb", [](Operands& o, int) -> void* { return &o.ldb; }},
    {"ldc", [](Operands& o, int) -> void* { return &o.ldc; }},
    {"ldx", [](Operands& o, int) -> void* { return &o.ldx; }},
    {"ipiv", [](Operands& o, int) -> void* { return o.pivots(); }},
    {"work", [](Operands& o, int) -> void* { return o.work(); }},
    {"rwork", [](Operands& o, int) -> void* { return o.real_work(); }},
    {"iwork", [](Operands& o, int) -> void* { return o.integer_work(); }},
    {"lwork", [](Operands& o, int) -> void* { return &o.lwork; }},
    {"lrwork", [](Operands& o, int) -> void* { return &o.lrwork; }},
    {"liwork", [](Operands& o, int) -> void* { return &o.liwork; }},
    {"value", [](Operands& o, int) -> void* { return &o.result; }},
    {"count", [](Operands& o, int) -> void* { return &o.count; }},
    {"info", [](Operands& o, int) -> void* { return &o.info; }},
    {"zero", [](Operands&, int) -> void* { return &zero; }},
    {"one", [](Operands&, int) -> void* { return &one; }},
    {"unit", [](Operands&, int) -> void* { return &unit; }},
    {"nothing", [](Operands&, int) -> void* { return &nothing; }},
    // Integers of order n behind the workspace: the last n elements, and the n before them.
    {"last", [](Operands& o, int) -> void* { return o.integer_work() + o.liwork - o.size.n; }},
    {"last2", [](Operands& o, int) -> void* { return o.integer_work() + o.liwork - 2 * o.size.n; }},
};

/// The longest published list has 26 arguments, and lengths of letters behind them. A callee does not see more than it
/// declares.
constexpr std::size_t most_arguments = 32;

template <std::size_t> using Argument = void*;

template <std::size_t... Places>
void call_with(void* routine, const std::array<void*, most_arguments>& arguments, i64 calls,
               std::index_sequence<Places...>) {
    auto* const function = reinterpret_cast<void (*)(Argument<Places>...)>(routine);
    for (i64 call = 0; call < calls; ++call) function(arguments[Places]...);
}

} // namespace

ArgumentList::ArgumentList(const char* text) {
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        const Word* const found = std::ranges::find(words, word, &Word::text);
        if (found == std::end(words)) throw std::logic_error("no argument is called " + word);
        addresses_.push_back(found->address);
        letters_.push_back(letter_count_);
        if (word == "letter") ++letter_count_;
    }
}

void ArgumentList::call(Symbol routine, Operands& operands, i64 calls) const {
    std::array<void*, most_arguments> arguments{};
    std::size_t place = 0;
    for (; place < addresses_.size(); ++place) arguments[place] = addresses_[place](operands, letters_[place]);
    for (int letter = 0; letter < letter_count_; ++letter) arguments[place++] = reinterpret_cast<void*>(1);
    call_with(routine.address, arguments, calls, std::make_index_sequence<most_arguments>());
}

} // namespace nxl::bench
