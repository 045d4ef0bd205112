#pragma once

#include <QUrl>

class QNetworkReply;
class QNetworkRequest;
class QObject;

// Which addresses may be opened (http and https with a host, after a redirect too), and how they are requested.
namespace netcommon::httpaddress {

constexpr int maxRedirects = 10;

// The address, or an invalid one when it is anything but http or https with a host.
QUrl parse(const QByteArray &text);
// The target of a redirect: `location` as the server sent it, relative to the address `from`. Invalid when the target
// is neither http nor https, or when it leads from https to http.
QUrl redirected(const QUrl &from, const QByteArray &location);
bool isRedirect(int status);

// A request that leaves redirects to the caller and asks for the bytes as the server stores them.
QNetworkRequest request(const QUrl &address);
// Ends a transfer and deletes it; listener hears no more of it. May be called from a slot of the reply's own signals:
// the abort is queued, because Qt does not expect it there.
void drop(QNetworkReply *reply, QObject *listener);

} // namespace netcommon::httpaddress
