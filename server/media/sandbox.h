#pragma once

#include <cstdint>

namespace velmora::media {

// The descriptor of the only socket; 0 to 2 are /dev/null.
constexpr int socketDescriptor = 3;

struct SandboxRules {
    uint64_t mostMemory = 512u << 20; // bytes of addresses
    uint64_t mostFileBytes = 0;       // to which an open file may grow; 0: nothing is written to any file
    bool isBackground = true;         // works only when nobody else wants the processor or the disk
};

// Takes everything away from this process that reading an open file does not need: other descriptors, files, network,
// new processes, most memory, most system calls. A call that is not allowed kills the process; opening a file is
// refused. False when a step fails: then nothing must be read. Ends with the thread that started the process.
bool enterSandbox(const SandboxRules &rules = {});

} // namespace velmora::media
