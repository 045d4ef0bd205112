#include "processsize.h"

#include <QDir>
#include <QFile>

namespace faults {

ProcessSize sizeOf(qint64 pid)
{
    const QDir process(QStringLiteral("/proc/%1").arg(pid));
    ProcessSize size;
    QFile memory(process.filePath("smaps_rollup"));
    if (pid <= 0 || !memory.open(QIODevice::ReadOnly))
        return size;
    const auto lines = memory.readAll().split('\n');
    for (const QByteArray &line : lines)
        if (line.startsWith("Anonymous:"))
            size.memoryKb += line.simplified().split(' ').value(1).toLongLong();
    size.descriptors =
        int(QDir(process.filePath("fd")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
    size.threads = int(QDir(process.filePath("task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size());
    return size;
}

} // namespace faults
