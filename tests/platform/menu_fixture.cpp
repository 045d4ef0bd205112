#include "menu_fixture.h"

#include <QJsonDocument>
#include <QtTest>

#include <csignal>
#include <sys/prctl.h>

MenuFixture::~MenuFixture()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill(); // its radio goes with it
    m_process.waitForFinished();
}

void MenuFixture::prepare(QProcess &process)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.remove("VELMORA_MENU_SOCKET");
    environment.insert("VELMORA_WS_CONF", "/nonexistent/ws.conf");
    environment.insert("VELMORA_DEVICE_CONF", "/nonexistent/device.conf"); // the defaults
    process.setProcessEnvironment(environment);
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

bool MenuFixture::start(const QStringList &options, const QStringList &words)
{
    prepare(m_process);
    auto environment = m_process.processEnvironment();
    environment.insert("VELMORA_DEVICE_CONF", path("settings/device.conf"));
    if (hasService)
        environment.insert("VELMORA_WS_SERVER", "http://127.0.0.1:1");
    m_process.setProcessEnvironment(environment);
    m_process.start(QStringLiteral(VELMORA_MENU), QStringList{"--socket", socket()} + options +
                                                      QStringList{"--", QStringLiteral(MENU_SAMPLE)} + words);
    return QTest::qWaitFor([this] { return status()[QStringLiteral("answering")].toBool(); }, 60000);
}

Outcome MenuFixture::command(const QStringList &words) const
{
    QProcess process;
    prepare(process);
    process.start(QStringLiteral(VELMORA_MENU), QStringList{"--socket", socket()} + words);
    if (!process.waitForFinished())
        return {};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

QJsonObject MenuFixture::status() const
{
    return QJsonDocument::fromJson(command({"status"}).output).object();
}

int MenuFixture::waitForEnd()
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(60000))
        return -1;
    return m_process.exitCode();
}

QByteArray MenuFixture::output()
{
    return m_output += m_process.readAllStandardOutput();
}

QByteArray MenuFixture::errors()
{
    return m_errors += m_process.readAllStandardError();
}
