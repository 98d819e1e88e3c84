// PARDISO's arguments, states and reports.
#include "tests/solvers_ds/pardiso_calls.hpp"
#include "tests/support/captured.hpp"
#include <functional>
#include <gtest/gtest.h>
#include <regex>

namespace {

using namespace nxl_test;

const std::array<long long, 64> new_handle{};

/// 1, 2; 2, 3; ...: with its diagonal. Type 2 unless told otherwise.
Solver tridiagonal(int n = 4, int mtype = 2) {
    Solver solver(mtype, mtype % 2 == 0 ? upper_triangle(chain(n)) : all_entries(chain(n)));
    solver.parameter(1) = 1;
    solver.parameter(2) = 2;
    return solver;
}

Solver diagonal(int n, int mtype) { return {mtype, upper_triangle(Pattern{n, {}})}; }

TEST(PardisoQueries, TouchNothingElse) {
    Solver solver = tridiagonal();
    auto expected = solver.iparam;
    EXPECT_EQ(solver.run(-3), 300000);
    EXPECT_EQ(solver.iparam, expected);
    EXPECT_EQ(solver.run(-2), 16);
    expected[0] = 23;
    EXPECT_EQ(solver.iparam, expected);
    EXPECT_EQ(solver.pt, new_handle);
}

class PardisoDiagonal : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(, PardisoDiagonal, testing::Values(1, 2, -2, 3, 4, 6, 11, 13), [](const auto& info) {
    return (info.param < 0 ? "minus_" : "") + std::to_string(std::abs(info.param));
});

TEST_P(PardisoDiagonal, IsSolvedWithoutAHandle) {
    Solver solver = diagonal(3, GetParam());
    const int form = std::abs(GetParam()) % 10;
    const bool complex = form > 2;
    const std::size_t words = complex ? 2 : 1, length = 3 * words;
    solver.a = {2.0, -4.0, 0.5, 1.0, 4.0, -8.0};
    solver.nb = 2;
    solver.parameter(6) = 1;
    for (std::size_t k = 0; k < solver.b.size(); ++k) solver.b[k] = static_cast<double>(k) - 3.5;
    const std::vector<double> b = solver.b;
    EXPECT_EQ(solver.run(13), 0);
    for (std::size_t k = 0; k < 2 * length; k += words) {
        const std::complex<double> right{b[k], complex ? b[k + 1] : 0.0};
        const std::size_t at = k % length;
        const std::complex<double> expected =
            right / std::complex<double>{solver.a[at], complex ? solver.a[at + 1] : 0.0};
        EXPECT_DOUBLE_EQ(solver.x[k], expected.real());
        EXPECT_EQ(solver.x[k], solver.b[k]);
        if (complex) EXPECT_DOUBLE_EQ(solver.x[k + 1], expected.imag());
    }
    EXPECT_EQ(solver.b[2 * length], b[2 * length]) << "beyond the right-hand sides";
    EXPECT_EQ(solver.pt, new_handle);
    EXPECT_EQ(solver.parameter(12), -1);
    EXPECT_EQ(solver.parameter(22), complex ? 0 : 2);
    EXPECT_EQ(solver.parameter(23), complex ? 3 : 1);
    EXPECT_EQ(solver.run(-1), 0);
    EXPECT_EQ(solver.run(11), 0);
    solver.a.assign(6, 0.0);
    EXPECT_EQ(solver.run(11), 0) << "values are not looked at";
    EXPECT_EQ(solver.run(22), -7);
    solver.ia = {1, 3, 3, 4};
    EXPECT_EQ(solver.run(23), -7) << "a row of two entries";
}

/// A call that is refused: what is wrong with it, and what is printed of it.
struct Refused {
    const char* name;
    int ido;
    bool live; ///< on a handle with an analysis
    std::function<void(Solver&)> spoil;
    int code;
    const char* detail;
};

const std::vector<Refused>& refused_calls() {
    static const std::vector<Refused> all{
        {"ido_34", 34, false, [](Solver&) {}, 1, "*** Input check: ido_new 34 (out of bounds)"},
        {"ido_330", 330, true, [](Solver&) {}, 1, "*** Input check: ido_new 330 (out of bounds)"},
        {"more_factors", 22, true, [](Solver& s) { s.max_fac_store = 3; }, 2,
         "*** Input check: max_fac_store_new 3 _old 1 are incompatible"},
        {"matrix_2_of_1", 11, false, [](Solver& s) { s.matrix_number = 2; }, 3,
         "*** Input check: max_fac_store_in 1 matrix_number_in 2"},
        {"matrix_0", 22, true, [](Solver& s) { s.matrix_number = 0; }, 4,
         "*** Input check: matrix_number_new 0 ido 22 are incompatible"},
        {"type_4_after_2", 22, true, [](Solver& s) { s.mtype = 4; }, 5,
         "*** Input check: matrix_type_new 4 _old 2 are incompatible"},
        {"type_12", 11, false, [](Solver& s) { s.mtype = 12; }, 15,
         "*** Input check: matrix_type_new 12 (out of bounds)"},
        {"type_minus_13", 11, false, [](Solver& s) { s.mtype = -13; }, 15,
         "*** Input check: matrix_type_new -13 (out of bounds)"},
        {"least_type", 11, false, [](Solver& s) { s.mtype = -2147483647 - 1; }, 15,
         "*** Input check: matrix_type_new -2147483648 (out of bounds)"},
        {"fewer_rows", 22, true, [](Solver& s) { s.n = 3; }, 6, "*** Input check: neqns_new 3 _old 4 are incompatible"},
        {"negative_rows", 11, false, [](Solver& s) { s.n = -1; }, 7, "*** Input check: neqns_new -1 "},
        {"few_entries", 11, false, [](Solver& s) { s.ia[4] = 4; }, 8,
         "*** Input check: ia(neqns+1)_new 4 _old 1 are incompatible"},
        {"no_right_hand_side", 331, true, [](Solver& s) { s.nb = 0; }, 9,
         "*** Input check: nb_new  0  ido 33 are incompatible"},
        {"solution_flag", 11, false, [](Solver& s) { s.parameter(6) = 2; }, 10,
         "*** Input check: iparam(6) 2 (out of bounds)"},
        {"ordering_3", 11, false, [](Solver& s) { s.parameter(2) = 3; }, 11,
         "*** Input check: preprocessing 3 (out of bounds)"},
        {"ido_14", 14, false, [](Solver&) {}, 20, "*** wrong control step parameter ido 14"},
        {"ido_21", 21, true, [](Solver&) {}, 20, "*** wrong control step parameter ido 21"},
        {"not_initialised", 0, false, [](Solver&) {}, 1000,
         "*** Error in PARDISO: ido < 1 and initialization\n - contradiction (set ido >0 !) 0"},
        {"wrong_matrix", 0, true, [](Solver& s) { s.matrix_number = 2; }, 100,
         "*** Error in PARDISO: wrong matrix number, clean 2"},
        {"not_analysed", 22, false, [](Solver&) {}, 100000, "*** Error in PARDISO: clean impossible (ido?)"}};
    return all;
}

class PardisoRefuses : public testing::TestWithParam<Refused> {};
INSTANTIATE_TEST_SUITE_P(, PardisoRefuses, testing::ValuesIn(refused_calls()),
                         [](const auto& info) { return std::string(info.param.name); });

/// The arguments, as they follow a refusal of one of them.
std::string dump(Solver& s, int ido) {
    const auto list = [](std::initializer_list<std::pair<const char*, int>> values) {
        std::string line = "   ";
        for (const auto& [name, value] : values) line += std::string(" ") + name + ": " + std::to_string(value);
        return line + "\n";
    };
    const int last = s.n < 0 ? 0 : s.ia[static_cast<std::size_t>(s.n)];
    return list({{"max_fac_store", s.max_fac_store},
                 {"matrix_number", s.matrix_number},
                 {"matrix_type", s.mtype},
                 {"ido", ido}}) +
           list({{"neqns", s.n}, {"ia(1)", s.n < 0 ? 0 : s.ia[0]}, {"ia(neqns+1)", last}, {"nb", s.nb}}) +
           list({{"iparam(1)", s.parameter(1)},
                 {"iparam(2)", s.parameter(2)},
                 {"iparam(3)", s.parameter(3)},
                 {"iparam(4)", s.parameter(4)}}) +
           list({{"iparam(5)", s.parameter(5)},
                 {"iparam(6)", s.parameter(6)},
                 {"iparam(27)", s.parameter(27)},
                 {"msglvl", 1}});
}

TEST_P(PardisoRefuses, WithItsLinesOrAsUnclassified) {
    const Refused& call = GetParam();
    for (const int messages : {0, -3}) {
        Solver solver = tridiagonal();
        if (call.live) ASSERT_EQ(solver.run(11), 0);
        const auto handle = solver.pt;
        solver.msglvl = messages;
        call.spoil(solver);
        int error = 0;
        const std::string printed = printed_by([&] { error = solver.run(call.ido); });
        EXPECT_EQ(error, messages == 0 ? -7 : -1);
        std::string expected =
            "*** Error in PARDISO  ( sequence_ido,parameters) error_num= " + std::to_string(call.code) + "\n" +
            call.detail + "\n";
        if (call.code <= 15) expected += dump(solver, call.ido > 330 ? call.ido / 10 : call.ido);
        EXPECT_EQ(printed, messages == 0 ? "" : expected);
        if (call.live) EXPECT_EQ(solver.pt[0], handle[0]) << "the handle lives on";
        else EXPECT_EQ(solver.pt, new_handle);
        solver.msglvl = 0;
        EXPECT_EQ(solver.run(-1), 0);
        EXPECT_EQ(solver.pt, new_handle);
    }
}

TEST(PardisoSteps, BelowMinusOneAreRefusedWithOneLine) {
    Solver solver = tridiagonal();
    EXPECT_EQ(solver.run(-4), -1);
    solver.msglvl = 1;
    EXPECT_EQ(printed_by([&] { EXPECT_EQ(solver.run(-4), -1); }), "*** PARDISO error: internal error\n");
    EXPECT_EQ(solver.pt, new_handle);
}

struct BadPattern {
    const char* name;
    int mtype;
    std::vector<int> ia, ja;
    int code;
    std::array<int, 3> place;
    const char* detail;
};

class PardisoPattern : public testing::TestWithParam<BadPattern> {};
INSTANTIATE_TEST_SUITE_P(
    , PardisoPattern,
    testing::Values(
        BadPattern{"base_0", 2, {0, 3, 5}, {1, 2, 2, 2}, 21, {1, 0, 3}, "i=1, ia(i)=0, ia(i+1)=3"},
        BadPattern{"empty_row", 2, {1, 1, 4}, {1, 2, 2}, 21, {1, 1, 1}, "i=1, ia(i)=1, ia(i+1)=1"},
        BadPattern{"column_0", 11, {1, 3, 5}, {0, 1, 1, 2}, 22, {1, 0, 2}, "i=1, ja(i)=0, neqns=2"},
        BadPattern{"last_column_out_of_range", 11, {1, 3, 5}, {1, 3, 1, 3}, 22, {4, 3, 2}, "i=4, ja(i)=3, neqns=2"},
        BadPattern{"below_diagonal", 2, {1, 3, 5}, {1, 2, 1, 2}, 23, {2, 3, 1}, "i=2, j=ia(i)=3, ja(j)=1"},
        BadPattern{"twice_the_same", 2, {1, 4, 5}, {1, 2, 2, 2}, 24, {2, 2, 2}, "j=2, ja(j)=2, ja(j+1)=2"},
        BadPattern{"descending", 11, {1, 3, 5}, {2, 1, 1, 2}, 24, {1, 2, 1}, "j=1, ja(j)=2, ja(j+1)=1"},
        BadPattern{"lowest_code_of_several", 2, {1, 4, 5}, {2, 1, 1, 5}, 22, {4, 5, 2}, "i=4, ja(i)=5, neqns=2"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_P(PardisoPattern, IsRefusedWhereItIsWrong) {
    const BadPattern& bad = GetParam();
    Solver solver = tridiagonal(2, bad.mtype);
    solver.ia = bad.ia;
    solver.ja = bad.ja;
    solver.parameter(27) = 1;
    solver.msglvl = 1;
    const std::string printed = printed_by([&] { EXPECT_EQ(solver.run(11), -1); });
    EXPECT_EQ((std::array{solver.parameter(31), solver.parameter(32), solver.parameter(33)}), bad.place);
    EXPECT_EQ(printed, "*** Error in PARDISO  (incorrect input matrix  ) error_num= " + std::to_string(bad.code) +
                           "\n*** Input check: " + bad.detail + " are incompatible\n" + dump(solver, 11));
    EXPECT_EQ(solver.parameter(27), 1) << "until a check passes";
    EXPECT_EQ(solver.ia, bad.ia);
    EXPECT_EQ(solver.ja, bad.ja);
}

TEST(PardisoStates, StepsInEachOfThem) {
    struct Step {
        int ido, error;
    };
    Solver solver = tridiagonal();
    solver.max_fac_store = 2;
    const auto expect = [&](const char* state, std::initializer_list<Step> steps) {
        for (const Step& step : steps) EXPECT_EQ(solver.run(step.ido), step.error) << state << ", step " << step.ido;
    };
    expect("new", {{-1, 0}, {0, -7}, {22, -7}, {23, -7}, {33, 0}, {331, -7}, {1, -7}, {-1, 0}});
    EXPECT_EQ(solver.pt, new_handle);
    expect("first", {{11, 0}});
    EXPECT_EQ(solver.pt[0], 1);
    expect("analysed", {{0, 0}, {12, 0}, {22, 0}, {11, 0}, {0, 0}, {13, 0}, {33, 0}, {331, 0}, {334, 0}, {11, 0}});
    EXPECT_GT(solver.pt[0], 3);
    EXPECT_EQ(solver.parameter(64), 105);
    solver.mtype = -2; // its own negative and 2 go together; a new start is free
    expect("other type", {{22, 0}});
    solver.mtype = 3;
    expect("its structure has no upper factor", {{22, -7}});
    solver.mtype = 1;
    expect("stored otherwise", {{22, -7}});
    solver = [&] { // another matrix on the same handle; the number of factors stays that of the first call
        Solver other = tridiagonal(7, 11);
        other.pt = solver.pt;
        other.max_fac_store = 2;
        return other;
    }();
    expect("restarted", {{11, 0}});
    solver.max_fac_store = 3;
    expect("more factors", {{11, -7}, {-1, 0}, {-1, 0}});
    EXPECT_EQ(solver.pt, new_handle);
    solver.max_fac_store = solver.matrix_number = -1; // an analysis needs no place for a factor
    expect("no place", {{11, 0}});
    solver.max_fac_store = solver.matrix_number = 1;
    expect("a place that is not there", {{22, -7}, {13, -7}, {-1, 0}});
}

TEST(PardisoDefaults, ByMatrixType) {
    struct Row {
        int mtype, perturbation, unsymmetric, indefinite;
    };
    for (const Row& row : {Row{1, 13, 0, 0},
                           {2, 0, 0, 0},
                           {-2, 8, 0, 1},
                           {3, 13, 0, 0},
                           {4, 0, 0, 0},
                           {-4, 8, 0, 1},
                           {6, 8, 0, 1},
                           {11, 13, 1, 0},
                           {13, 13, 1, 0},
                           {5, 0, 0, 0}}) {
        Solver solver = tridiagonal(5, row.mtype);
        solver.iparam.fill(77);
        solver.parameter(1) = solver.parameter(60) = solver.parameter(27) = 0;
        EXPECT_EQ(solver.run(11), 0) << row.mtype;
        for (const std::size_t zero : {4u, 5u, 6u, 7u, 8u, 9u, 12u, 14u, 20u, 22u, 23u, 24u, 25u, 50u})
            EXPECT_EQ(solver.parameter(zero), 0) << zero;
        EXPECT_EQ(solver.parameter(2), 2);
        EXPECT_EQ(solver.parameter(10), row.perturbation) << row.mtype;
        EXPECT_EQ(solver.parameter(11), row.unsymmetric) << row.mtype;
        EXPECT_EQ(solver.parameter(13), row.unsymmetric) << row.mtype;
        EXPECT_EQ(solver.parameter(21), row.indefinite) << row.mtype;
        EXPECT_GT(solver.parameter(18), 0);
        EXPECT_EQ(solver.parameter(26), 77) << "no default";
        solver.run(-1);
    }
}

TEST(PardisoSummary, OfAnAnalysisAndOfACleaning) {
    Solver solver = tridiagonal(10);
    solver.msglvl = 1;
    solver.parameter(5) = 1;
    NXL_Set_Num_Threads(1);
    const std::string printed = std::regex_replace(printed_by([&] { ASSERT_EQ(solver.run(11), 0); }),
                                                   std::regex("[0-9]\\.[0-9]{6} s"), "TIME s");
    EXPECT_EQ(printed, "=== PARDISO is running in In-Core mode, because iparam(60)=0 ===\n"
                       "================  PARDISO: solving a symm. posit. def. system  ================\n"
                       "Summary PARDISO: ( reorder to reorder )\n"
                       "================\n"
                       "Times:\n"
                       "======\n"
                       "      Time fulladj: TIME s\n"
                       "      Time reorder: TIME s\n"
                       "      Time symbfct: TIME s\n"
                       "      Time A to LU: TIME s\n"
                       "      Time malloc : TIME s\n"
                       "      Time total  : TIME s total - sum: TIME s\n"
                       "\n"
                       "Statistics:\n"
                       "===========\n"
                       " < Parallel Direct Factorization with #processors: >         1\n"
                       " < Numerical Factorization with Level-3 BLAS performance >\n"
                       " < Linear system Ax = b> <transpose> \n"
                       "             #equations:                                     10\n"
                       "             #non-zeros in A:                                19\n"
                       "             non-zeros in A (%):                            19.000000\n"
                       "             #right-hand sides:                              1\n"
                       " < Factors L and U > \n"
                       " < Preprocessing with input permutation >\n"
                       "             #supernodes:                                    9\n"
                       "             size of largest supernode:                      2\n"
                       "             number of nonzeros in L                         20\n"
                       "             number of nonzeros in U                         1\n"
                       "             number of nonzeros in L+U                       21\n");
    EXPECT_NE(printed_by([&] { solver.run(22); }).find("             ||A||" + std::string(43, ' ') + "11.000000\n"),
              std::string::npos)
        << "rows hold what is below the diagonal, too";
    const std::string banner = "================  PARDISO: solving a symm. posit. def. system  ================\n"
                               "Summary PARDISO: ( clean )\n================\n";
    EXPECT_EQ(printed_by([&] { solver.run(0); }), banner + " L&U for matrix number 1 deleted\n");
    EXPECT_EQ(printed_by([&] { solver.run(-1); }),
              banner + " cleaned memory, deleted number of L&U-factorizations: 0\n");
}

} // namespace
