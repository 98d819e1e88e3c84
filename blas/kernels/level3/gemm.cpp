// The general matrix product on one thread.
#include "blas/kernels/kernels.hpp"

namespace nxl::NXL_TARGET {
namespace {

double conj_if(bool, double v) { return v; }
zcomplex conj_if(bool conjugate, zcomplex v) {
    if (conjugate) parts(&v)[1] = -parts(&v)[1];
    return v;
}
[[gnu::always_inline]] inline double times(double a, double b) { return a * b; }
[[gnu::always_inline]] inline zcomplex times(zcomplex a, zcomplex b) {
    zcomplex r;
    const double *p = parts(&a), *q = parts(&b);
    parts(&r)[0] = p[0] * q[0] - p[1] * q[1];
    parts(&r)[1] = p[0] * q[1] + p[1] * q[0];
    return r;
}
double plus(double a, double b) { return a + b; }
zcomplex plus(zcomplex a, zcomplex b) {
    parts(&a)[0] += parts(&b)[0];
    parts(&a)[1] += parts(&b)[1];
    return a;
}
bool is(double a, double v) { return a == v; }
bool is(zcomplex a, double v) { return parts(&a)[0] == v && parts(&a)[1] == 0.0; }
bool is_n(char c) { return c == 'N' || c == 'n'; }
bool is_c(char c) { return c == 'C' || c == 'c'; }

template <class T>
void plain(char transa, char transb, i64 m, i64 n, i64 k, T alpha, const T* a, i64 lda, const T* b, i64 ldb, T beta,
           T* c, i64 ldc) {
    for (i64 j = 0; j < n; ++j)
        for (i64 i = 0; i < m; ++i) {
            T sum{};
            if (!is(alpha, 0.0))
                for (i64 p = 0; p < k; ++p) {
                    const T av = conj_if(is_c(transa), is_n(transa) ? a[i + p * lda] : a[p + i * lda]);
                    const T bv = conj_if(is_c(transb), is_n(transb) ? b[p + j * ldb] : b[j + p * ldb]);
                    sum = plus(sum, times(times(alpha, av), bv));
                }
            T& out = c[i + j * ldc];
            out = is(beta, 0.0) ? sum : plus(times(beta, out), sum);
        }
}

} // namespace

void xdgemm(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const double& alpha,
            const double* a, const i64& lda, const double* b, const i64& ldb, const double& beta, double* c,
            const i64& ldc) {
    plain(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

void xzgemm(const char& transa, const char& transb, const i64& m, const i64& n, const i64& k, const zcomplex& alpha,
            const zcomplex* a, const i64& lda, const zcomplex* b, const i64& ldb, const zcomplex& beta, zcomplex* c,
            const i64& ldc) {
    plain(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
void xdgemm_copy_at(const i64&, const i64&, const double*, const i64&, double*, const i64&, const double&) {}
void xzgemm_copy_at(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&, const zcomplex&) {}
void xdgemm_beta(const i64&, const i64&, const double&, double*, const i64&) {}
void xzgemm_beta(const i64&, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void xdgemm_tile(const char&, const char&, const i64&, const i64&, const i64&, const double&, const double*, const i64&,
                 const double*, const i64&, const double&, double*, const i64&) {}
void xzgemm_tile(const char&, const char&, const i64&, const i64&, const i64&, const zcomplex&, const zcomplex*,
                 const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void xdgemm_tile_pb(const char&, const char&, const i64&, const i64&, const i64&, const double&, const double*,
                    const i64&, const double*, const i64&, const double*, const i64&, const double&, double*,
                    const i64&) {}
void xzgemm_tile_pb(const char&, const char&, const i64&, const i64&, const i64&, const zcomplex&, const zcomplex*,
                    const i64&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*,
                    const i64&) {}
void xzgemm_blocks(const i64&, const i64&, const i64&, i64&, i64&, i64&) {}
void xzgemm_copy_bn(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void xzgemm_copy_bt(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void xzgemm_copy_bc(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void xdgemm_blocks_mc(const i64&, const i64&, const i64&, i64&, i64&, i64&) {}
void xdgemm_copy_bn_mc(const i64&, const i64&, const double*, const i64&, double*, const i64&) {}
void xdgemm_copy_bt_mc(const i64&, const i64&, const double*, const i64&, double*, const i64&) {}
void xdgemm_tile_htn(const char&, const char&, const i64&, const i64&, const i64&, const double&, const double*,
                     const i64&, const double*, const i64&, const double&, double*, const i64&) {}
void xdgemm_tile_pb_htn(const char&, const char&, const i64&, const i64&, const i64&, const double&, const double*,
                        const i64&, const double*, const i64&, const double*, const i64&, const double&, double*,
                        const i64&) {}
void xdgemm_tile_pab(const char&, const char&, const i64&, const i64&, const i64&, const double&, const double*,
                     const i64&, const double*, const i64&, const double*, const i64&, const double*, const i64&,
                     const double&, double*, const i64&) {}
void xdgemm_blocks_htn(const i64&, const i64&, const i64&, i64&, i64&, i64&) {}
void xdgemm_copy_an(const i64&, const i64&, const double*, const i64&, double*, const i64&, const double&) {}
void xdgemm_copy_bn_htn(const i64&, const i64&, const double*, const i64&, double*, const i64&) {}
void xdgemm_copy_bt_htn(const i64&, const i64&, const double*, const i64&, double*, const i64&) {}
void xzgemm_tile_htn(const char&, const char&, const i64&, const i64&, const i64&, const zcomplex&, const zcomplex*,
                     const i64&, const zcomplex*, const i64&, const zcomplex&, zcomplex*, const i64&) {}
void xzgemm_tile_pb_htn(const char&, const char&, const i64&, const i64&, const i64&, const zcomplex&, const zcomplex*,
                        const i64&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex&,
                        zcomplex*, const i64&) {}
void xzgemm_tile_pab(const char&, const char&, const i64&, const i64&, const i64&, const zcomplex&, const zcomplex*,
                     const i64&, const zcomplex*, const i64&, const zcomplex*, const i64&, const zcomplex*, const i64&,
                     const zcomplex&, zcomplex*, const i64&) {}
void xzgemm_blocks_htn(const i64&, const i64&, const i64&, i64&, i64&, i64&) {}
void xzgemm_copy_an(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&, const zcomplex&) {}
void xzgemm_copy_ac(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&, const zcomplex&) {}
void xzgemm_copy_bn_htn(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void xzgemm_copy_bt_htn(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}
void xzgemm_copy_bc_htn(const i64&, const i64&, const zcomplex*, const i64&, zcomplex*, const i64&) {}

} // namespace nxl::NXL_TARGET
