#include "account/deviceactivation.h"

#include "app/velmoraparentwidget.h"
#include "service/deviceidentity.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"

#include <QCoreApplication>
#include <QDebug>
#include <QUrl>
#include <QUrlQuery>

namespace deviceactivation {

QString codeLine(const QString &code)
{
    return QCoreApplication::translate("InternetRadioDlg", "Your activation code is:    ") + code;
}

QString pageLine(const QString &url)
{
    return QCoreApplication::translate("InternetRadioDlg", "Please go to    ") + url;
}

QString addressWithCode(const QString &pageLine, const QString &codeLine)
{
    const auto value = [](const QString &line) { return line.section(QStringLiteral("    "), -1).trimmed(); };
    QUrl url(value(pageLine), QUrl::StrictMode);
    const QString code = value(codeLine);
    const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    if (!url.isValid() || !isWeb || url.host().isEmpty() || code.isEmpty())
        return {};
    QUrlQuery query(url);
    query.addQueryItem(QStringLiteral("code"), code);
    url.setQuery(query);
    return url.toString(QUrl::FullyEncoded);
}

std::optional<VLM_WS_EXT_ERRCODE_T> requestCode()
{
    VelmoraWebService *service = VelmoraWebService::getInstance();
    char mac[7] = {};
    const VLM_WS_EXT_ERRCODE_T result = service->getMac(mac, sizeof mac);
    if (result != VLM_WS_ERR_OK) {
        qDebug("VelmoraLogin,userLoginWithDeviceID,getMac failed,e_ret=%d.", int(result));
        return std::nullopt;
    }
    HANDLE_T handle = 0;
    return service->generateDeviceActivationCode(macDigits(mac).toLatin1().constData(), false, nullptr, &handle);
}

std::optional<wsreply::ActivationCode> takeCode(VelmoraParentWidget *screen, HANDLE_T h_handle,
                                                VLM_WS_EXT_ERRCODE_T e_ret)
{
    const char *name = screen->metaObject()->className();
    qDebug("%s,generateDeviceActivationCodeDone...", name);
    const WsHandle handle(h_handle);
    screen->controlAnimation(true);
    if (e_ret == VLM_WS_ERR_OK)
        return wsreply::activationCode(h_handle);
    qDebug("%s,generateDeviceActivationCodeDone.error,return=%d", name, int(e_ret));
    return std::nullopt;
}

} // namespace deviceactivation
