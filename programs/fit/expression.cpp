// Finds the names in a formula, binds each to its place, and turns the parser's exceptions into ours.
#include "expression.hpp"

#include "common/input_error.hpp"
#include "data.hpp"

#include <algorithm>
#include <cstring>
#include <muParser.h>

namespace fit {
namespace {

/// The parser would carry out an assignment, and change a parameter within the formula.
void refuse_assignment(const std::string& text) {
    const std::string_view comparison = "=<>!";
    for (std::size_t k = text.find('='); k != std::string::npos; k = text.find('=', k + 1)) {
        const bool paired = (k > 0 && comparison.find(text[k - 1]) != comparison.npos) || text[k + 1] == '=';
        if (!paired)
            throw common::UsageError("--model: '=' at position " + std::to_string(k + 1) +
                                     ": a formula in x is expected");
    }
}

/// 1.5d-3, which the parser does not know, as it reads numbers: tells whether there is one at the front, and moves on.
int read_fortran_number(const char* text, int* position, double* value) {
    std::size_t end = std::strspn(text, "0123456789.");
    if (end == 0 || (text[end] != 'd' && text[end] != 'D')) return 0;
    end += text[end + 1] == '+' || text[end + 1] == '-' ? 2 : 1;
    const std::size_t exponent = std::strspn(text + end, "0123456789");
    if (exponent == 0 || !parse_number({text, end + exponent}, *value)) return 0;
    *position += static_cast<int>(end + exponent);
    return 1;
}

[[noreturn]] void refuse(const mu::ParserError& error) {
    std::string what = error.GetMsg();
    while (what.ends_with('\n') || what.ends_with(' ') || what.ends_with('.')) what.pop_back();
    throw common::UsageError("--model: " + what);
}

} // namespace

Expression::Expression(const std::string& text) : parser_(std::make_unique<mu::Parser>()) {
    if (text.find_first_not_of(' ') == std::string::npos) throw common::UsageError("--model: the formula is empty");
    refuse_assignment(text);
    try {
        parser_->AddValIdent(read_fortran_number);
        parser_->SetExpr(text);
        for (const auto& [name, place] : parser_->GetUsedVar())
            if (name != "x") names_.push_back(name);
        has_x_ = parser_->GetUsedVar().contains("x");
        values_.resize(names_.size());
        parser_->DefineVar("x", &x_);
        for (std::size_t k = 0; k < names_.size(); ++k) parser_->DefineVar(names_[k], &values_[k]);
        parser_->Eval();
        if (parser_->GetNumResults() != 1) throw common::UsageError("--model: one formula is expected, not several");
    } catch (const mu::ParserError& error) {
        refuse(error);
    }
    if (names_.empty()) throw common::UsageError("--model: '" + text + "' has no parameter to fit");
}

Expression::~Expression() = default;

double Expression::operator()(double x, const double* parameters) {
    x_ = x;
    std::copy_n(parameters, values_.size(), values_.begin());
    try {
        return parser_->Eval();
    } catch (const mu::ParserError& error) {
        refuse(error);
    }
}

} // namespace fit
