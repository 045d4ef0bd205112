#pragma once

namespace velmora::media {

// The descriptor of the only socket; 0 to 2 are /dev/null.
constexpr int socketDescriptor = 3;

// Takes everything away from this process that reading an open file does not need: other descriptors, files, network,
// new processes, most memory, most system calls. A call that is not allowed kills the process; opening a file is
// refused. False when a step fails: then nothing must be read. Ends with the thread that started the process.
bool enterSandbox();

} // namespace velmora::media
