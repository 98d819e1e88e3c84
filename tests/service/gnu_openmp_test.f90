! A program built by GCC, whose OpenMP runtime is libgomp: the library counts its threads as this program sets them. Run
! with OMP_NUM_THREADS=3. Stops with an error at the first wrong answer.
program gnu_openmp_test
    use nxl
    use omp_lib
    implicit none

    call NXL_Set_Dynamic(0)
    call expect(3, 'by the environment')
    call omp_set_num_threads(2)
    call expect(2, 'lowered')
    call omp_set_num_threads(5)
    call expect(5, 'raised')
    call expect_in_region(5, 'in a region, fixed')
    call NXL_Set_Dynamic(1)
    call expect_in_region(1, 'in a region')

contains

    subroutine expect(count, what)
        integer, intent(in) :: count
        character(len=*), intent(in) :: what
        integer :: answer
        answer = NXL_Get_Max_Threads()
        if (answer == count) return
        print *, what, ': ', answer
        error stop
    end subroutine

    subroutine expect_in_region(count, what)
        integer, intent(in) :: count
        character(len=*), intent(in) :: what
        !$omp parallel num_threads(2)
        call expect(count, what)
        !$omp end parallel
    end subroutine
end program
