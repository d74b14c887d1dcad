// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library's hot paths (any folder may use it); not installed.

/*
 * ClearUpperState() zeroes the upper halves of the vector registers where the CPU has them.
 * The hot paths call it on entry: code that ran before them (the C library's AVX-512 string
 * routines, a host's own AVX code) can leave those halves dirty, and the 128-bit and scalar
 * code of this library then pays a state transition, or runs with false dependencies, several
 * times slower. It costs a few cycles where it runs and nothing without AVX.
 */

#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))

// The registers the statements write, declared as far as the compiler may use them itself.
#ifdef __AVX__
#define LPSDK_LOW_VECTOR_CLOBBERS "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", \
    "xmm8", "xmm9", "xmm10", "xmm11", "xmm12", "xmm13", "xmm14", "xmm15",
#else
#define LPSDK_LOW_VECTOR_CLOBBERS // vzeroupper keeps every lower half, all that SSE code uses
#endif
#ifdef __AVX512F__
#define LPSDK_HIGH_VECTOR_CLOBBERS "xmm16", "xmm17", "xmm18", "xmm19", "xmm20", "xmm21", "xmm22", "xmm23", \
    "xmm24", "xmm25", "xmm26", "xmm27", "xmm28", "xmm29", "xmm30", "xmm31",
#else
#define LPSDK_HIGH_VECTOR_CLOBBERS
#endif

// vzeroupper leaves zmm16-31 alone, and those are the registers the AVX-512 string routines use.
inline void ClearHighVectorRegisters()
{
    if (__builtin_cpu_supports("avx512vl"))
        asm volatile("vpxord %%xmm16, %%xmm16, %%xmm16\n\tvpxord %%xmm17, %%xmm17, %%xmm17\n\t"
                     "vpxord %%xmm18, %%xmm18, %%xmm18\n\tvpxord %%xmm19, %%xmm19, %%xmm19\n\t"
                     "vpxord %%xmm20, %%xmm20, %%xmm20\n\tvpxord %%xmm21, %%xmm21, %%xmm21\n\t"
                     "vpxord %%xmm22, %%xmm22, %%xmm22\n\tvpxord %%xmm23, %%xmm23, %%xmm23\n\t"
                     "vpxord %%xmm24, %%xmm24, %%xmm24\n\tvpxord %%xmm25, %%xmm25, %%xmm25\n\t"
                     "vpxord %%xmm26, %%xmm26, %%xmm26\n\tvpxord %%xmm27, %%xmm27, %%xmm27\n\t"
                     "vpxord %%xmm28, %%xmm28, %%xmm28\n\tvpxord %%xmm29, %%xmm29, %%xmm29\n\t"
                     "vpxord %%xmm30, %%xmm30, %%xmm30\n\tvpxord %%xmm31, %%xmm31, %%xmm31"
                     ::: LPSDK_HIGH_VECTOR_CLOBBERS "memory");
}

inline void ClearUpperState()
{
    if (__builtin_cpu_supports("avx"))
        asm volatile("vzeroupper" ::: LPSDK_LOW_VECTOR_CLOBBERS "memory");
    ClearHighVectorRegisters();
}

/// For functions whose first three double arguments are a, b and c: the statement takes them in
/// xmm0-2, where they arrive, so that no register copy (a 128-bit instruction, itself paying the
/// transition) is scheduled before the clearing.
inline void ClearUpperState(double &a, double &b, double &c)
{
#ifdef __AVX__
    (void)a, (void)b, (void)c;
    ClearUpperState();
#else
    register double x0 asm("xmm0") = a;
    register double x1 asm("xmm1") = b;
    register double x2 asm("xmm2") = c;
    if (__builtin_cpu_supports("avx"))
        asm volatile("vzeroupper" : "+x"(x0), "+x"(x1), "+x"(x2) : : "memory");
    else
        asm volatile("" : "+x"(x0), "+x"(x1), "+x"(x2) : : "memory");
    a = x0;
    b = x1;
    c = x2;
    ClearHighVectorRegisters();
#endif
}

#undef LPSDK_LOW_VECTOR_CLOBBERS
#undef LPSDK_HIGH_VECTOR_CLOBBERS

#else

inline void ClearUpperState() { }
inline void ClearUpperState(double &, double &, double &) { }

#endif
