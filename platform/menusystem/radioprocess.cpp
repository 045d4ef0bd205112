#include "radioprocess.h"

#include "menumessages.h"
#include "platform/shared/devicesettings.h"
#include "serveraddress.h"

#include <csignal>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace menusystem {

namespace {

constexpr double largerFactor = 1.25; // libViewComponent counts on just this one

} // namespace

void addDeviceSettings(QProcessEnvironment &environment)
{
    const platform::DeviceSettings settings;
    // What the device trusts counts at the address that the device has chosen, and there it counts alone.
    const QString authority = settings.value("service/authority").toString();
    if (!authority.isEmpty() && !settings.value("service/address").toString().isEmpty() &&
        !environment.contains(QStringLiteral("VELMORA_WS_SERVER")))
        environment.insert(QStringLiteral("VELMORA_WS_CA_FILE"), authority);
    for (const auto &[key, name] :
         {std::pair("sound/output", "VELMORA_AUDIO_SINK"), std::pair("service/address", "VELMORA_WS_SERVER")}) {
        const QString value = settings.value(key).toString();
        if (!value.isEmpty() && !environment.contains(QString::fromLatin1(name)))
            environment.insert(QString::fromLatin1(name), value);
    }
}

bool isServiceKnown()
{
    auto environment = QProcessEnvironment::systemEnvironment();
    addDeviceSettings(environment);
    return !netcommon::serverAddress(environment.value(QStringLiteral("VELMORA_WS_SERVER"))).isEmpty();
}

std::function<void()> diesWithThisProcess()
{
    return [menu = ::getpid()] {
        ::umask(077);
        // SIGKILL, because the radio only announces its first SIGTERM.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != menu)
            ::_exit(127);
        sigset_t none;
        ::sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr); // this process blocks its signals and reads them from a descriptor
    };
}

RadioProcess::RadioProcess(QObject *parent)
    : QProcess(parent)
{
    setProcessChannelMode(MergedChannels);
    setStandardInputFile(nullDevice());
    setChildProcessModifier(diesWithThisProcess());
}

void RadioProcess::startRadio(const QStringList &program, const QString &socket, double scale, bool isWindowed)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(netcommon::menu::socketVariable), socket);
    // Only this scale factor counts, and fonts have 96 dots per inch, whatever the screen reports.
    for (const char *name : {"QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR", "QT_USE_PHYSICAL_DPI",
                             "QT_ENABLE_HIGHDPI_SCALING", "VELMORA_WINDOWED", "VELMORA_LARGER"})
        environment.remove(QString::fromLatin1(name));
    if (!isWindowed && platform::DeviceSettings().value("screen/larger").toBool()) {
        environment.insert(QStringLiteral("VELMORA_LARGER"), QStringLiteral("1"));
        scale *= largerFactor;
    }
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(scale, 'g', 12));
    environment.insert(QStringLiteral("QT_SCALE_FACTOR_ROUNDING_POLICY"), QStringLiteral("PassThrough"));
    environment.insert(QStringLiteral("QT_FONT_DPI"), QStringLiteral("96"));
    // A dozen threads allocate little: one shared heap saves megabytes. Fixed thresholds: otherwise glibc
    // raises them when the first large picture is freed, and keeps as much free memory.
    for (const auto &[name, value] : {std::pair("MALLOC_ARENA_MAX", "1"), std::pair("MALLOC_MMAP_THRESHOLD_", "131072"),
                                      std::pair("MALLOC_TRIM_THRESHOLD_", "131072")})
        if (!environment.contains(QString::fromLatin1(name)))
            environment.insert(QString::fromLatin1(name), QString::fromLatin1(value));
    addDeviceSettings(environment);
    if (isWindowed)
        environment.insert(QStringLiteral("VELMORA_WINDOWED"), QStringLiteral("1"));
    setProcessEnvironment(environment);
    start(program.first(), program.mid(1));
}

int RadioProcess::resultCode() const
{
    if (error() == FailedToStart)
        return 127;
    return exitStatus() == CrashExit ? 128 + exitCode() : exitCode();
}

} // namespace menusystem
