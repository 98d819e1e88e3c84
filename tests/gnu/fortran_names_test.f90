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
    external :: dgemm, dgetrf, dgetrs, dpotrf, dtrtrs, ztrtri, zlacgv, dgesv, dgbsv, dposv, dpbsv, dsysv, zhesv, pardiso
    real(real64), external :: ddot, dznrm2
    complex(real64), external :: zdotc, zdotu
    integer, external :: idamax

    call vectors()
    call products()
    call factors()
    call drivers()
    call sparse_system()
    call bad_argument()

contains

    subroutine expect(right, what)
        logical, intent(in) :: right
        character(len=*), intent(in) :: what
        if (.not. right) error stop what
    end subroutine

    subroutine vectors()
        real(real64) :: x(3) = [1, -7, 3]
        complex(real64) :: u(2) = [(1, 2), (3, -1)], v(2) = [(0, 1), (2, 2)]
        call expect(ddot(3, x, 1, x, 1) == 59, 'ddot')
        call expect(idamax(3, x, 1) == 2, 'idamax')
        call expect(zdotc(2, u, 1, v, 1) == dot_product(u, v), 'zdotc')
        call expect(zdotu(2, u, 1, v, 1) == sum(u * v), 'zdotu')
        call expect(abs(dznrm2(2, u, 1)**2 - 15) < 1e-13_real64, 'dznrm2')
        call zlacgv(2, u, 1)
        call expect(aimag(u(1)) == -2 .and. aimag(u(2)) == 1, 'zlacgv')
    end subroutine

    subroutine products()
        real(real64) :: a(n, n), b(n, n), c(n, n)
        call random_number(a)
        call random_number(b)
        call dgemm('Trans', 'No', n, n, n, 2.0_real64, a, n, b, n, 0.0_real64, c, n)
        call expect(maxval(abs(c - 2 * matmul(transpose(a), b))) < 1e-12_real64, 'dgemm')
    end subroutine

    ! Solves by LU and by Cholesky, with the lengths of one, and of three option characters.
    subroutine factors()
        real(real64) :: a(n, n), s(n, n), x(n, 1), lu(n, n)
        complex(real64) :: t(2, 2) = reshape([(2, 0), (0, 0), (4, 2), (1, 0)], [2, 2])
        integer :: pivots(n), info, i
        call random_number(a)
        s = matmul(transpose(a), a)
        do i = 1, n
            s(i, i) = s(i, i) + n
        end do
        lu = s
        x(:, 1) = sum(s, dim=2)
        call dgetrf(n, n, lu, n, pivots, info)
        call dgetrs('No transpose', n, 1, lu, n, pivots, x, n, info)
        call expect(info == 0 .and. maxval(abs(x - 1)) < 1e-12_real64, 'dgetrs')
        x(:, 1) = sum(s, dim=2)
        call dpotrf('Lower', n, s, n, info)
        call dtrtrs('Lower', 'No', 'Non-unit', n, 1, s, n, x, n, info)
        call dtrtrs('Lower', 'Transpose', 'Non-unit', n, 1, s, n, x, n, info)
        call expect(info == 0 .and. maxval(abs(x - 1)) < 1e-12_real64, 'dpotrf, dtrtrs')
        call ztrtri('Upper', 'Non-unit', 2, t, 2, info)
        call expect(info == 0 .and. t(1, 2) == (-2, -1), 'ztrtri')
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
