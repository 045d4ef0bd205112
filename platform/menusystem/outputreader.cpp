#include "outputreader.h"

#include <algorithm>

namespace menusystem {

namespace {

constexpr int maxLine = 200; // no line of the dump's beginning is longer

// The crash reporter's headlines of the signals after which it parks the process.
constexpr const char *headlines[] = {"Illegal Instruction", "Floating point exception", "Invalid memory reference",
                                     "Abort signal"};

} // namespace

void OutputReader::begin(qint64 pid)
{
    *this = OutputReader();
    m_pidLine = "Pid: " + QByteArray::number(pid) + ", comm:";
}

void OutputReader::read(const QByteArray &bytes)
{
    m_tail += bytes;
    if (m_tail.size() > 2 * keptBytes) {
        const qsizetype lineEnd = m_tail.indexOf('\n', m_tail.size() - keptBytes);
        m_tail.remove(0, lineEnd < 0 ? m_tail.size() - keptBytes : lineEnd + 1);
    }
    qsizetype from = 0;
    while (from < bytes.size()) {
        const qsizetype end = bytes.indexOf('\n', from);
        const qsizetype length = (end < 0 ? bytes.size() : end) - from;
        m_line += bytes.mid(from, std::min<qsizetype>(length, maxLine - m_line.size()));
        if (end < 0)
            return;
        readLine(m_line);
        m_line.clear();
        from = end + 1;
    }
}

void OutputReader::readLine(const QByteArray &line)
{
    if (std::find(std::begin(headlines), std::end(headlines), line) != std::end(headlines))
        m_headline = line;
    else if (!m_headline.isEmpty() && m_crash.isEmpty() && line.startsWith(m_pidLine))
        m_crash = m_headline;
}

} // namespace menusystem
