/* Atomic operations that the compiler calls, as this processor has no instructions for them. There is one thread and no
   interrupt: plain ones are atomic. */
#include <stdint.h>

uint32_t AtomicFetchAdd(volatile uint32_t* value, uint32_t summand, int order) __asm__("__atomic_fetch_add_4");
uint32_t AtomicFetchSubtract(volatile uint32_t* value, uint32_t subtrahend, int order) __asm__("__atomic_fetch_sub_4");

uint32_t AtomicFetchAdd(volatile uint32_t* value, uint32_t summand, int order)
{
    (void)order;
    const uint32_t before = *value;
    *value = before + summand;
    return before;
}

uint32_t AtomicFetchSubtract(volatile uint32_t* value, uint32_t subtrahend, int order)
{
    (void)order;
    const uint32_t before = *value;
    *value = before - subtrahend;
    return before;
}
