#include "phonechannel.h"

#include "menumessages.h"
#include "platform/shared/devicesettings.h"
#include "radioprocess.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace menusystem {

namespace {

constexpr int afterStartMs = 3000;
constexpr int afterEndMs = 30'000;

// Beside this program, or beside its folder in a build.
QString usualProgram()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString installed = folder.filePath(QStringLiteral("velmora-remote"));
    return QFileInfo::exists(installed) ? installed
                                        : folder.absoluteFilePath(QStringLiteral("../remote/velmora-remote"));
}

} // namespace

PhoneChannel::PhoneChannel()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.setChildProcessModifier(diesWithThisProcess());
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &PhoneChannel::start);
    connect(&m_process, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        if (code != 0 || status == QProcess::CrashExit) // 0: there is nothing to do
            m_later.start(afterEndMs);
    });
}

PhoneChannel::~PhoneChannel()
{
    m_process.disconnect(this);
    m_process.kill();
    m_process.waitForFinished();
}

void PhoneChannel::startFor(const QString &socket)
{
    m_socket = socket;
    m_later.start(afterStartMs);
}

void PhoneChannel::start()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.blockSignals(true);
        m_process.kill();
        m_process.waitForFinished();
        m_process.blockSignals(false);
    }
    const QString program = usualProgram();
    if (!platform::DeviceSettings().value("phones/remote").toBool() || !QFileInfo(program).isExecutable())
        return;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(netcommon::menu::socketVariable), m_socket);
    addDeviceSettings(environment);
    m_process.setProcessEnvironment(environment);
    m_process.start(program, QStringList());
}

} // namespace menusystem
