#include "Kernel.h"

#include <cstddef>

void run(int argumentCount, char **arguments, char **environment);

extern "C" {

/// The kernel leaves the argument count on top of the stack, then arguments and environment.
[[noreturn, gnu::used]] void startAt(long *stack) {
    const auto argumentCount = static_cast<int>(*stack);
    auto **arguments = reinterpret_cast<char **>(stack + 1);
    run(argumentCount, arguments, arguments + argumentCount + 1);
    for (;;)
        morvane::kernel::call(SYS_exit_group, 0);
}

#if defined(__x86_64__)
asm(".globl _start\n_start: xor %ebp, %ebp\n mov %rsp, %rdi\n and $-16, %rsp\n call startAt\n");
#elif defined(__aarch64__)
asm(".globl _start\n_start: mov x29, #0\n mov x30, #0\n mov x0, sp\n b startAt\n");
#endif

// The compiler may call these for any copy or fill, even where no library is linked.
void *memcpy(void *target, const void *source, size_t size) {
    for (size_t i = 0; i < size; ++i)
        static_cast<char *>(target)[i] = static_cast<const char *>(source)[i];
    return target;
}

void *memset(void *target, int value, size_t size) {
    for (size_t i = 0; i < size; ++i)
        static_cast<char *>(target)[i] = static_cast<char>(value);
    return target;
}

int memcmp(const void *left, const void *right, size_t size) {
    const auto *a = static_cast<const unsigned char *>(left);
    const auto *b = static_cast<const unsigned char *>(right);
    for (size_t i = 0; i < size; ++i) {
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
    }
    return 0;
}

void *memchr(const void *text, int byte, size_t size) {
    const auto *bytes = static_cast<const unsigned char *>(text);
    for (size_t i = 0; i < size; ++i) {
        if (bytes[i] == static_cast<unsigned char>(byte))
            return const_cast<unsigned char *>(bytes + i);
    }
    return nullptr;
}

size_t strlen(const char *text) {
    size_t length = 0;
    while (text[length] != '\0')
        ++length;
    return length;
}

} // extern "C"
