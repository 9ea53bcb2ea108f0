@ Square root of a double, by the reciprocal of the root of its first 32 bits. README.md has the proof of the bounds
@ that are stated here. The mathematics library's own name for it is defined beside the standard one, so that its arc
@ sine or its hypotenuse come here too, and none of its objects for square roots is needed.
    .include "function.inc"

    SECTION square_root
    ENTRY   sqrt
    ENTRY   __ieee754_sqrt
    ENTRY   SoftFloatSquareRoot
    sub     ip, r1, #LEADING_BIT        @ positive, normal, below 2^1010
    cmp     ip, #0x7f000000
    bcs     SoftFloatRareRoot
    push    {r4, r5, r6, lr}

    @ The number is V * 4^n, V = r1:r0 an integer from 2^62 to 2^64: its first 32 bits are from 2^30. S is the root of
    @ V, from 2^31 to 2^32. r4: the exponent of the root less the one that the leading bit adds.
    mov     r4, r1, lsr #20
    mov     r1, r1, lsl #11
    orr     r1, r1, #SIGN
    orr     r1, r1, r0, lsr #21
    mov     r0, r0, lsl #11
    tst     r4, #1
    lsrsne  r1, r1, #1
    rrxne   r0, r0
    add     r4, r4, #0x3fc
    add     r4, r4, #1
    mov     r4, r4, lsr #1

    @ L, from below close to 2^63 / S, by two steps of Newton's iteration, y (3 - v y^2) / 2, with v = r1 / 2^30.
    adr     ip, reciprocal_roots - 64
    ldrb    ip, [ip, r1, lsr #24]
    add     ip, ip, #256                @ 2^9 y, to 1 in 217
    mul     r2, ip, ip
    mov     r2, r2, lsl #14
    umull   r3, r5, r1, r2
    rsb     r5, r5, #0xc0000000         @ (3 - v y^2) 2^30
    mov     r5, r5, lsr #8
    mul     r3, r5, ip                  @ 2^32 y, to 1 in 31,000
    umull   r2, ip, r3, r3
    add     ip, ip, #1
    umull   r2, r5, r1, ip
    rsb     r5, r5, #0xc0000000
    sub     r5, r5, #1                  @ at most (3 - v y^2) 2^30
    umull   r2, ip, r3, r5
    mov     ip, ip, lsl #1
    orr     ip, ip, r2, lsr #31
    sub     ip, ip, #2                  @ v is up to 1 in 2^30 less than V, its reciprocal root greater by 2
                                        @ ip = L: 2^63 / S - 14 < L <= 2^63 / S

    @ First digit: r3 = 2 q, up to S and above S - 24. The remainder V - (2 q)^2 = r1:r6 is below 2^38.
    umull   r2, r3, r1, ip
    mov     r3, r3, lsl #1
    umull   r2, r5, r3, r3
    subs    r6, r0, r2
    sbc     r1, r1, r5

    @ Second digit, up to remainder / 2 S * 2^22. The root 2^22 S, cut off, is r1:r2 or 1 more.
    mov     r6, r6, lsr #6
    orr     r6, r6, r1, lsl #26
    umull   r2, r5, r6, ip
    mov     r5, r5, lsr #4
    mov     r1, r3, lsr #10
    adds    r2, r5, r3, lsl #22
    adc     r1, r1, #0

    @ It is 1 more if the remainder 2^44 V - root^2 = r5:r3 is above 2 root. Both are below 2^57; what goes beyond 64
    @ bits cancels.
    umull   r3, r5, r2, r2
    mul     r6, r1, r2
    add     r5, r5, r6, lsl #1
    rsbs    r3, r3, #0
    rsc     r5, r5, r0, lsl #12
    adds    r6, r2, r2
    adc     lr, r1, r1
    subs    r6, r6, r3
    sbcs    lr, lr, r5
    @ The root of 54 bits is never half-way between two doubles: its square would be odd, and 2^44 V is even. So its
    @ last bit alone decides: half of root + 1.
    mov     r3, #1
    movcc   r3, #2
    adds    r2, r2, r3
    adc     r1, r1, #0
    lsrs    r1, r1, #1
    rrx     r0, r2
    add     r1, r1, r4, lsl #20
    pop     {r4, r5, r6, pc}

    @ For r1 from (64 + i) 2^24 to (65 + i) 2^24 the integer next to 2^9 / root(v) in the middle, less 256.
reciprocal_roots:
#define ROW(a, b, c, d, e, f, g, h) .byte a, b, c, d, e, f, g, h
#include "reciprocal_roots.inc"

    .section .note.GNU-stack, "", %progbits
