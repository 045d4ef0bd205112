#pragma once

#include <QtGlobal>

namespace faults {

// What a process holds, read from /proc. All zero: there is no such process.
struct ProcessSize {
    qint64 memoryKb = 0; // resident, of no file: files are shared with whoever else runs
    int descriptors = 0;
    int threads = 0;
};
ProcessSize sizeOf(qint64 pid);

} // namespace faults
