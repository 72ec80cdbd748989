#pragma once

#include <sys/syscall.h>

/// System calls without a C library. A result below zero is the negated error number.
namespace morvane::kernel {

template <typename Argument>
long word(Argument argument) {
    return (long)argument; // A C-style cast takes pointers and integers alike.
}

inline long callWithWords(long number, long a, long b, long c, long d, long e, long f) {
#if defined(__x86_64__)
    register long r10 asm("r10") = d;
    register long r8 asm("r8") = e;
    register long r9 asm("r9") = f;
    asm volatile("syscall"
                 : "+a"(number)
                 : "D"(a), "S"(b), "d"(c), "r"(r10), "r"(r8), "r"(r9)
                 : "rcx", "r11", "memory");
    return number;
#elif defined(__aarch64__)
    register long x8 asm("x8") = number;
    register long x0 asm("x0") = a;
    register long x1 asm("x1") = b;
    register long x2 asm("x2") = c;
    register long x3 asm("x3") = d;
    register long x4 asm("x4") = e;
    register long x5 asm("x5") = f;
    asm volatile("svc 0"
                 : "+r"(x0)
                 : "r"(x8), "r"(x1), "r"(x2), "r"(x3), "r"(x4), "r"(x5)
                 : "memory");
    return x0;
#else
#error "The system call of this processor is not written yet; CMakeLists.txt leaves the client out."
#endif
}

template <typename... Arguments>
long call(long number, Arguments... arguments) {
    static_assert(sizeof...(Arguments) <= 6);
    const long words[6] = {word(arguments)...};
    return callWithWords(number, words[0], words[1], words[2], words[3], words[4], words[5]);
}

} // namespace morvane::kernel
