// smat: a matrix in compressed sparse rows.
#pragma once
#include "solvers_ds/kernel/default/pardiso/perm.hpp"
#include <memory>

namespace nxl::pardiso {

using u32 = std::uint32_t;

/// Indices count from 0; ia[0] = 0 and ia[m] = nnz.
struct Smat {
    u32 m, n, nnz; // rows, columns, stored entries
    i32 sym;       // 1: the upper triangle is stored; 0: all
    i32* ia;       // m + 1
    i32* ja;       // nnz, ascending within a row after any operation that sorts
    double* a;     // nnz, or null
};

/// A record with its row pointers, all 0; with columns; with columns and values. Null when there is no memory, as of
/// the other functions that return a record.
Smat* smat_create(u32 m, u32 n, i32 sym);
Smat* smat_create_pattern(u32 m, u32 n, u32 nnz, i32 sym);
Smat* smat_create_full(u32 m, u32 n, u32 nnz, i32 sym);
/// A matrix in the caller's arrays, of which only the record is to be released, by smat_release. With a `base_index` of
/// 1 they are counted from 0 from here on.
Smat* smat_wrap(u32 m, u32 n, i32* ia, i32* ja, double* a, i32 base_index, i32 sym);
void smat_free(Smat* mat);
void smat_release(Smat* mat);

void smat_to_zero_base(Smat* mat);

/// The caller's arrays of a matrix that count from 1, and from 0 for the life of this.
class ZeroBased {
    i32 n_, *ia_, *ja_;

    void shift(i32 by) const;

  public:
    ZeroBased(i32 n, i32* ia, i32* ja) : n_(n), ia_(ia), ja_(ja) { shift(-1); }
    ~ZeroBased() { shift(1); }
    ZeroBased(const ZeroBased&) = delete;
    ZeroBased& operator=(const ZeroBased&) = delete;
};

Smat* smat_copy_pattern(const Smat* src);
Smat* smat_copy(const Smat* src);

/// 1 when the row pointers start at 0, ascend strictly and end at nnz, the columns are in range and ascend strictly
/// within each row, and values, where there are any, are finite; else 0.
int smat_check(const Smat* mat);

/// Whether each row of an upper triangle has its diagonal entry, once; rows need not ascend.
bool smat_has_diagonal(const Smat* mat);

/// From the upper triangle, with the whole diagonal, to all entries, in place; columns ascend if they did. index_map,
/// when given, has room for 2 nnz - m entries and receives, for each entry, its source. False when there is no memory;
/// the matrix is then as it was.
bool smat_expand_symmetric(Smat* mat, bool with_values, i32* index_map);

/// P A P^T, row and column i of A as row and column p[i]. With sym = 1 its upper triangle, from that of A.
Smat* smat_permute(const Smat* src, const Perm* perm, bool with_values);

/// The pattern of A + A^T without the diagonal, in place; values go. With sym = 1, all of A. False when there is no
/// memory; the matrix is then as it was.
bool smat_symmetrise_pattern(Smat* mat);

struct FreeSmat {
    void operator()(Smat* mat) const { smat_free(mat); }
};
struct ReleaseSmat {
    void operator()(Smat* mat) const { smat_release(mat); }
};
using OwnedSmat = std::unique_ptr<Smat, FreeSmat>;
using WrappedSmat = std::unique_ptr<Smat, ReleaseSmat>;

} // namespace nxl::pardiso
