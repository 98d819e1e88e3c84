! nxl: explicit Fortran interfaces, the twin of nxl.h, which explains every routine. Made by tools/fortran_module.py.
! Compile this file with your program and say "use nxl". Names are bound as the library exports them; Fortran does not
! tell upper from lower case, so an upper-case alias has no interface of its own here where the lower-case name exists.
!
! Comments are the first sentences of those in nxl.h, where x(i) counts from 1 and x[i] from 0. Hidden lengths of
! characters are not looked at and left out.
module nxl
    use, intrinsic :: iso_c_binding, only: c_char, c_double, c_double_complex, c_float, &
        c_float_complex, c_funptr, c_int, c_int8_t, c_int32_t, c_ptr
    implicit none (type, external)
    public

    interface
        ! ---- Errors ----

        ! Where BLAS and LAPACK routines report a bad argument.
        subroutine XERBLA(srname, info, len) bind(c, name="XERBLA")
            import :: c_char, c_int
            character(kind=c_char), intent(in) :: srname(*)
            integer(c_int), intent(in) :: info
            integer(c_int), value :: len
        end subroutine

        ! ---- Threads ----

        ! Sets the count of domain 0.
        subroutine NXL_Set_Num_Threads(n) bind(c, name="NXL_Set_Num_Threads")
            import :: c_int
            integer(c_int), value :: n
        end subroutine

        ! The threads that a call may use, at least 1: the count of domain 0, else what omp_get_max_threads says, that
        ! of libgomp in a program that uses it.
        function NXL_Get_Max_Threads() bind(c, name="NXL_Get_Max_Threads")
            import :: c_int
            integer(c_int) :: NXL_Get_Max_Threads
        end function

        ! Sets the count of one domain.
        function NXL_Domain_Set_Num_Threads(n, domain) bind(c, name="NXL_Domain_Set_Num_Threads")
            import :: c_int
            integer(c_int), value :: n, domain
            integer(c_int) :: NXL_Domain_Set_Num_Threads
        end function

        ! As NXL_Get_Max_Threads, for routines of one domain: its own count first, then that of domain 0.
        function NXL_Domain_Get_Max_Threads(domain) bind(c, name="NXL_Domain_Get_Max_Threads")
            import :: c_int
            integer(c_int), value :: domain
            integer(c_int) :: NXL_Domain_Get_Max_Threads
        end function

        ! Turns dynamic adjustment off (flag 0) or on (any other).
        subroutine NXL_Set_Dynamic(flag) bind(c, name="NXL_Set_Dynamic")
            import :: c_int
            integer(c_int), value :: flag
        end subroutine

        ! 1 when dynamic adjustment is on, else 0.
        function NXL_Get_Dynamic() bind(c, name="NXL_Get_Dynamic")
            import :: c_int
            integer(c_int) :: NXL_Get_Dynamic
        end function

        ! How long OpenMP's threads stay awake after a parallel region, in milliseconds: kmp_set_blocktime of the
        ! runtime.
        subroutine okmp_set_blocktime(milliseconds) bind(c, name="okmp_set_blocktime")
            import :: c_int
            integer(c_int), value :: milliseconds
        end subroutine

        ! ---- Memory, progress, timers, machine constants ----

        ! Gives the scratch memory that the library keeps for reuse, on all threads, back to the system.
        subroutine NXL_FreeBuffers() bind(c, name="NXL_FreeBuffers")
        end subroutine

        ! Called by routines that report progress; returns 0.
        function NXL_PROGRESS(thread, step, stage, stage_length) bind(c, name="NXL_PROGRESS")
            import :: c_char, c_int
            integer(c_int), intent(in) :: thread, step
            character(kind=c_char), intent(in) :: stage(*)
            integer(c_int), value :: stage_length
            integer(c_int) :: NXL_PROGRESS
        end function

        ! Keeps a callback, in place of the one before; null takes it away. callback: c_funloc of a function like
        ! NXL_PROGRESS, or c_null_funptr.
        subroutine set_NXL_Progress_Callback(callback) bind(c, name="set_NXL_Progress_Callback")
            import :: c_funptr
            type(c_funptr), value :: callback
        end subroutine

        ! Calls the callback once for trial and returns its answer, or 0 when there is none.
        function test_NXL_Progress_Callback() bind(c, name="test_NXL_Progress_Callback")
            import :: c_int
            integer(c_int) :: test_NXL_Progress_Callback
        end function

        ! Elapsed seconds from the processor's time-stamp counter.
        function DSECND() bind(c, name="DSECND")
            import :: c_double
            real(c_double) :: DSECND
        end function

        ! Machine constants of double precision: i = 1 smallest positive number, 2 largest number, 3 smallest relative
        ! spacing, 4 largest relative spacing, 5 log10 of 2; 0 for any other i.
        function D1MACH(i) bind(c, name="D1MACH")
            import :: c_double, c_int
            integer(c_int), intent(in) :: i
            real(c_double) :: D1MACH
        end function

        ! Machine constants of single precision, by the same numbers as D1MACH.
        function R1MACH(i) bind(c, name="R1MACH")
            import :: c_float, c_int
            integer(c_int), intent(in) :: i
            real(c_float) :: R1MACH
        end function

        ! ---- Sparse linear systems, directly ----

        ! One step.
        subroutine PARDISO(pt, max_fac_store, matrix_number, matrix_type, ido, neqns, a, ia, ja, perm, nb, iparam, &
            msglvl, b, x, error) bind(c, name="PARDISO")
            import :: c_int
            type(*), intent(inout) :: pt(*), b(*), x(*)
            integer(c_int), intent(in) :: max_fac_store, matrix_number, matrix_type, ido, neqns, nb, msglvl
            type(*), intent(in) :: a(*)
            integer(c_int), intent(inout) :: ia(*), ja(*), perm(*), iparam(64)
            integer(c_int), intent(out) :: error
        end subroutine

        ! ---- Conjugate gradients, by reverse communication ----

        ! Sets ipar(1..11) and dpar(1..8) to their defaults, tmp(:,1..3) to 0 and RCI_request to 0.
        subroutine DCG_INIT(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCG_INIT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Examines the parameters after the caller's changes, warns and mends.
        subroutine DCG_CHECK(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCG_CHECK")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Conjugate gradients for one right-hand side.
        subroutine DCG(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCG")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(inout) :: x(*), dpar(*), tmp(*)
            real(c_double), intent(in) :: b(*)
            integer(c_int), intent(inout) :: RCI_request, ipar(*)
        end subroutine

        ! itercount := ipar(4), the iterations so far; at any time.
        subroutine DCG_GET(n, x, b, RCI_request, ipar, dpar, tmp, itercount) bind(c, name="DCG_GET")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, RCI_request, ipar(*)
            real(c_double), intent(in) :: x(*), b(*), dpar(*), tmp(*)
            integer(c_int), intent(out) :: itercount
        end subroutine

        ! As DCG_INIT, for nrhs systems; sets ipar(33) too, and all nrhs + 3 columns of tmp to 0.
        subroutine DCGMRHS_INIT(n, x, nrhs, b, method, RCI_request, ipar, dpar, tmp) bind(c, name="DCGMRHS_INIT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs, method
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! As DCG_CHECK, with the same texts; -1100 also when ipar(33) is below 1.
        subroutine DCGMRHS_CHECK(n, x, nrhs, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCGMRHS_CHECK")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Conjugate gradients for nrhs right-hand sides of one matrix.
        subroutine DCGMRHS(n, x, nrhs, b, RCI_request, ipar, dpar, tmp) bind(c, name="DCGMRHS")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs
            real(c_double), intent(inout) :: x(*), dpar(*), tmp(*)
            real(c_double), intent(in) :: b(*)
            integer(c_int), intent(inout) :: RCI_request, ipar(*)
        end subroutine

        ! itercount(nrhs): iterations spent on each system.
        subroutine DCGMRHS_GET(n, x, nrhs, b, RCI_request, ipar, dpar, tmp, itercount) bind(c, name="DCGMRHS_GET")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, nrhs, RCI_request, ipar(*)
            real(c_double), intent(in) :: x(*), b(*), dpar(*), tmp(*)
            integer(c_int), intent(inout) :: itercount(*)
        end subroutine

        ! ---- FGMRES, by reverse communication ----

        ! Sets ipar(1..15) and dpar(1..8) to their defaults, the first n elements of tmp to 0 and RCI_request to 0.
        subroutine DFGMRES_INIT(n, x, b, RCI_request, ipar, dpar, tmp) bind(c, name="DFGMRES_INIT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(in) :: x(*), b(*)
            integer(c_int), intent(out) :: RCI_request
            integer(c_int), intent(inout) :: ipar(*)
            real(c_double), intent(inout) :: dpar(*), tmp(*)
        end subroutine

        ! Examines the parameters after the caller's changes, warns and mends, and sets ipar(16..21).
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

        ! The solution as far as it has come, to x or b as ipar(13) says, and itercount := ipar(4); at any time.
        subroutine DFGMRES_GET(n, x, b, RCI_request, ipar, dpar, tmp, itercount) bind(c, name="DFGMRES_GET")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(inout) :: x(*), b(*), dpar(*), tmp(*)
            integer(c_int), intent(out) :: RCI_request, itercount
            integer(c_int), intent(inout) :: ipar(*)
        end subroutine

        ! ---- Incomplete LU preconditioners ----

        ! ILU(0): the factors keep the pattern of A.
        subroutine DCSRILU0(n, a, ia, ja, bilu0, ipar, dpar, ierr) bind(c, name="DCSRILU0")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, ia(*), ja(*), ipar(*)
            real(c_double), intent(in) :: a(*), dpar(*)
            real(c_double), intent(inout) :: bilu0(*)
            integer(c_int), intent(out) :: ierr
        end subroutine

        ! ILUT: fill is kept by size.
        subroutine DCSRILUT(n, a, ia, ja, bilut, ibilut, jbilut, tol, maxfil, ipar, dpar, ierr) bind(c, &
            name="DCSRILUT")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, ia(*), ja(*), maxfil, ipar(*)
            real(c_double), intent(in) :: a(*), tol, dpar(*)
            real(c_double), intent(inout) :: bilut(*)
            integer(c_int), intent(inout) :: ibilut(*), jbilut(*)
            integer(c_int), intent(out) :: ierr
        end subroutine

        ! ---- Numeric Jacobian ----

        ! Begins a Jacobian by reverse communication. The addresses of x and fjac are kept: give them the target
        ! attribute.
        function djacobi_init(handle, n, m, x, fjac, eps) bind(c, name="djacobi_init")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            integer(c_int), intent(in) :: n, m
            real(c_double), intent(inout), target :: x(*), fjac(*)
            real(c_double), intent(in) :: eps
            integer(c_int) :: djacobi_init
        end function

        ! One step.
        function djacobi_solve(handle, f1, f2, RCI_Request) bind(c, name="djacobi_solve")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            real(c_double), intent(inout) :: f1(*)
            real(c_double), intent(in) :: f2(*)
            integer(c_int), intent(inout) :: RCI_Request
            integer(c_int) :: djacobi_solve
        end function

        ! Frees the handle; the variable itself stays as it is.
        function djacobi_delete(handle) bind(c, name="djacobi_delete")
            import :: c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int) :: djacobi_delete
        end function

        ! The whole Jacobian at one call. fcn: c_funloc of a bind(c) subroutine fcn(m, n, x, f).
        function djacobi(fcn, n, m, fjac, x, eps) bind(c, name="djacobi")
            import :: c_double, c_funptr, c_int
            type(c_funptr), value :: fcn
            integer(c_int), intent(in) :: n, m
            real(c_double), intent(inout) :: fjac(*), x(*)
            real(c_double), intent(in) :: eps
            integer(c_int) :: djacobi
        end function

        ! ---- Nonlinear least squares ----

        ! x(n): the start; while the run lasts the point to evaluate at, in the end the solution. The addresses of x and
        ! eps are kept: give them the target attribute.
        function dtrnlsp_init(handle, n, m, x, eps, iter1, iter2, rs) bind(c, name="dtrnlsp_init")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            integer(c_int), intent(in) :: n, m, iter1, iter2
            real(c_double), intent(inout), target :: x(*)
            real(c_double), intent(in), target :: eps(6)
            real(c_double), intent(in) :: rs
            integer(c_int) :: dtrnlsp_init
        end function

        ! Goes on to the next request.
        function dtrnlsp_solve(handle, fvec, fjac, RCI_Request) bind(c, name="dtrnlsp_solve")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            real(c_double), intent(inout) :: fvec(*), fjac(*)
            integer(c_int), intent(inout) :: RCI_Request
            integer(c_int) :: dtrnlsp_solve
        end function

        ! Steps accepted, stop code, |F| at the start and at the end; r2 is set by stop codes above 0 alone.
        function dtrnlsp_get(handle, iter, st_cr, r1, r2) bind(c, name="dtrnlsp_get")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int), intent(inout) :: iter, st_cr
            real(c_double), intent(inout) :: r1, r2
            integer(c_int) :: dtrnlsp_get
        end function

        ! Frees the handle; the variable itself, x and eps stay as they are.
        function dtrnlsp_delete(handle) bind(c, name="dtrnlsp_delete")
            import :: c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int) :: dtrnlsp_delete
        end function

        ! ---- Nonlinear least squares with bounds ----

        ! Makes a handle. The addresses of x, lw, up and eps are kept: give them the target attribute.
        function dtrnlspbc_init(handle, n, m, x, lw, up, eps, iter1, iter2, rs) bind(c, name="dtrnlspbc_init")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(inout) :: handle
            integer(c_int), intent(in) :: n, m, iter1, iter2
            real(c_double), intent(inout), target :: x(*)
            real(c_double), intent(in), target :: lw(*), up(*), eps(6)
            real(c_double), intent(in) :: rs
            integer(c_int) :: dtrnlspbc_init
        end function

        ! Goes on from the caller's answer to the next request.
        function dtrnlspbc_solve(handle, fvec, fjac, RCI_Request) bind(c, name="dtrnlspbc_solve")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            real(c_double), intent(inout) :: fvec(*), fjac(*)
            integer(c_int), intent(inout) :: RCI_Request
            integer(c_int) :: dtrnlspbc_solve
        end function

        ! iter: iterations, 0 after stop code -4; st_cr: stop code; r1: |F| at the start; r2: |F| at x once the run has
        ! ended, until then 0.
        function dtrnlspbc_get(handle, iter, st_cr, r1, r2) bind(c, name="dtrnlspbc_get")
            import :: c_double, c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int), intent(inout) :: iter, st_cr
            real(c_double), intent(inout) :: r1, r2
            integer(c_int) :: dtrnlspbc_get
        end function

        ! Frees the handle; the variable itself, x, the bounds and eps stay as they are.
        function dtrnlspbc_delete(handle) bind(c, name="dtrnlspbc_delete")
            import :: c_int, c_ptr
            type(c_ptr), intent(in) :: handle
            integer(c_int) :: dtrnlspbc_delete
        end function

        ! ---- BLAS level 1 ----

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

        ! Euclidean norm of x, without overflow or underflow on the way.
        function dnrm2(n, x, incx) bind(c, name="dnrm2")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: x(*)
            real(c_double) :: dnrm2
        end function

        ! Plane rotation: (x(i), y(i)) := (c x(i) + s y(i), c y(i) - s x(i)).
        subroutine drot(n, x, incx, y, incy, c, s) bind(c, name="drot")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: c, s
        end subroutine

        ! Constructs the rotation with c a + s b = r and c b - s a = 0.
        subroutine drotg(a, b, c, s) bind(c, name="drotg")
            import :: c_double
            real(c_double), intent(inout) :: a, b
            real(c_double), intent(out) :: c, s
        end subroutine

        ! Modified rotation: (x(i), y(i)) := H (x(i), y(i)).
        subroutine drotm(n, x, incx, y, incy, param) bind(c, name="drotm")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx, incy
            real(c_double), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: param(5)
        end subroutine

        ! Constructs the modified rotation that zeroes the second component of (sqrt(d1) x1, sqrt(d2) y1); d1, d2, x1
        ! are updated, param (5 elements) is written as drotm reads it; entries that the flag implies are left alone.
        subroutine drotmg(d1, d2, x1, y1, param) bind(c, name="drotmg")
            import :: c_double
            real(c_double), intent(inout) :: d1, d2, x1, param(5)
            real(c_double), intent(in) :: y1
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

        ! Position, from 1, of the first element of largest |x(i)|; 0 when n or incx is below 1.
        function idamax(n, x, incx) bind(c, name="idamax")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: x(*)
            integer(c_int) :: idamax
        end function

        ! Position, from 1, of the first element of smallest |x(i)|; otherwise as idamax.
        function idamin(n, x, incx) bind(c, name="idamin")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: x(*)
            integer(c_int) :: idamin
        end function

        ! Sum of |Re x(i)| + |Im x(i)|; increments as in dasum.
        function dzasum(n, x, incx) bind(c, name="dzasum")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(in) :: x(*)
            real(c_double) :: dzasum
        end function

        ! Euclidean norm of x; increments as in dnrm2.
        function dznrm2(n, x, incx) bind(c, name="dznrm2")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(in) :: x(*)
            real(c_double) :: dznrm2
        end function

        ! Positions of the largest and of the smallest |Re x(i)| + |Im x(i)|, as idamax and idamin.
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

        ! res := sum of conj(x(i)) y(i); the result is the first argument, not a return value.
        subroutine zdotc(res, n, x, incx, y, incy) bind(c, name="zdotc")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        ! res := sum of x(i) y(i); the result is the first argument, not a return value.
        subroutine zdotu(res, n, x, incx, y, incy) bind(c, name="zdotu")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        ! Plane rotation with real c and s: (x(i), y(i)) := (c x(i) + s y(i), c y(i) - s x(i)).
        subroutine zdrot(n, x, incx, y, incy, c, s) bind(c, name="zdrot")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: c, s
        end subroutine

        ! x := alpha x with a real alpha; increments as in dscal.
        subroutine zdscal(n, alpha, x, incx) bind(c, name="zdscal")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            real(c_double), intent(in) :: alpha
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! Plane rotation with real c and complex s: (x(i), y(i)) := (c x(i) + s y(i), c y(i) - conj(s) x(i)).
        subroutine ZROT(n, x, incx, y, incy, c, s) bind(c, name="ZROT")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx, incy
            complex(c_double_complex), intent(inout) :: x(*), y(*)
            real(c_double), intent(in) :: c
            complex(c_double_complex), intent(in) :: s
        end subroutine

        ! Constructs the rotation with c a + s b = r and c b - conj(s) a = 0.
        subroutine zrotg(a, b, c, s) bind(c, name="zrotg")
            import :: c_double, c_double_complex
            complex(c_double_complex), intent(inout) :: a
            complex(c_double_complex), intent(in) :: b
            real(c_double), intent(out) :: c
            complex(c_double_complex), intent(out) :: s
        end subroutine

        ! x := alpha x; increments as in dscal.
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

        ! ---- BLAS level 2 ----

        ! y := alpha op(A) x + beta y, with a(m,n).
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

        ! A := A + alpha x y^T; zgerc: A := A + alpha x y^H.
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

        ! y := alpha A x + beta y, A symmetric (dsymv) or Hermitian (zhemv), a(n,n), by its triangle uplo.
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

        ! A := A + alpha x x^T, A symmetric; zher: A := A + alpha x x^H, A Hermitian, alpha real.
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

        ! A := A + alpha x x^T, A complex symmetric, a(n,n), triangle uplo.
        subroutine ZSYR(uplo, n, alpha, x, incx, a, lda) bind(c, name="ZSYR")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, incx, lda
            complex(c_double_complex), intent(in) :: alpha, x(*)
            complex(c_double_complex), intent(inout) :: a(lda, *)
        end subroutine

        ! A := A + alpha x y^T + alpha y x^T, A symmetric; zher2: A := A + alpha x y^H + conj(alpha) y x^H, A Hermitian.
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

        ! x := op(A) x, A triangular, a(n,n).
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

        ! x := op(A)^-1 x, the solution of op(A) z = x, A triangular, a(n,n).
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

        ! ---- BLAS level 3 ----

        ! C := alpha op(A) op(B) + beta C, c(m,n).
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

        ! C := alpha A B + beta C (side L, a(m,m)) or C := alpha B A + beta C (side R, a(n,n)), b(m,n), c(m,n).
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

        ! C := alpha A A^T + beta C for trans N, a(n,k); C := alpha A^T A + beta C else, a(k,n).
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

        ! C := alpha A A^H + beta C for trans N, a(n,k); C := alpha A^H A + beta C for trans C, a(k,n).
        subroutine zherk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc) bind(c, name="zherk")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldc
            real(c_double), intent(in) :: alpha, beta
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha A B^T + alpha B A^T + beta C for trans N, a(n,k) and b(n,k); C := alpha A^T B + alpha B^T A + beta
        ! C else, a(k,n) and b(k,n).
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

        ! C := alpha A B^H + conj(alpha) B A^H + beta C for trans N, a(n,k) and b(n,k); C := alpha A^H B + conj(alpha)
        ! B^H A + beta C for trans C, a(k,n) and b(k,n).
        subroutine zher2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc) bind(c, name="zher2k")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans
            integer(c_int), intent(in) :: n, k, lda, ldb, ldc
            complex(c_double_complex), intent(in) :: alpha, a(lda, *), b(ldb, *)
            real(c_double), intent(in) :: beta
            complex(c_double_complex), intent(inout) :: c(ldc, *)
        end subroutine

        ! B := alpha op(A) B (side L, a(m,m)) or B := alpha B op(A) (side R, a(n,n)), b(m,n), A triangular.
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

        ! B := alpha op(A)^-1 B (side L, a(m,m)) or B := alpha B op(A)^-1 (side R, a(n,n)), b(m,n), A triangular: the
        ! solution X of op(A) X = alpha B or X op(A) = alpha B takes the place of B.
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

        ! ---- LAPACK, LU factorisation ----

        ! P A = L U with partial pivoting: a(m,n) is overwritten with L, whose ones on the diagonal are not stored, and
        ! U.
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

        ! Solves A X = B (trans N), A^T X = B (T) or A^H X = B (C), b(n,nrhs), with the factors and pivots that dgetrf
        ! or zgetrf has left in a(n,n) and ipiv(n).
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

        ! The inverse of A in the place of its factors a(n,n), from dgetrf or zgetrf with pivots ipiv(n): the inverse of
        ! U, then X L = U^-1 by blocks of columns.
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

        ! Interchanges rows i and ipiv of the n columns of a, for i from k1 to k2; the pivot of row i is ipiv(k1 + (i -
        ! k1) |incx|).
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

        ! x := conj(x), n elements incx apart, from the far end for a negative incx; nothing is done with n below 1.
        subroutine ZLACGV(n, x, incx) bind(c, name="ZLACGV")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, incx
            complex(c_double_complex), intent(inout) :: x(*)
        end subroutine

        ! ---- LAPACK, Cholesky factorisation ----

        ! A = U^H U (uplo U) or L L^H (uplo L); the factor takes the place of the triangle.
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

        ! As zpotrf, for small matrices: without blocks, on the caller's thread, without progress.
        subroutine ZPOTF2(uplo, n, a, lda, info) bind(c, name="ZPOTF2")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(inout) :: a(lda, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Solves A X = B from the factor that dpotrf has left in triangle uplo of a: X takes the place of b(n,nrhs).
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

        ! The inverse of a symmetric or Hermitian positive definite A, triangle uplo, in the place of its factor a(n,n)
        ! from dpotrf or zpotrf; the other triangle is not touched.
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

        ! The inverse of a triangular matrix in its place, a(n,n); the other triangle, and the diagonal with diag U,
        ! which then counts as ones, are not touched.
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

        ! Solves op(A) X = B, a(n,n) triangular, b(n,nrhs); X takes the place of B.
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

        ! The reciprocal condition number of a triangular matrix a(n,n), 1 / (|A| |A^-1|), in the norm 1 (or O), largest
        ! column sum, or I, largest row sum.
        subroutine dtrcon(norm, uplo, diag, n, a, lda, rcond, work, iwork, info) bind(c, name="dtrcon")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: norm, uplo, diag
            integer(c_int), intent(in) :: n, lda
            real(c_double), intent(in) :: a(lda, *)
            real(c_double), intent(out) :: rcond
            real(c_double), intent(inout) :: work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine ztrcon(norm, uplo, diag, n, a, lda, rcond, work, rwork, info) bind(c, name="ztrcon")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: norm, uplo, diag
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(in) :: a(lda, *)
            real(c_double), intent(out) :: rcond
            complex(c_double_complex), intent(inout) :: work(*)
            real(c_double), intent(inout) :: rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! How good solutions x(n,nrhs) of op(A) X = B are, a(n,n) triangular, b(n,nrhs); none of them is changed.
        subroutine dtrrfs(uplo, trans, diag, n, nrhs, a, lda, b, ldb, x, ldx, ferr, berr, work, iwork, info) bind(c, &
            name="dtrrfs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, nrhs, lda, ldb, ldx
            real(c_double), intent(in) :: a(lda, *), b(ldb, *), x(ldx, *)
            real(c_double), intent(inout) :: ferr(*), berr(*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine ztrrfs(uplo, trans, diag, n, nrhs, a, lda, b, ldb, x, ldx, ferr, berr, work, rwork, info) bind(c, &
            name="ztrrfs")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo, trans, diag
            integer(c_int), intent(in) :: n, nrhs, lda, ldb, ldx
            complex(c_double_complex), intent(in) :: a(lda, *), b(ldb, *), x(ldx, *)
            real(c_double), intent(inout) :: ferr(*), berr(*), rwork(*)
            complex(c_double_complex), intent(inout) :: work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The reciprocal condition number of a(n,n) from its factors of dgetrf, 1 / (anorm |A^-1|), anorm being the norm
        ! of A: 1 (or O), largest column sum, or I, largest row sum.
        subroutine dgecon(norm, n, a, lda, anorm, rcond, work, iwork, info) bind(c, name="dgecon")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: norm
            integer(c_int), intent(in) :: n, lda
            real(c_double), intent(in) :: a(lda, *), anorm
            real(c_double), intent(out) :: rcond
            real(c_double), intent(inout) :: work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgecon(norm, n, a, lda, anorm, rcond, work, rwork, info) bind(c, name="zgecon")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: norm
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(in) :: a(lda, *)
            real(c_double), intent(in) :: anorm
            real(c_double), intent(out) :: rcond
            complex(c_double_complex), intent(inout) :: work(*)
            real(c_double), intent(inout) :: rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The reciprocal condition number, in the norm 1, of a symmetric or Hermitian positive definite matrix from its
        ! factor of dpotrf, as dgecon; anorm is the norm of A.
        subroutine dpocon(uplo, n, a, lda, anorm, rcond, work, iwork, info) bind(c, name="dpocon")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            real(c_double), intent(in) :: a(lda, *), anorm
            real(c_double), intent(out) :: rcond
            real(c_double), intent(inout) :: work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpocon(uplo, n, a, lda, anorm, rcond, work, rwork, info) bind(c, name="zpocon")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(in) :: a(lda, *)
            real(c_double), intent(in) :: anorm
            real(c_double), intent(out) :: rcond
            complex(c_double_complex), intent(inout) :: work(*)
            real(c_double), intent(inout) :: rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Refines the solutions x(n,nrhs) of op(A) X = B and tells how good they are; af and ipiv are the factors of
        ! a(n,n) that dgetrf has left.
        subroutine dgerfs(trans, n, nrhs, a, lda, af, ldaf, ipiv, b, ldb, x, ldx, ferr, berr, work, iwork, info) &
            bind(c, name="dgerfs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, nrhs, lda, ldaf, ipiv(*), ldb, ldx
            real(c_double), intent(in) :: a(lda, *), af(ldaf, *), b(ldb, *)
            real(c_double), intent(inout) :: x(ldx, *), ferr(*), berr(*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgerfs(trans, n, nrhs, a, lda, af, ldaf, ipiv, b, ldb, x, ldx, ferr, berr, work, rwork, info) &
            bind(c, name="zgerfs")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, nrhs, lda, ldaf, ipiv(*), ldb, ldx
            complex(c_double_complex), intent(in) :: a(lda, *), af(ldaf, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: x(ldx, *), work(*)
            real(c_double), intent(inout) :: ferr(*), berr(*), rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Refines the solutions x(n,nrhs) of A X = B and bounds their errors, as dgerfs, triangle uplo of the symmetric
        ! or Hermitian positive definite A being in a(n,n) and its factor of dpotrf in af.
        subroutine dporfs(uplo, n, nrhs, a, lda, af, ldaf, b, ldb, x, ldx, ferr, berr, work, iwork, info) bind(c, &
            name="dporfs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ldaf, ldb, ldx
            real(c_double), intent(in) :: a(lda, *), af(ldaf, *), b(ldb, *)
            real(c_double), intent(inout) :: x(ldx, *), ferr(*), berr(*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zporfs(uplo, n, nrhs, a, lda, af, ldaf, b, ldb, x, ldx, ferr, berr, work, rwork, info) bind(c, &
            name="zporfs")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ldaf, ldb, ldx
            complex(c_double_complex), intent(in) :: a(lda, *), af(ldaf, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: x(ldx, *), work(*)
            real(c_double), intent(inout) :: ferr(*), berr(*), rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The LU factorisation P A = L U of a band matrix of m by n with kl and ku diagonals below and above the main
        ! one, by rows interchanged as dgetrf does.
        subroutine dgbtrf(m, n, kl, ku, ab, ldab, ipiv, info) bind(c, name="dgbtrf")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, kl, ku, ldab
            real(c_double), intent(inout) :: ab(ldab, *)
            integer(c_int), intent(inout) :: ipiv(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgbtrf(m, n, kl, ku, ab, ldab, ipiv, info) bind(c, name="zgbtrf")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, kl, ku, ldab
            complex(c_double_complex), intent(inout) :: ab(ldab, *)
            integer(c_int), intent(inout) :: ipiv(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Solves op(A) X = B with the factors that dgbtrf has left in ab and ipiv, A being n by n: X takes the place of
        ! b(n,nrhs).
        subroutine dgbtrs(trans, n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info) bind(c, name="dgbtrs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, kl, ku, nrhs, ldab, ipiv(*), ldb
            real(c_double), intent(in) :: ab(ldab, *)
            real(c_double), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgbtrs(trans, n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info) bind(c, name="zgbtrs")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, kl, ku, nrhs, ldab, ipiv(*), ldb
            complex(c_double_complex), intent(in) :: ab(ldab, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The reciprocal condition number of a band matrix from its factors of dgbtrf, as dgecon; anorm is the norm of
        ! A.
        subroutine dgbcon(norm, n, kl, ku, ab, ldab, ipiv, anorm, rcond, work, iwork, info) bind(c, name="dgbcon")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: norm
            integer(c_int), intent(in) :: n, kl, ku, ldab, ipiv(*)
            real(c_double), intent(in) :: ab(ldab, *), anorm
            real(c_double), intent(out) :: rcond
            real(c_double), intent(inout) :: work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgbcon(norm, n, kl, ku, ab, ldab, ipiv, anorm, rcond, work, rwork, info) bind(c, name="zgbcon")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: norm
            integer(c_int), intent(in) :: n, kl, ku, ldab, ipiv(*)
            complex(c_double_complex), intent(in) :: ab(ldab, *)
            real(c_double), intent(in) :: anorm
            real(c_double), intent(out) :: rcond
            complex(c_double_complex), intent(inout) :: work(*)
            real(c_double), intent(inout) :: rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Refines the solutions x(n,nrhs) of op(A) X = B and bounds their errors, as dgerfs, A being the band
        ! ab(kl+ku+1,n) with element (i, j) at ab(ku+1+i-j,j), and afb and ipiv its factors of dgbtrf.
        subroutine dgbrfs(trans, n, kl, ku, nrhs, ab, ldab, afb, ldafb, ipiv, b, ldb, x, ldx, ferr, berr, work, iwork, &
            info) bind(c, name="dgbrfs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, kl, ku, nrhs, ldab, ldafb, ipiv(*), ldb, ldx
            real(c_double), intent(in) :: ab(ldab, *), afb(ldafb, *), b(ldb, *)
            real(c_double), intent(inout) :: x(ldx, *), ferr(*), berr(*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgbrfs(trans, n, kl, ku, nrhs, ab, ldab, afb, ldafb, ipiv, b, ldb, x, ldx, ferr, berr, work, rwork, &
            info) bind(c, name="zgbrfs")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: n, kl, ku, nrhs, ldab, ldafb, ipiv(*), ldb, ldx
            complex(c_double_complex), intent(in) :: ab(ldab, *), afb(ldafb, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: x(ldx, *), work(*)
            real(c_double), intent(inout) :: ferr(*), berr(*), rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The Cholesky factorisation A = U^H U or L L^H of a symmetric or Hermitian positive definite band matrix of
        ! order n with kd diagonals beside the main one.
        subroutine dpbtrf(uplo, n, kd, ab, ldab, info) bind(c, name="dpbtrf")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, ldab
            real(c_double), intent(inout) :: ab(ldab, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpbtrf(uplo, n, kd, ab, ldab, info) bind(c, name="zpbtrf")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, ldab
            complex(c_double_complex), intent(inout) :: ab(ldab, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Solves A X = B with the factor that dpbtrf has left in ab: X takes the place of b(n,nrhs).
        subroutine dpbtrs(uplo, n, kd, nrhs, ab, ldab, b, ldb, info) bind(c, name="dpbtrs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, nrhs, ldab, ldb
            real(c_double), intent(in) :: ab(ldab, *)
            real(c_double), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpbtrs(uplo, n, kd, nrhs, ab, ldab, b, ldb, info) bind(c, name="zpbtrs")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, nrhs, ldab, ldb
            complex(c_double_complex), intent(in) :: ab(ldab, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The reciprocal condition number, in the norm 1, of a positive definite band matrix from its factor of dpbtrf,
        ! as dgecon; anorm is the norm of A.
        subroutine dpbcon(uplo, n, kd, ab, ldab, anorm, rcond, work, iwork, info) bind(c, name="dpbcon")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, ldab
            real(c_double), intent(in) :: ab(ldab, *), anorm
            real(c_double), intent(out) :: rcond
            real(c_double), intent(inout) :: work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpbcon(uplo, n, kd, ab, ldab, anorm, rcond, work, rwork, info) bind(c, name="zpbcon")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, ldab
            complex(c_double_complex), intent(in) :: ab(ldab, *)
            real(c_double), intent(in) :: anorm
            real(c_double), intent(out) :: rcond
            complex(c_double_complex), intent(inout) :: work(*)
            real(c_double), intent(inout) :: rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Refines the solutions x(n,nrhs) of A X = B and bounds their errors, as dgerfs, triangle uplo of the positive
        ! definite band matrix A being in ab(kd+1,n) and its factor of dpbtrf in afb.
        subroutine dpbrfs(uplo, n, kd, nrhs, ab, ldab, afb, ldafb, b, ldb, x, ldx, ferr, berr, work, iwork, info) &
            bind(c, name="dpbrfs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, nrhs, ldab, ldafb, ldb, ldx
            real(c_double), intent(in) :: ab(ldab, *), afb(ldafb, *), b(ldb, *)
            real(c_double), intent(inout) :: x(ldx, *), ferr(*), berr(*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpbrfs(uplo, n, kd, nrhs, ab, ldab, afb, ldafb, b, ldb, x, ldx, ferr, berr, work, rwork, info) &
            bind(c, name="zpbrfs")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, kd, nrhs, ldab, ldafb, ldb, ldx
            complex(c_double_complex), intent(in) :: ab(ldab, *), afb(ldafb, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: x(ldx, *), work(*)
            real(c_double), intent(inout) :: ferr(*), berr(*), rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- LAPACK, symmetric indefinite systems ----

        ! The factorisation: triangle uplo of a is overwritten with L or U, whose ones are not stored, and D.
        subroutine dsytrf(uplo, n, a, lda, ipiv, work, lwork, info) bind(c, name="dsytrf")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(inout) :: ipiv(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zsytrf(uplo, n, a, lda, ipiv, work, lwork, info) bind(c, name="zsytrf")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(inout) :: ipiv(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhetrf(uplo, n, a, lda, ipiv, work, lwork, info) bind(c, name="zhetrf")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(inout) :: ipiv(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Solves A X = B with the factors and pivots that trf has left: X takes the place of b(n,nrhs).
        subroutine dsytrs(uplo, n, nrhs, a, lda, ipiv, b, ldb, info) bind(c, name="dsytrs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            real(c_double), intent(in) :: a(lda, *)
            real(c_double), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zsytrs(uplo, n, nrhs, a, lda, ipiv, b, ldb, info) bind(c, name="zsytrs")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhetrs(uplo, n, nrhs, a, lda, ipiv, b, ldb, info) bind(c, name="zhetrs")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            complex(c_double_complex), intent(in) :: a(lda, *)
            complex(c_double_complex), intent(inout) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The inverse of A in the place of its factors, one triangle.
        subroutine dsytri(uplo, n, a, lda, ipiv, work, info) bind(c, name="dsytri")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, ipiv(*)
            real(c_double), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zsytri(uplo, n, a, lda, ipiv, work, info) bind(c, name="zsytri")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, ipiv(*)
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhetri(uplo, n, a, lda, ipiv, work, info) bind(c, name="zhetri")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, ipiv(*)
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The reciprocal condition number 1 / (|A| |A^-1|) in the norm of largest column sums, from the factors and
        ! anorm = |A|.
        subroutine dsycon(uplo, n, a, lda, ipiv, anorm, rcond, work, iwork, info) bind(c, name="dsycon")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, ipiv(*)
            real(c_double), intent(in) :: a(lda, *), anorm
            real(c_double), intent(out) :: rcond
            real(c_double), intent(inout) :: work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zsycon(uplo, n, a, lda, ipiv, anorm, rcond, work, info) bind(c, name="zsycon")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, ipiv(*)
            complex(c_double_complex), intent(in) :: a(lda, *)
            real(c_double), intent(in) :: anorm
            real(c_double), intent(out) :: rcond
            complex(c_double_complex), intent(inout) :: work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhecon(uplo, n, a, lda, ipiv, anorm, rcond, work, info) bind(c, name="zhecon")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, ipiv(*)
            complex(c_double_complex), intent(in) :: a(lda, *)
            real(c_double), intent(in) :: anorm
            real(c_double), intent(out) :: rcond
            complex(c_double_complex), intent(inout) :: work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Improves solutions x(n,nrhs) of A X = B, given a(n,n), its factors af(n,n) and b(n,nrhs), and tells how good
        ! they are: berr(nrhs), the smallest relative change of elements of A and b for which x is exact, and
        ! ferr(nrhs), a bound, not quite certain, on the largest error of an element relative to the largest element of
        ! x.
        subroutine dsyrfs(uplo, n, nrhs, a, lda, af, ldaf, ipiv, b, ldb, x, ldx, ferr, berr, work, iwork, info) &
            bind(c, name="dsyrfs")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ldaf, ipiv(*), ldb, ldx
            real(c_double), intent(in) :: a(lda, *), af(ldaf, *), b(ldb, *)
            real(c_double), intent(inout) :: x(ldx, *), ferr(*), berr(*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zsyrfs(uplo, n, nrhs, a, lda, af, ldaf, ipiv, b, ldb, x, ldx, ferr, berr, work, rwork, info) &
            bind(c, name="zsyrfs")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ldaf, ipiv(*), ldb, ldx
            complex(c_double_complex), intent(in) :: a(lda, *), af(ldaf, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: x(ldx, *), work(*)
            real(c_double), intent(inout) :: ferr(*), berr(*), rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zherfs(uplo, n, nrhs, a, lda, af, ldaf, ipiv, b, ldb, x, ldx, ferr, berr, work, rwork, info) &
            bind(c, name="zherfs")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, nrhs, lda, ldaf, ipiv(*), ldb, ldx
            complex(c_double_complex), intent(in) :: a(lda, *), af(ldaf, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: x(ldx, *), work(*)
            real(c_double), intent(inout) :: ferr(*), berr(*), rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- LAPACK, orthogonal factorisations ----

        ! A = Q R of a(m,n): R in the upper triangle, min(m, n) by n, its diagonal real; below it the vectors of Q = H1
        ! H2 ..., with tau(min(m, n)).
        subroutine dgeqrf(m, n, a, lda, tau, work, lwork, info) bind(c, name="dgeqrf")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgeqrf(m, n, a, lda, tau, work, lwork, info) bind(c, name="zgeqrf")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! A = L Q of a(m,n): L in the lower triangle, m by min(m, n), its diagonal real; right of it the vectors of Q =
        ! ...
        subroutine dgelqf(m, n, a, lda, tau, work, lwork, info) bind(c, name="dgelqf")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgelqf(m, n, a, lda, tau, work, lwork, info) bind(c, name="zgelqf")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! A P = Q R of a(m,n) with pivots, stored as by dgeqrf: of the columns left, each step takes the one of the
        ! largest norm, so that |R(i,i)| does not grow.
        subroutine dgeqp3(m, n, a, lda, jpvt, tau, work, lwork, info) bind(c, name="dgeqp3")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(c_int), intent(inout) :: jpvt(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The first n columns of Q = H1 ...
        subroutine dorgqr(m, n, k, a, lda, tau, work, lwork, info) bind(c, name="dorgqr")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, k, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), work(*)
            real(c_double), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zungqr(m, n, k, a, lda, tau, work, lwork, info) bind(c, name="zungqr")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, k, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            complex(c_double_complex), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The first m rows of Q = Hk^H ...
        subroutine dorglq(m, n, k, a, lda, tau, work, lwork, info) bind(c, name="dorglq")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, k, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), work(*)
            real(c_double), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zunglq(m, n, k, a, lda, tau, work, lwork, info) bind(c, name="zunglq")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, k, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            complex(c_double_complex), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! C := op(Q) C (side L) or C op(Q) (R), c(m,n), Q = H1 ...
        subroutine dormqr(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info) bind(c, name="dormqr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: side, trans
            integer(c_int), intent(in) :: m, n, k, lda, ldc, lwork
            real(c_double), intent(in) :: a(lda, *), tau(*)
            real(c_double), intent(inout) :: c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zunmqr(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info) bind(c, name="zunmqr")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, trans
            integer(c_int), intent(in) :: m, n, k, lda, ldc, lwork
            complex(c_double_complex), intent(in) :: a(lda, *), tau(*)
            complex(c_double_complex), intent(inout) :: c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The same with Q = Hk^H ...
        subroutine dormlq(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info) bind(c, name="dormlq")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: side, trans
            integer(c_int), intent(in) :: m, n, k, lda, ldc, lwork
            real(c_double), intent(in) :: a(lda, *), tau(*)
            real(c_double), intent(inout) :: c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zunmlq(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info) bind(c, name="zunmlq")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, trans
            integer(c_int), intent(in) :: m, n, k, lda, ldc, lwork
            complex(c_double_complex), intent(in) :: a(lda, *), tau(*)
            complex(c_double_complex), intent(inout) :: c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Q of the reduction to tridiagonal form by dsytrd or zhetrd with the same uplo, in the place of its vectors in
        ! a(n,n); tau(n - 1).
        subroutine dorgtr(uplo, n, a, lda, tau, work, lwork, info) bind(c, name="dorgtr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), work(*)
            real(c_double), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zungtr(uplo, n, a, lda, tau, work, lwork, info) bind(c, name="zungtr")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            complex(c_double_complex), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Q of the reduction of rows and columns ilo to ihi, from 1, to Hessenberg form by dgehrd or zgehrd, in the
        ! place of its vectors in a(n,n); tau(n - 1).
        subroutine dorghr(n, ilo, ihi, a, lda, tau, work, lwork, info) bind(c, name="dorghr")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, ilo, ihi, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), work(*)
            real(c_double), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zunghr(n, ilo, ihi, a, lda, tau, work, lwork, info) bind(c, name="zunghr")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, ilo, ihi, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            complex(c_double_complex), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! One factor of the reduction to bidiagonal form by dgebrd or zgebrd in the place of its vectors in a(m,n), with
        ! tau: vect Q, the first n columns of Q of a matrix that had k columns, m >= n >= min(m, k); vect P, the first m
        ! rows of P^H of one that had k rows, n >= m >= min(n, k).
        subroutine dorgbr(vect, m, n, k, a, lda, tau, work, lwork, info) bind(c, name="dorgbr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: vect
            integer(c_int), intent(in) :: m, n, k, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), work(*)
            real(c_double), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zungbr(vect, m, n, k, a, lda, tau, work, lwork, info) bind(c, name="zungbr")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: vect
            integer(c_int), intent(in) :: m, n, k, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), work(*)
            complex(c_double_complex), intent(in) :: tau(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! C := op(Q) C (side L) or C op(Q) (R), c(m,n), Q of order m (L) or n (R) from the reduction to tridiagonal form
        ! with the same uplo, its vectors in a.
        subroutine dormtr(side, uplo, trans, m, n, a, lda, tau, c, ldc, work, lwork, info) bind(c, name="dormtr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: side, uplo, trans
            integer(c_int), intent(in) :: m, n, lda, ldc, lwork
            real(c_double), intent(in) :: a(lda, *), tau(*)
            real(c_double), intent(inout) :: c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zunmtr(side, uplo, trans, m, n, a, lda, tau, c, ldc, work, lwork, info) bind(c, name="zunmtr")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, uplo, trans
            integer(c_int), intent(in) :: m, n, lda, ldc, lwork
            complex(c_double_complex), intent(in) :: a(lda, *), tau(*)
            complex(c_double_complex), intent(inout) :: c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The same with Q (vect Q) or P (P) from the reduction to bidiagonal form by dgebrd of a matrix that had k
        ! columns (Q) or k rows (P).
        subroutine dormbr(vect, side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info) bind(c, name="dormbr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: vect, side, trans
            integer(c_int), intent(in) :: m, n, k, lda, ldc, lwork
            real(c_double), intent(in) :: a(lda, *), tau(*)
            real(c_double), intent(inout) :: c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- LAPACK, least squares ----

        ! Solves with op(A) = A (trans N), A^T (T, real) or A^H (C, complex), a(m,n) of full rank, for each of nrhs
        ! columns of b: min |b - op(A) x| where op(A) has at least as many rows as columns, else the shortest x with
        ! op(A) x = b.
        subroutine dgels(trans, m, n, nrhs, a, lda, b, ldb, work, lwork, info) bind(c, name="dgels")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: m, n, nrhs, lda, ldb, lwork
            real(c_double), intent(inout) :: a(lda, *), b(ldb, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgels(trans, m, n, nrhs, a, lda, b, ldb, work, lwork, info) bind(c, name="zgels")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: trans
            integer(c_int), intent(in) :: m, n, nrhs, lda, ldb, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), b(ldb, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The shortest x among those with the least |b - A x|, for each of nrhs columns of b, whatever the rank of
        ! a(m,n), by its singular values, which come in s(min(m,n)), descending.
        subroutine dgelss(m, n, nrhs, a, lda, b, ldb, s, rcond, rank, work, lwork, info) bind(c, name="dgelss")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, nrhs, lda, ldb, lwork
            real(c_double), intent(inout) :: a(lda, *), b(ldb, *), s(*), work(*)
            real(c_double), intent(in) :: rcond
            integer(c_int), intent(out) :: rank, info
        end subroutine

        subroutine zgelss(m, n, nrhs, a, lda, b, ldb, s, rcond, rank, work, lwork, rwork, info) bind(c, name="zgelss")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, nrhs, lda, ldb, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), b(ldb, *), work(*)
            real(c_double), intent(inout) :: s(*), rwork(*)
            real(c_double), intent(in) :: rcond
            integer(c_int), intent(out) :: rank, info
        end subroutine

        ! The same without the vectors: a is destroyed.
        subroutine dgelsd(m, n, nrhs, a, lda, b, ldb, s, rcond, rank, work, lwork, iwork, info) bind(c, name="dgelsd")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, nrhs, lda, ldb, lwork
            real(c_double), intent(inout) :: a(lda, *), b(ldb, *), s(*), work(*)
            real(c_double), intent(in) :: rcond
            integer(c_int), intent(out) :: rank, info
            integer(c_int), intent(inout) :: iwork(*)
        end subroutine

        subroutine zgelsd(m, n, nrhs, a, lda, b, ldb, s, rcond, rank, work, lwork, rwork, iwork, info) bind(c, &
            name="zgelsd")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, nrhs, lda, ldb, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), b(ldb, *), work(*)
            real(c_double), intent(inout) :: s(*), rwork(*)
            real(c_double), intent(in) :: rcond
            integer(c_int), intent(out) :: rank, info
            integer(c_int), intent(inout) :: iwork(*)
        end subroutine

        ! ---- LAPACK, singular values ----

        ! A = Q B P^H: a(m,n) brought to real bidiagonal form, upper for m >= n, else lower.
        subroutine dgebrd(m, n, a, lda, d, e, tauq, taup, work, lwork, info) bind(c, name="dgebrd")
            import :: c_double, c_int
            integer(c_int), intent(in) :: m, n, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), d(*), e(*), tauq(*), taup(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgebrd(m, n, a, lda, d, e, tauq, taup, work, lwork, info) bind(c, name="zgebrd")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: m, n, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), tauq(*), taup(*), work(*)
            real(c_double), intent(inout) :: d(*), e(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! B = Q S P^T: the singular values of a bidiagonal matrix, upper or lower (uplo), with diagonal d(n) and
        ! off-diagonal e(n-1), come in d, descending, each to a few units of its own last place.
        subroutine dbdsqr(uplo, n, ncvt, nru, ncc, d, e, vt, ldvt, u, ldu, c, ldc, work, info) bind(c, name="dbdsqr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, ncvt, nru, ncc, ldvt, ldu, ldc
            real(c_double), intent(inout) :: d(*), e(*), vt(ldvt, *), u(ldu, *), c(ldc, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zbdsqr(uplo, n, ncvt, nru, ncc, d, e, vt, ldvt, u, ldu, c, ldc, work, info) bind(c, name="zbdsqr")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, ncvt, nru, ncc, ldvt, ldu, ldc
            real(c_double), intent(inout) :: d(*), e(*), work(*)
            complex(c_double_complex), intent(inout) :: vt(ldvt, *), u(ldu, *), c(ldc, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! A = U S V^H: the singular value decomposition of a(m,n), by QR iteration.
        subroutine dgesvd(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, info) bind(c, name="dgesvd")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobu, jobvt
            integer(c_int), intent(in) :: m, n, lda, ldu, ldvt, lwork
            real(c_double), intent(inout) :: a(lda, *), s(*), u(ldu, *), vt(ldvt, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgesvd(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, rwork, info) bind(c, &
            name="zgesvd")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobu, jobvt
            integer(c_int), intent(in) :: m, n, lda, ldu, ldvt, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), u(ldu, *), vt(ldvt, *), work(*)
            real(c_double), intent(inout) :: s(*), rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The same by divide and conquer.
        subroutine dgesdd(jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, iwork, info) bind(c, name="dgesdd")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobz
            integer(c_int), intent(in) :: m, n, lda, ldu, ldvt, lwork
            real(c_double), intent(inout) :: a(lda, *), s(*), u(ldu, *), vt(ldvt, *), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgesdd(jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, rwork, iwork, info) bind(c, &
            name="zgesdd")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobz
            integer(c_int), intent(in) :: m, n, lda, ldu, ldvt, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), u(ldu, *), vt(ldvt, *), work(*)
            real(c_double), intent(inout) :: s(*), rwork(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- LAPACK, eigenproblems ----

        ! A = Q T Q^H: a symmetric or Hermitian matrix, triangle uplo of a(n,n), brought to real symmetric tridiagonal
        ! form.
        subroutine dsytrd(uplo, n, a, lda, d, e, tau, work, lwork, info) bind(c, name="dsytrd")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), d(*), e(*), tau(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhetrd(uplo, n, a, lda, d, e, tau, work, lwork, info) bind(c, name="zhetrd")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: uplo
            integer(c_int), intent(in) :: n, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), tau(*), work(*)
            real(c_double), intent(inout) :: d(*), e(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Eigenvalues of a symmetric or Hermitian matrix, triangle uplo of a(n,n), and with jobz V their vectors: all of
        ! them (range A), those in (vl, vu] (V), or the il-th to the iu-th, ascending, from 1 (I).
        subroutine dsyevx(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, work, lwork, iwork, &
            ifail, info) bind(c, name="dsyevx")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobz, range, uplo
            integer(c_int), intent(in) :: n, lda, il, iu, ldz, lwork
            real(c_double), intent(inout) :: a(lda, *), w(*), z(ldz,*), work(*)
            real(c_double), intent(in) :: vl, vu, abstol
            integer(c_int), intent(out) :: m, info
            integer(c_int), intent(inout) :: iwork(*), ifail(*)
        end subroutine

        subroutine zheevx(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, work, lwork, rwork, &
            iwork, ifail, info) bind(c, name="zheevx")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobz, range, uplo
            integer(c_int), intent(in) :: n, lda, il, iu, ldz, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), z(ldz,*), work(*)
            real(c_double), intent(in) :: vl, vu, abstol
            integer(c_int), intent(out) :: m, info
            real(c_double), intent(inout) :: w(*), rwork(*)
            integer(c_int), intent(inout) :: iwork(*), ifail(*)
        end subroutine

        ! The same by another way: all pairs by multiple relatively robust representations, and with jobz N by dsterf;
        ! those of a range, and all where representations are not to be found that are good enough, as of dsyevx, to
        ! abstol.
        subroutine dsyevr(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, isuppz, work, lwork, &
            iwork, liwork, info) bind(c, name="dsyevr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobz, range, uplo
            integer(c_int), intent(in) :: n, lda, il, iu, ldz, lwork, liwork
            real(c_double), intent(inout) :: a(lda, *), w(*), z(ldz,*), work(*)
            real(c_double), intent(in) :: vl, vu, abstol
            integer(c_int), intent(out) :: m, info
            integer(c_int), intent(inout) :: isuppz(*), iwork(*)
        end subroutine

        subroutine zheevr(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, isuppz, work, lwork, &
            rwork, lrwork, iwork, liwork, info) bind(c, name="zheevr")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobz, range, uplo
            integer(c_int), intent(in) :: n, lda, il, iu, ldz, lwork, lrwork, liwork
            complex(c_double_complex), intent(inout) :: a(lda, *), z(ldz,*), work(*)
            real(c_double), intent(in) :: vl, vu, abstol
            integer(c_int), intent(out) :: m, info
            real(c_double), intent(inout) :: w(*), rwork(*)
            integer(c_int), intent(inout) :: isuppz(*), iwork(*)
        end subroutine

        ! All eigenvalues w(n), ascending, of a symmetric or Hermitian band matrix with kd diagonals beside the main
        ! one, and with jobz V their vectors z(n,n).
        subroutine dsbev(jobz, uplo, n, kd, ab, ldab, w, z, ldz, work, info) bind(c, name="dsbev")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobz, uplo
            integer(c_int), intent(in) :: n, kd, ldab, ldz
            real(c_double), intent(in) :: ab(ldab, *)
            real(c_double), intent(inout) :: w(*), z(ldz,*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhbev(jobz, uplo, n, kd, ab, ldab, w, z, ldz, work, rwork, info) bind(c, name="zhbev")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobz, uplo
            integer(c_int), intent(in) :: n, kd, ldab, ldz
            complex(c_double_complex), intent(in) :: ab(ldab, *)
            real(c_double), intent(inout) :: w(*), rwork(*)
            complex(c_double_complex), intent(inout) :: z(ldz,*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine dsbevd(jobz, uplo, n, kd, ab, ldab, w, z, ldz, work, lwork, iwork, liwork, info) bind(c, &
            name="dsbevd")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobz, uplo
            integer(c_int), intent(in) :: n, kd, ldab, ldz, lwork, liwork
            real(c_double), intent(in) :: ab(ldab, *)
            real(c_double), intent(inout) :: w(*), z(ldz,*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhbevd(jobz, uplo, n, kd, ab, ldab, w, z, ldz, work, lwork, rwork, lrwork, iwork, liwork, info) &
            bind(c, name="zhbevd")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobz, uplo
            integer(c_int), intent(in) :: n, kd, ldab, ldz, lwork, lrwork, liwork
            complex(c_double_complex), intent(in) :: ab(ldab, *)
            real(c_double), intent(inout) :: w(*), rwork(*)
            complex(c_double_complex), intent(inout) :: z(ldz,*), work(*)
            integer(c_int), intent(inout) :: iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Selected eigenvalues and vectors of a band matrix as that of dsbev; what is asked for and what comes back is
        ! that of dsyevx.
        subroutine dsbevx(jobz, range, uplo, n, kd, ab, ldab, q, ldq, vl, vu, il, iu, abstol, m, w, z, ldz, work, &
            iwork, ifail, info) bind(c, name="dsbevx")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobz, range, uplo
            integer(c_int), intent(in) :: n, kd, ldab, ldq, il, iu, ldz
            real(c_double), intent(in) :: ab(ldab, *), vl, vu, abstol
            real(c_double), intent(inout) :: q(ldq, *), w(*), z(ldz,*), work(*)
            integer(c_int), intent(out) :: m, info
            integer(c_int), intent(inout) :: iwork(*), ifail(*)
        end subroutine

        subroutine zhbevx(jobz, range, uplo, n, kd, ab, ldab, q, ldq, vl, vu, il, iu, abstol, m, w, z, ldz, work, &
            rwork, iwork, ifail, info) bind(c, name="zhbevx")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobz, range, uplo
            integer(c_int), intent(in) :: n, kd, ldab, ldq, il, iu, ldz
            complex(c_double_complex), intent(in) :: ab(ldab, *)
            complex(c_double_complex), intent(inout) :: q(ldq, *), z(ldz,*), work(*)
            real(c_double), intent(in) :: vl, vu, abstol
            integer(c_int), intent(out) :: m, info
            real(c_double), intent(inout) :: w(*), rwork(*)
            integer(c_int), intent(inout) :: iwork(*), ifail(*)
        end subroutine

        ! Generalised eigenproblems made ordinary ones: with the factor of B = U^H U (uplo U) or L L^H (L) that dpotrf
        ! or zpotrf has left in b(n,n), triangle uplo of A, a(n,n), becomes that of U^-H A U^-1 or L^-1 A L^-H for itype
        ! 1, A x = lambda B x, or of U A U^H or L^H A L for itype 2, A B x = lambda x, and 3, B A x = lambda x.
        subroutine dsygst(itype, uplo, n, a, lda, b, ldb, info) bind(c, name="dsygst")
            import :: c_char, c_double, c_int
            integer(c_int), intent(in) :: itype, n, lda, ldb
            character(kind=c_char), intent(in) :: uplo
            real(c_double), intent(inout) :: a(lda, *)
            real(c_double), intent(in) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhegst(itype, uplo, n, a, lda, b, ldb, info) bind(c, name="zhegst")
            import :: c_char, c_double_complex, c_int
            integer(c_int), intent(in) :: itype, n, lda, ldb
            character(kind=c_char), intent(in) :: uplo
            complex(c_double_complex), intent(inout) :: a(lda, *)
            complex(c_double_complex), intent(in) :: b(ldb, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! All eigenvalues of the symmetric tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1): they take the
        ! place of d, ascending; e is destroyed.
        subroutine dsterf(n, d, e, info) bind(c, name="dsterf")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n
            real(c_double), intent(inout) :: d(*), e(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Eigenvalues of the symmetric tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1) by bisection: all
        ! of them (range A), those in (vl, vu] (V), or the il-th to the iu-th, ascending, from 1 (I).
        subroutine dstebz(range, order, n, vl, vu, il, iu, abstol, d, e, m, nsplit, w, iblock, isplit, work, iwork, &
            info) bind(c, name="dstebz")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: range, order
            integer(c_int), intent(in) :: n, il, iu
            real(c_double), intent(in) :: vl, vu, abstol, d(*), e(*)
            integer(c_int), intent(out) :: m, nsplit, info
            real(c_double), intent(inout) :: w(*), work(*)
            integer(c_int), intent(inout) :: iblock(*), isplit(*), iwork(*)
        end subroutine

        ! Eigenvectors z(n,m) of the symmetric tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1) for its
        ! eigenvalues w(m), by inverse iteration.
        subroutine dstein(n, d, e, m, w, iblock, isplit, z, ldz, work, iwork, ifail, info) bind(c, name="dstein")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, m, iblock(*), isplit(*), ldz
            real(c_double), intent(in) :: d(*), e(*), w(*)
            real(c_double), intent(inout) :: z(ldz,*), work(*)
            integer(c_int), intent(inout) :: iwork(*), ifail(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zstein(n, d, e, m, w, iblock, isplit, z, ldz, work, iwork, ifail, info) bind(c, name="zstein")
            import :: c_double, c_double_complex, c_int
            integer(c_int), intent(in) :: n, m, iblock(*), isplit(*), ldz
            real(c_double), intent(in) :: d(*), e(*), w(*)
            complex(c_double_complex), intent(inout) :: z(ldz,*)
            real(c_double), intent(inout) :: work(*)
            integer(c_int), intent(inout) :: iwork(*), ifail(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! All eigenvalues and, with compz V or I, eigenvectors of the symmetric tridiagonal matrix with diagonal d(n)
        ! and off-diagonal e(n-1), by implicit QL or QR with Wilkinson's shift.
        subroutine dsteqr(compz, n, d, e, z, ldz, work, info) bind(c, name="dsteqr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: compz
            integer(c_int), intent(in) :: n, ldz
            real(c_double), intent(inout) :: d(*), e(*), z(ldz,*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zsteqr(compz, n, d, e, z, ldz, work, info) bind(c, name="zsteqr")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: compz
            integer(c_int), intent(in) :: n, ldz
            real(c_double), intent(inout) :: d(*), e(*), work(*)
            complex(c_double_complex), intent(inout) :: z(ldz,*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Eigenvalues of a positive definite tridiagonal matrix with diagonal d(n) and off-diagonal e(n-1), descending,
        ! in d, each to a few units of its own last place as far as the matrix settles it; for compz I their vectors in
        ! z(n,n), for V z becomes z times them, for N not.
        subroutine dpteqr(compz, n, d, e, z, ldz, work, info) bind(c, name="dpteqr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: compz
            integer(c_int), intent(in) :: n, ldz
            real(c_double), intent(inout) :: d(*), e(*), z(ldz,*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zpteqr(compz, n, d, e, z, ldz, work, info) bind(c, name="zpteqr")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: compz
            integer(c_int), intent(in) :: n, ldz
            real(c_double), intent(inout) :: d(*), e(*), work(*)
            complex(c_double_complex), intent(inout) :: z(ldz,*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The eigenvalues of the Hermitian matrix [a b; conj(b) c], whose a and c count by their real parts: rt1 is the
        ! one of larger modulus, to a few units in the last place; rt2 the other, as exact as a c - |b|^2 does not
        ! cancel.
        subroutine ZLAEV2(a, b, c, rt1, rt2, cs1, sn1) bind(c, name="ZLAEV2")
            import :: c_double, c_double_complex
            complex(c_double_complex), intent(in) :: a, b, c
            real(c_double), intent(out) :: rt1, rt2, cs1
            complex(c_double_complex), intent(out) :: sn1
        end subroutine

        ! ---- LAPACK, nonsymmetric eigenproblems ----

        ! Balances a(n,n): with job P permutes it so that eigenvalues that stand alone come to the ends and only rows
        ! and columns ilo to ihi are left, with S scales those by powers of two until the 2-norms of each row and its
        ! column are close, with B does both, with N nothing.
        subroutine dgebal(job, n, a, lda, ilo, ihi, scale, info) bind(c, name="dgebal")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: job
            integer(c_int), intent(in) :: n, lda
            real(c_double), intent(inout) :: a(lda, *), scale(*)
            integer(c_int), intent(inout) :: ilo, ihi
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgebal(job, n, a, lda, ilo, ihi, scale, info) bind(c, name="zgebal")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: job
            integer(c_int), intent(in) :: n, lda
            complex(c_double_complex), intent(inout) :: a(lda, *)
            integer(c_int), intent(inout) :: ilo, ihi
            real(c_double), intent(inout) :: scale(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Eigenvectors of a matrix from those of the balanced one, v(n,m): side R right ones, L left ones.
        subroutine dgebak(job, side, n, ilo, ihi, scale, m, v, ldv, info) bind(c, name="dgebak")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: job, side
            integer(c_int), intent(in) :: n, ilo, ihi, m, ldv
            real(c_double), intent(in) :: scale(*)
            real(c_double), intent(inout) :: v(ldv, *)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgebak(job, side, n, ilo, ihi, scale, m, v, ldv, info) bind(c, name="zgebak")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: job, side
            integer(c_int), intent(in) :: n, ilo, ihi, m, ldv
            real(c_double), intent(in) :: scale(*)
            complex(c_double_complex), intent(inout) :: v(ldv, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Q^H A Q = H, upper Hessenberg, of a(n,n) on rows and columns ilo to ihi.
        subroutine dgehrd(n, ilo, ihi, a, lda, tau, work, lwork, info) bind(c, name="dgehrd")
            import :: c_double, c_int
            integer(c_int), intent(in) :: n, ilo, ihi, lda, lwork
            real(c_double), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgehrd(n, ilo, ihi, a, lda, tau, work, lwork, info) bind(c, name="zgehrd")
            import :: c_double_complex, c_int
            integer(c_int), intent(in) :: n, ilo, ihi, lda, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Eigenvalues of the upper Hessenberg matrix h(n,n), which is triangular outside of ilo to ihi, and with job S
        ! its Schur form T = Z^H H Z in h; with job E what is left there means nothing.
        subroutine dhseqr(job, compz, n, ilo, ihi, h, ldh, wr, wi, z, ldz, work, lwork, info) bind(c, name="dhseqr")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: job, compz
            integer(c_int), intent(in) :: n, ilo, ihi, ldh, ldz, lwork
            real(c_double), intent(inout) :: h(ldh, *), wr(*), wi(*), z(ldz,*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zhseqr(job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work, lwork, info) bind(c, name="zhseqr")
            import :: c_char, c_double_complex, c_int
            character(kind=c_char), intent(in) :: job, compz
            integer(c_int), intent(in) :: n, ilo, ihi, ldh, ldz, lwork
            complex(c_double_complex), intent(inout) :: h(ldh, *), w(*), z(ldz,*), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Eigenvectors of a Schur form t(n,n): right ones, T x = lambda x, with side R, left ones, y^H T = lambda y^H,
        ! with L, both with B.
        subroutine dtrevc(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, info) bind(c, &
            name="dtrevc")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: side, howmny
            integer(c_int), intent(inout) :: select(*), m
            integer(c_int), intent(in) :: n, ldt, ldvl, ldvr, mm
            real(c_double), intent(in) :: t(ldt, *)
            real(c_double), intent(inout) :: vl(ldvl,*), vr(ldvr, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine ztrevc(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, rwork, info) bind(c, &
            name="ztrevc")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: side, howmny
            integer(c_int), intent(in) :: select(*), n, ldt, ldvl, ldvr, mm
            complex(c_double_complex), intent(in) :: t(ldt, *)
            complex(c_double_complex), intent(inout) :: vl(ldvl,*), vr(ldvr, *), work(*)
            integer(c_int), intent(inout) :: m
            real(c_double), intent(inout) :: rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! Eigenvalues of a(n,n), which is destroyed, and with jobvl, jobvr V left and right eigenvectors vl(n,n),
        ! vr(n,n): columns of length 1 whose largest element is real; of a conjugate pair, which begins with the
        ! positive imaginary part, real and imaginary parts of the first one stand in two columns.
        subroutine dgeev(jobvl, jobvr, n, a, lda, wr, wi, vl, ldvl, vr, ldvr, work, lwork, info) bind(c, name="dgeev")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: jobvl, jobvr
            integer(c_int), intent(in) :: n, lda, ldvl, ldvr, lwork
            real(c_double), intent(inout) :: a(lda, *), wr(*), wi(*), vl(ldvl,*), vr(ldvr, *), work(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine zgeev(jobvl, jobvr, n, a, lda, w, vl, ldvl, vr, ldvr, work, lwork, rwork, info) bind(c, &
            name="zgeev")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: jobvl, jobvr
            integer(c_int), intent(in) :: n, lda, ldvl, ldvr, lwork
            complex(c_double_complex), intent(inout) :: a(lda, *), w(*), vl(ldvl,*), vr(ldvr, *), work(*)
            real(c_double), intent(inout) :: rwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        ! The Sylvester equation op(A) X + isgn X op(B) = scale C for Schur forms a(m,m) and b(n,n); X takes the place
        ! of c(m,n).
        subroutine dtrsyl(trana, tranb, isgn, m, n, a, lda, b, ldb, c, ldc, scale, info) bind(c, name="dtrsyl")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: trana, tranb
            integer(c_int), intent(in) :: isgn, m, n, lda, ldb, ldc
            real(c_double), intent(in) :: a(lda, *), b(ldb, *)
            real(c_double), intent(inout) :: c(ldc, *), scale
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine ztrsyl(trana, tranb, isgn, m, n, a, lda, b, ldb, c, ldc, scale, info) bind(c, name="ztrsyl")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: trana, tranb
            integer(c_int), intent(in) :: isgn, m, n, lda, ldb, ldc
            complex(c_double_complex), intent(in) :: a(lda, *), b(ldb, *)
            complex(c_double_complex), intent(inout) :: c(ldc, *)
            real(c_double), intent(inout) :: scale
            integer(c_int), intent(out) :: info
        end subroutine

        ! Reciprocal condition numbers of eigenvalues (job E), s(mm), and of right eigenvectors (V), sep(mm), or both
        ! (B), of a Schur form t(n,n): of all (howmny A), or of those that select(n) is not 0 for (S), of a conjugate
        ! pair either of the two, which have one number each.
        subroutine dtrsna(job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, work, ldwork, iwork, &
            info) bind(c, name="dtrsna")
            import :: c_char, c_double, c_int
            character(kind=c_char), intent(in) :: job, howmny
            integer(c_int), intent(in) :: select(*), n, ldt, ldvl, ldvr, mm, ldwork
            real(c_double), intent(in) :: t(ldt, *), vl(ldvl,*), vr(ldvr, *)
            real(c_double), intent(inout) :: s(*), sep(*), work(ldwork, *)
            integer(c_int), intent(inout) :: m, iwork(*)
            integer(c_int), intent(out) :: info
        end subroutine

        subroutine ztrsna(job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, work, ldwork, rwork, &
            info) bind(c, name="ztrsna")
            import :: c_char, c_double, c_double_complex, c_int
            character(kind=c_char), intent(in) :: job, howmny
            integer(c_int), intent(in) :: select(*), n, ldt, ldvl, ldvr, mm, ldwork
            complex(c_double_complex), intent(in) :: t(ldt, *), vl(ldvl,*), vr(ldvr, *)
            real(c_double), intent(inout) :: s(*), sep(*), rwork(*)
            integer(c_int), intent(inout) :: m
            complex(c_double_complex), intent(inout) :: work(ldwork, *)
            integer(c_int), intent(out) :: info
        end subroutine

        ! ---- Sparse BLAS level 1 ----

        ! y(indx(i)) := y(indx(i)) + a x(i); nothing is done when a is 0.
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

        ! Sum of x(i) y(indx(i)); zdotci takes conj(x(i)).
        function ddoti(nz, x, indx, y) bind(c, name="ddoti")
            import :: c_double, c_int
            integer(c_int), intent(in) :: nz, indx(*)
            real(c_double), intent(in) :: x(*), y(*)
            real(c_double) :: ddoti
        end function

        subroutine zdotui(res, nz, x, indx, y) bind(c, name="zdotui")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: nz, indx(*)
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        subroutine zdotci(res, nz, x, indx, y) bind(c, name="zdotci")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(out) :: res
            integer(c_int), intent(in) :: nz, indx(*)
            complex(c_double_complex), intent(in) :: x(*), y(*)
        end subroutine

        ! Gather: x(i) := y(indx(i)).
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

        ! Scatter: y(indx(i)) := x(i).
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

        ! ---- Vector primitives ----

        ! dst[i] = src[i] + value.
        subroutine AddValue_d(src, dst, value, n) bind(c, name="AddValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine AddValuec_d(src, dst, value, n) bind(c, name="AddValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine AddValuecd_d(src, dst, value, n) bind(c, name="AddValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine AddValuedc_d(src, dst, value, n) bind(c, name="AddValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = value - src[i].
        subroutine SubFromValue_d(src, dst, value, n) bind(c, name="SubFromValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SubFromValuec_d(src, dst, value, n) bind(c, name="SubFromValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SubFromValuecd_d(src, dst, value, n) bind(c, name="SubFromValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SubFromValuedc_d(src, dst, value, n) bind(c, name="SubFromValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = value / src[i], a zero element giving what floating point gives.
        subroutine DivideValue_d(src, dst, value, n) bind(c, name="DivideValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine DivideValuec_d(src, dst, value, n) bind(c, name="DivideValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine DivideValuecd_d(src, dst, value, n) bind(c, name="DivideValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine DivideValuedc_d(src, dst, value, n) bind(c, name="DivideValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = src[i] value.
        subroutine ScaleByValue_d(src, dst, value, n) bind(c, name="ScaleByValue_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine ScaleByValuec_d(src, dst, value, n) bind(c, name="ScaleByValuec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*), value
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine ScaleByValuecd_d(src, dst, value, n) bind(c, name="ScaleByValuecd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            real(c_double), value :: value
            integer(c_int32_t), value :: n
        end subroutine

        subroutine ScaleByValuedc_d(src, dst, value, n) bind(c, name="ScaleByValuedc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            complex(c_double_complex), intent(in) :: value
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = a[i] + b[i], a[i] - b[i], a[i] b[i].
        subroutine AddVeccd_d(a, b, dst, n) bind(c, name="AddVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SubVeccd_d(a, b, dst, n) bind(c, name="SubVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SubVecdc_d(a, b, dst, n) bind(c, name="SubVecdc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: a(*)
            complex(c_double_complex), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine MulVeccd_d(a, b, dst, n) bind(c, name="MulVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = a[i] / b[i]; a complex divisor as in DivideValuec_d.
        subroutine DivVeccc_d(a, b, dst, n) bind(c, name="DivVeccc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*), b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine DivVeccd_d(a, b, dst, n) bind(c, name="DivVeccd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*)
            real(c_double), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine DivVecdc_d(a, b, dst, n) bind(c, name="DivVecdc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: a(*)
            complex(c_double_complex), intent(in) :: b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = conj(a[i]) b[i].
        subroutine ConjMulcc_d(a, b, dst, n) bind(c, name="ConjMulcc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*), b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = -1.0, 0.0 or 1.0 by the sign of src[i]: 0.0 for both zeros, 1.0 for NaN.
        subroutine Sgndd_d(src, dst, n) bind(c, name="Sgndd_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine Sgncd_d(src, dst, n) bind(c, name="Sgncd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine Sgndc_d(src, dst, n) bind(c, name="Sgndc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine Sgncc_d(src, dst, n) bind(c, name="Sgncc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i], in place, by the sign of src[i] as above: 0.0 where it is 0, negated where it is negative, else as it
        ! was, for NaN too.
        subroutine SgnMul_d(src, dst, n) bind(c, name="SgnMul_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SgnMulc_d(src, dst, n) bind(c, name="SgnMulc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SgnMulcd_d(src, dst, n) bind(c, name="SgnMulcd_d")
            import :: c_double, c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine SgnMuldc_d(src, dst, n) bind(c, name="SgnMuldc_d")
            import :: c_double, c_double_complex, c_int32_t
            real(c_double), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! Remainder: dst[i] = x[i] - y[i] q, q the quotient x[i] / y[i] truncated to a signed 32-bit integer.
        subroutine Rem_d(x, y, dst, n) bind(c, name="Rem_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: x(*), y(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! Remainder for one divisor: as Rem_d, but q is x[i] (1 / value) truncated, with the reciprocal rounded once.
        subroutine RemVal_d(x, value, dst, n) bind(c, name="RemVal_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: x(*)
            real(c_double), value :: value
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! The smallest integer not below src[i], the largest not above it, with the sign of src[i] when it is 0.
        subroutine Ceil_d(src, dst, n) bind(c, name="Ceil_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine Floor_d(src, dst, n) bind(c, name="Floor_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[0] = src[0], dst[i] = dst[i - 1] + src[i], added in this order.
        subroutine CumSum_d(src, dst, n) bind(c, name="CumSum_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine CumSumc_d(src, dst, n) bind(c, name="CumSumc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! Cumulative sums at lag delta: the first delta elements (at most n) are copied, then dst[i] = src[i] + dst[i -
        ! delta].
        subroutine CumSumDelta_d(src, dst, n, delta) bind(c, name="CumSumDelta_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n, delta
        end subroutine

        subroutine CumSumDeltac_d(src, dst, n, delta) bind(c, name="CumSumDeltac_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n, delta
        end subroutine

        ! The product of all elements, 1 for an empty array.
        function Product_d(src, n) bind(c, name="Product_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            integer(c_int32_t), value :: n
            real(c_double) :: Product_d
        end function

        subroutine Productc_d(src, out, n) bind(c, name="Productc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(out) :: out
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = src[n - 1 - i], of complex numbers.
        subroutine Reverse_d(src, dst, n) bind(c, name="Reverse_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! Each (re, im) becomes (im, re), (im, -re) and, by MulI_d, (-im, re), which is i times it.
        subroutine Flip_d(src, dst, n) bind(c, name="Flip_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine FlipConj_d(src, dst, n) bind(c, name="FlipConj_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        subroutine MulI_d(src, dst, n) bind(c, name="MulI_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! dst[i] = offset + i step, by parts.
        subroutine Rampc_d(dst, n, offset, step) bind(c, name="Rampc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: offset, step
        end subroutine

        ! Appends src[i] to dst where mask[i] is above 0.
        function PackByMask_d(n, src, dst, mask) bind(c, name="PackByMask_d")
            import :: c_double, c_int32_t
            integer(c_int32_t), value :: n
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), intent(in) :: mask(*)
            integer(c_int32_t) :: PackByMask_d
        end function

        function PackByMaskc_d(n, src, dst, mask) bind(c, name="PackByMaskc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), intent(in) :: mask(*)
            integer(c_int32_t) :: PackByMaskc_d
        end function

        ! dst[i] = a[i] to the power b[i] by the C library's cpow, from i = 1 on: dst[0] is left as it was.
        subroutine Powc_d(a, b, dst, n) bind(c, name="Powc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: a(*), b(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: n
        end subroutine

        ! Single values behind pointers, for languages that have none: a double into out or as the result, a complex
        ! number, a 32-bit integer; then stored.
        subroutine GetValFromPtr_d(p, out) bind(c, name="GetValFromPtr_d")
            import :: c_double
            real(c_double), intent(in) :: p
            real(c_double), intent(out) :: out
        end subroutine

        function GetValFromPtrf_d(p) bind(c, name="GetValFromPtrf_d")
            import :: c_double
            real(c_double), intent(in) :: p
            real(c_double) :: GetValFromPtrf_d
        end function

        subroutine GetValcFromPtr_d(p, out) bind(c, name="GetValcFromPtr_d")
            import :: c_double_complex
            complex(c_double_complex), intent(in) :: p
            complex(c_double_complex), intent(out) :: out
        end subroutine

        subroutine GetValIFromPtr(p, out) bind(c, name="GetValIFromPtr")
            import :: c_int32_t
            integer(c_int32_t), intent(in) :: p
            integer(c_int32_t), intent(out) :: out
        end subroutine

        subroutine SetValToPtr_d(p, value) bind(c, name="SetValToPtr_d")
            import :: c_double
            real(c_double), intent(out) :: p
            real(c_double), value :: value
        end subroutine

        subroutine SetValcToPtr_d(p, value) bind(c, name="SetValcToPtr_d")
            import :: c_double_complex
            complex(c_double_complex), intent(out) :: p
            complex(c_double_complex), intent(in) :: value
        end subroutine

        subroutine SetValIToPtr(p, value) bind(c, name="SetValIToPtr")
            import :: c_int32_t
            integer(c_int32_t), intent(out) :: p
            integer(c_int32_t), value :: value
        end subroutine

        ! ---- Matrix primitives ----

        ! Copies rows by cols elements: dst(dstRow + r, dstCol + c) = src(srcRow + r, srcCol + c).
        subroutine CopySubMatrix_d(src, dst, srcRow, srcCol, dstRow, dstCol, rows, cols, srcStride, dstStride) bind(c, &
            name="CopySubMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: srcRow, srcCol, dstRow, dstCol, rows, cols, srcStride, dstStride
        end subroutine

        subroutine CopySubMatrixc_d(src, dst, srcRow, srcCol, dstRow, dstCol, rows, cols, srcStride, dstStride) &
            bind(c, name="CopySubMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: srcRow, srcCol, dstRow, dstCol, rows, cols, srcStride, dstStride
        end subroutine

        ! Copies the rows by cols block that src and dst begin with, from one stride to another, in the same way.
        subroutine ResizeMatrix_d(src, dst, rows, cols, srcStride, dstStride) bind(c, name="ResizeMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        subroutine ResizeMatrixc_d(src, dst, rows, cols, srcStride, dstStride) bind(c, name="ResizeMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        ! dst(c, r) = src(r, c); Adjungate takes conj(src(r, c)).
        subroutine TransposeMatrix_d(src, dst, rows, cols, srcStride, dstStride) bind(c, name="TransposeMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        subroutine TransposeMatrixc_d(src, dst, rows, cols, srcStride, dstStride) bind(c, name="TransposeMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        subroutine AdjungateMatrixc_d(src, dst, rows, cols, srcStride, dstStride) bind(c, name="AdjungateMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride
        end subroutine

        ! Transposes the n by n matrix a in place; Adjungate conjugates every element, the diagonal too.
        subroutine TransposeSquareMatrix_d(a, n, stride) bind(c, name="TransposeSquareMatrix_d")
            import :: c_double, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: n, stride
        end subroutine

        subroutine TransposeSquareMatrixc_d(a, n, stride) bind(c, name="TransposeSquareMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: n, stride
        end subroutine

        subroutine AdjungateSquareMatrixc_d(a, n, stride) bind(c, name="AdjungateSquareMatrixc_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: n, stride
        end subroutine

        ! Copies the elements below the diagonal of a rows by cols matrix, or above it; with them the diagonal when
        ! includeDiagonal is not 0.
        subroutine LowerTriangle_d(src, dst, rows, cols, srcStride, dstStride, includeDiagonal) bind(c, &
            name="LowerTriangle_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        subroutine LowerTrianglec_d(src, dst, rows, cols, srcStride, dstStride, includeDiagonal) bind(c, &
            name="LowerTrianglec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        subroutine UpperTriangle_d(src, dst, rows, cols, srcStride, dstStride, includeDiagonal) bind(c, &
            name="UpperTriangle_d")
            import :: c_double, c_int32_t
            real(c_double), intent(in) :: src(*)
            real(c_double), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        subroutine UpperTrianglec_d(src, dst, rows, cols, srcStride, dstStride, includeDiagonal) bind(c, &
            name="UpperTrianglec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(in) :: src(*)
            complex(c_double_complex), intent(inout) :: dst(*)
            integer(c_int32_t), value :: rows, cols, srcStride, dstStride, includeDiagonal
        end subroutine

        ! Sets the elements below the diagonal of a rows by cols matrix, or above it, to 0; with them the diagonal when
        ! zeroDiagonal, a byte, is not 0.
        subroutine ZeroLowerTriangle_d(a, rows, cols, stride, zeroDiagonal) bind(c, name="ZeroLowerTriangle_d")
            import :: c_double, c_int32_t, c_int8_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        subroutine ZeroLowerTrianglec_d(a, rows, cols, stride, zeroDiagonal) bind(c, name="ZeroLowerTrianglec_d")
            import :: c_double_complex, c_int32_t, c_int8_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        subroutine ZeroUpperTriangle_d(a, rows, cols, stride, zeroDiagonal) bind(c, name="ZeroUpperTriangle_d")
            import :: c_double, c_int32_t, c_int8_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        subroutine ZeroUpperTrianglec_d(a, rows, cols, stride, zeroDiagonal) bind(c, name="ZeroUpperTrianglec_d")
            import :: c_double_complex, c_int32_t, c_int8_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: rows, cols, stride
            integer(c_int8_t), value :: zeroDiagonal
        end subroutine

        ! Rows row1 and row2 of a change places, in their first cols elements.
        subroutine RowExchange_d(a, row1, row2, cols, stride) bind(c, name="RowExchange_d")
            import :: c_double, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: row1, row2, cols, stride
        end subroutine

        subroutine RowExchangec_d(a, row1, row2, cols, stride) bind(c, name="RowExchangec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: row1, row2, cols, stride
        end subroutine

        ! Columns col1 and col2 of a change places, in their first `rows` elements.
        subroutine ColExchange_d(a, col1, col2, rows, stride) bind(c, name="ColExchange_d")
            import :: c_double, c_int32_t
            real(c_double), intent(inout) :: a(*)
            integer(c_int32_t), value :: col1, col2, rows, stride
        end subroutine

        subroutine ColExchangec_d(a, col1, col2, rows, stride) bind(c, name="ColExchangec_d")
            import :: c_double_complex, c_int32_t
            complex(c_double_complex), intent(inout) :: a(*)
            integer(c_int32_t), value :: col1, col2, rows, stride
        end subroutine

        ! ---- Pack and unpack ----

        ! y[i] = a[i incra] for i from 0 to n - 1; a negative increment runs backwards from a.
        subroutine vdpacki(n, a, incra, y) bind(c, name="vdpacki")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, incra
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine vdpackic_d(n, a, incra, y) bind(c, name="vdpackic_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n, incra
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! y[i] = a[ia[i]].
        subroutine vdpackv(n, a, ia, y) bind(c, name="vdpackv")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, ia(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine vdpackvc_d(n, a, ia, y) bind(c, name="vdpackvc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            integer(c_int32_t), intent(in) :: ia(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! Appends a[i] to y where ma[i] is above 0.
        subroutine vdpackm(n, a, ma, y) bind(c, name="vdpackm")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, ma(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine vdpackmc_d(n, a, ma, y) bind(c, name="vdpackmc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            integer(c_int32_t), intent(in) :: ma(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! y[i incry] = a[i].
        subroutine vdunpacki(n, a, y, incry) bind(c, name="vdunpacki")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, incry
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine vdunpackic_d(n, a, y, incry) bind(c, name="vdunpackic_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n, incry
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
        end subroutine

        ! y[iy[i]] = a[i]; of several values for one place the last stays.
        subroutine vdunpackv(n, a, y, iy) bind(c, name="vdunpackv")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, iy(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine vdunpackvc_d(n, a, y, iy) bind(c, name="vdunpackvc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
            integer(c_int32_t), intent(in) :: iy(*)
        end subroutine

        ! The next element of a into y[i] where my[i] is above 0; other elements of y are not touched.
        subroutine vdunpackm(n, a, y, my) bind(c, name="vdunpackm")
            import :: c_double, c_int32_t
            integer(c_int32_t), intent(in) :: n, my(*)
            real(c_double), intent(in) :: a(*)
            real(c_double), intent(inout) :: y(*)
        end subroutine

        subroutine vdunpackmc_d(n, a, y, my) bind(c, name="vdunpackmc_d")
            import :: c_double_complex, c_int32_t
            integer(c_int32_t), value :: n
            complex(c_double_complex), intent(in) :: a(*)
            complex(c_double_complex), intent(inout) :: y(*)
            integer(c_int32_t), intent(in) :: my(*)
        end subroutine

        ! ---- Bessel and Airy functions ----

        ! I, the modified function of the first kind.
        subroutine CBESI(z, fnu, kode, n, cy, nz, ierr) bind(c, name="CBESI")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! J, the function of the first kind.
        subroutine CBESJ(z, fnu, kode, n, cy, nz, ierr) bind(c, name="CBESJ")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! K, the modified function of the second kind.
        subroutine CBESK(z, fnu, kode, n, cy, nz, ierr) bind(c, name="CBESK")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! H1 = J + iY (m = 1) or H2 = J - iY (m = 2), the Hankel functions.
        subroutine CBESH(z, fnu, kode, m, n, cy, nz, ierr) bind(c, name="CBESH")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, m, n
            complex(c_float_complex), intent(inout) :: cy(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Y, the function of the second kind.
        subroutine CBESY(z, fnu, kode, n, cy, nz, cwrk, ierr) bind(c, name="CBESY")
            import :: c_float, c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            real(c_float), intent(in) :: fnu
            integer(c_int), intent(in) :: kode, n
            complex(c_float_complex), intent(inout) :: cy(*), cwrk(*)
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Ai(z) (id 0) or Ai'(z) (id 1).
        subroutine CAIRY(z, id, kode, ai, nz, ierr) bind(c, name="CAIRY")
            import :: c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            integer(c_int), intent(in) :: id, kode
            complex(c_float_complex), intent(inout) :: ai
            integer(c_int), intent(out) :: nz, ierr
        end subroutine

        ! Bi(z) (id 0) or Bi'(z) (id 1).
        subroutine CBIRY(z, id, kode, bi, ierr) bind(c, name="CBIRY")
            import :: c_float_complex, c_int
            complex(c_float_complex), intent(in) :: z
            integer(c_int), intent(in) :: id, kode
            complex(c_float_complex), intent(inout) :: bi
            integer(c_int), intent(out) :: ierr
        end subroutine

        ! ---- Toeplitz systems and filter design ----

        ! T x = b for a Toeplitz matrix of order m, neither symmetric nor Hermitian: T(i,j) = a1(j-i+1) for j >= i,
        ! a2(i-j) for i > j.
        subroutine TSLD1(a1, a2, b, x, c1, c2, m) bind(c, name="TSLD1")
            import :: c_double, c_int
            real(c_double), intent(in) :: a1(*), a2(*), b(*)
            real(c_double), intent(inout) :: x(*), c1(*), c2(*)
            integer(c_int), intent(in) :: m
        end subroutine

        subroutine TSLZ1(a1, a2, b, x, c1, c2, m) bind(c, name="TSLZ1")
            import :: c_double_complex, c_int
            complex(c_double_complex), intent(in) :: a1(*), a2(*), b(*)
            complex(c_double_complex), intent(inout) :: x(*), c1(*), c2(*)
            integer(c_int), intent(in) :: m
        end subroutine

        ! Best approximation by cosines on a grid, the heart of linear-phase filter design: the sum P(f) of alpha(k+1)
        ! cos(2 pi k f), k = 0 to nfc - 1, with the least maximum of wt |des - P| over the grid.
        subroutine REMEZ(ngr, nfc, iext, ad, x, y, des, grid, wt, a, p, q, alpha) bind(c, name="REMEZ")
            import :: c_double, c_int
            integer(c_int), intent(in) :: ngr, nfc
            integer(c_int), intent(inout) :: iext(*)
            real(c_double), intent(inout) :: ad(*), x(*), y(*), a(*), p(*), q(*), alpha(*)
            real(c_double), intent(in) :: des(*), grid(*), wt(*)
        end subroutine

    end interface

end module nxl
