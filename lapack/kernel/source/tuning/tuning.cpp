// Block sizes and crossover points of LAPACK: which table answers a query. The tables are in tuning_tables.hpp, the
// parameters of the QR iteration in eigen_tuning.cpp.
#include "lapack/kernel/source/tuning/tuning.hpp"
#include "lapack/kernel/source/tuning/eigen_tuning.hpp"
#include "lapack/kernel/source/tuning/tuning_tables.hpp"
#include <algorithm>

namespace nxl {
namespace {

struct Query {
    RoutineName name;
    char opts; // in capitals
    i64 n1, n2, n3, n4;

    bool is(std::string_view matrix, std::string_view operation) const {
        return name.matrix() == matrix && name.operation() == operation;
    }
};

/// Of LU in double precision on one thread.
i64 lone_lu_block(const Query& q) {
    if (q.opts == 'P') return lu_panel_block.at(q.n2);
    return q.opts == 'S' ? lu_recursion_block.at(q.n2) : 1;
}

i64 lu_block_of(const Query& q) {
    if (q.n3 < 2 && q.name.type() == 'D') return lone_lu_block(q);
    return lu_block.at(q.n3, q.name.type(), q.n2);
}

/// For n of 129 and more.
i64 cholesky_team_block(i64 n, i64 threads) {
    const auto team = static_cast<double>(std::min(threads, i64{32}));
    const auto columns = static_cast<i64>((0.078 - team * 0.002) * static_cast<double>(n) + 16.0);
    const i64 block = columns / 8 * 8;
    return block > 512 && threads <= 8 ? 512 : std::min(block, i64{256});
}

i64 cholesky_block(const Query& q) {
    const i64 n = q.n1, threads = q.n2;
    if (q.n3 == -2) return q.opts == 'L' ? 2 : n;
    if (threads < 2) return lone_cholesky_block.at(n);
    return n < 129 ? 128 : cholesky_team_block(n, threads);
}

/// Small bandwidths do not pay for blocks.
i64 band_block(i64 bandwidth) { return bandwidth <= 64 ? 1 : 32; }

i64 block(const Query& q) {
    if (q.is("GE", "TRF")) return lu_block_of(q);
    if (q.is("PO", "TRF")) return cholesky_block(q);
    if (q.is("GB", "TRF")) return band_block(q.n4);
    if (q.is("PB", "TRF")) return band_block(q.n2);
    return defaults_of(q.name).block;
}

i64 crossover_point(const Query& q) {
    if (q.name.matrix() == "PO") return 128;
    if (!q.is("GE", "TRF")) return defaults_of(q.name).crossover;
    return q.name.type() == 'D' && q.n3 == 8 && q.n2 > 2800 ? 4000 : 64;
}

/// More rows than columns, or the other way about, by this much: reduced to a triangle first.
i64 svd_crossover(i64 m, i64 n) { return static_cast<i64>(static_cast<float>(std::min(m, n)) * 1.6F); }

i64 eigen_parameter(i64 ispec, const Query& q) {
    return eigen_tuning(static_cast<EigenQuery>(ispec), q.name, q.opts, q.n1, q.n2, q.n3, q.n4);
}

i64 panel_parameter(const Query& q) {
    if (q.name.operation() == "TRF") return 16;
    if (q.name.operation() == "QRF") return q.opts == 'P' ? qr_panel_share.at(q.n2) : 16;
    return eigen_parameter(panel_share, q);
}

i64 answer_by_name(i64 ispec, const Query& q) {
    if (std::string_view("SDCZ").find(q.name.type()) == std::string_view::npos) return 1;
    switch (ispec) {
    case block_size: return block(q);
    case least_block_size: return defaults_of(q.name).least_block;
    case crossover: return crossover_point(q);
    case panel_share: return panel_parameter(q);
    case strip_blocks: return q.is("GE", "TRF") ? lu_strip.at(q.n3, q.name.type(), q.n2) : 1;
    default: return q.is("GE", "TRF") ? lu_pool.at(q.n3, q.name.type(), q.n2) : 0;
    }
}

i64 answer(i64 ispec, const Query& q) {
    switch (ispec) {
    case block_size:
    case least_block_size:
    case crossover:
    case panel_share:
    case strip_blocks:
    case pool_blocks: return answer_by_name(ispec, q);
    case 4: return 6; // shifts of the old QR iteration
    case 5: return 2; // least columns of a block
    case 6: return svd_crossover(q.n1, q.n2);
    case 7: return 1;  // processors
    case 8: return 50; // the old QR iteration below it
    case 9: return 25; // largest leaf of divide and conquer
    case 10: return 1; // NaN can be trusted
    case 11: return 0; // infinity cannot
    case 13:
    case 14:
    case 15:
    case 16: return eigen_parameter(ispec, q);
    default: return -1;
    }
}

} // namespace

i64 ILAENV(const i64* ispec, const char* name, const char* opts, const i64* n1, const i64* n2, const i64* n3,
           const i64* n4, int name_length, int opts_length) {
    const auto given = [](const i64* size) { return size ? *size : -1; };
    const char option = opts_length > 0 ? static_cast<char>(folded(*opts)) : ' ';
    return answer(*ispec, {RoutineName(name, name_length), option, given(n1), given(n2), given(n3), given(n4)});
}

} // namespace nxl
