#include "bench/sparse_cases.hpp"
#include "common/line_reader.hpp"
#include "solve/matrix_market.hpp"
#include <algorithm>
#include <filesystem>
#include <map>
#include <stdexcept>

namespace nxl::bench {
namespace {

using nxl_test::SparseProblem;

struct Generated {
    const char* name;
    std::vector<int> sides; // analyses are compared at the last one
};

const std::vector<Generated>& generated() {
    static const std::vector<Generated> all = {
        {"poisson2d", {500, 700}},    {"poisson3d", {40, 50}},        {"elasticity3d", {14, 20}},
        {"convection2d", {200, 300}}, {"convection3d", {22, 28}},     {"circuit", {200, 300}},
        {"saddle", {150, 200}},       {"shifted2d", {300}},           {"shifted3d", {30}},
        {"poisson3d-complex", {30}},  {"convection3d-complex", {22}}, {"shifted3d-complex", {30}},
        {"poisson3d", {30}}, // beside the complex one
    };
    return all;
}

void append(std::vector<double>& values, double value) { values.push_back(value); }
void append(std::vector<double>& values, const solve::Complex& value) {
    values.push_back(value.real());
    values.push_back(value.imag());
}

/// Definite when it is Hermitian with a positive diagonal.
template <class T> int type_of(const solve::SparseMatrix<T>& matrix) {
    constexpr bool complex = !std::is_same_v<T, double>;
    const bool hermitian = solve::is_hermitian(matrix);
    if (!hermitian && solve::is_symmetric(matrix)) return 6; // a real symmetric one is Hermitian
    if (!hermitian) return complex ? 13 : 11;
    const auto diagonal = solve::diagonal(matrix);
    const bool definite = std::ranges::all_of(diagonal, [](const T& pivot) { return std::real(pivot) > 0.0; });
    return (complex ? 4 : 2) * (definite ? 1 : -1);
}

/// Of symmetric matrices the upper triangle, with all of its diagonal.
template <class T> SparseProblem problem_of(const solve::SparseMatrix<T>& matrix) {
    SparseProblem problem;
    problem.n = matrix.n;
    problem.mtype = type_of(matrix);
    const auto add = [&](int column, const T& value) {
        problem.ja.push_back(column + 1);
        append(problem.a, value);
    };
    problem.ia.push_back(1);
    for (int i = 0; i < matrix.n; ++i) {
        const auto row = matrix.row(i);
        if (problem.upper() && !std::ranges::binary_search(row.column, i)) add(i, T{});
        for (std::size_t k = 0; k < row.column.size(); ++k)
            if (!problem.upper() || row.column[k] >= i) add(row.column[k], row.value[k]);
        problem.ia.push_back(static_cast<int>(problem.ja.size()) + 1);
    }
    return problem;
}

SparseProblem read_problem(const std::string& path) {
    const solve::MatrixFile file = solve::read_matrix(common::open_lines(path));
    return std::visit([](const auto& matrix) { return problem_of(matrix); }, file.matrix);
}

void add_files(const std::string& folder, std::vector<SparseCase>& cases) {
    std::map<std::string, std::string> files; // by name
    std::error_code trouble;
    for (const auto& entry : std::filesystem::directory_iterator(folder, trouble)) {
        const std::string file = entry.path().filename().string();
        const auto dot = file.find(".mtx");
        if (dot != std::string::npos) files.emplace(file.substr(0, dot), entry.path().string());
    }
    if (trouble) throw std::runtime_error("cannot read the folder " + folder + ": " + trouble.message());
    for (const auto& [name, path] : files)
        cases.push_back({name, "file", true, [file = path] { return read_problem(file); }});
}

} // namespace

std::vector<SparseCase> sparse_cases(const std::vector<int>& sides, const std::string& folder) {
    std::vector<SparseCase> cases;
    for (const Generated& problem : generated())
        for (const int side : sides.empty() ? problem.sides : sides) {
            const std::string name = problem.name, size = std::to_string(side);
            const auto same = [&](const SparseCase& other) { return other.name == name && other.size == size; };
            if (std::ranges::any_of(cases, same)) continue;
            const bool analysed = !name.ends_with("-complex") && problem.sides.size() > 1 &&
                                  (!sides.empty() || side == problem.sides.back());
            cases.push_back({name, size, analysed, [=] { return nxl_test::sparse_problem(name, side); }});
        }
    if (!folder.empty()) add_files(folder, cases);
    return cases;
}

const char* group_of(const SparseProblem& problem) {
    if (problem.complex() || problem.mtype == -4) return "complex";
    return problem.mtype == 2 ? "definite" : problem.mtype == -2 ? "indefinite" : "unsymmetric";
}

} // namespace nxl::bench
