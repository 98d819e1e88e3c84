// ILAENV: which record answers a query by name.
#include "lapack/kernel/source/tuning/ilaenv.hpp"
#include "lapack/kernel/source/tuning/eigen_tuning.hpp"
#include "lapack/kernel/source/tuning/tuning.hpp"

namespace nxl {
namespace {

struct Query {
    RoutineName name;
    char opts; // in capitals
    i64 n1, n2, n3, n4;

    bool is(std::string_view matrix, std::string_view operation) const {
        return name.matrix() == matrix && name.operation() == operation;
    }
    LuSizes lu() const { return {name.type()}; }
};

/// Who asks for itself on one thread says so by a letter; a team's block has none.
i64 lu_block_of(const Query& q) {
    if (q.n3 < 2 && q.opts == 'P') return q.lu().panel_block(q.n2);
    if (q.n3 < 2 && q.opts == 'S') return q.lu().recursion_block(q.n2);
    return q.lu().block(q.n2, q.n3);
}

i64 cholesky_block(const Query& q) {
    return q.n3 == -2 ? CholeskySizes::level_limit(q.opts, q.n1) : CholeskySizes::block(q.n1, q.n2);
}

i64 block(const Query& q) {
    if (q.is("GE", "TRF")) return lu_block_of(q);
    if (q.is("PO", "TRF")) return cholesky_block(q);
    if (q.is("GB", "TRF")) return BandSizes::published(q.n4);
    if (q.is("PB", "TRF")) return BandSizes::published(q.n2);
    return defaults_of(q.name).block;
}

i64 crossover_point(const Query& q) {
    if (q.name.matrix() == "PO") return CholeskySizes::crossover;
    return q.is("GE", "TRF") ? q.lu().crossover(q.n2, q.n3) : defaults_of(q.name).crossover;
}

i64 eigen_parameter(i64 ispec, const Query& q) {
    return eigen_tuning(static_cast<EigenQuery>(ispec), q.name, q.n2, q.n3);
}

i64 panel_parameter(const Query& q) {
    if (q.name.operation() == "TRF") return LuSizes::panel_share;
    if (q.name.operation() == "QRF") return q.opts == 'P' ? qr_panel_cost(q.n2) : LuSizes::panel_share;
    return eigen_parameter(panel_share, q);
}

i64 answer_by_name(i64 ispec, const Query& q) {
    if (!is_one_of(q.name.type(), "SDCZ")) return 1;
    switch (ispec) {
    case block_size: return block(q);
    case least_block_size: return defaults_of(q.name).least_block;
    case crossover: return crossover_point(q);
    case panel_share: return panel_parameter(q);
    case strip_blocks: return q.is("GE", "TRF") ? q.lu().strip(q.n2, q.n3) : 1;
    default: return q.is("GE", "TRF") ? q.lu().pool(q.n2, q.n3) : 0;
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
    const char option = opts_length > 0 ? capital(*opts) : ' ';
    return answer(*ispec, {RoutineName(name, name_length), option, given(n1), given(n2), given(n3), given(n4)});
}

} // namespace nxl
