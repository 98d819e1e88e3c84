// The points to fit, and the text file that they come from.
#pragma once

#include "common/line_reader.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace fit {

struct Data {
    std::vector<std::string> names; // of the columns, from the header; empty without one
    std::vector<double> x, y;
    std::vector<double> sigma; // standard deviations of y; empty when the file has none

    int count() const { return static_cast<int>(x.size()); }
};

/// Two or three columns, x, y and sigma, with commas, semicolons or blanks between them. What follows a # is a comment;
/// a first line without a number in it is a header. Throws InputError, with the line, for anything else.
Data read_data(common::LineReader reader);

/// True when all of `text` is a number, in C's way of writing it or, as in 1.5d-3, in Fortran's; `value` may be
/// infinite or NaN.
bool parse_number(std::string_view text, double& value);

} // namespace fit
