@ Sum and difference of two doubles.
@
@ x is the operand with the greater exponent, y the other one; d is the difference of their exponents, from 0. A word
@ s:e is a sign bit above an exponent of 11 bits, as the high word of a double has them; n units of s:e are n << 20
@ there.
@
@ The sum is formed in place: the significand of y, with its leading bit and moved d places to the right, is added to
@ the bits of x. With M the sum of the significands, leading bits included, x + y is then held as
@
@     (s:e << 52) + M - 2^52, with the bits below the last one in `rest`: 32 of them, half a unit = 0x80000000
@
@ While 2^52 <= M < 2^53 this is the encoding of the result, and s:e can be read in it unchanged. Other M are brought
@ there.
    .include "function.inc"

#define rest ip

    @ Ends with the encoding in r1:r0 and `rest`.
    .macro  ROUND_AND_RETURN
    CARRY_OF_ROUNDING rest, r0
    adcs    r0, r0, #0
    adc     r1, r1, #0
    pop     {r4, r5, pc}
    .endm

    @ r4 = s:e of x, r5 = d. Only exponents from 512 to 1535 are treated here (their first two bits differ): then no sum
    @ overflows, y is a normal number as long as it counts, and no difference becomes subnormal. Goes on at \far with d
    @ >= 32; otherwise lr = 32 - d. y loses sign and exponent and gets its leading bit.
    .macro  ALIGN yh, far
    eor     ip, r4, r4, lsl #1
    tst     ip, #0x400
    beq     rare
    mov     \yh, \yh, lsl #12
    mov     ip, #LEADING_BIT
    orr     \yh, ip, \yh, lsr #12
    rsbs    lr, r5, #32
    ble     \far
    .endm

    @ The bits of y that leave its low word are the first of `rest`, the others are zero. (A shift by a register holding
    @ 32 gives zero, which is right for d = 0.)
    .macro  ADD_NEAR xl, xh, yl, yh
    mov     rest, \yl, lsl lr
    adds    r0, \xl, \yl, lsr r5
    adc     \xh, \xh, #0
    adds    r0, r0, \yh, lsl lr
    adc     r1, \xh, \yh, lsr r5
    .endm

    .macro  SUBTRACT_NEAR xl, xh, yl, yh
    mov     rest, \yl, lsl lr
    rsbs    rest, rest, #0
    sbcs    r0, \xl, \yl, lsr r5
    sbc     \xh, \xh, #0
    subs    r0, r0, \yh, lsl lr
    sbc     r1, \xh, \yh, lsr r5
    .endm

    @ With d > 54 y is less than a quarter of a unit of x, and less than half of one below a power of two: x is the
    @ result. Otherwise moves y by d - 32 = r5 places: \yh goes on to r0, `rest` is made, and what falls behind it is
    @ kept in lr. Label 8, where x is returned, stands behind the macro that uses this one.
    .macro  MOVE_FAR yl, yh
    cmp     r5, #54
    bhi     8f
    sub     r5, r5, #32
    rsb     lr, r5, #32
    mov     rest, \yl, lsr r5
    orr     rest, rest, \yh, lsl lr
    mov     lr, \yl, lsl lr
    .endm

    @ A sum that is halved loses the last bit of `rest`. So the bit before it says that anything is there behind.
    .macro  ADD_FAR xl, xh, yl, yh
    MOVE_FAR \yl, \yh
    orrs    lr, lr, rest, lsl #31
    orrne   rest, rest, #2
    adds    r0, \xl, \yh, lsr r5
    adc     r1, \xh, #0
    b       normalise
8:
    .endm

    @ The difference is cut off behind `rest`; where something was cut off, the last bit of `rest` says so.
    .macro  SUBTRACT_FAR xl, xh, yl, yh
    MOVE_FAR \yl, \yh
    rsbs    lr, lr, #0
    rscs    rest, rest, #0
    sbcs    r0, \xl, \yh, lsr r5
    sbc     r1, \xh, #0
    cmp     lr, #1
    orrcs   rest, rest, #1
    add     r5, r5, #32
    b       normalise
8:
    .endm

    SECTION add
    ENTRY   __aeabi_drsub
    eor     r1, r1, #SIGN
    b       add
    ENTRY   __aeabi_dsub
    ENTRY   __subdf3
    eor     r3, r3, #SIGN
    ENTRY   __aeabi_dadd
    ENTRY   __adddf3
add:
    push    {r4, r5, lr}
    eors    ip, r1, r3
    bmi     signs_differ

    mov     r4, r1, lsr #20
    subs    r5, r4, r3, lsr #20         @ the signs cancel
    bmi     1f
    ALIGN   r3, add_far
    ADD_NEAR r0, r1, r2, r3

normalise:
    cmp     r4, r1, lsr #20
    bne     2f
    ROUND_AND_RETURN
2:  bhi     cancelled
    @ M >= 2^53. Half of (s:e << 52) + M - 2^52 lacks (s:e + 1) << 51 of (s:e + 1 << 52) + M / 2 - 2^52.
    lsrs    r1, r1, #1
    rrxs    r0, r0
    rrx     rest, rest
    add     r4, r4, #1
    add     r1, r1, r4, lsl #19
    ROUND_AND_RETURN

1:  mov     r4, r3, lsr #20             @ the second operand is x
    rsb     r5, r5, #0
    ALIGN   r1, add_far_swapped
    ADD_NEAR r2, r3, r0, r1
    b       normalise

add_far:
    ADD_FAR r0, r1, r2, r3
    pop     {r4, r5, pc}
add_far_swapped:
    ADD_FAR r2, r3, r0, r1
    b       return_second

signs_differ:
    mov     r4, r1, lsr #20
    eor     ip, r3, #SIGN
    subs    r5, r4, ip, lsr #20
    bmi     1f
    ALIGN   r3, subtract_far
    SUBTRACT_NEAR r0, r1, r2, r3
    b       normalise
1:  mov     r4, r3, lsr #20
    rsb     r5, r5, #0
    ALIGN   r1, subtract_far_swapped
    SUBTRACT_NEAR r2, r3, r0, r1
    b       normalise

subtract_far:
    SUBTRACT_FAR r0, r1, r2, r3
    pop     {r4, r5, pc}
subtract_far_swapped:
    SUBTRACT_FAR r2, r3, r0, r1
return_second:
    mov     r0, r2
    mov     r1, r3
    pop     {r4, r5, pc}

    @ A difference with M < 2^52. For d > 1, M > 2^52 - 2^51: one place to the left will do. What is held equals
    @ (s:e - 1 << 52) + M, and (s:e - 1 << 52) + 2 M - 2^52 is wanted: M, its low 52 bits, is added.
cancelled:
    cmp     r5, #1
    bls     cancelled_exactly
    mov     lr, r1, lsl #12
    adds    rest, rest, rest
    adcs    r0, r0, r0
    adc     r1, r1, lr, lsr #12
    sub     r1, r1, #LEADING_BIT
    ROUND_AND_RETURN

    @ For d = 0 and 1 the difference has no more than 53 bits, and nothing is rounded. M is taken out; for d = 0, where
    @ `rest` is zero, it may be negative. Then 2 M takes in the one bit that `rest` can hold.
cancelled_exactly:
    sub     lr, r4, #1
    subs    r1, r1, lr, lsl #20
    bpl     1f
    rsbs    r0, r0, #0
    rsc     r1, r1, #0
    eor     r4, r4, #0x800              @ the sign in s:e
1:  adds    rest, rest, rest
    adcs    r0, r0, r0
    adc     r1, r1, r1
    orrs    lr, r0, r1
    popeq   {r4, r5, pc}                @ zero, without a sign
    cmp     r1, #0                      @ the leading bit to the top of r1:r0, by ip places or 32 + ip
    moveq   r1, r0
    moveq   r0, #0
    subeq   r4, r4, #32
    clz     ip, r1
    rsb     lr, ip, #32
    mov     r1, r1, lsl ip
    orr     r1, r1, r0, lsr lr
    mov     r0, r0, lsl ip
    mov     r0, r0, lsr #11             @ and down to bit 52: there 2 M has the exponent e - 1 - ip + 11
    orr     r0, r0, r1, lsl #21
    mov     r1, r1, lsr #11
    sub     r4, r4, ip
    add     r1, r1, r4, lsl #20
    add     r1, r1, #9 * LEADING_BIT    @ 10, but the leading bit adds one
    pop     {r4, r5, pc}

    @ Two zeros are common enough to be told here: the sum is -0 only if both are.
rare:
    pop     {r4, r5, lr}
    orrs    ip, r0, r1, lsl #1
    orrseq  ip, r2, r3, lsl #1
    bne     SoftFloatRareSum
    and     r1, r1, r3
    bx      lr

    .section .note.GNU-stack, "", %progbits
