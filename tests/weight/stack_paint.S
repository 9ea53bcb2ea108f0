/* How deep a call reaches into the stack. Neither routine takes any of it itself. */
    .syntax unified
    .arm
    .equ    DEPTH, 32768
    .equ    PAINT, 0x5ca1ab1e

    .section .text.PaintStack, "ax"
    .global PaintStack
PaintStack:
    ldr     r0, =PAINT
    mov     r1, sp
    sub     r2, sp, #DEPTH
1:  str     r0, [r1, #-4]!
    cmp     r1, r2
    bhi     1b
    bx      lr
    .ltorg

/* Into stackUsed: bytes from the stack pointer down to the lowest word that has been written since it was painted. */
    .section .text.MeasureStack, "ax"
    .global MeasureStack
MeasureStack:
    ldr     r0, =PAINT
    sub     r1, sp, #DEPTH
1:  ldr     r2, [r1]
    cmp     r2, r0
    bne     2f
    add     r1, r1, #4
    cmp     r1, sp
    blo     1b
2:  sub     r1, sp, r1
    ldr     r0, =stackUsed
    str     r1, [r0]
    bx      lr
    .ltorg
