/* The names that GNU Fortran gives to BLAS and LAPACK: each a jump to the entry of libnxl.so. Arguments stay where the
 * caller put them; hidden lengths of 64 bits lie where the entries read 32. */
#if defined(__CET__) && (__CET__ & 1)
#define LANDING endbr64
#else
#define LANDING
#endif

    .text

.macro jump name, entry
    .globl \name
    .type \name, @function
    .p2align 4
\name:
    .cfi_startproc
    LANDING
    jmp *\entry@GOTPCREL(%rip)
    .cfi_endproc
    .size \name, .-\name
.endm

.macro result name, entry
.endm

#include "routines.inc"

    .section .note.GNU-stack, "", @progbits
