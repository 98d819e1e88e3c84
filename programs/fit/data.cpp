// Cuts lines into fields and fields into numbers.
#include "data.hpp"

#include "common/input_error.hpp"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace fit {
namespace {

constexpr std::string_view kBlanks = " \t\v\f", kMantissa = "0123456789.";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// A comma anywhere makes it the separator, then a semicolon; else runs of blanks separate.
std::vector<std::string_view> fields_of(std::string_view line) {
    std::vector<std::string_view> fields;
    const bool comma = line.find(',') != std::string_view::npos;
    const bool blanks = !comma && line.find(';') == std::string_view::npos;
    const std::string_view separators = comma ? "," : blanks ? kBlanks : ";";
    for (;;) {
        const auto end = line.find_first_of(separators);
        fields.push_back(trimmed(line.substr(0, end)));
        if (end == std::string_view::npos) return fields;
        line.remove_prefix(end + 1);
        if (blanks) line = trimmed(line);
    }
}

bool is_header(const std::vector<std::string_view>& fields) {
    double ignored = 0.0;
    for (const auto field : fields)
        if (parse_number(field, ignored)) return false;
    return true;
}

double number_of(std::string_view field, const common::LineReader& reader) {
    double value = 0.0;
    const std::string shown = "'" + std::string(field) + "'";
    if (!parse_number(field, value)) reader.fail(field.empty() ? "a field is empty" : shown + " is not a number");
    if (!std::isfinite(value)) reader.fail(shown + " is not a finite number");
    return value;
}

void add_point(Data& data, const std::vector<std::string_view>& fields, const common::LineReader& reader) {
    data.x.push_back(number_of(fields[0], reader));
    data.y.push_back(number_of(fields[1], reader));
    if (fields.size() < 3) return;
    data.sigma.push_back(number_of(fields[2], reader));
    if (!(data.sigma.back() > 0.0)) reader.fail("a standard deviation has to be positive");
}

} // namespace

bool parse_number(std::string_view text, double& value) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    std::string c_style;
    if (const auto d = text.find_first_of("dD"); d != text.npos && d > 0 && kMantissa.find(text[d - 1]) != text.npos) {
        c_style = text;
        c_style[d] = 'e';
        text = c_style;
    }
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error == std::errc::result_out_of_range) value = std::numeric_limits<double>::infinity();
    return error != std::errc::invalid_argument && stop == end;
}

Data read_data(common::LineReader reader) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF"; // spreadsheets begin their files with it
    Data data;
    std::size_t columns = 0;
    for (bool first = true; reader.next();) {
        std::string_view line = reader.line();
        if (reader.number() == 1 && line.starts_with(byte_order_mark)) line.remove_prefix(byte_order_mark.size());
        line = trimmed(line.substr(0, line.find('#')));
        if (line.empty()) continue;
        const auto fields = fields_of(line);
        if (std::exchange(first, false) && is_header(fields)) {
            data.names.assign(fields.begin(), fields.end());
            continue;
        }
        if (columns == 0) columns = fields.size();
        if (fields.size() < 2 || fields.size() > 3) reader.fail("two or three columns are expected: x, y, sigma");
        if (fields.size() != columns)
            reader.fail(std::to_string(fields.size()) + " columns, but " + std::to_string(columns) + " before");
        add_point(data, fields, reader);
    }
    if (data.x.empty()) throw common::InputError(reader.name(), "the file holds no points");
    return data;
}

} // namespace fit
