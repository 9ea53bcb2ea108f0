@ Product of two doubles.
    .include "function.inc"

    @ r6:r5:lr hold the product of the significands with its leading bit \places + 21 bits above those that are kept,
    @ and r4 the exponent, less the one that the leading bit adds.
    .macro  MOVE_ROUND_AND_RETURN places
    mov     r1, r6, lsl #\places
    orr     r1, r1, r5, lsr #32 - \places
    mov     r0, r5, lsl #\places
    orr     r0, r0, lr, lsr #32 - \places
    mov     lr, lr, lsl #\places
    CARRY_OF_ROUNDING lr, r0
    adcs    r0, r0, #0
    adc     r1, r1, r4, lsl #20
    pop     {r4, r5, r6, pc}
    .endm

    SECTION multiply
    ENTRY   __aeabi_dmul
    ENTRY   __muldf3
    push    {r4, r5, r6, lr}
    @ Both exponents from 512 to 1535, where the first two bits differ.
    eor     r4, r1, r1, lsl #1
    eor     r5, r3, r3, lsl #1
    and     r4, r4, r5
    tst     r4, #0x40000000
    beq     rare
    @ Signs and exponents are added as one number, the exponents to 0 to 2046, which leaves the sign alone. The exponent
    @ grows by 2 at most: the leading bit adds one, and so does a product of significands from 2 on or one that is
    @ rounded up to 2. So up to 2044 it does not overflow.
    mov     r4, r1, lsr #20
    add     r4, r4, r3, lsr #20
    sub     r4, r4, #0x400
    mov     ip, #3 * ALL_ONES_DOUBLED
    cmn     ip, r4, lsl #21
    bcs     rare

    mov     ip, #LEADING_BIT
    mov     r1, r1, lsl #12
    orr     r1, ip, r1, lsr #12
    mov     r3, r3, lsl #12
    orr     r3, ip, r3, lsr #12
    @ r6:r5:lr:ip = product, from 2^104 to 2^106. The high words have 21 bits, so that the sums of two partial products
    @ stay below 2^64.
    umull   ip, lr, r0, r2
    mov     r5, #0
    umlal   lr, r5, r1, r2
    umlal   lr, r5, r0, r3
    mov     r6, #0
    umlal   r5, r6, r1, r3
    @ Of the last word only counts whether it is zero: rounding looks at more than 40 bits above it.
    cmp     ip, #1
    orrcs   lr, lr, #1
    tst     r6, #0x200
    beq     1f
    add     r4, r4, #1
    MOVE_ROUND_AND_RETURN 11
1:  MOVE_ROUND_AND_RETURN 12

    @ Zero times a finite number is common enough to be told here.
rare:
    pop     {r4, r5, r6, lr}
    mov     ip, #ALL_ONES_DOUBLED
    cmn     ip, r1, lsl #1
    cmncc   ip, r3, lsl #1
    bcs     SoftFloatRareProduct
    orrs    ip, r0, r1, lsl #1
    orrsne  ip, r2, r3, lsl #1
    bne     SoftFloatRareProduct
    eor     r1, r1, r3
    and     r1, r1, #SIGN
    mov     r0, #0
    bx      lr

    .section .note.GNU-stack, "", %progbits
