#pragma once

#include <cstdio>

// Registers of 32-bit ARM. `Context` is the machine context of the interrupted code.
namespace registerdump_arm {

template <class Context>
void *pc(const Context &context)
{
    return reinterpret_cast<void *>(static_cast<unsigned long>(context.arm_pc));
}

template <class Context>
void print(const Context &context)
{
    std::printf("pc : [<%08lx>]    lr : [<%08lx>]    psr: %08lx\nsp : %08lx  ip : %08lx  fp : %08lx\n", context.arm_pc,
                context.arm_lr, context.arm_cpsr, context.arm_sp, context.arm_ip, context.arm_fp);
    std::printf("r10: %08lx  r9 : %08lx  r8 : %08lx\n", context.arm_r10, context.arm_r9, context.arm_r8);
    std::printf("r7 : %08lx  r6 : %08lx  r5 : %08lx  r4 : %08lx\n", context.arm_r7, context.arm_r6, context.arm_r5,
                context.arm_r4);
    std::printf("r3 : %08lx  r2 : %08lx  r1 : %08lx  r0 : %08lx\n", context.arm_r3, context.arm_r2, context.arm_r1,
                context.arm_r0);
}

} // namespace registerdump_arm
