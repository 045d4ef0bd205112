#include "tools/setup/firstaccount.h"

#include "service/deviceidentity.h"
#include "service/velmorasettings.h"
#include "service/wshandle.h"
#include "velmora_ws.h"

#include <future>

namespace {

constexpr char slot[] = "0";

struct Outcome {
    std::promise<VLM_WS_EXT_ERRCODE_T> result;
};

// The library's thread.
void done(HANDLE_T handle, VLM_WS_EXT_ERRCODE_T result, VOID *tag)
{
    const WsHandle owner(handle);
    static_cast<Outcome *>(tag)->result.set_value(result);
}

template <typename Request>
VLM_WS_EXT_ERRCODE_T ask(Request request)
{
    Outcome outcome;
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T sent = request(&done, &outcome, &handle);
    return sent == VLM_WS_ERR_OK ? outcome.result.get_future().get() : sent;
}

QString failure(const char *step, VLM_WS_EXT_ERRCODE_T code)
{
    return QStringLiteral("%1 failed with code %2").arg(QLatin1String(step)).arg(int(code));
}

} // namespace

QString setUpFirstAccount(const QString &settingsFile, const QString &userName, const QString &password)
{
    char mac[7] = {};
    VLM_WS_EXT_ERRCODE_T code = velmora_ws_utility_get_mac(mac, sizeof mac);
    if (code != VLM_WS_ERR_OK)
        return failure("reading the hardware address", code);
    code = ask([](auto callback, VOID *tag, HANDLE_T *handle) {
        return velmora_ws_partnerLogin(nullptr, nullptr, nullptr, 1, callback, tag, handle);
    });
    if (code != VLM_WS_ERR_OK)
        return failure("the partner login", code);
    const QByteArray name = userName.toUtf8();
    const QByteArray secret = password.toUtf8();
    code = ask([&](auto callback, VOID *tag, HANDLE_T *handle) {
        return velmora_ws_userLogin("user", secret.constData(), name.constData(), mac, callback, tag, handle);
    });
    if (code != VLM_WS_ERR_OK)
        return failure("the login", code);
    const QByteArray identity = deviceIdentity(mac, QLatin1String(slot)).toLatin1();
    code = ask([&](auto callback, VOID *tag, HANDLE_T *handle) {
        return velmora_ws_associateDevice(identity.constData(), callback, tag, handle);
    });
    if (code != VLM_WS_ERR_OK)
        return failure("the association", code);

    VelmoraSettings settings(settingsFile, QSettings::IniFormat, nullptr);
    settings.setWelcomeCheck(QStringLiteral("1"));
    settings.addAccount(userName, QLatin1String(slot));
    settings.markSlotUsed(0);
    settings.setLastLogin(userName, QLatin1String(slot));
    settings.sync();
    return settings.status() == QSettings::NoError ? QString()
                                                   : QStringLiteral("%1 cannot be written").arg(settingsFile);
}
