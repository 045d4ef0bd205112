#pragma once

#include <QUrl>

class QNetworkReply;
class QNetworkRequest;
class QObject;

// Which addresses are opened at all: http and https with a host, also after a redirect; and how.
namespace netcommon::httpaddress {

constexpr int MaxRedirects = 10;

// The address, or an invalid one when it is anything but http or https with a host.
QUrl parse(const QByteArray &text);
// Where location leads from from. Invalid: elsewhere than http or https, or from https down to http.
QUrl redirected(const QUrl &from, const QByteArray &location);
bool isRedirect(int status);

// A request that decides nothing by itself: redirects by hand, bytes as the server has them.
QNetworkRequest request(const QUrl &address);
// Ends a transfer that listener does not want to hear of any more, and deletes it. May be called from the reply's own
// signals: the abort waits until they are through, because Qt's reply does not expect it in between.
void drop(QNetworkReply *reply, QObject *listener);

} // namespace netcommon::httpaddress
