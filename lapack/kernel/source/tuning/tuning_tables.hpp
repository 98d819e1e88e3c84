// Thresholds of the factorisations, and the published defaults for the other routines. Data for tuning.hpp.
#pragma once
#include "lapack/kernel/source/tuning/routine_name.hpp"
#include "service/types.hpp"
#include <cstdint>

namespace nxl {

struct Step {
    i64 below = INT64_MIN;
    i64 value = 0;
};

/// The value of the first step that n is below, else the last one.
struct Steps {
    Step steps[11] = {};
    i64 otherwise;

    constexpr i64 at(i64 n) const {
        for (const Step& step : steps)
            if (n < step.below) return step.value;
        return otherwise;
    }
};

constexpr Steps always(i64 value) { return {.otherwise = value}; }

/// By the first letter of a routine's name.
struct ByType {
    Steps s, d, c, z;

    constexpr const Steps& of(char type) const {
        switch (type) {
        case 'S': return s;
        case 'D': return d;
        case 'C': return c;
        default: return z;
        }
    }
};

struct ByTeam {
    Steps above_8;
    ByType from_5_to_8, from_2_to_4;
    Steps alone;

    constexpr i64 at(i64 threads, char type, i64 n) const {
        if (threads > 8) return above_8.at(n);
        if (threads > 4) return from_5_to_8.of(type).at(n);
        if (threads > 1) return from_2_to_4.of(type).at(n);
        return alone.at(n);
    }
};

// LU: columns of a block by the order of the matrix. On one thread it depends on the caller, see LuSizes.
inline constexpr ByTeam lu_block = {
    .above_8 = {{{8001, 128}}, 200},
    .from_5_to_8 = {.s = {{{1101, 16}, {2001, 32}, {3601, 64}, {4001, 128}, {9001, 200}}, 400},
                    .d = {{{701, 16}, {1701, 24}, {2401, 80}, {2801, 128}, {10001, 200}}, 400},
                    .c = {{{1001, 16}, {2101, 32}}, 128},
                    .z = {{{1501, 16}, {1801, 64}, {10001, 128}}, 200}},
    .from_2_to_4 = {.s = {{{1101, 24}, {4001, 64}, {6001, 200}}, 400},
                    .d = {{{901, 24}, {3101, 64}}, 200},
                    .c = {{{1301, 32}}, 128},
                    .z = {{{901, 24}}, 128}},
    .alone = always(64)};

// By the columns of the panel.
inline constexpr Steps lu_panel_block = {{{9, 1}, {33, 8}, {129, 32}}, 128};

// Half the next power of two: the panel is halved until eight columns are left.
inline constexpr Steps lu_recursion_block = {{{9, 1},
                                              {33, 8},
                                              {129, 32},
                                              {257, 128},
                                              {513, 256},
                                              {1025, 512},
                                              {2049, 1024},
                                              {4097, 2048},
                                              {8193, 4096},
                                              {16385, 8192},
                                              {32769, 16384}},
                                             32768};

// LU queue: column blocks in one thread's strip.
inline constexpr ByTeam lu_strip = {.above_8 = always(1),
                                    .from_5_to_8 = {.s = {{{3601, 2}, {4001, 1}}, 2},
                                                    .d = {{{2401, 2}, {10001, 1}}, 2},
                                                    .c = {{{2101, 2}, {3201, 1}, {6001, 2}}, 4},
                                                    .z = {{{1801, 2}, {3401, 1}, {10001, 3}}, 4}},
                                    .from_2_to_4 = {.s = {{{4001, 3}, {6001, 2}}, 1},
                                                    .d = {{{901, 4}, {3101, 3}, {3601, 2}}, 3},
                                                    .c = {{{1301, 3}, {7001, 2}}, 3},
                                                    .z = {{{901, 2}, {4001, 1}}, 3}},
                                    .alone = always(1)};

// LU queue: trailing column blocks that any thread may take.
inline constexpr i64 all_blocks = 1000000;
inline constexpr ByTeam lu_pool = {.above_8 = {{{2201, 0}}, all_blocks},
                                   .from_5_to_8 = {.s = {{{3601, 4}}, 8},
                                                   .d = {{{1701, 0}, {2801, 4}, {10001, 8}}, 16},
                                                   .c = {{{1001, 0}, {2101, 4}, {3201, 16}, {6001, 8}}, 16},
                                                   .z = {{{1501, 4}, {1801, 8}, {2801, all_blocks}, {3401, 8}}, 16}},
                                   .from_2_to_4 = {.s = {{{4001, 4}}, 8},
                                                   .d = {{{3101, 4}, {3601, 16}}, 4},
                                                   .c = {{{7001, 4}}, 16},
                                                   .z = {{{1201, 4}, {4001, 8}}, 4}},
                                   .alone = always(0)};

inline constexpr Steps lone_cholesky_block = {
    {{129, 128}, {451, 24}, {701, 32}, {901, 56}, {1051, 96}, {1401, 128}, {1801, 192}, {2001, 256}, {3001, 384}}, 512};

// QR: cost of a panel in 32nds of a column update, by the columns of the matrix.
inline constexpr Steps qr_panel_share = {{{401, 24}, {551, 32}, {801, 48}, {1351, 64}, {1901, 96}}, 128};

/// The published defaults. Routines that nobody has blocked have the block 1.
struct Defaults {
    i64 block = 1;
    i64 least_block = 2; // a smaller block, for want of work space, does not pay
    i64 crossover = 0;   // below it the unblocked method is faster
};

struct DefaultsRow {
    std::string_view types, matrix, operations;
    Defaults defaults;

    constexpr bool covers(const RoutineName& name) const {
        return types.find(name.type()) != std::string_view::npos && matrix == name.matrix() &&
               operations.find(name.operation()) % 4 == 0;
    }
};

// The operations of a row are three letters and a blank each, so they begin at multiples of 4. Factorisations
// with sizes of their own are decided in tuning.hpp: GETRF, POTRF, GBTRF, PBTRF.
inline constexpr DefaultsRow default_rows[] = {
    {"SDCZ", "GE", "QRF RQF LQF QLF HRD BRD", {32, 2, 128}},
    {"SDCZ", "GE", "TRI", {64, 2, 0}},
    {"SDCZ", "TR", "TRI EVC", {64, 2, 0}},
    {"SDCZ", "LA", "UUM", {64, 2, 0}},
    {"SDCZ", "SY", "TRF", {64, 8, 0}},
    {"SD", "SY", "TRD", {32, 2, 32}},
    {"SD", "SY", "GST", {64, 2, 0}},
    {"CZ", "HE", "TRF GST", {64, 2, 0}},
    {"CZ", "HE", "TRD", {32, 2, 32}},
    {"SD", "OR", "GQR GRQ GLQ GQL GHR GTR GBR", {32, 2, 128}},
    {"SD", "OR", "MQR MRQ MLQ MQL MHR MTR MBR", {32, 2, 0}},
    {"CZ", "UN", "GQR GRQ GLQ GQL GHR GTR GBR", {32, 2, 128}},
    {"CZ", "UN", "MQR MRQ MLQ MQL MHR MTR MBR", {32, 2, 0}},
};

constexpr Defaults defaults_of(const RoutineName& name) {
    for (const DefaultsRow& row : default_rows)
        if (row.covers(name)) return row.defaults;
    return {};
}

} // namespace nxl
