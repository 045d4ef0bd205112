// The radio's settings file: whatever it holds, the accounts can be read, and a new one is kept.
#include "fakes/devicetwin.h"
#include "scratchfile.h"
#include "service/devicepaths.h"
#include "service/velmorasettings.h"

#include <QDir>
#include <QFile>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const bool isPrepared = [] {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        DeviceTwin::setPrivateRoot(QString::fromStdString(fuzz::scratchFolder().string()));
        return true;
    }();
    fuzz::require(isPrepared);
    const QString name = device::settingsFile();
    const QDir folder = QFileInfo(name).dir();
    for (const QString &old : folder.entryList(QDir::Files | QDir::Hidden))
        QFile::remove(folder.filePath(old));
    {
        QFile file(name);
        fuzz::require(file.open(QIODevice::WriteOnly));
        file.write(reinterpret_cast<const char *>(data), qint64(size));
    }
    VelmoraSettings settings = deviceSettings();
    settings.getWelcomeCheck();
    settings.getLoginState();
    settings.getLastSlot();
    settings.getLastLogin();
    settings.getStationInfo();
    settings.getDeviceAccount();
    const qsizetype accounts = settings.getAllUserName().size();
    fuzz::require(accounts == settings.getAllPassword().size());
    const QString slot = settings.getFreeSlot();
    fuzz::require(slot.size() == 1);
    if (slot == QLatin1String("9"))
        return 0;
    const QString account = QStringLiteral("wren@example.org");
    settings.addAccount(account, QStringLiteral("secret"));
    fuzz::require(settings.getPassword(account) == QLatin1String("secret"));
    return 0;
}
