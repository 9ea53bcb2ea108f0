/* Entry of an image on the board: the emulator loads it and jumps here in supervisor mode, with the MMU off and RAM at 0.
   Memory is mapped one to one, but nothing lies at the first megabyte: a null pointer that is followed is a fault. */
    .syntax unified
    .arm

    .equ    TABLE, 0x4000                   /* of translation, in the megabyte that the program does not see */
    .equ    VECTORS, 0xf0000                /* where 0xffff0000 is mapped to */
    .equ    SECTION, 0xc12                  /* a megabyte that may be read and written, of domain 0 */

    .section .start, "ax"
    .global _start
_start:
    ldr     sp, =__stack_top

    /* The exception vectors and the addresses that they load, to where the high vectors will be seen. */
    mov     r0, #VECTORS
    ldr     r1, =vectors
    mov     r2, #16
1:  ldr     r3, [r1], #4
    str     r3, [r0], #4
    subs    r2, r2, #1
    bne     1b

    /* Nothing is mapped, */
    mov     r0, #TABLE
    mov     r1, #4096
    mov     r2, #0
1:  str     r2, [r0], #4
    subs    r1, r1, #1
    bne     1b
    /* but RAM from 1 MiB on, the board's registers, and the high vectors at the end of the address space. */
    mov     r0, #TABLE
    ldr     r2, =SECTION
    mov     r1, #1
1:  orr     r3, r2, r1, lsl #20
    str     r3, [r0, r1, lsl #2]
    add     r1, r1, #1
    cmp     r1, #128
    blo     1b
    mov     r1, #0x100
    orr     r3, r2, r1, lsl #20
    str     r3, [r0, r1, lsl #2]
    ldr     r1, =0xfff
    str     r2, [r0, r1, lsl #2]

    mcr     p15, 0, r0, c2, c0, 0           /* translation table */
    mov     r0, #1
    mcr     p15, 0, r0, c3, c0, 0           /* access as the table says */
    mrc     p15, 0, r0, c1, c0, 0
    orr     r0, r0, #0x2000                 /* high vectors */
    orr     r0, r0, #1                      /* MMU on */
    mcr     p15, 0, r0, c1, c0, 0

    ldr     r0, =__bss_start__
    ldr     r1, =__bss_end__
    mov     r2, #0
2:  cmp     r0, r1
    strlo   r2, [r0], #4
    blo     2b

    bl      initialise_monitor_handles      /* standard streams by semihosting */
    ldr     r0, =__libc_fini_array
    bl      atexit
    bl      __libc_init_array
    ldr     r0, =arguments
    bl      FetchArguments
    ldr     r1, =arguments
    bl      main
    bl      exit
    b       .

    .align  2
vectors:
    .rept 8
    ldr     pc, [pc, #24]
    .endr
    .word   _start
    .word   undefined_instruction
    .word   supervisor_call                 /* of any number but that of semihosting, which the emulator takes itself */
    .word   prefetch_abort
    .word   data_abort
    .word   unexpected_interrupt
    .word   unexpected_interrupt
    .word   unexpected_interrupt

/* FAULT name, text, offset: the link register lies `offset` bytes behind the instruction that failed. */
    .macro FAULT name, text, offset
\name:
    ldr     sp, =__fault_stack_top
    sub     r1, lr, #\offset
    ldr     r0, =\name\()_text
    bl      LeaveByFault
    .pushsection .rodata
\name\()_text:
    .asciz  "\text"
    .popsection
    .endm

    FAULT   undefined_instruction, "undefined instruction", 4
    FAULT   supervisor_call, "unknown supervisor call", 4
    FAULT   prefetch_abort, "prefetch abort", 4
    FAULT   data_abort, "data abort", 8
    FAULT   unexpected_interrupt, "unexpected interrupt", 4
    .ltorg

    /* Called by newlib around constructors and destructors; nothing to do here. */
    .global _init
    .global _fini
_init:
_fini:
    bx      lr

    .bss
    .align  3
arguments:
    .skip   4 * 33
    .align  3
    .skip   1024
__fault_stack_top:

    .data
    .global __dso_handle
__dso_handle:
    .word   0
