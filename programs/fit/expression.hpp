// A formula in x and in parameters, evaluated by muParser.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace mu {
class Parser;
}

namespace fit {

class Expression {
  public:
    /// Throws UsageError, with what is wrong and where, when `text` is not a formula.
    explicit Expression(const std::string& text);
    ~Expression();
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    /// Whether x stands in it.
    bool has_x() const { return has_x_; }
    /// All names that are neither x nor a function nor a constant, in alphabetical order.
    const std::vector<std::string>& parameters() const { return names_; }

    /// The value at x with these parameters, in their order. It is no number where the formula has no value. One thread
    /// at a time: x and the parameters are stored where the parser looks for them.
    double operator()(double x, const double* parameters);

  private:
    std::unique_ptr<mu::Parser> parser_;
    std::vector<std::string> names_;
    bool has_x_ = false;
    double x_ = 0.0;
    std::vector<double> values_;
};

} // namespace fit
