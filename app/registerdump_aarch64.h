#pragma once

#include <cstdio>

// Registers of 64-bit ARM, in the manner of the 32-bit dump. `Context` is the machine context of the interrupted code.
namespace registerdump_aarch64 {

template <class Context>
void *pc(const Context &context)
{
    return reinterpret_cast<void *>(static_cast<unsigned long>(context.pc));
}

template <class Context>
void print(const Context &context)
{
    const auto x = [&context](int n) { return static_cast<unsigned long>(context.regs[n]); };
    std::printf("pc : [<%016lx>]    lr : [<%016lx>]    psr: %08lx\nsp : %016lx  fp : %016lx\n",
                static_cast<unsigned long>(context.pc), x(30), static_cast<unsigned long>(context.pstate),
                static_cast<unsigned long>(context.sp), x(29));
    std::printf("x28: %016lx\n", x(28));
    for (int n = 27; n > 0; n -= 4)
        std::printf("x%-2d: %016lx  x%-2d: %016lx  x%-2d: %016lx  x%-2d: %016lx\n", n, x(n), n - 1, x(n - 1), n - 2,
                    x(n - 2), n - 3, x(n - 3));
}

} // namespace registerdump_aarch64
