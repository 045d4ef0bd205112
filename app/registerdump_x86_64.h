#pragma once

#include <cstdio>

#include <sys/ucontext.h>

// Registers of x86-64, in the manner of the ARM dump. `Context` is the machine context of the interrupted code.
namespace registerdump_x86_64 {

template <class Context>
void *pc(const Context &context)
{
    return reinterpret_cast<void *>(static_cast<unsigned long>(context.gregs[REG_RIP]));
}

template <class Context>
void print(const Context &context)
{
    const auto r = [&context](int index) { return static_cast<unsigned long>(context.gregs[index]); };
    std::printf("rip: [<%016lx>]    rsp: [<%016lx>]    efl: %08lx\nrbp: %016lx\n", r(REG_RIP), r(REG_RSP), r(REG_EFL),
                r(REG_RBP));
    std::printf("rax: %016lx  rbx: %016lx  rcx: %016lx  rdx: %016lx\n", r(REG_RAX), r(REG_RBX), r(REG_RCX), r(REG_RDX));
    std::printf("rsi: %016lx  rdi: %016lx  r8 : %016lx  r9 : %016lx\n", r(REG_RSI), r(REG_RDI), r(REG_R8), r(REG_R9));
    std::printf("r10: %016lx  r11: %016lx  r12: %016lx  r13: %016lx\n", r(REG_R10), r(REG_R11), r(REG_R12), r(REG_R13));
    std::printf("r14: %016lx  r15: %016lx\n", r(REG_R14), r(REG_R15));
}

} // namespace registerdump_x86_64
