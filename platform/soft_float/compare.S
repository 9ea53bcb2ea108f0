@ Comparisons of two doubles.
    .include "function.inc"

    @ Flags for a = \ah:\al and b = \bh:\bl: carry clear for a < b, zero set for a = b. With a NaN they are as for a >
    @ b. Changes ip and flags, nothing else. Here are also the numbers that the relations below leave aside: negative
    @ ones, and those from 2^1009 on.
    .macro  ORDER al, ah, bl, bh
    mov     ip, #ALL_ONES_DOUBLED
    cmn     ip, \ah, lsl #1
    cmncc   ip, \bh, lsl #1
    bcs     3f
0:  eors    ip, \ah, \bh
    bmi     1f
    tst     \ah, \ah
    bmi     2f
    cmp     \ah, \bh                    @ positive numbers are ordered like their bits
    cmpeq   \al, \bl
    bx      lr
2:  cmp     \bh, \ah                    @ negative ones the other way round
    cmpeq   \bl, \al
    bx      lr
1:  teq     ip, #SIGN                   @ the signs differ; mostly the bits behind them do, too
    cmpne   \bh, \ah                    @ the negative one is the greater unsigned number
    bxne    lr
    orr     ip, \ah, \bh
    orrs    ip, \al, ip, lsl #1          @ both zero? Carry is the sign that one of them has
    orrseq  ip, \bl, #0
    bxeq    lr
    cmp     \bh, \ah
    bx      lr
3:  mov     ip, \ah, lsl #1              @ a NaN has bits behind its exponent
    adds    ip, ip, #ALL_ONES_DOUBLED
    bcc     4f
    orrs    ip, ip, \al
    bne     5f
4:  mov     ip, \bh, lsl #1
    adds    ip, ip, #ALL_ONES_DOUBLED
    bcc     0b                          @ an infinity is ordered like a finite number
    orrs    ip, ip, \bl
    beq     0b
5:  mov     ip, #1                      @ as if 1 and 0 were compared
    cmp     ip, #0
    bx      lr
    .endm

    SECTION compare
order:
    ORDER   r0, r1, r2, r3
order_reversed:
    ORDER   r2, r3, r0, r1

    @ The flags themselves; r0 to r3 stay.
    ENTRY   __aeabi_cdcmpeq
    ENTRY   __aeabi_cdcmple
    push    {lr}
    bl      order
    pop     {pc}

    @ The flags for b and a.
    ENTRY   __aeabi_cdrcmple
    push    {lr}
    bl      order_reversed
    pop     {pc}

    @ -1, 0 or 1 for a < b, a = b, a > b; with a NaN 1, for which `a < b` and its like are told false.
    ENTRY   __cmpdf2
    ENTRY   __eqdf2
    ENTRY   __nedf2
    ENTRY   __ltdf2
    ENTRY   __ledf2
    push    {lr}
    bl      order
    movhi   r0, #1
    moveq   r0, #0
    mvncc   r0, #0
    pop     {pc}

    @ The same, but -1 with a NaN, for which `a > b` and `a >= b` are told false.
    ENTRY   __gtdf2
    ENTRY   __gedf2
    push    {lr}
    bl      order_reversed
    mvnhi   r0, #0
    moveq   r0, #0
    movcc   r0, #1
    pop     {pc}

    @ 1 or 0. Numbers that are positive and below 2^1009 are ordered like their bits. `a > b` is asked as `b < a`, so
    @ that a NaN makes it false.
    .macro  RELATION name, holds, fails, order, al, ah, bl, bh
    ENTRY   \name
    cmp     r1, #0x7f000000
    cmpcc   r3, #0x7f000000
    bcs     1f
    cmp     \ah, \bh
    cmpeq   \al, \bl
    mov\holds r0, #1
    mov\fails r0, #0
    bx      lr
1:  push    {lr}
    bl      \order
    mov\holds r0, #1
    mov\fails r0, #0
    pop     {pc}
    .endm

    RELATION __aeabi_dcmplt, cc, cs, order, r0, r1, r2, r3
    RELATION __aeabi_dcmple, ls, hi, order, r0, r1, r2, r3
    RELATION __aeabi_dcmpeq, eq, ne, order, r0, r1, r2, r3
    RELATION __aeabi_dcmpgt, cc, cs, order_reversed, r2, r3, r0, r1
    RELATION __aeabi_dcmpge, ls, hi, order_reversed, r2, r3, r0, r1

    SECTION unordered
    ENTRY   __aeabi_dcmpun
    ENTRY   __unorddf2
    mov     ip, #ALL_ONES_DOUBLED
    cmn     ip, r1, lsl #1
    cmncc   ip, r3, lsl #1
    movcc   r0, #0
    bxcc    lr
    mov     ip, r1, lsl #1
    adds    ip, ip, #ALL_ONES_DOUBLED
    bcc     1f
    orrs    ip, ip, r0
    bne     2f
1:  mov     ip, r3, lsl #1
    adds    ip, ip, #ALL_ONES_DOUBLED
    movcc   r2, #0                      @ not a NaN: nothing is left of it
    movcc   ip, #0
    orrs    ip, ip, r2
2:  movne   r0, #1
    moveq   r0, #0
    bx      lr

    .section .note.GNU-stack, "", %progbits
