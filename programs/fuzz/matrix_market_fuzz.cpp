// Feeds the Matrix Market reader with whatever libFuzzer makes up. The reader has to refuse it with a message or to
// deliver a matrix that keeps its promises: anything else aborts.
#include "common/input_error.hpp"
#include "matrix_market.hpp"

#include <cstdint>
#include <cstdlib>

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

template <class T> void check(const solve::SparseMatrix<T>& a) {
    require(a.n > 0 && a.row_start.size() == static_cast<std::size_t>(a.n) + 1);
    require(a.column.size() == a.value.size() && a.row_start.front() == 0 && a.row_start.back() == a.entries());
    for (int i = 0; i < a.n; ++i) {
        int previous = -1;
        for (const int j : a.row(i).column) {
            require(j > previous && j < a.columns);
            previous = j;
        }
    }
    const std::vector<T> x(static_cast<std::size_t>(a.columns), T{1.0});
    std::vector<T> y(static_cast<std::size_t>(a.n));
    solve::multiply(a, x.data(), y.data());
    require(a.symmetry != solve::Symmetry::symmetric || solve::is_symmetric(a));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const auto shape : {solve::Shape::square, solve::Shape::any}) try {
            const auto file = solve::read_matrix(common::lines_of("fuzz", text), shape);
            std::visit([](const auto& a) { check(a); }, file.matrix);
        } catch (const common::InputError&) {
        }
    try {
        const auto block = solve::read_block<solve::Complex>(common::lines_of("fuzz", text), 3);
        require(block.value.size() == 3 * static_cast<std::size_t>(block.count));
    } catch (const common::InputError&) {
    }
    return 0;
}
