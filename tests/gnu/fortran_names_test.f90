! Calls as GNU Fortran compiles them: trailing underscore, hidden lengths of 64 bits, complex results by value. Stops
! with an error at the first wrong result.
module told
    implicit none
    integer :: reports = 0
end module

program fortran_names_test
    use, intrinsic :: iso_fortran_env, only: int64, real64
    use told
    implicit none
    integer, parameter :: n = 40
    external :: dpotrf, dgesv, dgbsv, dposv, dpbsv, dsysv, zhesv, &
        dsyev, dsyevd, dstev, dstevd, dstevr, dstemr, dstedc, dsygv, dsygvd, zheev, zheevd, zstemr, zstedc, zhegv, zhegvd, &
        pardiso
    real(real64), external :: dznrm2
    complex(real64), external :: zdotc, zdotu

    call vectors()
    call drivers()
    call full_eigenproblems()
    call tridiagonal_eigenproblems()
    call generalised_eigenproblems()
    call sparse_system()
    call bad_argument()

contains

    subroutine expect(right, what)
        logical, intent(in) :: right
        character(len=*), intent(in) :: what
        if (.not. right) error stop what
    end subroutine

    subroutine vectors()
        complex(real64) :: u(2) = [(1, 2), (3, -1)], v(2) = [(0, 1), (2, 2)]
        call expect(zdotc(2, u, 1, v, 1) == dot_product(u, v), 'zdotc')
        call expect(zdotu(2, u, 1, v, 1) == sum(u * v), 'zdotu')
        call expect(abs(dznrm2(2, u, 1)**2 - 15) < 1e-13_real64, 'dznrm2')
    end subroutine

    ! One band matrix in each storage: 4 on the diagonal, two diagonals of ones on each side; solutions are ones.
    subroutine drivers()
        integer, parameter :: width = 2
        real(real64) :: a(n, n), sums(n), band(3 * width + 1, n), x(n), work(1)
        complex(real64) :: h(2, 2) = reshape([(0, 0), (0, 1), (0, -1), (0, 0)], [2, 2]), z(2) = [(0, -1), (0, 1)], w(2)
        integer :: pivots(n), info
        a = band_matrix(width)
        sums = sum(a, 2)
        band = 1
        band(2 * width + 1, :) = 4
        x = sums
        call dgbsv(n, width, width, 1, band, 3 * width + 1, pivots, x, n, info)
        call expect(solved(x, info), 'dgbsv')
        band = 1
        band(width + 1, :) = 4
        x = sums
        call dpbsv('Upper', n, width, 1, band, 3 * width + 1, x, n, info)
        call expect(solved(x, info), 'dpbsv')
        x = sums
        call dsysv('Lower', n, 1, a, n, pivots, x, n, work, -1, info)
        call expect(info == 0 .and. work(1) >= n .and. all(x == sums), 'dsysv, query')
        call dsysv('Lower', n, 1, a, n, pivots, x, n, work, 1, info)
        call expect(solved(x, info), 'dsysv')
        a = band_matrix(width)
        x = sums
        call dposv('Upper', n, 1, a, n, x, n, info)
        call expect(solved(x, info), 'dposv')
        a = band_matrix(width)
        x = sums
        a(:, 5) = 0
        call dgesv(n, 1, a, n, pivots, x, n, info)
        call expect(info > 0 .and. all(x == sums), 'dgesv, singular')
        a = band_matrix(width)
        x = sums
        call dgesv(n, 1, a, n, pivots, x, n, info)
        call expect(solved(x, info), 'dgesv')
        call zhesv('Upper', 2, 1, h, 2, pivots, z, 2, w, 2, info)
        call expect(info == 0 .and. maxval(abs(z - 1)) < 1e-15_real64, 'zhesv')
    end subroutine

    function band_matrix(width) result(a)
        integer, intent(in) :: width
        real(real64) :: a(n, n)
        integer :: i, j
        a = reshape([((merge(merge(4, 1, i == j), 0, abs(i - j) <= width), i = 1, n), j = 1, n)], [n, n])
    end function

    logical function solved(x, info)
        real(real64), intent(in) :: x(:)
        integer, intent(in) :: info
        solved = info == 0 .and. maxval(abs(x - 1)) < 1e-13_real64
    end function

    ! A z = w z and z^H z = I, for real and Hermitian matrices.
    subroutine expect_pairs(a, z, w, what)
        complex(real64), intent(in) :: a(:, :), z(:, :)
        real(real64), intent(in) :: w(:)
        character(len=*), intent(in) :: what
        complex(real64) :: zw(size(z, 1), size(z, 2)), gram(size(z, 2), size(z, 2))
        integer :: j
        gram = matmul(conjg(transpose(z)), z)
        do j = 1, size(z, 2)
            zw(:, j) = z(:, j) * w(j)
            gram(j, j) = gram(j, j) - 1
        end do
        call expect(all(w(2:size(z, 2)) >= w(:size(z, 2) - 1)), what // ': order')
        call expect(maxval(abs(matmul(a, z) - zw)) < 1e-12_real64, what // ': residual')
        call expect(maxval(abs(gram)) < 1e-12_real64, what // ': orthogonality')
    end subroutine

    subroutine random_hermitian(a)
        complex(real64), intent(out) :: a(n, n)
        real(real64) :: re(n, n), im(n, n)
        call random_number(re)
        call random_number(im)
        a = cmplx(re, im, real64)
        a = (a + conjg(transpose(a))) / n
    end subroutine

    subroutine full_eigenproblems()
        integer, parameter :: long = 2 * n * n + 6 * n + 1
        complex(real64) :: a(n, n), h(n, n), zwork(long)
        real(real64) :: s(n, n), w(n), values(n), work(long)
        integer :: iwork(5 * n + 3), info, i
        call random_hermitian(a)
        do i = 1, 2
            s = real(a)
            if (i == 1) call dsyev('V', 'U', n, s, n, w, work, 3 * n, info)
            if (i == 2) call dsyevd('v', 'l', n, s, n, w, work, long, iwork, 5 * n + 3, info)
            call expect(info == 0, 'dsyev')
            call expect_pairs(cmplx(real(a), 0, real64), cmplx(s, 0, real64), w, 'dsyev')
            h = a
            if (i == 1) call zheev('V', 'L', n, h, n, w, zwork, 2 * n, work, info)
            if (i == 2) call zheevd('V', 'U', n, h, n, w, zwork, long, work, long, iwork, 5 * n + 3, info)
            call expect_pairs(a, h, w, 'zheev')
        end do
        h = a
        call zheev('N', 'L', n, h, n, values, zwork, 2 * n, work, info)
        call expect(maxval(abs(w - values)) < 1e-13_real64, 'zheev, values')
        s = 1e200_real64 * real(a)
        call dsyev('V', 'U', n, s, n, w, work, 3 * n, info)
        call expect_pairs(cmplx(real(a), 0, real64), cmplx(s, 0, real64), 1e-200_real64 * w, 'dsyev, large')
        s = real(a)
        call dsyev('N', 'L', n, s, n, values, work, 3 * n, info)
        call expect(maxval(abs(1e-200_real64 * w - values)) < 1e-13_real64, 'dsyev, values')
        call dsyevd('V', 'L', n, s, n, w, work, -1, iwork, 1, info)
        call expect(info == 0 .and. nint(work(1)) == long .and. iwork(1) == 5 * n + 3, 'dsyevd, query')
    end subroutine

    ! The matrix is left as it is by none; all of it and a part, by number and by range.
    subroutine tridiagonal_eigenproblems()
        integer, parameter :: long = 4 * n * n + 20 * n
        real(real64) :: d(n), e(n), w(n), z(n, n), work(long), t(n, n)
        complex(real64) :: u(n, n), x(n, n), zwork(n * n)
        integer :: iwork(50 * n), support(2 * n), info, m, i, found
        logical :: tryrac
        call random_hermitian(x)
        do i = 1, 8
            d = [(real(x(m, m)), m = 1, n)]
            e = [(abs(x(m, 1)), m = 1, n)]
            t = 0
            t(1, 1) = d(1)
            do m = 2, n
                t(m, m) = d(m)
                t(m - 1, m) = e(m - 1)
                t(m, m - 1) = e(m - 1)
            end do
            w = d
            found = n
            info = -1
            tryrac = .true.
            select case (i)
            case (1)
                call dstev('V', n, w, e, z, n, work, info)
            case (2)
                call dstevd('V', n, w, e, z, n, work, long, iwork, 50 * n, info)
            case (3)
                call dstevr('V', 'A', n, d, e, 0d0, 0d0, 0, 0, 0d0, found, w, z, n, support, work, long, iwork, &
                    50 * n, info)
            case (4)
                call dstevr('V', 'I', n, d, e, 0d0, 0d0, 3, 9, 0d0, found, w, z, n, support, work, long, iwork, &
                    50 * n, info)
                call expect(found == 7, 'dstevr, part')
            case (5)
                call dstemr('V', 'V', n, d, e, 0d0, 2d0, 0, 0, found, w, z, n, n, support, tryrac, work, long, iwork, &
                    50 * n, info)
                call expect(found > 0 .and. all(w(:found) > 0), 'dstemr, range')
            case (6)
                call dstedc('I', n, w, e, z, n, work, long, iwork, 50 * n, info)
            case (7)
                call zstemr('V', 'A', n, d, e, 0d0, 0d0, 0, 0, found, w, u, n, n, support, tryrac, work, long, iwork, &
                    50 * n, info)
            case (8)
                u = 0
                do m = 1, n
                    u(m, m) = (0, 1)
                end do
                call zstedc('V', n, w, e, u, n, zwork, n * n, work, long, iwork, 50 * n, info)
                u = u * (0, -1)
            end select
            call expect(info == 0, 'tridiagonal')
            if (i < 7) u = z
            call expect_pairs(cmplx(t, 0, real64), u(:, :found), w, 'tridiagonal ' // achar(48 + i))
        end do
        call dstemr('V', 'V', n, d, e, 0d0, 2d0, 0, 0, found, w, z, n, -1, support, tryrac, work, long, iwork, 50 * n, &
            info)
        call expect(info == 0 .and. z(1, 1) >= 1, 'dstemr, columns')
    end subroutine

    subroutine generalised_eigenproblems()
        integer, parameter :: long = 2 * n * n + 6 * n + 1
        complex(real64) :: a(n, n), b(n, n), h(n, n), f(n, n), zwork(long), left(n, n), right(n, n)
        real(real64) :: s(n, n), g(n, n), w(n), work(long)
        integer :: iwork(5 * n + 3), info, itype, i, j
        character :: uplo
        call random_hermitian(a)
        call random_hermitian(b)
        b = matmul(b, b)
        do i = 1, n
            b(i, i) = b(i, i) + 1
        end do
        do itype = 1, 3
            do i = 1, 4
                uplo = merge('U', 'L', mod(itype + i, 2) == 0)
                h = a
                f = b
                if (i > 2) h = real(a)
                if (i > 2) f = real(b)
                left = h
                right = f
                s = real(h)
                g = real(f)
                if (i == 1) call zhegv(itype, 'V', uplo, n, h, n, f, n, w, zwork, long, work, info)
                if (i == 2) call zhegvd(itype, 'V', uplo, n, h, n, f, n, w, zwork, long, work, long, iwork, 5 * n + 3, info)
                if (i == 3) call dsygv(itype, 'V', uplo, n, s, n, g, n, w, work, long, info)
                if (i == 4) call dsygvd(itype, 'V', uplo, n, s, n, g, n, w, work, long, iwork, 5 * n + 3, info)
                call expect(info == 0, 'dsygv')
                if (i > 2) h = s
                f = h
                do j = 1, n
                    f(:, j) = w(j) * h(:, j)
                end do
                if (itype == 1) f = matmul(left, h) - matmul(right, f)
                if (itype == 2) f = matmul(left, matmul(right, h)) - f
                if (itype == 3) f = matmul(right, matmul(left, h)) - f
                call expect(maxval(abs(f)) < 1e-11_real64, 'dsygv, residual ' // achar(48 + itype) // achar(48 + i))
            end do
        end do
        b(3, 3) = -1
        call zhegv(1, 'V', 'L', n, a, n, b, n, w, zwork, long, work, info)
        call expect(info > n .and. info <= n + 4, 'zhegv, not definite')
    end subroutine

    ! Sixteen arguments by reference, and a handle that lives between calls.
    subroutine sparse_system()
        integer(int64) :: pt(64) = 0
        integer :: iparam(64) = 0, ia(4) = [1, 3, 5, 6], ja(5) = [1, 2, 2, 3, 3], perm(3), error
        real(real64) :: a(5) = [4, -1, 4, -1, 4], b(3) = [3, 2, 3], x(3)
        call pardiso(pt, 1, 1, 2, 13, 3, a, ia, ja, perm, 1, iparam, 0, b, x, error)
        call expect(error == 0 .and. maxval(abs(x - 1)) < 1e-14_real64, 'pardiso')
        call pardiso(pt, 1, 1, 2, -1, 3, a, ia, ja, perm, 1, iparam, 0, b, x, error)
        call expect(error == 0 .and. pt(1) == 0, 'pardiso, release')
    end subroutine

    subroutine bad_argument()
        real(real64) :: a(1, 1) = 1
        integer :: info
        call dpotrf('Lower', -1, a, 1, info)
        call expect(info == -2 .and. reports == 1, 'xerbla')
        call dposv('Lower', 1, 1, a, 1, a, 0, info)
        call expect(info == -7 .and. reports == 2, 'xerbla of a driver')
    end subroutine

end program

! The program's own handler.
subroutine xerbla(name, position)
    use told
    implicit none
    character(len=*), intent(in) :: name
    integer, intent(in) :: position
    if ((name == 'DPOTRF' .and. position == 2) .or. (name == 'DPOSV' .and. position == 7)) reports = reports + 1
end subroutine
