// Reads tables/*.csv: one case a row, cells between commas, comments behind #. Throws at whatever is not as it should
// be, so that a test never passes on fewer rows or other numbers than the table holds.
#pragma once
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace nxl_test {

/// The cells of a row, taken from left to right.
class TableRow {
    std::string place_; // file and line
    std::vector<std::string> cells_;
    std::size_t next_ = 0;

    [[noreturn]] void fail(const std::string& what) const { throw std::runtime_error(place_ + ": " + what); }

  public:
    TableRow(std::string place, const std::string& line, std::size_t columns) : place_(std::move(place)) {
        for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1)
            cells_.push_back(line.substr(begin, (end = line.find(',', begin)) - begin));
        if (cells_.size() != columns)
            fail(std::to_string(cells_.size()) + " columns instead of " + std::to_string(columns));
    }
    double number() {
        const std::string& cell = cells_.at(next_++);
        char* end = nullptr;
        const double value = std::strtod(cell.c_str(), &end);
        if (cell.empty() || *end != '\0' || !std::isfinite(value)) fail("not a number: '" + cell + "'");
        return value;
    }
    std::complex<double> complex() {
        const double real = number();
        return {real, number()};
    }
    /// The place of the cell's text among `names`.
    template <std::size_t count> std::size_t one_of(const char* const (&names)[count]) {
        const std::string& cell = cells_.at(next_++);
        const auto* const found = std::find(std::begin(names), std::end(names), cell);
        if (found == std::end(names)) fail("not a name: '" + cell + "'");
        return static_cast<std::size_t>(found - names);
    }
};

/// All rows of the table `name`, at least one.
inline std::vector<TableRow> read_table(const std::string& name, std::size_t columns) {
    const std::string path = NXL_TEST_TABLES "/" + name + ".csv";
    std::ifstream file(path);
    if (!file) throw std::runtime_error(path + ": cannot be opened");
    std::vector<TableRow> rows;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number)
        if (!line.starts_with('#')) rows.emplace_back(path + ":" + std::to_string(number), line, columns);
    if (rows.empty()) throw std::runtime_error(path + ": no rows");
    return rows;
}

} // namespace nxl_test
