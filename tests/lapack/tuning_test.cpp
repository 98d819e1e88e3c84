// The tuning source: both sides of every threshold of the factorisations, and the published defaults against the
// reference library's own.
#include "lapack/kernel/source/tuning/ilaenv.hpp"
#include "tests/support/reference_blas.hpp"
#include <algorithm>
#include <cctype>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using nxl::block_size, nxl::least_block_size, nxl::crossover, nxl::panel_share, nxl::strip_blocks, nxl::pool_blocks;
using nxl::i64;
using nxl_test::reference;

struct Sizes {
    i64 n1 = -1, n2 = -1, n3 = -1, n4 = -1;
};

i64 ask(i64 ispec, const std::string& name, char opts, const Sizes& sizes) {
    return nxl::ILAENV(&ispec, name.c_str(), &opts, &sizes.n1, &sizes.n2, &sizes.n3, &sizes.n4,
                       static_cast<int>(name.size()), 1);
}

/// Where the answer changes: below n, and from n on.
struct Edge {
    i64 n, below, from;
};

/// The edges hold for all types in `types` and for the smallest and the largest team.
struct LuRow {
    i64 query;
    const char* types;
    char opts;
    i64 least_team, most_team;
    std::vector<Edge> edges;
};

const LuRow lu_rows[] = {
    {block_size, "SDCZ", ' ', 9, 64, {{8001, 128, 200}}},
    {block_size, "D", ' ', 5, 8, {{701, 16, 24}, {1701, 24, 80}, {2401, 80, 128}, {2801, 128, 200}, {10001, 200, 400}}},
    {block_size, "S", ' ', 5, 8, {{1101, 16, 32}, {2001, 32, 64}, {3601, 64, 128}, {4001, 128, 200}, {9001, 200, 400}}},
    {block_size, "C", ' ', 5, 8, {{1001, 16, 32}, {2101, 32, 128}}},
    {block_size, "Z", ' ', 5, 8, {{1501, 16, 64}, {1801, 64, 128}, {10001, 128, 200}}},
    {block_size, "D", ' ', 2, 4, {{901, 24, 64}, {3101, 64, 200}}},
    {block_size, "S", ' ', 2, 4, {{1101, 24, 64}, {4001, 64, 200}, {6001, 200, 400}}},
    {block_size, "C", ' ', 2, 4, {{1301, 32, 128}}},
    {block_size, "Z", ' ', 2, 4, {{901, 24, 128}}},
    {block_size, "SCZ", ' ', -1, 1, {{1000, 64, 64}}},
    {block_size, "SCZ", 'S', -1, 1, {{33, 64, 64}}},
    {block_size, "D", 'P', -1, 1, {{9, 1, 8}, {33, 8, 32}, {129, 32, 128}}},
    {block_size,
     "D",
     'S',
     -1,
     1,
     {{9, 1, 8},
      {33, 8, 32},
      {129, 32, 128},
      {257, 128, 256},
      {513, 256, 512},
      {1025, 512, 1024},
      {2049, 1024, 2048},
      {4097, 2048, 4096},
      {8193, 4096, 8192},
      {16385, 8192, 16384},
      {32769, 16384, 32768}}},
    {block_size, "D", ' ', -1, 1, {{1000, 1, 1}}},
    {strip_blocks, "SDCZ", ' ', 9, 64, {{1000, 1, 1}, {10001, 1, 1}}},
    {strip_blocks, "D", ' ', 5, 8, {{2401, 2, 1}, {10001, 1, 2}}},
    {strip_blocks, "S", ' ', 5, 8, {{3601, 2, 1}, {4001, 1, 2}}},
    {strip_blocks, "C", ' ', 5, 8, {{2101, 2, 1}, {3201, 1, 2}, {6001, 2, 4}}},
    {strip_blocks, "Z", ' ', 5, 8, {{1801, 2, 1}, {3401, 1, 3}, {10001, 3, 4}}},
    {strip_blocks, "D", ' ', 2, 4, {{901, 4, 3}, {3101, 3, 2}, {3601, 2, 3}}},
    {strip_blocks, "S", ' ', 2, 4, {{4001, 3, 2}, {6001, 2, 1}}},
    {strip_blocks, "C", ' ', 2, 4, {{1301, 3, 2}, {7001, 2, 3}}},
    {strip_blocks, "Z", ' ', 2, 4, {{901, 2, 1}, {4001, 1, 3}}},
    {strip_blocks, "SDCZ", ' ', -1, 1, {{1000, 1, 1}}},
    {pool_blocks, "SDCZ", ' ', 9, 64, {{2201, 0, 1000000}}},
    {pool_blocks, "D", ' ', 5, 8, {{1701, 0, 4}, {2801, 4, 8}, {10001, 8, 16}}},
    {pool_blocks, "S", ' ', 5, 8, {{3601, 4, 8}}},
    {pool_blocks, "C", ' ', 5, 8, {{1001, 0, 4}, {2101, 4, 16}, {3201, 16, 8}, {6001, 8, 16}}},
    {pool_blocks, "Z", ' ', 5, 8, {{1501, 4, 8}, {1801, 8, 1000000}, {2801, 1000000, 8}, {3401, 8, 16}}},
    {pool_blocks, "D", ' ', 2, 4, {{3101, 4, 16}, {3601, 16, 4}}},
    {pool_blocks, "S", ' ', 2, 4, {{4001, 4, 8}}},
    {pool_blocks, "C", ' ', 2, 4, {{7001, 4, 16}}},
    {pool_blocks, "Z", ' ', 2, 4, {{1201, 4, 8}, {4001, 8, 4}}},
    {pool_blocks, "SDCZ", ' ', -1, 1, {{1000, 0, 0}}},
    {crossover, "SDCZ", ' ', -1, 7, {{2801, 64, 64}}},
    {crossover, "SDCZ", ' ', 9, 64, {{2801, 64, 64}}},
    {crossover, "SCZ", ' ', 8, 8, {{2801, 64, 64}}},
    {crossover, "D", ' ', 8, 8, {{2801, 64, 4000}}},
    {panel_share, "SDCZ", 'P', -1, 8, {{1000, 16, 16}}},
};

TEST(Tuning, LuThresholds) {
    for (const LuRow& row : lu_rows)
        for (const char type : std::string(row.types))
            for (const i64 team : {row.least_team, row.most_team})
                for (const Edge& edge : row.edges) {
                    SCOPED_TRACE(std::string(1, type) + "GETRF, query " + std::to_string(row.query) + ", team " +
                                 std::to_string(team) + ", n " + std::to_string(edge.n));
                    const std::string name = type + std::string("GETRF");
                    EXPECT_EQ(ask(row.query, name, row.opts, {.n1 = 7, .n2 = edge.n - 1, .n3 = team}), edge.below);
                    EXPECT_EQ(ask(row.query, name, row.opts, {.n1 = 7, .n2 = edge.n, .n3 = team}), edge.from);
                }
}

struct CholeskyRow {
    i64 team;
    std::vector<Edge> edges;
};

// 312 columns by the formula are cut to 256; from 520 on small teams get 512.
const CholeskyRow cholesky_rows[] = {
    {1,
     {{129, 128, 24},
      {451, 24, 32},
      {701, 32, 56},
      {901, 56, 96},
      {1051, 96, 128},
      {1401, 128, 192},
      {1801, 192, 256},
      {2001, 256, 384},
      {3001, 384, 512}}},
    {2, {{129, 128, 24}, {217, 24, 32}, {865, 72, 80}, {3244, 248, 256}, {6811, 256, 512}}},
    {4, {{129, 128, 24}, {229, 24, 32}, {3429, 248, 256}, {7200, 256, 512}}},
    {8, {{129, 128, 16}, {130, 16, 24}, {3871, 248, 256}, {8130, 256, 512}}},
    {9, {{134, 16, 24}, {3867, 240, 248}, {9000, 256, 256}}},
    {32, {{129, 128, 16}, {572, 16, 24}, {16572, 240, 248}, {17143, 248, 256}, {40000, 256, 256}}},
    {40, {{572, 16, 24}, {17143, 248, 256}}},
};

TEST(Tuning, CholeskyThresholds) {
    for (const CholeskyRow& row : cholesky_rows)
        for (const char* name : {"SPOTRF", "DPOTRF", "CPOTRF", "ZPOTRF"})
            for (const Edge& edge : row.edges) {
                SCOPED_TRACE(name + std::string(", team ") + std::to_string(row.team) + ", n " +
                             std::to_string(edge.n));
                EXPECT_EQ(ask(block_size, name, 'L', {.n1 = edge.n - 1, .n2 = row.team}), edge.below);
                EXPECT_EQ(ask(block_size, name, 'U', {.n1 = edge.n, .n2 = row.team}), edge.from);
            }
}

TEST(Tuning, CholeskyLevelLimitIsNotABlock) {
    for (const char lower : {'L', 'l'}) EXPECT_EQ(ask(block_size, "DPOTRF", lower, {3000, 4, -2}), 2);
    EXPECT_EQ(ask(block_size, "DPOTRF", 'U', {3000, 4, -2}), 3000);
    EXPECT_EQ(ask(block_size, "ZPOTRF", 'U', {100, 4, -2}), 100);
    EXPECT_EQ(ask(crossover, "DPOTRF", 'L', {3000}), 128);
    EXPECT_EQ(ask(crossover, "ZPOTRI", 'L', {3000}), 128);
    EXPECT_EQ(ask(block_size, "DPOTRI", 'L', {3000, 4}), 1);
}

TEST(Tuning, QrPanelShareByColumnsAndOption) {
    const Edge edges[] = {{401, 24, 32}, {551, 32, 48}, {801, 48, 64}, {1351, 64, 96}, {1901, 96, 128}};
    for (const Edge& edge : edges)
        for (const char* name : {"DGEQRF", "ZLAQRF"}) {
            EXPECT_EQ(ask(panel_share, name, 'P', {.n2 = edge.n - 1}), edge.below);
            EXPECT_EQ(ask(panel_share, name, 'P', {.n2 = edge.n}), edge.from);
            EXPECT_EQ(ask(panel_share, name, ' ', {.n2 = edge.n}), 16);
        }
    EXPECT_EQ(ask(panel_share, "DSYTRF", ' ', {}), 16);
}

TEST(Tuning, PrivateQueriesOfOtherNames) {
    for (const char* name : {"DPOTRF", "DGETRI", "DGEQRF", "ZGBTRF"}) {
        EXPECT_EQ(ask(strip_blocks, name, ' ', {100, 4000, 8}), 1) << name;
        EXPECT_EQ(ask(pool_blocks, name, ' ', {100, 4000, 8}), 0) << name;
    }
}

/// Every query by name refuses a strange type, those with the answer 0 too; fixed answers do not look at the name.
TEST(Tuning, OnlyTheFourTypes) {
    for (const char* name : {"XGETRF", "GETRF ", "1SYTRD", " DGETR", ""})
        for (const i64 query : {1, 2, 3, 12, 17, 18})
            EXPECT_EQ(ask(query, name, ' ', {3000, 3000, 8}), 1) << name << ", query " << query;
    const Edge fixed[] = {{4, 6, 6}, {5, 2, 2}, {7, 1, 1}, {8, 50, 50}, {9, 25, 25}, {10, 1, 1}, {11, 0, 0}};
    for (const auto& [query, answer, same] : fixed) EXPECT_EQ(ask(query, "XGETRF", ' ', {}), answer) << query;
    for (const i64 query : {-1, 0, 19, 1000}) EXPECT_EQ(ask(query, "DGETRF", ' ', {}), -1) << query;
}

TEST(Tuning, LetterCaseAndLengthOfNames) {
    const Sizes sizes = {3000, 3000, 8};
    EXPECT_EQ(ask(block_size, "dgetrf", ' ', sizes), 200);
    EXPECT_EQ(ask(pool_blocks, "dGeTrF", ' ', sizes), 8);
    EXPECT_EQ(ask(block_size, "DGETRF_WITH_MORE", ' ', sizes), 200);
    EXPECT_EQ(ask(block_size, "DGETRF", 's', {3000, 3000, -1}), 2048);
    const i64 query = block_size; // the length says where the name ends
    const auto of_length = [&](int length) {
        return nxl::ILAENV(&query, "DGETRF", " ", &sizes.n1, &sizes.n2, &sizes.n3, &sizes.n4, length, 1);
    };
    EXPECT_EQ(of_length(5), 1);
    EXPECT_EQ(of_length(6), 200);
}

TEST(Tuning, AbsentThreadCountIsOneThread) {
    const i64 query = block_size, n = 3000;
    EXPECT_EQ(nxl::ILAENV(&query, "DGETRF", "P", &n, &n, nullptr, nullptr, 6, 1), 128);
    EXPECT_EQ(nxl::ILAENV(&query, "DPOTRF", "L", &n, nullptr, nullptr, nullptr, 6, 1), 384);
}

using ReferenceIlaenv = int(const int* ispec, const char* name, const char* opts, const int* n1, const int* n2,
                            const int* n3, const int* n4, std::size_t name_length, std::size_t opts_length);

int ask_reference(int ispec, const std::string& name, int n1, int n2, int n3, int n4) {
    return reference<ReferenceIlaenv>("ilaenv_")(&ispec, name.c_str(), " ", &n1, &n2, &n3, &n4, name.size(), 1);
}

/// The lower-case exports; what is no LAPACK routine gets the answer for unknown names from both.
std::vector<std::string> exported_names() {
    std::vector<std::string> names;
    std::ifstream map(NXL_EXPORT_MAP);
    for (std::string word; map >> word;) {
        word.pop_back(); // the semicolon
        if ((word[0] == 'd' || word[0] == 'z') && word.size() <= 6 && std::ranges::all_of(word, ::islower))
            names.push_back(word);
    }
    return names;
}

std::vector<std::string> names_of_blocked_groups() {
    const std::vector<std::string> matrices = {"GE", "SY", "HE", "OR", "UN", "GB", "PB", "TR", "LA",
                                               "ST", "BD", "PP", "SP", "HP", "TP", "TB", "PT", "GT"};
    const std::vector<std::string> operations = {"TRF", "QRF", "RQF", "LQF", "QLF", "HRD", "BRD", "TRI", "TRD",
                                                 "TD2", "RDB", "GST", "TRS", "UUM", "QPS", "RFT", "EBZ", "QR ",
                                                 "EQR", "EVC", "GQR", "GRQ", "GLQ", "GQL", "GHR", "GTR", "GBR",
                                                 "MQR", "MRQ", "MLQ", "MQL", "MHR", "MTR", "MBR", "G2R", "MRZ"};
    std::vector<std::string> names;
    for (const char* type : {"S", "D", "C", "Z"})
        for (const std::string& matrix : matrices)
            for (const std::string& operation : operations) names.push_back(type + matrix + operation);
    return names;
}

/// Our own thresholds, tested above, and routines that the reference blocks and this library does not.
bool differs_from_published(i64 query, const std::string& name) {
    const std::string rest = name.substr(1);
    if (query == crossover && rest.starts_with("PO")) return true;
    if (rest == "GETRF") return query != least_block_size;
    return query == block_size && (rest == "POTRF" || rest == "TRSYL" || rest == "LATRS");
}

TEST(Tuning, OtherRoutinesHaveThePublishedDefaults) {
    auto names = exported_names();
    ASSERT_GT(names.size(), 150U); // the export map was found and read
    std::ranges::copy(names_of_blocked_groups(), std::back_inserter(names));
    for (std::string name : names) {
        std::ranges::transform(name, name.begin(), [](char c) { return static_cast<char>(std::toupper(c)); });
        for (const int query : {1, 2, 3})
            for (const int narrow : {64, 65}) {
                if (differs_from_published(query, name)) continue;
                const i64 n = narrow;
                EXPECT_EQ(ask(query, name, ' ', {300, n, 40, n}), ask_reference(query, name, 300, narrow, 40, narrow))
                    << name << ", query " << query << ", bandwidth " << narrow;
            }
    }
}

TEST(Tuning, QrIterationHasThePublishedParameters) {
    for (const char* name : {"DHSEQR", "ZHSEQR", "DLAQR0", "zlaqr5", "DGGHRD", "SGGHD3", "CTREXC", "DTGEXC", "DGEHRD"})
        for (const int ilo : {1, 40})
            for (int ihi = ilo - 1; ihi < 7000; ihi += ihi < 700 ? 1 : 37)
                for (const int query : {12, 13, 14, 15, 16})
                    ASSERT_EQ(ask(query, name, ' ', {7000, ilo, ihi, 9}), ask_reference(query, name, 7000, ilo, ihi, 9))
                        << name << ", query " << query << ", rows " << ilo << " to " << ihi;
    for (const int query : {13, 14, 15, 16}) // not by type
        EXPECT_EQ(ask(query, "XHSEQR", ' ', {700, 1, 700, 9}), ask_reference(query, "XHSEQR", 700, 1, 700, 9));
}

TEST(Tuning, SvdCrossoverIsTruncatedInSinglePrecision) {
    for (const int n : {0, 1, 4, 5, 7, 1000, 123457, 16777217, 26214401})
        EXPECT_EQ(ask(6, "DGESVD", ' ', {n + 3, n}), ask_reference(6, "DGESVD", n + 3, n, 0, 0)) << n;
}

} // namespace
