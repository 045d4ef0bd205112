#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>

// Takes the log while it lives: every line of any thread, in order, printed nowhere. One at a time.
class LogCapture {
public:
    LogCapture()
    {
        current() = this;
        m_previous = qInstallMessageHandler(&LogCapture::take);
    }
    ~LogCapture()
    {
        qInstallMessageHandler(m_previous);
        const QMutexLocker lock(&mutex());
        current() = nullptr;
    }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    QStringList lines() const
    {
        const QMutexLocker lock(&mutex());
        return m_lines;
    }
    bool contains(const QString &text) const
    {
        for (const QString &line : lines()) {
            if (line.contains(text))
                return true;
        }
        return false;
    }
    void clear()
    {
        const QMutexLocker lock(&mutex());
        m_lines.clear();
    }

private:
    static QMutex &mutex()
    {
        static QMutex instance;
        return instance;
    }
    static LogCapture *&current()
    {
        static LogCapture *instance = nullptr;
        return instance;
    }
    static void take(QtMsgType, const QMessageLogContext &, const QString &line)
    {
        const QMutexLocker lock(&mutex());
        if (current())
            current()->m_lines.append(line);
    }

    QtMessageHandler m_previous = nullptr;
    QStringList m_lines;
};
