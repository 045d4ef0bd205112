#pragma once

#include <QTemporaryFile>

#include <cstdio>

#include <unistd.h>

// Standard output goes to a file while this object lives. What was written is read once, by taking it.
class StdoutCapture {
public:
    StdoutCapture()
    {
        if (!m_file.open())
            return;
        std::fflush(stdout);
        m_kept = dup(STDOUT_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
    }
    ~StdoutCapture() { restore(); }
    StdoutCapture(const StdoutCapture &) = delete;

    // Without flushing: what a supervisor that reads the output has seen so far.
    QByteArray take()
    {
        m_file.seek(0);
        const QByteArray text = m_file.readAll();
        restore();
        return text;
    }

private:
    void restore()
    {
        if (m_kept < 0)
            return;
        std::fflush(stdout);
        dup2(m_kept, STDOUT_FILENO);
        close(m_kept);
        m_kept = -1;
    }

    QTemporaryFile m_file;
    int m_kept = -1;
};
