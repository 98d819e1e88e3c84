! nxl.f90 with strict warnings: one call through each family. Stops with 1 when a result is wrong.
program fortran_interface_test
    use nxl
    implicit none (type, external)
    logical :: all_right = .true.

    call level1()
    call level3()
    call sparse_level1()
    call services()
    call flexible_gmres()
    call special_functions()
    if (.not. all_right) stop 1

contains

    subroutine expect(right, what)
        logical, intent(in) :: right
        character(len=*), intent(in) :: what
        if (right) return
        print '(2a)', 'wrong: ', what
        all_right = .false.
    end subroutine

    logical function same(value, whole)
        real(c_double), intent(in) :: value
        integer, intent(in) :: whole
        same = abs(value - whole) < 1e-12_c_double
    end function

    subroutine level1()
        real(c_double) :: x(3) = [1, 2, 3], y(3) = [4, 5, 6]
        complex(c_double_complex) :: u(1) = (1, 2), dot
        call expect(same(ddot(3, x, 1, y, 1), 32), 'ddot')
        call daxpy(3, 2.0_c_double, x, 1, y, 1)
        call expect(same(y(3), 12), 'daxpy')
        call zdotc(dot, 1, u, 1, u, 1)
        call expect(same(real(dot), 5) .and. same(aimag(dot), 0), 'zdotc')
        call expect(idamax(3, y, 1) == 3, 'idamax')
    end subroutine

    subroutine level3()
        real(c_double) :: a(3, 2) = reshape([1, 2, 3, 4, 5, 6], [3, 2]), c(2, 2) = 1
        complex(c_double_complex) :: u(2, 1) = reshape([(1, 2), (3, -4)], [2, 1]), w(1, 1)
        call dgemm('T', 'N', 2, 2, 3, 2.0_c_double, a, 3, a, 3, -1.0_c_double, c, 2)
        call expect(all(abs(c - (2 * matmul(transpose(a), a) - 1)) < 1e-12_c_double), 'dgemm')
        call zgemm('C', 'n', 1, 1, 2, (1, 0) * 1.0_c_double, u, 2, u, 2, (0, 0) * 1.0_c_double, w, 1)
        call expect(same(real(w(1, 1)), 30) .and. same(aimag(w(1, 1)), 0), 'zgemm')
    end subroutine

    subroutine sparse_level1()
        real(c_double) :: x(2) = [10, 20], y(4) = 0
        call dsctr(2, x, [4, 1], y)
        call expect(same(y(4), 10) .and. same(y(1), 20), 'dsctr')
    end subroutine

    subroutine services()
        call NXL_Set_Dynamic(0)
        call NXL_Set_Num_Threads(3)
        call expect(NXL_Get_Max_Threads() == 3, 'NXL_Get_Max_Threads')
        call expect(D1MACH(4) > 2.2e-16_c_double, 'D1MACH')
        call NXL_FreeBuffers()
    end subroutine

    ! x of diag(1, 2, 3) x = (1, 1, 1), in one cycle.
    subroutine flexible_gmres()
        integer(c_int), parameter :: n = 3
        integer(c_int) :: request, ipar(128), iterations
        real(c_double) :: x(n) = 0, b(n) = 1, dpar(128), tmp(40)
        call DFGMRES_INIT(n, x, b, request, ipar, dpar, tmp)
        ipar(10) = 0
        ipar(12) = 1
        call DFGMRES_CHECK(n, x, b, request, ipar, dpar, tmp)
        call expect(request == 0, 'DFGMRES_CHECK')
        do
            call DFGMRES(n, x, b, request, ipar, dpar, tmp)
            if (request /= 1) exit
            tmp(ipar(23):ipar(23) + n - 1) = [1, 2, 3] * tmp(ipar(22):ipar(22) + n - 1)
        end do
        call expect(request == 0, 'DFGMRES')
        call DFGMRES_GET(n, x, b, request, ipar, dpar, tmp, iterations)
        call expect(request == 0 .and. iterations == 3 .and. abs(x(3) - 1 / 3.0_c_double) < 1e-14_c_double, 'DFGMRES_GET')
    end subroutine

    ! A Wronskian for each pair of functions.
    subroutine special_functions()
        complex(c_float_complex) :: z, i(2), j(2), k(2), y(2), h(2), work(2), ai, ai1, bi, bi1
        integer(c_int) :: nz, ierr(9)
        z = (1.5_c_float, -2.0_c_float)
        call CBESI(z, 0.25_c_float, 1, 2, i, nz, ierr(1))
        call CBESJ(z, 0.25_c_float, 1, 2, j, nz, ierr(2))
        call CBESK(z, 0.25_c_float, 1, 2, k, nz, ierr(3))
        call CBESY(z, 0.25_c_float, 1, 2, y, nz, work, ierr(4))
        call CBESH(z, 0.25_c_float, 1, 2, 2, h, nz, ierr(5))
        call CAIRY(z, 0, 1, ai, nz, ierr(6))
        call CAIRY(z, 1, 1, ai1, nz, ierr(7))
        call CBIRY(z, 0, 1, bi, ierr(8))
        call CBIRY(z, 1, 1, bi1, ierr(9))
        call expect(all(ierr == 0), 'IERR')
        call expect(abs(z * (i(1) * k(2) + i(2) * k(1)) - 1) < 1e-5, 'CBESI, CBESK')
        call expect(abs(z * (j(2) * y(1) - j(1) * y(2)) * acos(-1.0) - 2) < 1e-5, 'CBESJ, CBESY')
        call expect(abs(h(2) - j(2) + (0, 1) * y(2)) < 1e-5, 'CBESH')
        call expect(abs((ai * bi1 - ai1 * bi) * acos(-1.0) - 1) < 1e-5, 'CAIRY, CBIRY')
    end subroutine

end program
