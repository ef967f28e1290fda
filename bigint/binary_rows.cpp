// Row products r[0..n) += x[0..n)·y on 64-bit words, the inner loop of the
// schoolbook products of binary words. The sum stays below 2^(64(n+1)), so
// the carry out is one word.
//
// With BMI2 and ADX: mulx leaves the flags alone, so two carry chains run
// side by side, adcx adding the previous product's high word to this one's
// low word and adox adding that to r; four words a turn (the n mod 4 first
// words by 128-bit products), and lea and jrcxz keep both flags across the
// turns. Elsewhere 128-bit products in C++, t = x·y + r + carry < 2^128.
#include "bigint/binary_rows.h"

#if defined(__GNUC__) && defined(__x86_64__)
#include <cpuid.h>
#endif

namespace {

using Wide = unsigned __int128;

bool gPortableRows = false;

uint64_t AddRowPortable(uint64_t* r, const uint64_t* x, int32_t n, uint64_t y) {
    uint64_t carry = 0;
    for (int32_t j = 0; j < n; ++j) {
        const Wide t = Wide(x[j]) * y + r[j] + carry;
        r[j] = static_cast<uint64_t>(t);
        carry = static_cast<uint64_t>(t >> 64);
    }
    return carry;
}

#if defined(__GNUC__) && defined(__x86_64__)
uint64_t AddRowAdx(uint64_t* r, const uint64_t* x, int32_t n, uint64_t y) {
    uint64_t carry = 0;
    int32_t j = 0;
    for (; j < n % 4; ++j) {
        const Wide t = Wide(x[j]) * y + r[j] + carry;
        r[j] = static_cast<uint64_t>(t);
        carry = static_cast<uint64_t>(t >> 64);
    }
    if (j == n) return carry;
    uint64_t lo = 0, hi = 0;
    int64_t i = -int64_t(n - j);
    __asm__ volatile(
        "xor %k[lo], %k[lo]\n\t"  // clears CF and OF
        "1:\n\t"
        "mulx (%[x],%[i],8), %[lo], %[hi]\n\t"
        "adcx %[c], %[lo]\n\t"
        "adox (%[r],%[i],8), %[lo]\n\t"
        "mov %[lo], (%[r],%[i],8)\n\t"
        "mulx 8(%[x],%[i],8), %[lo], %[c]\n\t"
        "adcx %[hi], %[lo]\n\t"
        "adox 8(%[r],%[i],8), %[lo]\n\t"
        "mov %[lo], 8(%[r],%[i],8)\n\t"
        "mulx 16(%[x],%[i],8), %[lo], %[hi]\n\t"
        "adcx %[c], %[lo]\n\t"
        "adox 16(%[r],%[i],8), %[lo]\n\t"
        "mov %[lo], 16(%[r],%[i],8)\n\t"
        "mulx 24(%[x],%[i],8), %[lo], %[c]\n\t"
        "adcx %[hi], %[lo]\n\t"
        "adox 24(%[r],%[i],8), %[lo]\n\t"
        "mov %[lo], 24(%[r],%[i],8)\n\t"
        "lea 4(%[i]), %[i]\n\t"
        "jrcxz 2f\n\t"
        "jmp 1b\n\t"
        "2:\n\t"
        "mov $0, %k[lo]\n\t"
        "adcx %[lo], %[c]\n\t"
        "adox %[lo], %[c]\n\t"
        : [c] "+&r"(carry), [lo] "=&r"(lo), [hi] "=&r"(hi), [i] "+c"(i)
        : [x] "r"(x + n), [r] "r"(r + n), "d"(y)
        : "cc", "memory");
    return carry;
}

// GCC reads the features its start-up code noted (a cpuid of our own traps
// to the hypervisor in a virtual machine, tens of microseconds); clang 14
// knows no "adx" there.
bool HasAdx() {
#if defined(__clang__)
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    // BMI2 is bit 8 of leaf 7's ebx, ADX bit 19.
    return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0 && (ebx & (1u << 8)) != 0 &&
           (ebx & (1u << 19)) != 0;
#else
    return __builtin_cpu_supports("adx") && __builtin_cpu_supports("bmi2");
#endif
}
#endif

}  // namespace

AddRowFn BinaryAddRow() {
#if defined(__GNUC__) && defined(__x86_64__)
    static const bool adx = HasAdx();
    if (adx && !gPortableRows) return AddRowAdx;
#endif
    return AddRowPortable;
}

void UsePortableRows(bool portable) { gPortableRows = portable; }
