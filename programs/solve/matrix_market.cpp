// The Matrix Market reader and writer. Each line holds what the format asks for and nothing else.
#include "matrix_market.hpp"

#include "common/input_error.hpp"
#include "memory_need.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace solve {
namespace {

using common::LineReader;

enum class Format { coordinate, array };
enum class Field { real, complex, integer, pattern };

struct Header {
    Format format;
    Field field;
    Symmetry symmetry;
};

/// The next word of a line, and the rest of the line behind it; empty at the end.
std::string_view take_word(std::string_view& text) {
    constexpr std::string_view kBlank = " \t\v\f";
    text.remove_prefix(std::min(text.find_first_not_of(kBlank), text.size()));
    const auto word = text.substr(0, text.find_first_of(kBlank));
    text.remove_prefix(word.size());
    return word;
}

bool is_blank(std::string_view line) { return take_word(line).empty(); }

/// A word as it may stand in a message: short, and without control characters.
std::string quoted(std::string_view word) {
    std::string text(word.substr(0, 40));
    std::replace_if(text.begin(), text.end(), [](unsigned char c) { return !std::isprint(c); }, '?');
    return "'" + text + (word.size() > 40 ? "...'" : "'");
}

/// Moves to the next line that is neither a comment nor blank.
bool next_data_line(LineReader& lines) {
    while (lines.next()) {
        if (!lines.line().starts_with('%') && !is_blank(lines.line())) return true;
    }
    return false;
}

/// The value that the next word of the header stands for.
template <class E, std::size_t N>
E take_choice(const LineReader& lines, std::string_view& rest, const char* what,
              const std::array<std::pair<std::string_view, E>, N>& choices) {
    const auto word = take_word(rest);
    std::string lower(word);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    for (const auto& [name, value] : choices) {
        if (lower == name) return value;
    }
    std::string expected;
    for (const auto& [name, value] : choices) expected += (expected.empty() ? "" : ", ") + std::string(name);
    lines.fail("malformed header: " + quoted(word) + " where the " + what + " should stand (" + expected + ")");
}

Header read_header(LineReader& lines) {
    if (!lines.next()) lines.fail_at(1, "the file is empty");
    auto rest = lines.line();
    if (take_word(rest) != "%%MatrixMarket") lines.fail("malformed header: no %%MatrixMarket at the start");
    take_choice<int, 1>(lines, rest, "object", {{{"matrix", 0}}});
    Header header{};
    header.format =
        take_choice<Format, 2>(lines, rest, "format", {{{"coordinate", Format::coordinate}, {"array", Format::array}}});
    header.field = take_choice<Field, 4>(lines, rest, "field",
                                         {{{"real", Field::real},
                                           {"complex", Field::complex},
                                           {"integer", Field::integer},
                                           {"pattern", Field::pattern}}});
    header.symmetry = take_choice<Symmetry, 4>(lines, rest, "symmetry",
                                               {{{"general", Symmetry::general},
                                                 {"symmetric", Symmetry::symmetric},
                                                 {"skew-symmetric", Symmetry::skew_symmetric},
                                                 {"hermitian", Symmetry::hermitian}}});
    if (!is_blank(rest)) lines.fail("malformed header: " + quoted(take_word(rest)) + " behind the symmetry");
    if (header.symmetry == Symmetry::hermitian && header.field != Field::complex)
        lines.fail("malformed header: only complex matrices can be hermitian");
    if (header.field == Field::pattern && header.format == Format::array)
        lines.fail("malformed header: a pattern cannot be an array");
    if (header.field == Field::pattern && header.symmetry == Symmetry::skew_symmetric)
        lines.fail("malformed header: a pattern cannot be skew-symmetric");
    return header;
}

/// Where from_chars has to start: it knows no plus sign.
const char* behind_plus(std::string_view number) {
    return number.data() + (number.starts_with('+') && !number.starts_with("+-") ? 1 : 0);
}

long long take_integer(const LineReader& lines, std::string_view& rest, const char* what) {
    const auto word = take_word(rest);
    if (word.empty()) lines.fail(std::string("the line ends where ") + what + " should stand");
    const char* first = behind_plus(word);
    const char* last = word.data() + word.size();
    long long value = 0;
    const auto [end, status] = std::from_chars(first, last, value);
    if (status == std::errc::result_out_of_range) lines.fail(what + (" " + quoted(word)) + " does not fit in 64 bits");
    if (status != std::errc() || end != last) lines.fail(quoted(word) + " where " + what + " should stand");
    return value;
}

double take_real(const LineReader& lines, std::string_view& rest) {
    const auto word = take_word(rest);
    if (word.empty()) lines.fail("the line ends where a value should stand");
    const char* first = behind_plus(word);
    const char* last = word.data() + word.size();
    double value = 0.0;
    const auto [end, status] = std::from_chars(first, last, value);
    if (end != last || status == std::errc::invalid_argument) lines.fail(quoted(word) + " where a value should stand");
    // from_chars says out of range for too large and too small alike; strtod makes the latter zero or subnormal.
    if (status == std::errc::result_out_of_range) value = std::strtod(std::string(first, last).c_str(), nullptr);
    if (!std::isfinite(value)) lines.fail("the value " + quoted(word) + " is not a finite double");
    return value;
}

template <class T> T take_value(const LineReader& lines, std::string_view& rest, Field field) {
    if (field == Field::pattern) return T{1.0};
    if (field == Field::integer) return T(static_cast<double>(take_integer(lines, rest, "an integer value")));
    const double real = take_real(lines, rest);
    if constexpr (std::is_same_v<T, Complex>) {
        if (field == Field::complex) return {real, take_real(lines, rest)};
    }
    return real;
}

void expect_end_of_line(const LineReader& lines, std::string_view rest) {
    if (!is_blank(rest)) lines.fail(quoted(take_word(rest)) + " behind the last number that belongs on the line");
}

void expect_end_of_file(LineReader& lines, long long announced) {
    if (next_data_line(lines)) lines.fail("more than the " + std::to_string(announced) + " entries announced");
}

/// The entry lines that follow: their number is checked on the way and at the end.
void next_entry_line(LineReader& lines, long long read, long long announced) {
    if (!next_data_line(lines))
        lines.fail("the file ends after " + std::to_string(read) + " of " + std::to_string(announced) + " entries");
}

int take_size(const LineReader& lines, std::string_view& rest, const char* what) {
    const long long value = take_integer(lines, rest, what);
    if (value < 1) lines.fail(what + (" " + std::to_string(value)) + " is not positive");
    if (value > INT_MAX) lines.fail(what + (" " + std::to_string(value)) + " does not fit in 32 bits");
    return static_cast<int>(value);
}

struct Size {
    int rows, columns;
    long long entries; // stored in the file
};

/// Entries of an array of this kind: all, one triangle, or one triangle without its diagonal.
long long array_entries(Symmetry symmetry, long long rows, long long columns) {
    if (symmetry == Symmetry::general) return rows * columns;
    return symmetry == Symmetry::skew_symmetric ? rows * (rows - 1) / 2 : rows * (rows + 1) / 2;
}

Size read_size(LineReader& lines, const Header& header) {
    if (!next_data_line(lines)) lines.fail("the file ends before its size line");
    auto rest = lines.line();
    Size size{};
    size.rows = take_size(lines, rest, "the number of rows");
    size.columns = take_size(lines, rest, "the number of columns");
    size.entries = header.format == Format::coordinate ? take_size(lines, rest, "the number of entries")
                                                       : array_entries(header.symmetry, size.rows, size.columns);
    expect_end_of_line(lines, rest);
    return size;
}

/// A matrix has the shape that is wanted, no more entries than 32 bits count, and enough for every row to have one, or
/// a dense copy that fits: the last bounds what a short file with a large size can make us allocate.
void check_matrix_size(const LineReader& lines, const Header& header, const Size& size, Shape shape) {
    const auto rows = std::to_string(size.rows), columns = std::to_string(size.columns);
    if (size.rows != size.columns && (shape == Shape::square || header.symmetry != Symmetry::general))
        lines.fail("the matrix is not square: " + rows + " by " + columns);
    const int copies = header.symmetry == Symmetry::general ? 1 : 2;
    if (size.entries > INT_MAX / copies)
        lines.fail(std::to_string(size.entries) + " entries are more than 32-bit positions reach");
    if (size.entries * copies >= std::max(size.rows, size.columns)) return;
    if (shape == Shape::square)
        lines.fail("the matrix is singular: " + std::to_string(size.entries) + " entries for " + rows + " rows");
    const double bytes = 1.0 * size.rows * size.columns * sizeof(Complex);
    if (!fits_in_memory(bytes)) lines.fail("the matrix needs " + memory_need(bytes, "a dense copy"));
}

int take_index(const LineReader& lines, std::string_view& rest, const char* what, int size) {
    const long long index = take_integer(lines, rest, what);
    if (index < 1 || index > size)
        lines.fail(what + (" " + std::to_string(index)) + " is not in 1 to " + std::to_string(size));
    return static_cast<int>(index - 1);
}

/// What the symmetry forbids: entries above the diagonal, a skew diagonal, a Hermitian diagonal that is not real.
template <class T> void check_triangle(const LineReader& lines, Symmetry symmetry, const Triplet<T>& t) {
    if (symmetry == Symmetry::general) return;
    const std::string kind = name_of(symmetry);
    if (t.row < t.column) lines.fail("an entry above the diagonal of a matrix announced as " + kind);
    if (t.row > t.column) return;
    if (symmetry == Symmetry::skew_symmetric) lines.fail("an entry on the diagonal of a matrix announced as " + kind);
    if constexpr (std::is_same_v<T, Complex>) {
        if (symmetry == Symmetry::hermitian && t.value.imag() != 0.0)
            lines.fail("a diagonal entry that is not real in a matrix announced as " + kind);
    }
}

template <class T>
std::vector<Triplet<T>> read_coordinates(LineReader& lines, const Header& header, const Size& size) {
    std::vector<Triplet<T>> triplets;
    for (long long k = 0; k < size.entries; ++k) {
        next_entry_line(lines, k, size.entries);
        auto rest = lines.line();
        Triplet<T> t{};
        t.row = take_index(lines, rest, "row", size.rows);
        t.column = take_index(lines, rest, "column", size.columns);
        t.value = take_value<T>(lines, rest, header.field);
        expect_end_of_line(lines, rest);
        check_triangle(lines, header.symmetry, t);
        triplets.push_back(t);
    }
    expect_end_of_file(lines, size.entries);
    return triplets;
}

/// Calls take(row, column, value) for every entry of an array, column by column.
template <class T, class Take>
void read_array(LineReader& lines, const Header& header, const Size& size, Take take) {
    long long read = 0;
    for (int j = 0; j < size.columns; ++j) {
        const int first = header.symmetry == Symmetry::general          ? 0
                          : header.symmetry == Symmetry::skew_symmetric ? j + 1
                                                                        : j;
        for (int i = first; i < size.rows; ++i) {
            next_entry_line(lines, read++, size.entries);
            auto rest = lines.line();
            const T value = take_value<T>(lines, rest, header.field);
            expect_end_of_line(lines, rest);
            take(i, j, value);
        }
    }
    expect_end_of_file(lines, size.entries);
}

template <class T>
std::vector<Triplet<T>> read_triplets(LineReader& lines, const Header& header, const Size& size) {
    if (header.format == Format::coordinate) return read_coordinates<T>(lines, header, size);
    std::vector<Triplet<T>> triplets;
    read_array<T>(lines, header, size, [&](int i, int j, T value) {
        check_triangle(lines, header.symmetry, Triplet<T>{i, j, value});
        if (value != T{}) triplets.push_back({i, j, value});
    });
    return triplets;
}

template <class T> MatrixFile read_matrix_of(LineReader& lines, const Header& header, const Size& size) {
    MatrixFile file;
    auto& matrix = file.matrix.emplace<SparseMatrix<T>>(
        assemble(size.rows, size.columns, header.symmetry, read_triplets<T>(lines, header, size), &file.duplicates));
    const auto finite = [](const T& value) { return std::isfinite(std::abs(value)); };
    if (!std::all_of(matrix.value.begin(), matrix.value.end(), finite))
        lines.fail("an entry, or the sum of duplicate entries, is too large for a double");
    return file;
}

} // namespace

MatrixFile read_matrix(LineReader lines, Shape shape) {
    const Header header = read_header(lines);
    const Size size = read_size(lines, header);
    check_matrix_size(lines, header, size, shape);
    if (header.field == Field::complex) return read_matrix_of<Complex>(lines, header, size);
    return read_matrix_of<double>(lines, header, size);
}

template <class T> Block<T> read_block(LineReader lines, int n) {
    const Header header = read_header(lines);
    if (header.format != Format::array || header.symmetry != Symmetry::general)
        lines.fail("a right-hand side must be in array form, general");
    if (header.field == Field::complex && std::is_same_v<T, double>)
        lines.fail("a complex right-hand side for a real matrix");
    const Size size = read_size(lines, header);
    if (size.rows != n)
        lines.fail("the right-hand side has " + std::to_string(size.rows) + " rows, the matrix " + std::to_string(n));
    Block<T> block;
    read_array<T>(lines, header, size, [&](int, int, T value) { block.value.push_back(value); });
    block.n = size.rows;
    block.count = size.columns;
    return block;
}

namespace {

void append_number(std::string& text, double value) {
    std::array<char, 40> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::general, 17);
    text.append(digits.data(), end.ptr);
}

void append_value(std::string& text, double value) { append_number(text, value); }
void append_value(std::string& text, Complex value) {
    append_number(text, value.real());
    text += ' ';
    append_number(text, value.imag());
}

} // namespace

template <class T> void write_block(const std::string& path, const Block<T>& block) {
    errno = 0;
    std::FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr) throw common::InputError(path, std::strerror(errno));
    const char* field = std::is_same_v<T, double> ? "real" : "complex";
    std::fprintf(file, "%%%%MatrixMarket matrix array %s general\n%d %d\n", field, block.n, block.count);
    std::string line;
    for (const T& value : block.value) {
        line.clear();
        append_value(line, value);
        line += '\n';
        std::fwrite(line.data(), 1, line.size(), file);
    }
    const bool written = std::ferror(file) == 0;
    const bool closed = std::fclose(file) == 0;
    if (!written || !closed) throw common::InputError(path, std::strerror(errno));
}

template Block<double> read_block(LineReader, int);
template Block<Complex> read_block(LineReader, int);
template void write_block(const std::string&, const Block<double>&);
template void write_block(const std::string&, const Block<Complex>&);

} // namespace solve
