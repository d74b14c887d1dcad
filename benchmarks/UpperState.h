// SPDX-License-Identifier: MIT
// Puts the vector registers into a known state before timed work. Some CPUs slow down plain SSE
// code while upper halves of the vector registers hold data; the C library's AVX-512 string
// routines leave them so (in zmm16-31, which vzeroupper does not clear). Dirty reproduces that
// on any AVX machine; Clean is the best state plain SSE code can hope for.
#pragma once

enum class UpperState { AsItIs, Clean, Dirty };

inline void SetUpperState(UpperState state)
{
#if defined(__x86_64__) && defined(__GNUC__)
    static const bool avx = __builtin_cpu_supports("avx");
    static const bool avx512 = __builtin_cpu_supports("avx512f");
    if (state == UpperState::Clean && avx)
        asm volatile("vzeroupper" ::: "memory");
    if (state == UpperState::Dirty && avx)
        asm volatile("vpcmpeqd %%ymm15, %%ymm15, %%ymm15" ::: "xmm15", "memory");
    if (state == UpperState::Dirty && avx512)
        asm volatile("vpternlogd $0xff, %%zmm16, %%zmm16, %%zmm16" ::: "memory");
#else
    (void)state;
#endif
}

// The same with three doubles already in vector registers, for a call taking them as arguments:
// no 128-bit instruction of the caller then runs between the dirtying and the call, where a
// state transition would be billed to the callee.
inline void SetUpperState(UpperState state, double &a, double &b, double &c)
{
#if defined(__x86_64__) && defined(__GNUC__)
    static const bool avx = __builtin_cpu_supports("avx");
    static const bool avx512 = __builtin_cpu_supports("avx512f");
    if (state == UpperState::Dirty && avx)
        asm volatile("vpcmpeqd %%ymm15, %%ymm15, %%ymm15" : "+x"(a), "+x"(b), "+x"(c) : : "xmm15", "memory");
    if (state == UpperState::Dirty && avx512)
        asm volatile("vpternlogd $0xff, %%zmm16, %%zmm16, %%zmm16" : "+x"(a), "+x"(b), "+x"(c) : : "memory");
#else
    (void)a, (void)b, (void)c;
    SetUpperState(state);
#endif
}

// Benchmark argument 0: the state as the process has it; 1: dirty before each timed call.
inline UpperState StateOfArgument(long long argument)
{
    return argument == 0 ? UpperState::AsItIs : UpperState::Dirty;
}
