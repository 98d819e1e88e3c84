! Past one machine: a distributed LU solution and a distributed symmetric eigenproblem by ScaLAPACK, on a grid of all
! processes. What each process does on its own blocks is BLAS and LAPACK, and with libnxl_gnu.so preloaded runs there.
! Prints scaled residuals; returns 1 when one is above 10. Argument: the size of the matrices, 600 when absent.
program lu_and_eigenvalues
    use, intrinsic :: iso_fortran_env, only: real64
    implicit none
    integer, parameter :: block = 64, descriptor_length = 9
    integer, external :: numroc
    real(real64), external :: pdlange, pdlamch
    external :: blacs_pinfo, blacs_get, blacs_gridinit, blacs_gridinfo, blacs_gridexit, blacs_exit, descinit
    external :: pdgesv, pdsyev, pdgemm, pdlacpy, pdelset

    integer :: me, processes, context, grid_rows, grid_columns, row, column, n, local_rows, local_columns, local_right
    integer :: desc(descriptor_length), desc_right(descriptor_length), info
    logical :: passed = .true.

    call blacs_pinfo(me, processes)
    call blacs_get(-1, 0, context)
    grid_rows = int(sqrt(real(processes)))
    do while (mod(processes, grid_rows) /= 0)
        grid_rows = grid_rows - 1
    end do
    grid_columns = processes / grid_rows
    call blacs_gridinit(context, 'Row-major', grid_rows, grid_columns)
    call blacs_gridinfo(context, grid_rows, grid_columns, row, column)
    n = size_asked_for()
    local_rows = numroc(n, block, row, 0, grid_rows)
    local_columns = numroc(n, block, column, 0, grid_columns)
    local_right = numroc(1, block, column, 0, grid_columns)
    call descinit(desc, n, n, block, block, 0, 0, context, max(1, local_rows), info)
    call descinit(desc_right, n, 1, block, block, 0, 0, context, max(1, local_rows), info)
    if (me == 0) print '(a, i0, a, i0, a, i0)', 'n = ', n, ', processes ', grid_rows, ' x ', grid_columns

    call solve()
    call eigenvalues()
    call blacs_gridexit(context)
    call blacs_exit(0)
    if (.not. passed) error stop 1

contains

    integer function size_asked_for() result(size)
        character(len=16) :: text
        size = 600
        if (command_argument_count() < 1) return
        call get_command_argument(1, text)
        read (text, *) size
    end function

    ! The same value on every process: an integer hash of the position, between -1 and 1.
    pure real(real64) function value(i, j)
        integer, intent(in) :: i, j
        value = mod(i * 7919 + j * 104729 + mod(i * j, 1009) * 31, 2003) / 1001.0_real64 - 1
    end function

    subroutine report(what, residual)
        character(len=*), intent(in) :: what
        real(real64), intent(in) :: residual
        if (me == 0) print '(a, t40, f8.4)', what, residual
        passed = passed .and. residual <= 10 ! false for NaN
    end subroutine

    real(real64) function norm(columns, a, descriptor)
        integer, intent(in) :: columns, descriptor(descriptor_length)
        real(real64), intent(in) :: a(:, :)
        real(real64) :: work(local_columns + block)
        norm = pdlange('1', n, columns, a, 1, 1, descriptor, work)
    end function

    ! | b - A x | / (|A| |x| n eps), 1-norms.
    subroutine solve()
        real(real64), allocatable :: a(:, :), lu(:, :), b(:, :), x(:, :)
        integer :: pivots(local_rows + block), i, j
        real(real64) :: eps
        allocate (a(max(1, local_rows), max(1, local_columns)), b(max(1, local_rows), max(1, local_right)))
        do j = 1, n
            do i = 1, n
                call pdelset(a, i, j, desc, value(i, j))
            end do
            call pdelset(b, j, 1, desc_right, value(j, n + 1))
        end do
        lu = a
        x = b
        call pdgesv(n, 1, lu, 1, 1, desc, pivots, x, 1, 1, desc_right, info)
        if (info /= 0) error stop 'pdgesv'
        eps = pdlamch(context, 'Epsilon')
        call pdgemm('N', 'N', n, 1, n, -1.0_real64, a, 1, 1, desc, x, 1, 1, desc_right, 1.0_real64, b, 1, 1, desc_right)
        call report('pdgesv, |b - A x| / (|A| |x| n eps)', &
            norm(1, b, desc_right) / (norm(n, a, desc) * norm(1, x, desc_right) * n * eps))
    end subroutine

    ! | A Z - Z W | / (|A| n eps), 1-norms.
    subroutine eigenvalues()
        real(real64), allocatable :: a(:, :), kept(:, :), z(:, :), zw(:, :), w(:), work(:)
        integer :: i, j
        real(real64) :: eps, asked(1)
        allocate (a(max(1, local_rows), max(1, local_columns)), w(n))
        do j = 1, n
            do i = 1, n
                call pdelset(a, i, j, desc, value(min(i, j), max(i, j)))
            end do
        end do
        kept = a
        z = a
        call pdsyev('V', 'L', n, a, 1, 1, desc, w, z, 1, 1, desc, asked, -1, info)
        allocate (work(int(asked(1))))
        call pdsyev('V', 'L', n, a, 1, 1, desc, w, z, 1, 1, desc, work, size(work), info)
        if (info /= 0) error stop 'pdsyev'
        zw = z
        call scale_columns(zw, w)
        eps = pdlamch(context, 'Epsilon')
        call pdgemm('N', 'N', n, n, n, 1.0_real64, kept, 1, 1, desc, z, 1, 1, desc, -1.0_real64, zw, 1, 1, desc)
        call report('pdsyev, |A Z - Z W| / (|A| n eps)', norm(n, zw, desc) / (norm(n, kept, desc) * n * eps))
    end subroutine

    ! Column j of the distributed matrix times w(j).
    subroutine scale_columns(a, w)
        real(real64), intent(inout) :: a(:, :)
        real(real64), intent(in) :: w(:)
        integer :: local, global
        do local = 1, local_columns
            global = ((local - 1) / block * grid_columns + column) * block + mod(local - 1, block) + 1
            a(:, local) = a(:, local) * w(global)
        end do
    end subroutine

end program
