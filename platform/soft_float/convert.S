@ Conversions between doubles, integers and single-precision numbers, and the change of sign.
    .include "function.inc"

    SECTION negate
    ENTRY   __aeabi_dneg
    ENTRY   __negdf2
    eor     r1, r1, #SIGN
    bx      lr

    @ Every integer of 32 bits is a double.
    SECTION from_integer
    ENTRY   __aeabi_i2d
    ENTRY   __floatsidf
    ands    r3, r0, #SIGN
    rsbmi   r0, r0, #0
    cmp     r0, #0
    b       1f
    ENTRY   __aeabi_ui2d
    ENTRY   __floatunsidf
    mov     r3, #0
    cmp     r0, #0
1:  moveq   r1, #0
    bxeq    lr
    clz     r2, r0
    mov     r0, r0, lsl r2
    orr     r1, r3, r0, lsr #11
    mov     r0, r0, lsl #21
    rsb     r2, r2, #0x400              @ 1023 + 31 - places, less the one that the leading bit adds
    add     r2, r2, #0x1d
    add     r1, r1, r2, lsl #20
    bx      lr

    SECTION from_long_integer
    ENTRY   __aeabi_ul2d
    ENTRY   __floatundidf
    mov     r3, #0
    b       1f
    ENTRY   __aeabi_l2d
    ENTRY   __floatdidf
    ands    r3, r1, #SIGN
    bpl     1f
    rsbs    r0, r0, #0
    rsc     r1, r1, #0
1:  orrs    r2, r0, r1
    bxeq    lr
    add     r3, r3, #0x43000000         @ exponent 1023 + 63, less the one that the leading bit adds: 0x43d
    add     r3, r3, #0x00d00000
    cmp     r1, #0
    moveq   r1, r0
    moveq   r0, #0
    subeq   r3, r3, #32 * LEADING_BIT
    clz     r2, r1
    sub     r3, r3, r2, lsl #20
    mov     r1, r1, lsl r2              @ the leading bit to the top; the last 11 bits are rounded off
    rsb     ip, r2, #32
    orr     r1, r1, r0, lsr ip
    mov     r0, r0, lsl r2
    mov     r2, r0, lsl #21
    mov     r0, r0, lsr #11
    orr     r0, r0, r1, lsl #21
    CARRY_OF_ROUNDING r2, r0
    adcs    r0, r0, #0
    adc     r1, r3, r1, lsr #11
    bx      lr

    @ \exponent = n - e with the exponent e of the double; n = 0x400 + \more.
    .macro  LESS_EXPONENT exponent, more
    mov     \exponent, r1, lsl #1
    mov     \exponent, \exponent, lsr #21
    rsb     \exponent, \exponent, #0x400
    adds    \exponent, \exponent, #\more
    .endm

    @ Returns 0 for a NaN, which is not 0 behind its exponent. \scratch is changed.
    .macro  RETURN_ZERO_FOR_NAN scratch
    mov     \scratch, r1, lsl #1
    adds    \scratch, \scratch, #ALL_ONES_DOUBLED
    bcc     9f
    orrs    \scratch, \scratch, r0
    movne   r0, #0
    movne   r1, #0
    bxne    lr
9:
    .endm

    @ Towards zero. Out of range the nearest integer there is; 0 for a NaN.
    SECTION to_integer
    ENTRY   __aeabi_d2iz
    ENTRY   __fixdfsi
    LESS_EXPONENT r2, 0x1e              @ 31 places to the right for 1
    ble     1f
    mov     r3, r1, lsl #11
    orr     r3, r3, #SIGN
    orr     r3, r3, r0, lsr #21
    cmp     r2, #32
    movcs   r3, #0                      @ a shift looks at 8 bits only
    mov     r0, r3, lsr r2
    tst     r1, #SIGN
    rsbne   r0, r0, #0
    bx      lr
1:  RETURN_ZERO_FOR_NAN r2
    ands    r0, r1, #SIGN
    mvneq   r0, #SIGN
    bx      lr

    @ Towards zero; 0 for negative numbers and for a NaN, above the range the greatest integer.
    SECTION to_unsigned_integer
    ENTRY   __aeabi_d2uiz
    ENTRY   __fixunsdfsi
    tst     r1, #SIGN
    movne   r0, #0
    bxne    lr
    LESS_EXPONENT r2, 0x1e
    blt     1f
    mov     r3, r1, lsl #11
    orr     r3, r3, #SIGN
    orr     r3, r3, r0, lsr #21
    cmp     r2, #32
    movcs   r3, #0
    mov     r0, r3, lsr r2
    bx      lr
1:  RETURN_ZERO_FOR_NAN r2
    mvn     r0, #0
    bx      lr

    @ Towards zero. The signed one is the unsigned one of the magnitude with its sign: beyond 2^63 the result is that
    @ modulo 2^64, and from 2^64 on the greatest unsigned integer with the sign, -1 or 1. So the compiler's own does it.
    SECTION to_long_integer
    ENTRY   __aeabi_d2lz
    ENTRY   __fixdfdi
    tst     r1, #SIGN
    beq     magnitude
    push    {lr}
    bic     r1, r1, #SIGN
    bl      magnitude
    rsbs    r0, r0, #0
    rsc     r1, r1, #0
    pop     {pc}

    @ Towards zero; 0 for negative numbers and for a NaN, above the range the greatest integer.
    ENTRY   __aeabi_d2ulz
    ENTRY   __fixunsdfdi
    tst     r1, #SIGN
    movne   r0, #0
    movne   r1, #0
    bxne    lr
magnitude:
    LESS_EXPONENT r2, 0x3e              @ 63 places to the right for 1
    blt     1f
    cmp     r2, #64
    movcs   r0, #0
    movcs   r1, #0
    bxcs    lr
    mov     r1, r1, lsl #11
    orr     r1, r1, #SIGN
    orr     r1, r1, r0, lsr #21
    mov     r0, r0, lsl #11
    mov     r0, r0, lsr r2              @ shifts by 32 to 255, as which negative numbers count, give zero
    rsb     r3, r2, #32
    orr     r0, r0, r1, lsl r3
    sub     r3, r2, #32
    orr     r0, r0, r1, lsr r3
    mov     r1, r1, lsr r2
    bx      lr
1:  RETURN_ZERO_FOR_NAN r2
    mvn     r0, #0
    mvn     r1, #0
    bx      lr

    @ Every single-precision number is a double.
    SECTION from_single
    ENTRY   __aeabi_f2d
    ENTRY   __extendsfdf2
    and     r2, r0, #SIGN
    mov     r3, r0, lsl #1
    orr     r1, r2, r3, lsr #4
    mov     r0, r0, lsl #29
    sub     ip, r3, #0x01000000         @ exponents 1 to 254
    cmp     ip, #0xfe000000
    addcc   r1, r1, #0x38000000         @ 1023 - 127
    bxcc    lr
    movs    ip, r3, lsl #8              @ the bits behind the exponent
    beq     1f
    cmp     r3, #0xff000000
    bcc     2f
    orr     r1, r1, #0x00080000         @ a quiet NaN
1:  tst     r3, #0xff000000             @ zero or infinity
    orrne   r1, r1, #0x70000000
    bx      lr
2:  clz     ip, r3                      @ subnormal: r3 / 2 units of 2^-149
    mov     r3, r3, lsl ip
    mov     r0, r3, lsl #21
    orr     r1, r2, r3, lsr #11
    rsb     ip, ip, #0x380              @ 1023 + 30 - 149 - places, less the one that the leading bit adds: 0x387
    add     ip, ip, #7
    add     r1, r1, ip, lsl #20
    bx      lr

    SECTION to_single
    ENTRY   __aeabi_d2f
    ENTRY   __truncdfsf2
    mov     r2, r1, lsl #1
    sub     r3, r2, #0x70000000         @ exponent less 1023 - 127
    sub     ip, r3, #0x00200000         @ 1 to 254
    cmp     ip, #0x1fc00000
    bcs     1f
    and     r1, r1, #SIGN
    mov     ip, r0, lsl #3
    orr     r0, r1, r0, lsr #29
    CARRY_OF_ROUNDING ip, r0
    adc     r0, r0, r3, lsl #2
    bx      lr
1:  tst     r1, #0x40000000             @ exponents from 1024 on: far above 1
    bne     2f
    @ Subnormal or zero: e is at most 896. The significand, its leading bit on top, counts 2^-149 when it is moved by
    @ 32 + k places, k = 905 - e: from 9 on, and from 33 on nothing is left.
    mov     r2, r2, lsr #21
    rsb     r2, r2, #0x380
    add     r2, r2, #9
    cmp     r2, #32
    movhi   r0, #0
    mov     r3, r1, lsl #11
    orr     r3, r3, #SIGN
    orr     r3, r3, r0, lsr #21
    movhi   r3, #0
    movhi   r2, #32
    rsb     ip, r2, #32
    mov     ip, r3, lsl ip
    movs    r0, r0, lsl #11
    orrne   ip, ip, #1
    and     r1, r1, #SIGN
    orr     r0, r1, r3, lsr r2
    CARRY_OF_ROUNDING ip, r0
    adc     r0, r0, #0
    bx      lr
2:  and     ip, r1, #SIGN
    orr     ip, ip, #0x7f000000
    orr     ip, ip, #0x00800000
    adds    r3, r2, #ALL_ONES_DOUBLED   @ carry: infinity or NaN
    bcc     3f
    orrs    r3, r3, r0
    beq     3f
    orr     ip, ip, #0x00400000         @ a quiet NaN, with the leading bits of its payload
    mov     r1, r1, lsl #12
    orr     ip, ip, r1, lsr #9
    orr     ip, ip, r0, lsr #29
3:  mov     r0, ip
    bx      lr

    .section .note.GNU-stack, "", %progbits
