// What the user sees of a fit: the lines of the report, the table, the drawing.
#pragma once

#include "fit.hpp"

#include <string>

namespace fit {

void print(const std::string& file, const Data& data, const std::string& formula, const std::vector<std::string>& names,
           const Fit& fit);

/// A table x, y, fit, residual (y - fit) in the order of the data, with 17 digits. Throws InputError.
void write_table(const std::string& path, const Data& data, const Fit& fit);

/// Draws points, their standard deviations and the curve. Throws InputError.
void plot(const std::string& path, const Data& data, Expression& model, const Fit& fit, const std::string& title);

} // namespace fit
