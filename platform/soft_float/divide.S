@ Quotient of two doubles, by the reciprocal of the divisor's first 32 bits. README.md has the proof of the bounds that
@ are stated here.
    .include "function.inc"

    SECTION divide
    ENTRY   __aeabi_ddiv
    ENTRY   __divdf3
    push    {r4-r8, lr}
    @ Both exponents from 512 to 1535, where the first two bits differ.
    eor     r4, r1, r1, lsl #1
    eor     r5, r3, r3, lsl #1
    and     r4, r4, r5
    tst     r4, #0x40000000
    beq     rare
    @ Signs and exponents are subtracted as one number. r4 is less by 2 than the exponent of a quotient from 1 to 2
    @ without the one that the leading bit adds: 2043 at most, so nothing overflows. From 0 on nothing becomes
    @ subnormal, and the sign is right; a negative number looks like 2045 to 2047.
    mov     r4, r1, lsr #20
    sub     r4, r4, r3, lsr #20
    add     r4, r4, #0x3fc
    mov     ip, #3 * ALL_ONES_DOUBLED
    cmn     ip, r4, lsl #21
    bcs     rare

    @ X = r1:r0 and Y = r3:r2, the significands as integers from 2^52 to 2^53; N = r6 and D = r5 their first 32 bits.
    mov     ip, #LEADING_BIT
    mov     r1, r1, lsl #12
    orr     r1, ip, r1, lsr #12
    mov     r3, r3, lsl #12
    orr     r3, ip, r3, lsr #12
    mov     r5, r3, lsl #11
    orr     r5, r5, r2, lsr #21
    mov     r6, r1, lsl #11
    orr     r6, r6, r0, lsr #21

    @ L, from below close to 2^84 / Y, by two steps of Newton's iteration for 1 / D: R (2 - D R).
    adr     ip, reciprocals - 128
    ldrb    ip, [ip, r5, lsr #24]
    add     ip, ip, #256                @ 2^40 / D, to 1 in 219
    mul     lr, ip, ip
    umull   r7, r8, lr, r5
    rsb     r8, r8, ip, lsl #9
    mov     ip, r8, lsl #15
    sub     ip, ip, r7, lsr #17         @ 2^63 / D, to 1 in 48,000
    umull   r7, r8, ip, r5
    mvn     r8, r8                      @ 2^32 - D R, at least that
    umull   r7, lr, ip, r8
    mov     lr, lr, lsl #1
    orr     lr, lr, r7, lsr #31
    sub     lr, lr, #2                  @ D is up to 1 less than Y / 2^21, its reciprocal greater by 2
                                        @ lr = L: 2^84 / Y - 7 < L <= 2^84 / Y

    @ First digit: q = r5 = N L / 2^32, up to 2^31 X / Y. Remainder R = r1:r0 = 2^31 X - q Y, from 0 to below 2^56; what
    @ goes beyond 64 bits cancels.
    umull   r7, r5, r6, lr
    mov     r6, r0, lsr #1
    orr     r6, r6, r1, lsl #31
    mov     r0, r0, lsl #31
    umull   r7, ip, r5, r2
    mla     ip, r5, r3, ip
    subs    r0, r0, r7
    sbc     r1, r6, ip

    @ Second digit: r6 = (R / 2^24) L / 2^37, up to 2^23 R / Y, and less by up to one: the next remainder, below 2 Y,
    @ tells.
    mov     r6, r1, lsl #8
    orr     r6, r6, r0, lsr #24
    umull   r7, ip, r6, lr
    mov     r6, ip, lsr #5
    mov     r1, r1, lsl #23
    orr     r1, r1, r0, lsr #9
    mov     r0, r0, lsl #23
    umull   r7, ip, r6, r2
    mla     ip, r6, r3, ip
    subs    r0, r0, r7
    sbc     r1, r1, ip
    cmp     r0, r2
    sbcs    r7, r1, r3                  @ carry: remainder >= Y
    adc     r6, r6, #0

    @ The quotient 2^54 X / Y, cut off: 54 bits, or 55 for X >= Y. It never lies half-way between two doubles: with 2 m
    @ + 1 of 54 bits, X 2^k = Y (2 m + 1) would make X a multiple of 2 m + 1, which is greater. So the first bit behind
    @ those that are kept alone decides.
    mov     r1, r5, lsr #9
    adds    r0, r6, r5, lsl #23
    adc     r1, r1, #0
    tst     r1, #0x00400000
    beq     1f
    add     r4, r4, #2
    lsrs    r0, r0, #2
    orr     r0, r0, r1, lsl #30
    mov     r1, r1, lsr #2
    adcs    r0, r0, #0
    adc     r1, r1, r4, lsl #20
    pop     {r4-r8, pc}
1:  add     r4, r4, #1
    lsrs    r0, r0, #1
    orr     r0, r0, r1, lsl #31
    mov     r1, r1, lsr #1
    adcs    r0, r0, #0
    adc     r1, r1, r4, lsl #20
    pop     {r4-r8, pc}

rare:
    pop     {r4-r8, lr}
    b       SoftFloatRareQuotient

    @ For D from (128 + i) 2^24 to (129 + i) 2^24 the integer next to 2^40 / D in the middle, less 256.
reciprocals:
#define ROW(a, b, c, d, e, f, g, h) .byte a, b, c, d, e, f, g, h
#include "reciprocals.inc"

    .section .note.GNU-stack, "", %progbits
