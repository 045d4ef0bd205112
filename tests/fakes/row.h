#pragma once

#include <QtTest>

#include <cstdio>

// Names the row of a table in which a test function fails. Lives as long as the row's checks.
class Row {
public:
    explicit Row(const QString &name)
        : m_name(name)
    {
    }
    ~Row()
    {
        if (QTest::currentTestFailed())
            std::fprintf(stderr, "   in the row \"%s\"\n", qPrintable(m_name)); // past any captured log
    }
    Row(const Row &) = delete;

private:
    const QString m_name;
};
