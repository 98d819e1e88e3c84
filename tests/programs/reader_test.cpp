// The Matrix Market reader: every kind of file against the dense matrix that it means, every fault against its message.
#include "common/input_error.hpp"
#include "dense.hpp"
#include "matrix_market.hpp"

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

std::size_t largest_request = 0; // bytes asked for at once

} // namespace

void* operator new(std::size_t size) {
    largest_request = std::max(largest_request, size);
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using solve::Complex;
using Matrix = solve_test::Dense<Complex>;
const std::string kBanner = "%%MatrixMarket matrix ";

solve::MatrixFile read(const std::string& text) { return solve::read_matrix(common::lines_of("f.mtx", text)); }

Matrix meaning(const std::string& text) {
    const auto file = read(text);
    return std::visit(
        [](const auto& a) {
            Matrix widened;
            for (const auto& row : solve_test::dense(a)) widened.emplace_back(row.begin(), row.end());
            return widened;
        },
        file.matrix);
}

TEST(Reader, EveryKindMeansItsDenseMatrix) {
    const Complex i(0.0, 1.0);
    EXPECT_EQ(meaning(kBanner + "coordinate real general\n2 2 3\n2 1 -3e2\n1 1 +1.5\n2 2 .25\n"),
              (Matrix{{1.5, 0.0}, {-300.0, 0.25}}));
    EXPECT_EQ(meaning(kBanner + "coordinate real symmetric\n% note\n\n3 3 3\n1 1 1\n\n3 1 2\n% note\n2 2 4"),
              (Matrix{{1.0, 0.0, 2.0}, {0.0, 4.0, 0.0}, {2.0, 0.0, 0.0}}));
    EXPECT_EQ(meaning(kBanner + "coordinate integer skew-symmetric\n2 2 1\n2 1 7\n"),
              (Matrix{{0.0, -7.0}, {7.0, 0.0}}));
    EXPECT_EQ(meaning("%%MatrixMarket MATRIX Coordinate Complex Hermitian\r\n2 2 2\r\n1 1 5 0\r\n2 1 1 2\r\n"),
              (Matrix{{5.0, 1.0 - 2.0 * i}, {1.0 + 2.0 * i, 0.0}}));
    EXPECT_EQ(meaning(kBanner + "coordinate complex symmetric\n2 2 2\n1 1 5 1\n2 1 1 2\n"),
              (Matrix{{5.0 + i, 1.0 + 2.0 * i}, {1.0 + 2.0 * i, 0.0}}));
    EXPECT_EQ(meaning(kBanner + "coordinate pattern general\n2 2 2\n1 2\n2 1\n"), (Matrix{{0.0, 1.0}, {1.0, 0.0}}));
    EXPECT_EQ(meaning(kBanner + "array real general\n2 2\n1\n2\n3\n4\n"), (Matrix{{1.0, 3.0}, {2.0, 4.0}}));
    EXPECT_EQ(meaning(kBanner + "array integer symmetric\n2 2\n1\n2\n3\n"), (Matrix{{1.0, 2.0}, {2.0, 3.0}}));
    EXPECT_EQ(meaning(kBanner + "array real skew-symmetric\n3 3\n1\n2\n3\n"),
              (Matrix{{0.0, -1.0, -2.0}, {1.0, 0.0, -3.0}, {2.0, 3.0, 0.0}}));
    EXPECT_EQ(meaning(kBanner + "array complex hermitian\n2 2\n1 0\n2 1\n3 0\n"),
              (Matrix{{1.0, 2.0 - i}, {2.0 + i, 3.0}}));
}

TEST(Reader, DuplicatesAreSummedAndCountedAsTheyStandInTheFile) {
    const std::string text = kBanner + "coordinate real symmetric\n2 2 5\n2 1 1\n1 1 1\n2 1 2\n1 1 5\n2 2 1\n";
    EXPECT_EQ(meaning(text), (Matrix{{6.0, 3.0}, {3.0, 1.0}}));
    EXPECT_EQ(read(text).duplicates, 2);
}

TEST(Reader, TinyValuesUnderflowQuietly) {
    EXPECT_EQ(meaning(kBanner + "array real general\n2 2\n1e-400\n4e-320\n-1e-5000\n1\n")[1][0], 4e-320);
}

TEST(Reader, LinesMayEndAnywhereInTheBuffer) { // catches a line lost or doubled where the buffer is refilled
    std::string text = kBanner + "array real general\n100 200\n";
    double sum = 0.0;
    for (int k = 0; k < 20000; ++k) {
        text += std::to_string(k) + std::string(static_cast<std::size_t>(k % 7), ' ') + "\n";
        sum += k;
    }
    const auto block = solve::read_block<double>(common::lines_of("f.mtx", text), 100);
    EXPECT_EQ(block.count, 200);
    for (const double value : block.value) sum -= value;
    EXPECT_EQ(sum, 0.0);
}

struct BadFile {
    std::string text, message;
};

std::string message_of(const std::string& text) {
    try {
        read(text);
    } catch (const common::InputError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(Reader, FaultsAreNamedWithTheirLine) {
    const std::string real = kBanner + "coordinate real general\n", symmetric = kBanner + "coordinate real symmetric\n";
    const std::string beyond(common::LineReader::kMaxLine + 1, ' ');
    const BadFile files[] = {
        {"", "f.mtx:1: the file is empty"},
        {"1 2 3\n", "f.mtx:1: malformed header: no %%MatrixMarket at the start"},
        {"%%MatrixMarket", "f.mtx:1: malformed header: '' where the object should stand (matrix)"},
        {kBanner + "coordinate real\n", "f.mtx:1: malformed header: '' where the symmetry should stand (general, "
                                        "symmetric, skew-symmetric, hermitian)"},
        {kBanner + "coordinate \x1b[31m general\n",
         "f.mtx:1: malformed header: '?[31m' where the field should stand (real, complex, integer, pattern)"},
        {kBanner + "array real general x\n", "f.mtx:1: malformed header: 'x' behind the symmetry"},
        {kBanner + "array real hermitian\n", "f.mtx:1: malformed header: only complex matrices can be hermitian"},
        {kBanner + "array pattern general\n", "f.mtx:1: malformed header: a pattern cannot be an array"},
        {kBanner + "coordinate pattern skew-symmetric\n",
         "f.mtx:1: malformed header: a pattern cannot be skew-symmetric"},
        {real, "f.mtx:1: the file ends before its size line"},
        {real + "3 3\n", "f.mtx:2: the line ends where the number of entries should stand"},
        {real + "3 3 x\n", "f.mtx:2: 'x' where the number of entries should stand"},
        {real + "3 3 3 3\n", "f.mtx:2: '3' behind the last number that belongs on the line"},
        {real + "0 0 0\n", "f.mtx:2: the number of rows 0 is not positive"},
        {real + "3 4 5\n", "f.mtx:2: the matrix is not square: 3 by 4"},
        {real + "3000000000 3 3\n", "f.mtx:2: the number of rows 3000000000 does not fit in 32 bits"},
        {real + "99999999999999999999 3 3\n",
         "f.mtx:2: the number of rows '99999999999999999999' does not fit in 64 bits"},
        {symmetric + "9 9 2000000000\n", "f.mtx:2: 2000000000 entries are more than 32-bit positions reach"},
        {kBanner + "array real general\n50000 50000\n",
         "f.mtx:2: 2500000000 entries are more than 32-bit positions reach"},
        {real + "3 3 2\n", "f.mtx:2: the matrix is singular: 2 entries for 3 rows"},
        {real + "2 2 2\n1 1 1\n3 1 1\n", "f.mtx:4: row 3 is not in 1 to 2"},
        {real + "2 2 2\n%\n1 0 1\n", "f.mtx:4: column 0 is not in 1 to 2"},
        {real + "2 2 2\n1 1.5 1\n", "f.mtx:3: '1.5' where column should stand"},
        {real + "2 2 2\n1 1\n", "f.mtx:3: the line ends where a value should stand"},
        {real + "2 2 2\n1 1 1 1\n", "f.mtx:3: '1' behind the last number that belongs on the line"},
        {real + "2 2 2\n1 1 nan\n", "f.mtx:3: the value 'nan' is not a finite double"},
        {real + "2 2 2\n1 1 -inf\n", "f.mtx:3: the value '-inf' is not a finite double"},
        {real + "2 2 2\n1 1 1e999\n", "f.mtx:3: the value '1e999' is not a finite double"},
        {real + "2 2 2\n1 1 0x1\n", "f.mtx:3: '0x1' where a value should stand"},
        {real + "2 2 2\n1 1 +-1\n", "f.mtx:3: '+-1' where a value should stand"},
        {kBanner + "coordinate integer general\n2 2 2\n1 1 1.5\n",
         "f.mtx:3: '1.5' where an integer value should stand"},
        {kBanner + "coordinate complex general\n2 2 2\n1 1 1\n", "f.mtx:3: the line ends where a value should stand"},
        {real + "2 2 3\n1 1 1\n2 2 1\n", "f.mtx:4: the file ends after 2 of 3 entries"},
        {real + "2 2 2\n1 1 1\n2 2 1\n\n1 2 1\n", "f.mtx:6: more than the 2 entries announced"},
        {real + "1 1 2\n1 1 1e308\n1 1 1e308\n",
         "f.mtx:4: an entry, or the sum of duplicate entries, is too large for a double"},
        {symmetric + "2 2 2\n1 2 1\n", "f.mtx:3: an entry above the diagonal of a matrix announced as symmetric"},
        {kBanner + "coordinate real skew-symmetric\n2 2 1\n1 1 1\n",
         "f.mtx:3: an entry on the diagonal of a matrix announced as skew-symmetric"},
        {kBanner + "array complex hermitian\n2 2\n1 1\n",
         "f.mtx:3: a diagonal entry that is not real in a matrix announced as hermitian"},
        {real + "2 2 2\n" + beyond + "\n", "f.mtx:3: the line is longer than 8192 characters"},
        {real + "2 2 2\n1 1 " + std::string(60, '7') + "x\n",
         "f.mtx:3: '" + std::string(40, '7') + "...' where a value should stand"},
    };
    for (const auto& [text, message] : files) EXPECT_EQ(message_of(text), message) << text.substr(0, 200);
}

TEST(Reader, MatricesOfAnyShapeWhereTheyAreAskedFor) {
    const auto read = [](const std::string& text) {
        return solve::read_matrix(common::lines_of("f.mtx", kBanner + text), solve::Shape::any).matrix;
    };
    const auto wide = std::get<solve::SparseMatrix<double>>(read("coordinate real general\n2 5 1\n2 5 3\n"));
    EXPECT_EQ(wide.n, 2);
    EXPECT_EQ(wide.columns, 5);
    EXPECT_EQ(wide.row(1).column.front(), 4);
    EXPECT_FALSE(is_symmetric(wide));
    EXPECT_THROW(read("array real symmetric\n2 3\n"), common::InputError);
    EXPECT_THROW(read("coordinate real general\n2 5 1\n5 2 3\n"), common::InputError);
    largest_request = 0;
    EXPECT_THROW(read("coordinate real general\n3 2000000000 3\n"), common::InputError);
    EXPECT_LT(largest_request, std::size_t{1} << 20);
}

TEST(Reader, PromisesOfAHeaderAllocateNothing) {
    largest_request = 0;
    EXPECT_EQ(message_of(kBanner + "coordinate real general\n2000000000 2000000000 2000000000\n1 1 1\n"),
              "f.mtx:3: the file ends after 1 of 2000000000 entries");
    EXPECT_EQ(message_of(kBanner + "coordinate real symmetric\n2000000000 2000000000 3\n1 1 1\n2 2 1\n3 3 1\n"),
              "f.mtx:2: the matrix is singular: 3 entries for 2000000000 rows");
    EXPECT_THROW(solve::read_block<double>(
                     common::lines_of("f", "%%MatrixMarket matrix array real general\n3 2000000000\n1\n"), 3),
                 common::InputError);
    EXPECT_LT(largest_request, std::size_t{1} << 20);
}

TEST(Reader, BlocksMustFitTheMatrix) {
    const auto message = [](const std::string& text, int n) {
        try {
            solve::read_block<double>(common::lines_of("b.mtx", text), n);
        } catch (const common::InputError& error) {
            return std::string(error.what());
        }
        return std::string("accepted");
    };
    EXPECT_EQ(message(kBanner + "array real general\n2 1\n1\n2\n", 3),
              "b.mtx:2: the right-hand side has 2 rows, the matrix 3");
    EXPECT_EQ(message(kBanner + "array complex general\n3 1\n", 3),
              "b.mtx:1: a complex right-hand side for a real matrix");
    EXPECT_EQ(message(kBanner + "coordinate real general\n3 1 1\n", 3),
              "b.mtx:1: a right-hand side must be in array form, general");
}

} // namespace
