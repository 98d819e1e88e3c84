! nxl from Fortran: a dot product, a vector update, and conjugate gradients on the equation -u'' = 1 of a string.
! The module nxl checks every argument at compile time.
program fortran_caller
    use, intrinsic :: iso_fortran_env, only: real64
    use nxl
    implicit none (type, external)
    integer, parameter :: n = 100
    real(real64) :: x(n), b(n), exact(n), tmp(n, 4), dpar(128), error
    integer :: ipar(128), request, iterations, i

    x = 0
    b = 1
    exact = [(0.5_real64*i*(n + 1 - i), i=1, n)]   ! the parabola that solves it

    ! The state of the run lives in ipar, dpar and tmp, so runs do not disturb each other.
    call dcg_init(n, x, b, request, ipar, dpar, tmp)
    ipar(9) = 1               ! let the solver test the residual ...
    ipar(10) = 0              ! ... and not ask us to
    dpar(1) = 1e-20_real64    ! the test is on squared norms: this asks for 1e-10
    call dcg_check(n, x, b, request, ipar, dpar, tmp)
    if (request /= 0) error stop "unusable parameters"
    do
        call dcg(n, x, b, request, ipar, dpar, tmp)
        if (request /= 1) exit
        tmp(:, 2) = product_with_a(tmp(:, 1))
    end do
    call dcg_get(n, x, b, request, ipar, dpar, tmp, iterations)

    call daxpy(n, -1.0_real64, exact, 1, x, 1)      ! x becomes the error
    error = sqrt(ddot(n, x, 1, x, 1)/ddot(n, exact, 1, exact, 1))
    if (request /= 0 .or. error > 1e-8_real64) error stop "not solved"
    print '(a, i0, a, es7.0)', "Fortran: solved after ", iterations, " iterations, relative error ", error

contains

    ! A x for the tridiagonal matrix of -u'': 2 on the diagonal, -1 beside it. The library never sees the matrix.
    pure function product_with_a(v) result(y)
        real(real64), intent(in) :: v(n)
        real(real64) :: y(n)
        y = 2*v
        y(2:) = y(2:) - v(:n - 1)
        y(:n - 1) = y(:n - 1) - v(2:)
    end function

end program
