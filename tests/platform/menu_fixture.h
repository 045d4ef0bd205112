#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

struct Outcome {
    int code = -1;
    QByteArray output;
    QByteArray errors;
};

// A menu system with its own socket and a sample program instead of the radio; both end with the fixture.
class MenuFixture {
public:
    MenuFixture() = default;
    ~MenuFixture();

    // A child that dies with the test.
    static void prepare(QProcess &process);

    // Returns when the program answers.
    bool start(const QStringList &options = {}, const QStringList &words = {});
    // Runs velmora-menu with these words at this menu's socket.
    Outcome command(const QStringList &words) const;
    QJsonObject status() const;
    int waitForEnd();

    bool hasService = true; // the environment names one
    QString path(const QString &name) const { return m_directory.filePath(name); }
    QString socket() const { return path(QStringLiteral("menu.sock")); }
    QProcess &process() { return m_process; }
    QByteArray output();
    QByteArray errors();

private:
    QTemporaryDir m_directory;
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};
