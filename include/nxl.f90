! nxl: explicit Fortran interfaces, the twin of nxl.h, which explains every routine.
! Compile this file with your program and say "use nxl". Names are bound as the library exports them; Fortran does not
! tell upper from lower case, so an upper-case alias has no interface of its own here where the lower-case name exists.
module nxl
    use, intrinsic :: iso_c_binding, only: c_char, c_double, c_double_complex, c_float, &
        c_float_complex, c_funptr, c_int, c_int8_t, c_int32_t, c_ptr
    implicit none (type, external)
    public

    interface
        ! ---- BLAS level 1, real ----

        ! Sum of |x(i)|.
        function dasum(n, x, incx) bind(c, name="dasum")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: x(*)
            real(c_double) :: dasum
        end function

        ! y := y + alpha x.
        subroutine daxpy(n, alpha, x, incx, y, incy) bind(c, name="daxpy")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(in) :: alpha, x(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! y := x.
        subroutine dcopy(n, x, incx, y, incy) bind(c, name="dcopy")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(in) :: x(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! Sum of x(i) y(i).
        function ddot(n, x, incx, y, incy) bind(c, name="ddot")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(in) :: x(*), y(*)
            real(c_double) :: ddot
        end function

        ! Euclidean norm, without overflow or underflow on the way.
        function dnrm2(n, x, incx) bind(c, name="dnrm2")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: x(*)
            real(c_double) :: dnrm2
        end function

        ! (x, y) := (c x + s y, c y - s x).
        subroutine drot(n, x, incx, y, incy, c, s) bind(c, name="drot")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: c, s
        end subroutine

        ! Constructs a plane rotation.
        subroutine drotg(a, b, c, s) bind(c, name="drotg")
            import :: c_double
            real(c_double), intent(inout) :: a, b
            real(c_double), intent(out) :: c, s
        end subroutine

        ! (x, y) := H (x, y), H from param.
        subroutine drotm(n, x, incx, y, incy, param) bind(c, name="drotm")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: param(5)
        end subroutine

        ! Constructs a modified rotation.
        subroutine drotmg(d1, d2, x1, y1, param) bind(c, name="drotmg")
            import :: c_double
            real(c_double), intent(inout) :: d1, d2, x1
            real(c_double), intent(in) :: y1
            real(c_double), intent(inout) :: param(5)
        end subroutine

        ! x := alpha x.
        subroutine dscal(n, alpha, x, incx) bind(c, name="dscal")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: alpha
            real(c_double), intent(inout) :: x(*)
        end subroutine

        ! Exchanges x and y.
        subroutine dswap(n, x, incx, y, incy) bind(c, name="dswap")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(inout) :: x(*), y(*)
        end subroutine

        ! Position of the first largest |x(i)|; idamin: of the smallest.
        function idamax(n, x, incx) bind(c, name="idamax")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: x(*)
            integer(c_int) :: idamax
        end function

        function idamin(n, x, incx) bind(c, name="idamin")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: x(*)
            integer(c_int) :: idamin
        end function

        ! ---- BLAS level 1, complex; zdotc and zdotu write their result through the first argument ----

        ! Sum of |Re x(i)| + |Im x(i)|.
        function dzasum(n, x, incx) bind(c, name="dzasum")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(in) :: x(*)
            real(c_double) :: dzasum
        end function

        ! Euclidean norm.
        function dznrm2(n, x, incx) bind(c, name="dznrm2")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(in) :: x(*)
            real(c_double) :: dznrm2
        end function

        ! Position of the first largest |Re x(i)| + |Im x(i)|; izamin: of the smallest.
        function izamax(n, x, incx) bind(c, name="izamax")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(in) :: x(*)
            integer(c_int) :: izamax
        end function

        function izamin(n, x, incx) bind(c, name="izamin")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(in) :: x(*)
            integer(c_int) :: izamin
        end function

        ! y := y + alpha x.
        subroutine zaxpy(n, alpha, x, incx, y, incy) bind(c, name="zaxpy")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(in) :: alpha, x(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! y := x.
        subroutine zcopy(n, x, incx, y, incy) bind(c, name="zcopy")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(in) :: x(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! res := sum of conjg(x(i)) y(i).
        subroutine zdotc(res, n, x, incx, y, incy) bind(c, name="zdotc")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        ! res := sum of x(i) y(i).
        subroutine zdotu(res, n, x, incx, y, incy) bind(c, name="zdotu")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        ! (x, y) := (c x + s y, c y - s x), real s.
        subroutine zdrot(n, x, incx, y, incy, c, s) bind(c, name="zdrot")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: c, s
        end subroutine

        ! x := alpha x, real alpha.
        subroutine zdscal(n, alpha, x, incx) bind(c, name="zdscal")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: alpha
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! (x, y) := (c x + s y, c y - conjg(s) x).
        subroutine ZROT(n, x, incx, y, incy, c, s) bind(c, name="ZROT")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: c
            complex(c_double_complex), intent(in) :: s
        end subroutine

        ! Constructs a plane rotation.
        subroutine zrotg(a, b, c, s) bind(c, name="zrotg")
            import :: c_double, c_double_complex
            complex(c_double_complex), intent(inout) :: a
            complex(c_double_complex), intent(in) :: b
            real(c_double), intent(out) :: c
            complex(c_double_complex), intent(out) :: s
        end subroutine

        ! x := alpha x.
        subroutine zscal(n, alpha, x, incx) bind(c, name="zscal")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(in) :: alpha
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! Exchanges x and y.
        subroutine zswap(n, x, incx, y, incy) bind(c, name="zswap")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(inout) :: x(*), y(*)
        end subroutine

        ! ---- BLAS level 2; trans: N, T, C; uplo: U, L; diag: U, N; a bad argument is reported to XERBLA ----

        ! y := alpha op(A) x + beta y, a(m, n).
        subroutine dgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy) bind(c, name="dgemv")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: m, n, lda, incx, incy
            real(c_double), intent(in) :: alpha, a(lda, *), x(*), beta
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine zgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy) bind(c, name="zgemv")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: m, n, lda, incx, incy
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), x(*), beta
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! A := A + alpha x y^T, a(m, n); zgerc: y^H.
        subroutine dger(m, n, alpha, x, incx, y, incy, a, lda) bind(c, name="dger")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, incx, incy, lda
            real(c_double), intent(in) :: alpha, x(*), y(*)
            real(c_double), intent(inout) :: a(lda, *)
        end subroutine

        subroutine zgeru(m, n, alpha, x, incx, y, incy, a, lda) bind(c, name="zgeru")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, incx, incy, lda
            complex(c_double_complex), intent(in) :: alpha, x(*), y(*)
            complex(c_double_complex), intent(inout) :: a(lda, *)
        end subroutine

        subroutine zgerc(m, n, alpha, x, incx, y, incy, a, lda) bind(c, name="zgerc")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, incx, incy, lda
            complex(c_double_complex), intent(in) :: alpha, x(*), y(*)
            complex(c_double_complex), intent(inout) :: a(lda, *)
        end subroutine

        ! y := alpha A x + beta y, A symmetric or Hermitian, a(n, n).
        subroutine dsymv(uplo, n, alpha, a, lda, x, incx, beta, y, incy) bind(c, name="dsymv")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, incx, incy
            real(c_double), intent(in) :: alpha, a(lda, *), x(*), beta
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine zhemv(uplo, n, alpha, a, lda, x, incx, beta, y, incy) bind(c, name="zhemv")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, incx, incy
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), x(*), beta
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! A := A + alpha x x^T, A symmetric; zher: x^H, A Hermitian, real alpha.
        subroutine dsyr(uplo, n, alpha, x, incx, a, lda) bind(c, name="dsyr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, incx, lda
            real(c_double), intent(in) :: alpha, x(*)
            real(c_double), intent(inout) :: a(lda, *)
        end subroutine

        subroutine zher(uplo, n, alpha, x, incx, a, lda) bind(c, name="zher")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, incx, lda
            real(c_double), intent(in) :: alpha
            complex(c_double_complex), intent(in) :: x(*)
            complex(c_double_complex), intent(inout) :: a(lda, *)
        end subroutine

        ! A := A + alpha x x^T, A complex symmetric. Reports nothing.
        subroutine ZSYR(uplo, n, alpha, x, incx, a, lda) bind(c, name="ZSYR")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, incx, lda
            complex(c_double_complex), intent(in) :: alpha, x(*)
            complex(c_double_complex), intent(inout) :: a(lda, *)
        end subroutine

        ! A := A + alpha x y^T + alpha y x^T, A symmetric; zher2: alpha x y^H + conjg(alpha) y x^H, A Hermitian.
        subroutine dsyr2(uplo, n, alpha, x, incx, y, incy, a, lda) bind(c, name="dsyr2")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, incx, incy, lda
            real(c_double), intent(in) :: alpha, x(*), y(*)
            real(c_double), intent(inout) :: a(lda, *)
        end subroutine

        subroutine zher2(uplo, n, alpha, x, incx, y, incy, a, lda) bind(c, name="zher2")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, incx, incy, lda
            complex(c_double_complex), intent(in) :: alpha, x(*), y(*)
            complex(c_double_complex), intent(inout) :: a(lda, *)
        end subroutine

        ! x := op(A) x, A triangular, a(n, n).
        subroutine dtrmv(uplo, trans, diag, n, a, lda, x, incx) bind(c, name="dtrmv")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, lda, incx
            real(c_double), intent(in) :: a(lda, *)
            real(c_double), intent(inout) :: x(*)
        end subroutine

        subroutine ztrmv(uplo, trans, diag, n, a, lda, x, incx) bind(c, name="ztrmv")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, lda, incx
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! x := op(A)^-1 x, A triangular, a(n, n).
        subroutine dtrsv(uplo, trans, diag, n, a, lda, x, incx) bind(c, name="dtrsv")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, lda, incx
            real(c_double), intent(in) :: a(lda, *)
            real(c_double), intent(inout) :: x(*)
        end subroutine

        subroutine ztrsv(uplo, trans, diag, n, a, lda, x, incx) bind(c, name="ztrsv")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, lda, incx
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! ---- BLAS level 3; side: L, R ----

        ! C := alpha op(A) op(B) + beta C, c(m, n).
        subroutine dgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="dgemm")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: transa, transb
            integer(c_int), intent(in) :: m, n, k, lda, ldb, ldc
            real(c_double), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            real(c_double), intent(inout) :: c(ldc, *)
        end subroutine

        subroutine zgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="zgemm")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: transa, transb
            integer(c_int), intent(in) :: m, n, k, lda, ldb, ldc
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha A B + beta C or alpha B A + beta C, A symmetric; zhemm: A Hermitian.
        subroutine dsymm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="dsymm")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: side, uplo
            integer(c_int), intent(in) :: m, n, lda, ldb, ldc
            real(c_double), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            real(c_double), intent(inout) :: c(ldc, *)
        end subroutine

        subroutine zsymm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="zsymm")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, uplo
            integer(c_int), intent(in) :: m, n, lda, ldb, ldc
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        subroutine zhemm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="zhemm")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, uplo
            integer(c_int), intent(in) :: m, n, lda, ldb, ldc
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha A A^T + beta C or alpha A^T A + beta C, C symmetric.
        subroutine dsyrk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc) bind(c, name="dsyrk")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldc
            real(c_double), intent(in) :: alpha, a(lda, *), beta
            real(c_double), intent(inout) :: c(ldc, *)
        end subroutine

        subroutine zsyrk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc) bind(c, name="zsyrk")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldc
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), beta
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha A A^H + beta C or alpha A^H A + beta C, C Hermitian, real alpha and beta.
        subroutine zherk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc) bind(c, name="zherk")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldc
            real(c_double), intent(in) :: alpha, beta
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha A B^T + alpha B A^T + beta C, or transposed, C symmetric.
        subroutine dsyr2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="dsyr2k")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldb, ldc
            real(c_double), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            real(c_double), intent(inout) :: c(ldc, *)
        end subroutine

        subroutine zsyr2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="zsyr2k")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldb, ldc
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha A B^H + conjg(alpha) B A^H + beta C, or transposed, C Hermitian, real beta.
        subroutine zher2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="zher2k")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldb, ldc
            real(c_double), intent(in) :: beta
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! B := alpha op(A) B or alpha B op(A), A triangular, b(m, n).
        subroutine dtrmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb) bind(c, name="dtrmm")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: side, uplo, transa, diag
            integer(c_int), intent(in) :: m, n, lda, ldb
            real(c_double), intent(in) :: alpha, a(lda, *)
            real(c_double), intent(inout) :: b(ldb, *)
        end subroutine

        subroutine ztrmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb) bind(c, name="ztrmm")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, uplo, transa, diag
            integer(c_int), intent(in) :: m, n, lda, ldb
            complex(c_double_complex), intent(in) :: alpha, a(lda, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
        end subroutine

        ! B := alpha op(A)^-1 B or alpha B op(A)^-1, A triangular, b(m, n).
        subroutine dtrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb) bind(c, name="dtrsm")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: side, uplo, transa, diag
            integer(c_int), intent(in) :: m, n, lda, ldb
            real(c_double), intent(in) :: alpha, a(lda, *)
            real(c_double), intent(inout) :: b(ldb, *)
        end subroutine

        subroutine ztrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb) bind(c, name="ztrsm")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, uplo, transa, diag
            integer(c_int), intent(in) :: m, n, lda, ldb
            complex(c_double_complex), intent(in) :: alpha, a(lda, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
        end subroutine

        ! ---- LAPACK, LU factorisation; hidden lengths of characters are not looked at and left out here ----

        ! P A = L U, a(m, n), min(m, n) pivots. info: 0, or the first zero pivot, or a bad argument, negated.
        subroutine dgetrf(m, n, a, lda, ipiv, info) bind(c, name="dgetrf")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, lda
            real(c_double), intent(inout) :: a(lda, *)
            integer(c_int), intent(inout) :: ipiv(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgetrf(m, n, a, lda, ipiv, info) bind(c, name="zgetrf")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, lda
            complex(c_double_complex), intent(inout) :: a(lda, *)
            integer(c_int), intent(inout) :: ipiv(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Interchanges rows i and ipiv(i), i from k1 to k2, or backwards for a negative incx.
        subroutine DLASWP(n, a, lda, k1, k2, ipiv, incx) bind(c, name="DLASWP")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, lda, k1, k2, ipiv(*), incx
            real(c_double), intent(inout) :: a(lda, *)
        end subroutine

        subroutine ZLASWP(n, a, lda, k1, k2, ipiv, incx) bind(c, name="ZLASWP")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, lda, k1, k2, ipiv(*), incx
            complex(c_double_complex), intent(inout) :: a(lda, *)
        end subroutine

        ! x := conj(x).
        subroutine ZLACGV(n, x, incx) bind(c, name="ZLACGV")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! op(A) X = B from the factors of dgetrf; X takes the place of B.
        subroutine dgetrs(trans, n, nrhs, a, lda, ipiv, b, ldb, info) bind(c, name="dgetrs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            real(c_double), intent(in) :: a(lda, *)
            real(c_double), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgetrs(trans, n, nrhs, a, lda, ipiv, b, ldb, info) bind(c, name="zgetrs")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The inverse in the place of the factors of dgetrf; lwork -1 asks for the best size.
        subroutine dgetri(n, a, lda, ipiv, work, lwork, info) bind(c, name="dgetri")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, lda, ipiv(*), lwork
            real(c_double), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgetri(n, a, lda, ipiv, work, lwork, info) bind(c, name="zgetri")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, lda, ipiv(*), lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- LAPACK, Cholesky factorisation; uplo: U, L ----

        ! A = U^H U or L L^H, one triangle of a(n, n); info > 0: not positive definite.
        subroutine dpotrf(uplo, n, a, lda, info) bind(c, name="dpotrf")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            real(c_double), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpotrf(uplo, n, a, lda, info) bind(c, name="zpotrf")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The same without blocks and threads.
        subroutine zpotf2(uplo, n, a, lda, info) bind(c, name="ZPOTF2")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Solves A X = B from the factor, b(n, nrhs).
        subroutine dpotrs(uplo, n, nrhs, a, lda, b, ldb, info) bind(c, name="dpotrs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ldb
            real(c_double), intent(in) :: a(lda, *)
            real(c_double), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpotrs(uplo, n, nrhs, a, lda, b, ldb, info) bind(c, name="zpotrs")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ldb
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! One triangle of the inverse in the place of the factor of dpotrf.
        subroutine dpotri(uplo, n, a, lda, info) bind(c, name="dpotri")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            real(c_double), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpotri(uplo, n, a, lda, info) bind(c, name="zpotri")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- LAPACK, triangular matrices ----

        ! The inverse of a triangular matrix, in its place.
        subroutine dtrtri(uplo, diag, n, a, lda, info) bind(c, name="dtrtri")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo, diag
            integer(c_int), intent(in) :: n, lda
            real(c_double), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine ztrtri(uplo, diag, n, a, lda, info) bind(c, name="ztrtri")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, diag
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! op(A) X = B, A triangular; X takes the place of B.
        subroutine dtrtrs(uplo, trans, diag, n, nrhs, a, lda, b, ldb, info) bind(c, name="dtrtrs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, nrhs, lda, ldb
            real(c_double), intent(in) :: a(lda, *)
            real(c_double), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine ztrtrs(uplo, trans, diag, n, nrhs, a, lda, b, ldb, info) bind(c, name="ztrtrs")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, nrhs, lda, ldb
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- Sparse BLAS level 1; indices count from 1 ----

        ! y(indx(i)) := y(indx(i)) + a x(i).
        subroutine daxpyi(nz, a, x, indx, y) bind(c, name="daxpyi")
            import :: c_double, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            real(c_double), intent(in) :: a, x(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine zaxpyi(nz, a, x, indx, y) bind(c, name="zaxpyi")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            complex(c_double_complex), intent(in) :: a, x(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! Sum of x(i) y(indx(i)); zdotci takes conjg(x(i)).
        function ddoti(nz, x, indx, y) bind(c, name="ddoti")
            import :: c_double, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            real(c_double), intent(in) :: x(*), y(*)
            real(c_double) :: ddoti
        end function

        subroutine zdotci(res, nz, x, indx, y) bind(c, name="zdotci")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: nz, indx(*)
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        subroutine zdotui(res, nz, x, indx, y) bind(c, name="zdotui")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: nz, indx(*)
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        ! x(i) := y(indx(i)).
        subroutine dgthr(nz, y, x, indx) bind(c, name="dgthr")
            import :: c_double, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            real(c_double), intent(in) :: y(*)
            real(c_double), intent(inout) :: x(*)
        end subroutine

        subroutine zgthr(nz, y, x, indx) bind(c, name="zgthr")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            complex(c_double_complex), intent(in) :: y(*)
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! y(indx(i)) := x(i).
        subroutine dsctr(nz, x, indx, y) bind(c, name="dsctr")
            import :: c_double, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            real(c_double), intent(in) :: x(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine zsctr(nz, x, indx, y) bind(c, name="zsctr")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            complex(c_double_complex), intent(in) :: x(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! ---- Threads: arguments by value ----

        ! Sets the thread count of all routines.
        subroutine NXL_Set_Num_Threads(n) bind(c, name="NXL_Set_Num_Threads")
            import :: c_int
            integer(c_int), value :: n
        end subroutine

        ! The threads that a call may use.
        function NXL_Get_Max_Threads() bind(c, name="NXL_Get_Max_Threads")
            import :: c_int
            integer(c_int) :: NXL_Get_Max_Threads
        end function

        ! Sets the thread count of one domain: 0 all, 1 BLAS, 2 FFT, 3 VML. 1 when it was taken, else 0.
        function NXL_Domain_Set_Num_Threads(n, domain) bind(c, name="NXL_Domain_Set_Num_Threads")
            import :: c_int
            integer(c_int), value :: n, domain
            integer(c_int) :: NXL_Domain_Set_Num_Threads
        end function

        ! The threads that a call of one domain may use.
        function NXL_Domain_Get_Max_Threads(domain) bind(c, name="NXL_Domain_Get_Max_Threads")
            import :: c_int
            integer(c_int), value :: domain
            integer(c_int) :: NXL_Domain_Get_Max_Threads
        end function

        ! Dynamic adjustment: off with flag 0, else on.
        subroutine NXL_Set_Dynamic(flag) bind(c, name="NXL_Set_Dynamic")
            import :: c_int
            integer(c_int), value :: flag
        end subroutine

        ! 1 when dynamic adjustment is on, else 0.
        function NXL_Get_Dynamic() bind(c, name="NXL_Get_Dynamic")
            import :: c_int
            integer(c_int) :: NXL_Get_Dynamic
        end function

        ! How long OpenMP's threads stay awake after a parallel region, in milliseconds.
        subroutine okmp_set_blocktime(milliseconds) bind(c, name="okmp_set_blocktime")
            import :: c_int
            integer(c_int), value :: milliseconds
        end subroutine

        ! ---- Memory, progress, timers, machine constants ----

        ! Gives cached scratch memory back; no other call into the library may run meanwhile.
        subroutine NXL_FreeBuffers() bind(c, name="NXL_FreeBuffers")
        end subroutine

        ! Returns 0. A host may define a function of this name itself.
        function NXL_PROGRESS(thread, step, stage, stage_length) bind(c, name="NXL_PROGRESS")
            import :: c_char, c_int
            integer(c_int), intent(in) :: thread, step
            character(kind=c_char), intent(in) :: stage(*)
            integer(c_int), value :: stage_length
            integer(c_int) :: NXL_PROGRESS
        end function

        ! Keeps a callback with the arguments of NXL_PROGRESS, as in c_funloc(f); c_null_funptr takes it away.
        subroutine set_NXL_Progress_Callback(callback) bind(c, name="set_NXL_Progress_Callback")
            import :: c_funptr
            type(c_funptr), value :: callback
        end subroutine

        ! Calls the callback once for trial; 0 when there is none.
        function test_NXL_Progress_Callback() bind(c, name="test_NXL_Progress_Callback")
            import :: c_int
            integer(c_int) :: test_NXL_Progress_Callback
        end function

        ! Elapsed seconds; only differences mean anything.
        function DSECND() bind(c, name="DSECND")
            import :: c_double
            real(c_double) :: DSECND
        end function

        ! Machine constant i, from 1 to 5, of double precision.
        function D1MACH(i) bind(c, name="D1MACH")
            import :: c_double, c_int
            integer(c_int), intent(in) :: i
            real(c_double) :: D1MACH
        end function

        ! The same of single precision.
        function R1MACH(i) bind(c, name="R1MACH")
            import :: c_float, c_int
            integer(c_int), intent(in) :: i
            real(c_float) :: R1MACH
        end function

        ! ---- Errors ----

        ! Reports a bad argument. A host may define a subroutine of this name itself.
        subroutine XERBLA(srname, info, len) bind(c, name="XERBLA")
            import :: c_char, c_int
            character(kind=c_char), intent(in) :: srname(*)
            integer(c_int), intent(in) :: info
            integer(c_int), value :: len
        end subroutine

        ! ---- Sparse linear systems, directly ----

        ! One step.
        subroutine PARDISO(pt, max_fac_store, matrix_number, matrix_type, ido, neqns, a, ia, ja, perm, nb, iparam, &
                msglvl, b, x, error) bind(c, name="PARDISO")
            import :: c_int
            type(*), intent(inout) :: pt(*)
            integer(c_int), intent(in) :: max_fac_store, matrix_number, matrix_type, ido, neqns, nb, msglvl
            type(*), intent(in) :: a(*)
            integer(c_int), intent(inout) :: ia(*), ja(*), perm(*), iparam(64)
            type(*), intent(inout) :: b(*), x(*)
            integer(c_int), intent(out) :: error
        end subroutine

        ! ---- Conjugate gradients, by reverse communication ----

        ! Defaults.
        subroutine DCG_INIT(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCG_INIT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Examines and mends the parameters.
        subroutine DCG_CHECK(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCG_CHECK")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! One right-hand side: goes on to the next request.
        subroutine DCG(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCG")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(inout) :: x(*), dpar(*), tmp(*)
            real(c_double), intent(in) :: b(*)
            integer(c_int), intent(inout) :: RCI_request, ipar(*)
        end subroutine

        ! Iterations so far.
        subroutine DCG_GET(n, x, b, RCI_request, ipar, dpar, tmp, itercount) bind(c, name="DCG_GET")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*), dpar(*), tmp(*)
            integer(c_int), intent(in) :: RCI_request, ipar(*)
            integer(c_int), intent(out) :: itercount
        end subroutine

        ! Defaults, for nrhs systems.
        subroutine DCGMRHS_INIT(n, x, nrhs, b, method, RCI_request, ipar, dpar, tmp) bind(c, name="DCGMRHS_INIT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs, method
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Examines and mends the parameters.
        subroutine DCGMRHS_CHECK(n, x, nrhs, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCGMRHS_CHECK")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Several right-hand sides, x(n, nrhs) and b(n, nrhs): goes on to the next request.
        subroutine DCGMRHS(n, x, nrhs, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCGMRHS")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs
            real(c_double), intent(inout) :: x(*), dpar(*), tmp(*)
            real(c_double), intent(in) :: b(*)
            integer(c_int), intent(inout) :: RCI_request, ipar(*)
        end subroutine

        ! Iterations spent on each system.
        subroutine DCGMRHS_GET(n, x, nrhs, b, RCI_request, ipar, dpar, tmp, itercount) bind(c, name="DCGMRHS_GET")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs
            real(c_double), intent(in) :: x(*), b(*), dpar(*), tmp(*)
            integer(c_int), intent(in) :: RCI_request, ipar(*)
            integer(c_int), intent(inout) :: itercount(*)
        end subroutine

        ! ---- FGMRES, by reverse communication ----

        ! Defaults.
        subroutine DFGMRES_INIT(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DFGMRES_INIT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Examines and mends the parameters, and lays out tmp.
        subroutine DFGMRES_CHECK(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DFGMRES_CHECK")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Goes on to the next request.
        subroutine DFGMRES(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DFGMRES")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(inout) :: x(*), dpar(*), tmp(*)
            real(c_double), intent(in) :: b(*)
            integer(c_int), intent(inout) :: RCI_request, ipar(*)
        end subroutine

        ! The solution, to x or b as ipar(13) says, and the iterations so far.
        subroutine DFGMRES_GET(n, x, b, RCI_request, ipar, dpar, tmp, itercount) bind(c, name="DFGMRES_GET")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(inout) :: x(*), b(*), dpar(*), tmp(*)
            integer(c_int), intent(inout) :: ipar(*)
            integer(c_int), intent(out) :: RCI_request, itercount
        end subroutine

        ! ---- Incomplete LU preconditioners ----

        ! On the pattern of the matrix, bilu0(ia(n+1) - 1).
        subroutine DCSRILU0(n, a, ia, ja, bilu0, ipar, dpar, ierr) bind(c, name="DCSRILU0")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, ia(*), ja(*), ipar(*)
            real(c_double), intent(in) :: a(*), dpar(*)
            real(c_double), intent(inout) :: bilu0(*)
            integer(c_int), intent(out) :: ierr
        end subroutine

        ! With a drop tolerance, bilut and jbilut((2 maxfil + 1) n), ibilut(n + 1).
        subroutine DCSRILUT(n, a, ia, ja, bilut, ibilut, jbilut, tol, maxfil, ipar, dpar, ierr) bind(c, name="DCSRILUT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, ia(*), ja(*), maxfil, ipar(*)
            real(c_double), intent(in) :: a(*), tol, dpar(*)
            real(c_double), intent(inout) :: bilut(*)
            integer(c_int), intent(inout) :: ibilut(*), jbilut(*)
            integer(c_int), intent(out) :: ierr
        end subroutine

        ! ---- Numeric Jacobian ----
        ! A handle keeps the addresses of x and fjac: give them the target attribute.

        ! Begins a Jacobian by reverse communication. All results here: 1501 success, 1502 invalid, 1503 no memory.
        function djacobi_init(handle, n, m, x, fjac, eps) bind(c, name="djacobi_init")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            integer(c_int), intent(in) :: n, m
            real(c_double), intent(inout), target :: x(*), fjac(*)
            real(c_double), intent(in) :: eps
            integer(c_int) :: djacobi_init
        end function

        ! One step: 1 evaluate F at x into f1, 2 into f2, 0 finished.
        function djacobi_solve(handle, f1, f2, RCI_Request) bind(c, name="djacobi_solve")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            real(c_double), intent(inout) :: f1(*)
            real(c_double), intent(in) :: f2(*)
            integer(c_int), intent(inout) :: RCI_Request
            integer(c_int) :: djacobi_solve
        end function

        ! Frees the handle.
        function djacobi_delete(handle) bind(c, name="djacobi_delete")
            import :: c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int) :: djacobi_delete
        end function

        ! The whole Jacobian; fcn is c_funloc of a bind(c) subroutine fcn(m, n, x, f), maybe called concurrently.
        function djacobi(fcn, n, m, fjac, x, eps) bind(c, name="djacobi")
            import :: c_double, c_funptr, c_int
            type(c_funptr), value :: fcn
            integer(c_int), intent(in) :: n, m
            real(c_double), intent(inout) :: fjac(*), x(*)
            real(c_double), intent(in) :: eps
            integer(c_int) :: djacobi
        end function

        ! ---- Nonlinear least squares ----
        ! A handle keeps the addresses of x and eps: give them the target attribute.

        ! Begins a run from x.
        function dtrnlsp_init(handle, n, m, x, eps, iter1, iter2, rs) bind(c, name="dtrnlsp_init")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            integer(c_int), intent(in) :: n, m, iter1, iter2
            real(c_double), intent(inout), target :: x(*)
            real(c_double), intent(in), target :: eps(6)
            real(c_double), intent(in) :: rs
            integer(c_int) :: dtrnlsp_init
        end function

        ! Goes on: 1 evaluate F into fvec, 2 the Jacobian into fjac, 0 call again, below 0 ended.
        function dtrnlsp_solve(handle, fvec, fjac, RCI_Request) bind(c, name="dtrnlsp_solve")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            real(c_double), intent(inout) :: fvec(*), fjac(*)
            integer(c_int), intent(inout) :: RCI_Request
            integer(c_int) :: dtrnlsp_solve
        end function

        ! Accepted steps, stop code, norms of F at the start and at the end.
        function dtrnlsp_get(handle, iter, st_cr, r1, r2) bind(c, name="dtrnlsp_get")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int), intent(inout) :: iter, st_cr
            real(c_double), intent(inout) :: r1, r2
            integer(c_int) :: dtrnlsp_get
        end function

        ! Frees the handle.
        function dtrnlsp_delete(handle) bind(c, name="dtrnlsp_delete")
            import :: c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int) :: dtrnlsp_delete
        end function

        ! ---- Nonlinear least squares with bounds ----

        ! A handle for n unknowns and m residuals; x, lw, up and eps stay where they are until the handle is deleted, so
        ! give them the target attribute.
        function dtrnlspbc_init(handle, n, m, x, lw, up, eps, iter1, iter2, rs) bind(c, name="dtrnlspbc_init")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            integer(c_int), intent(in) :: n, m, iter1, iter2
            real(c_double), intent(inout), target :: x(*)
            real(c_double), intent(in), target :: lw(*), up(*), eps(6)
            real(c_double), intent(in) :: rs
            integer(c_int) :: dtrnlspbc_init
        end function

        ! Goes on to the next request.
        function dtrnlspbc_solve(handle, fvec, fjac, RCI_Request) bind(c, name="dtrnlspbc_solve")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            real(c_double), intent(inout) :: fvec(*), fjac(*)
            integer(c_int), intent(inout) :: RCI_Request
            integer(c_int) :: dtrnlspbc_solve
        end function

        ! Iterations, stop code, norms of the residual at the start and at the end.
        function dtrnlspbc_get(handle, iter, st_cr, r1, r2) bind(c, name="dtrnlspbc_get")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            integer(c_int), intent(out) :: iter, st_cr
            real(c_double), intent(out) :: r1, r2
            integer(c_int) :: dtrnlspbc_get
        end function

        ! Frees the handle.
        function dtrnlspbc_delete(handle) bind(c, name="dtrnlspbc_delete")
            import :: c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int) :: dtrnlspbc_delete
        end function

        ! ---- Vector primitives: arguments by value, complex scalars by reference ----

        ! dst(i) = src(i) + value.
        subroutine AddValue_d(src, dst, value, n) bind(c, name="AddValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) + value.
        subroutine AddValuec_d(src, dst, value, n) bind(c, name="AddValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) + value.
        subroutine AddValuecd_d(src, dst, value, n) bind(c, name="AddValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) + value.
        subroutine AddValuedc_d(src, dst, value, n) bind(c, name="AddValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value - src(i).
        subroutine SubFromValue_d(src, dst, value, n) bind(c, name="SubFromValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value - src(i).
        subroutine SubFromValuec_d(src, dst, value, n) bind(c, name="SubFromValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value - src(i).
        subroutine SubFromValuecd_d(src, dst, value, n) bind(c, name="SubFromValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value - src(i).
        subroutine SubFromValuedc_d(src, dst, value, n) bind(c, name="SubFromValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value / src(i).
        subroutine DivideValue_d(src, dst, value, n) bind(c, name="DivideValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value / src(i).
        subroutine DivideValuec_d(src, dst, value, n) bind(c, name="DivideValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value / src(i).
        subroutine DivideValuecd_d(src, dst, value, n) bind(c, name="DivideValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = value / src(i).
        subroutine DivideValuedc_d(src, dst, value, n) bind(c, name="DivideValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) value.
        subroutine ScaleByValue_d(src, dst, value, n) bind(c, name="ScaleByValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) value.
        subroutine ScaleByValuec_d(src, dst, value, n) bind(c, name="ScaleByValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) value.
        subroutine ScaleByValuecd_d(src, dst, value, n) bind(c, name="ScaleByValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) value.
        subroutine ScaleByValuedc_d(src, dst, value, n) bind(c, name="ScaleByValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = a(i) + b(i).
        subroutine AddVeccd_d(a, b, dst, n) bind(c, name="AddVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = a(i) - b(i).
        subroutine SubVeccd_d(a, b, dst, n) bind(c, name="SubVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = a(i) - b(i).
        subroutine SubVecdc_d(a, b, dst, n) bind(c, name="SubVecdc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: a(*)
            complex(c_double_complex), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = a(i) b(i).
        subroutine MulVeccd_d(a, b, dst, n) bind(c, name="MulVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = a(i) / b(i).
        subroutine DivVeccc_d(a, b, dst, n) bind(c, name="DivVeccc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*), b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = a(i) / b(i).
        subroutine DivVeccd_d(a, b, dst, n) bind(c, name="DivVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = a(i) / b(i).
        subroutine DivVecdc_d(a, b, dst, n) bind(c, name="DivVecdc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: a(*)
            complex(c_double_complex), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = conj(a(i)) b(i).
        subroutine ConjMulcc_d(a, b, dst, n) bind(c, name="ConjMulcc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*), b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = -1, 0 or 1, the sign of src(i).
        subroutine Sgndd_d(src, dst, n) bind(c, name="Sgndd_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = -1, 0 or 1, the sign of src(i).
        subroutine Sgncd_d(src, dst, n) bind(c, name="Sgncd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = -1, 0 or 1, the sign of src(i).
        subroutine Sgndc_d(src, dst, n) bind(c, name="Sgndc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = -1, 0 or 1, the sign of src(i).
        subroutine Sgncc_d(src, dst, n) bind(c, name="Sgncc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i), in place, by the sign of src(i).
        subroutine SgnMul_d(src, dst, n) bind(c, name="SgnMul_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i), in place, by the sign of src(i).
        subroutine SgnMulc_d(src, dst, n) bind(c, name="SgnMulc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i), in place, by the sign of src(i).
        subroutine SgnMulcd_d(src, dst, n) bind(c, name="SgnMulcd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i), in place, by the sign of src(i).
        subroutine SgnMuldc_d(src, dst, n) bind(c, name="SgnMuldc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = x(i) - y(i) int(x(i) / y(i)).
        subroutine Rem_d(x, y, dst, n) bind(c, name="Rem_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: x(*), y(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = x(i) - int(x(i) (1 / value)) value.
        subroutine RemVal_d(x, value, dst, n) bind(c, name="RemVal_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: x(*)
            real(c_double), value :: value
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! Upwards to integers.
        subroutine Ceil_d(src, dst, n) bind(c, name="Ceil_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! Downwards to integers.
        subroutine Floor_d(src, dst, n) bind(c, name="Floor_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = dst(i - 1) + src(i).
        subroutine CumSum_d(src, dst, n) bind(c, name="CumSum_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = dst(i - 1) + src(i).
        subroutine CumSumc_d(src, dst, n) bind(c, name="CumSumc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(i) + dst(i - delta) behind a copy of the first delta elements.
        subroutine CumSumDelta_d(src, dst, n, delta) bind(c, name="CumSumDelta_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n, delta
        end subroutine

        ! dst(i) = src(i) + dst(i - delta) behind a copy of the first delta elements.
        subroutine CumSumDeltac_d(src, dst, n, delta) bind(c, name="CumSumDeltac_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n, delta
        end subroutine

        ! The product of all elements.
        function Product_d(src, n) bind(c, name="Product_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            integer(c_int32_t), value :: n
            real(c_double) :: Product_d
        end function

        ! The product of all elements, in out.
        subroutine Productc_d(src, out, n) bind(c, name="Productc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(out) :: out
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = src(n + 1 - i).
        subroutine Reverse_d(src, dst, n) bind(c, name="Reverse_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! (re, im) to (im, re).
        subroutine Flip_d(src, dst, n) bind(c, name="Flip_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! (re, im) to (im, -re).
        subroutine FlipConj_d(src, dst, n) bind(c, name="FlipConj_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = i src(i): (re, im) to (-im, re).
        subroutine MulI_d(src, dst, n) bind(c, name="MulI_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst(i) = offset + (i - 1) step.
        subroutine Rampc_d(dst, n, offset, step) bind(c, name="Rampc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: offset, step
        end subroutine

        ! Appends src(i) to dst where mask(i) > 0; the result counts them.
        function PackByMask_d(n, src, dst, mask) bind(c, name="PackByMask_d")
            import :: c_double, c_int32_t
            integer(c_int32_t), value :: n
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), intent(in) :: mask(*)
            integer(c_int32_t) :: PackByMask_d
        end function

        ! Appends src(i) to dst where mask(i) > 0; the result counts them.
        function PackByMaskc_d(n, src, dst, mask) bind(c, name="PackByMaskc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), intent(in) :: mask(*)
            integer(c_int32_t) :: PackByMaskc_d
        end function

        ! dst(i) = a(i)**b(i) from the second element on.
        subroutine Powc_d(a, b, dst, n) bind(c, name="Powc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*), b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! The double at p, into out.
        subroutine GetValFromPtr_d(p, out) bind(c, name="GetValFromPtr_d")
            import :: c_double
            real(c_double), intent(in) :: p
            real(c_double), intent(out) :: out
        end subroutine

        ! The double at p.
        function GetValFromPtrf_d(p) bind(c, name="GetValFromPtrf_d")
            import :: c_double
            real(c_double), intent(in) :: p
            real(c_double) :: GetValFromPtrf_d
        end function

        ! The complex number at p, into out.
        subroutine GetValcFromPtr_d(p, out) bind(c, name="GetValcFromPtr_d")
            import :: c_double_complex
            complex(c_double_complex), intent(in) :: p
            complex(c_double_complex), intent(out) :: out
        end subroutine

        ! The integer at p, into out.
        subroutine GetValIFromPtr(p, out) bind(c, name="GetValIFromPtr")
            import :: c_int32_t
            integer(c_int32_t), intent(in) :: p
            integer(c_int32_t), intent(out) :: out
        end subroutine

        ! Stores a double at p.
        subroutine SetValToPtr_d(p, value) bind(c, name="SetValToPtr_d")
            import :: c_double
            real(c_double), intent(out) :: p
            real(c_double), value :: value
        end subroutine

        ! Stores a complex number at p.
        subroutine SetValcToPtr_d(p, value) bind(c, name="SetValcToPtr_d")
            import :: c_double_complex
            complex(c_double_complex), intent(out) :: p
            complex(c_double_complex), intent(in) :: value
        end subroutine

        ! Stores an integer at p.
        subroutine SetValIToPtr(p, value) bind(c, name="SetValIToPtr")
            import :: c_int32_t
            integer(c_int32_t), intent(out) :: p
            integer(c_int32_t), value :: value
        end subroutine

        ! ---- Matrix primitives: row-major blocks, arguments by value, rows and columns counted from 0 ----

        ! Copies a block from one corner to another.
        subroutine CopySubMatrix_d(src, dst, srcRow, srcCol, dstRow, dstCol, rows, cols, &
            srcStride, dstStride) bind(c, name="CopySubMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: srcRow, srcCol, dstRow, dstCol, rows, cols, srcStride, dstStride
        end subroutine

        ! Copies a block from one corner to another.
        subroutine CopySubMatrixc_d(src, dst, srcRow, srcCol, dstRow, dstCol, rows, cols, &
            srcStride, dstStride) bind(c, name="CopySubMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: srcRow, srcCol, dstRow, dstCol, rows, cols, srcStride, dstStride
        end subroutine

        ! Copies a block from one row stride to another.
        subroutine ResizeMatrix_d(src, dst, rows, cols, srcStride, &
            dstStride) bind(c, name="ResizeMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        ! Copies a block from one row stride to another.
        subroutine ResizeMatrixc_d(src, dst, rows, cols, srcStride, &
            dstStride) bind(c, name="ResizeMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        ! dst(c, r) = src(r, c).
        subroutine TransposeMatrix_d(src, dst, rows, cols, srcStride, &
            dstStride) bind(c, name="TransposeMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        ! dst(c, r) = src(r, c).
        subroutine TransposeMatrixc_d(src, dst, rows, cols, srcStride, &
            dstStride) bind(c, name="TransposeMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        ! dst(c, r) = conj(src(r, c)).
        subroutine AdjungateMatrixc_d(src, dst, rows, cols, srcStride, &
            dstStride) bind(c, name="AdjungateMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        ! Transposes in place.
        subroutine TransposeSquareMatrix_d(a, n, stride) bind(c, name="TransposeSquareMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: n, stride
        end subroutine

        ! Transposes in place.
        subroutine TransposeSquareMatrixc_d(a, n, stride) bind(c, name="TransposeSquareMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: n, stride
        end subroutine

        ! Transposes and conjugates in place.
        subroutine AdjungateSquareMatrixc_d(a, n, stride) bind(c, name="AdjungateSquareMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: n, stride
        end subroutine

        ! Copies the triangle below the diagonal, or with it.
        subroutine LowerTriangle_d(src, dst, rows, cols, srcStride, dstStride, &
            includeDiagonal) bind(c, name="LowerTriangle_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        ! Copies the triangle below the diagonal, or with it.
        subroutine LowerTrianglec_d(src, dst, rows, cols, srcStride, dstStride, &
            includeDiagonal) bind(c, name="LowerTrianglec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        ! Copies the triangle above the diagonal, or with it.
        subroutine UpperTriangle_d(src, dst, rows, cols, srcStride, dstStride, &
            includeDiagonal) bind(c, name="UpperTriangle_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        ! Copies the triangle above the diagonal, or with it.
        subroutine UpperTrianglec_d(src, dst, rows, cols, srcStride, dstStride, &
            includeDiagonal) bind(c, name="UpperTrianglec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        ! Zeroes the triangle below the diagonal, or with it.
        subroutine ZeroLowerTriangle_d(a, rows, cols, stride, &
            zeroDiagonal) bind(c, name="ZeroLowerTriangle_d")
            import :: c_double, c_int8_t, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        ! Zeroes the triangle below the diagonal, or with it.
        subroutine ZeroLowerTrianglec_d(a, rows, cols, stride, &
            zeroDiagonal) bind(c, name="ZeroLowerTrianglec_d")
            import :: c_double_complex, c_int8_t, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        ! Zeroes the triangle above the diagonal, or with it.
        subroutine ZeroUpperTriangle_d(a, rows, cols, stride, &
            zeroDiagonal) bind(c, name="ZeroUpperTriangle_d")
            import :: c_double, c_int8_t, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        ! Zeroes the triangle above the diagonal, or with it.
        subroutine ZeroUpperTrianglec_d(a, rows, cols, stride, &
            zeroDiagonal) bind(c, name="ZeroUpperTrianglec_d")
            import :: c_double_complex, c_int8_t, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        ! Rows row1 and row2 change places.
        subroutine RowExchange_d(a, row1, row2, cols, stride) bind(c, name="RowExchange_d")
            import :: c_double, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: row1, row2, cols, stride
        end subroutine

        ! ---- Pack and unpack: indices count from 0; real arrays by reference, complex ones with n by value ----

        ! y(i) = a(1 + (i - 1) incra).
        subroutine vdpacki(n, a, incra, y) bind(c, name="vdpacki")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, incra
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! y(i) = a(1 + ia(i)).
        subroutine vdpackv(n, a, ia, y) bind(c, name="vdpackv")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, ia(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! Appends a(i) to y where ma(i) > 0.
        subroutine vdpackm(n, a, ma, y) bind(c, name="vdpackm")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, ma(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! y(1 + (i - 1) incry) = a(i).
        subroutine vdunpacki(n, a, y, incry) bind(c, name="vdunpacki")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, incry
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! y(1 + iy(i)) = a(i).
        subroutine vdunpackv(n, a, y, iy) bind(c, name="vdunpackv")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, iy(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! The next element of a into y(i) where my(i) > 0.
        subroutine vdunpackm(n, a, y, my) bind(c, name="vdunpackm")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, my(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        ! y(i) = a(1 + (i - 1) incra).
        subroutine vdpackic_d(n, a, incra, y) bind(c, name="vdpackic_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n, incra
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! y(i) = a(1 + ia(i)).
        subroutine vdpackvc_d(n, a, ia, y) bind(c, name="vdpackvc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            integer(c_int32_t), intent(in) :: ia(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! Appends a(i) to y where ma(i) > 0.
        subroutine vdpackmc_d(n, a, ma, y) bind(c, name="vdpackmc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            integer(c_int32_t), intent(in) :: ma(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! y(1 + (i - 1) incry) = a(i).
        subroutine vdunpackic_d(n, a, y, incry) bind(c, name="vdunpackic_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n, incry
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! y(1 + iy(i)) = a(i).
        subroutine vdunpackvc_d(n, a, y, iy) bind(c, name="vdunpackvc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
            integer(c_int32_t), intent(in) :: iy(*)
        end subroutine

        ! The next element of a into y(i) where my(i) > 0.
        subroutine vdunpackmc_d(n, a, y, my) bind(c, name="vdunpackmc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
            integer(c_int32_t), intent(in) :: my(*)
        end subroutine
        ! Rows row1 and row2 change places.
        subroutine RowExchangec_d(a, row1, row2, cols, stride) bind(c, name="RowExchangec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: row1, row2, cols, stride
        end subroutine

        ! Columns col1 and col2 change places.
        subroutine ColExchange_d(a, col1, col2, rows, stride) bind(c, name="ColExchange_d")
            import :: c_double, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: col1, col2, rows, stride
        end subroutine

        ! Columns col1 and col2 change places.
        subroutine ColExchangec_d(a, col1, col2, rows, stride) bind(c, name="ColExchangec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: col1, col2, rows, stride
        end subroutine

        ! ---- Bessel and Airy functions: orders fnu, fnu + 1, ..., fnu + n - 1; kode 2 scaled ----

        ! Modified functions of the first kind I; kode 2: times exp(-|Re z|).
        subroutine CBESI(z, fnu, kode, n, cy, nz, ierr) bind(c, name="CBESI")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Functions of the first kind J; kode 2: times exp(-|Im z|).
        subroutine CBESJ(z, fnu, kode, n, cy, nz, ierr) bind(c, name="CBESJ")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Modified functions of the second kind K; kode 2: times exp(z).
        subroutine CBESK(z, fnu, kode, n, cy, nz, ierr) bind(c, name="CBESK")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Hankel functions of kind m; kode 2: times exp(-iz) for m = 1, exp(iz) for m = 2.
        subroutine CBESH(z, fnu, kode, m, n, cy, nz, ierr) bind(c, name="CBESH")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, m, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Functions of the second kind Y; kode 2: times exp(-|Im z|). cwrk(n) goes unused.
        subroutine CBESY(z, fnu, kode, n, cy, nz, cwrk, ierr) bind(c, name="CBESY")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*)
            complex(c_float_complex), intent(inout) :: cwrk(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Ai (id 0) or its derivative (id 1); kode 2: times exp(zeta), zeta = 2/3 z sqrt(z).
        subroutine CAIRY(z, id, kode, ai, nz, ierr) bind(c, name="CAIRY")
            import :: c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            integer(c_int), intent(in) :: id, kode
            complex(c_float_complex), intent(inout) :: ai
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Bi (id 0) or its derivative (id 1); kode 2: times exp(-|Re zeta|).
        subroutine CBIRY(z, id, kode, bi, ierr) bind(c, name="CBIRY")
            import :: c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            integer(c_int), intent(in) :: id, kode
            complex(c_float_complex), intent(inout) :: bi
            integer(c_int), intent(out) :: ierr
        end subroutine

        ! ---- Toeplitz systems and filter design ----

        ! T x = b: a1(m) the first row of T, a2(m-1) its first column from the second element on; work c1, c2(m-1).
        subroutine TSLD1(a1, a2, b, x, c1, c2, m) bind(c, name="TSLD1")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m
            real(c_double), intent(in) :: a1(*), a2(*), b(*)
            real(c_double), intent(inout) :: x(*), c1(*), c2(*)
        end subroutine

        ! The same for complex T; nothing is conjugated.
        subroutine TSLZ1(a1, a2, b, x, c1, c2, m) bind(c, name="TSLZ1")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m
            complex(c_double_complex), intent(in) :: a1(*), a2(*), b(*)
            complex(c_double_complex), intent(inout) :: x(*), c1(*), c2(*)
        end subroutine

        ! Best weighted approximation of des(ngr) by sums of alpha(k+1) cos(2 pi k f) on a grid; the others: nfc + 2.
        subroutine REMEZ(ngr, nfc, iext, ad, x, y, des, grid, wt, a, p, q, alpha) bind(c, name="REMEZ")
            import :: c_double, c_int
            integer(c_int), intent(in) :: ngr, nfc
            integer(c_int), intent(inout) :: iext(*)
            real(c_double), intent(in) :: des(*), grid(*), wt(*)
            real(c_double), intent(inout) :: ad(*), x(*), y(*), a(*), p(*), q(*), alpha(*)
        end subroutine

    end interface

end module nxl
