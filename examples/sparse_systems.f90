! Several sparse systems with one analysis: heat spreads in a square plate whose edges stay cold, u' = -K u, by implicit
! steps (I + dt K) u_next = u. All steps have one pattern: it is analysed once, factored for each length of step, and
! each factor serves several steps with two plates at once.
program sparse_systems
    use, intrinsic :: iso_fortran_env, only: int64, real64
    use nxl
    implicit none (type, external)
    integer, parameter :: side = 40, n = side**2, plates = 2, definite = 2
    real(real64), parameter :: pi = acos(-1.0_real64)
    integer(int64) :: pt(64)
    integer :: iparam(64), ia(n + 1), ja(3*n), perm(n), error, step, p
    real(real64) :: a(3*n), u(n, plates), first(n, plates), next(n, plates), expected(plates), dt, difference

    pt = 0                     ! the handle: all zero before the first call
    iparam = 0                 ! iparam(1) = 0: defaults
    do p = 1, plates
        first(:, p) = wave(p)
    end do
    u = first
    expected = 1
    call matrix_of_step(1.0_real64)
    call run(11)               ! analysis
    iparam(6) = 1              ! solutions replace the right-hand sides
    dt = 1e-4_real64
    do while (dt < 2e-3_real64) ! the steps grow as the plates calm down
        call matrix_of_step(dt)
        call run(22)           ! factorisation
        do step = 1, 3
            call run(33)       ! solution
            expected = expected/(1 + dt*[(decay(p), p=1, plates)])
        end do
        dt = 2*dt
    end do
    call run(-1)               ! memory goes back

    ! Each plate still has its first shape, smaller by what the steps have taken.
    difference = maxval(abs(u - first*spread(expected, 1, n)))
    if (difference > 1e-12_real64) error stop "not solved"
    print '(a, es7.0)', "Fortran: 15 steps with 5 factors of one analysis, largest error ", difference

contains

    subroutine run(ido)
        integer, intent(in) :: ido
        call pardiso(pt, 1, 1, definite, ido, n, a, ia, ja, perm, plates, iparam, 0, u, next, error)
        if (error /= 0) error stop "a step failed"
    end subroutine

    ! The upper triangle of I + dt K, whose pattern is the same for every length dt of the step.
    subroutine matrix_of_step(length)
        real(real64), intent(in) :: length
        real(real64) :: weight
        integer :: i, k
        weight = length*(side + 1)**2   ! by the square of the mesh width
        k = 1
        do i = 1, n
            ia(i) = k
            call add(k, i, 1 + 4*weight)
            if (mod(i, side) /= 0) call add(k, i + 1, -weight)
            if (i + side <= n) call add(k, i + side, -weight)
        end do
        ia(n + 1) = k
    end subroutine

    ! One more entry of the row.
    subroutine add(k, column, value)
        integer, intent(inout) :: k
        integer, intent(in) :: column
        real(real64), intent(in) :: value
        ja(k) = column
        a(k) = value
        k = k + 1
    end subroutine

    ! Waves with some bellies along each edge are eigenvectors of K; decay is the eigenvalue.
    pure function wave(bellies) result(shape)
        integer, intent(in) :: bellies
        real(real64) :: shape(n)
        real(real64) :: edge(side)
        integer :: i, j
        edge = sin(bellies*pi*[(i, i=1, side)]/(side + 1))
        shape = [((edge(i)*edge(j), i=1, side), j=1, side)]
    end function
    pure real(real64) function decay(bellies)
        integer, intent(in) :: bellies
        decay = 8*((side + 1)*sin(0.5_real64*bellies*pi/(side + 1)))**2
    end function

end program
