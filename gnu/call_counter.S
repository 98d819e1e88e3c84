/* The entries of libnxl.so once more: each adds one to its count and jumps on. call_counter.c finds where to, and
 * tells. */
.macro counted entry
    .text
    .globl \entry
    .type \entry, @function
    .p2align 4
\entry:
    lock incq \entry\()_call(%rip)
    jmp *\entry\()_call+8(%rip)
    .size \entry, .-\entry

    .section .rodata
\entry\()_name:
    .asciz "\entry"

    .data
    .p2align 3
\entry\()_call: /* struct Call of call_counter.c */
    .quad 0
    .quad 0
    .quad \entry\()_name
.endm

.macro jump name, entry
    counted \entry
.endm
.macro result name, entry
    counted \entry
.endm

    .data
    .p2align 3
    .globl first_call
    .hidden first_call
first_call:
#include "routines.inc"
    .data
    .globl end_of_calls
    .hidden end_of_calls
end_of_calls:

    .section .note.GNU-stack, "", @progbits
