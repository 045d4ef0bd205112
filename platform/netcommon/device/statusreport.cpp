#include "statusreport.h"

#include "menusocket.h"
#include "netcommon/ipc.h"
#include "platform/netcommon/comfort/comfort.h"
#include "platform/netcommon/playback/playbackstatistics.h"
#include "platform/shared/windowstack.h"

#include <QAbstractButton>
#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

#include <algorithm>

#include <unistd.h>

namespace netcommon {

namespace {

constexpr int maxRows = 200;
constexpr int maxTextLength = 200;

QJsonValue className(const QWidget *widget)
{
    return widget ? QJsonValue(QString::fromLatin1(widget->metaObject()->className())) : QJsonValue();
}

bool isBox(const QWidget *window)
{
    return window && window->isModal();
}

// The visible texts by object name.
QJsonObject labels(const QWidget *window)
{
    QJsonObject texts;
    // Without those of dialogs that belong to the window.
    const auto add = [&](const QWidget *widget, const QString &text) {
        if (widget->isVisible() && widget->window() == window && !widget->objectName().isEmpty() && !text.isEmpty())
            texts[widget->objectName()] = text.left(maxTextLength);
    };
    for (const auto *label : window->findChildren<QLabel *>())
        add(label, label->text());
    for (const auto *button : window->findChildren<QAbstractButton *>())
        add(button, button->text());
    for (const auto *field : window->findChildren<QLineEdit *>())
        if (field->echoMode() == QLineEdit::Normal)
            add(field, field->text());
    return texts;
}

QJsonObject lists(const QWidget *window)
{
    QJsonObject all;
    for (const auto *list : window->findChildren<QListWidget *>()) {
        if (!list->isVisible() || list->window() != window)
            continue;
        QJsonArray rows;
        for (int row = 0; row < std::min(list->count(), maxRows); ++row)
            rows += list->item(row)->text().left(maxTextLength);
        all[list->objectName()] = QJsonObject{{QStringLiteral("row"), list->currentRow()},
                                              {QStringLiteral("count"), list->count()},
                                              {QStringLiteral("focus"), list->hasFocus()},
                                              {QStringLiteral("rows"), rows}};
    }
    return all;
}

} // namespace

QByteArray statusLine()
{
    QJsonObject status{{QStringLiteral("running"), true},
                       {QStringLiteral("answering"), true},
                       {QStringLiteral("pid"), int(::getpid())},
                       {QStringLiteral("playback"), statistics::playbackState()},
                       {QStringLiteral("audioSeconds"), statistics::audioSecondsRendered()},
                       {QStringLiteral("screen"), QJsonValue()},
                       {QStringLiteral("box"), QJsonValue()},
                       {QStringLiteral("focus"), QJsonValue()}};
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) {
        if (const Comfort *const comfort = Comfort::instance())
            comfort->describe(status);
        const auto order = platform::WindowStack::instance().bottomToTop();
        const QWidget *box = order.size() > 1 && isBox(order.last()) ? order.last() : nullptr;
        const QWidget *screen = nullptr;
        for (const QWidget *window : order)
            if (!screen || !isBox(window))
                screen = window;
        status[QStringLiteral("screen")] = className(screen);
        status[QStringLiteral("box")] = className(box);
        if (const QWidget *focus = QApplication::focusWidget())
            status[QStringLiteral("focus")] = focus->objectName();
        if (screen) {
            status[QStringLiteral("labels")] = labels(screen);
            status[QStringLiteral("lists")] = lists(screen);
        }
        if (box) {
            const auto *content = box->findChild<QLabel *>(QStringLiteral("contentLabel"));
            status[QStringLiteral("boxText")] = content ? content->text() : QString();
            status[QStringLiteral("boxLabels")] = labels(box);
        }
    }
    QByteArray line = QJsonDocument(status).toJson(QJsonDocument::Compact);
    if (line.size() > menu::maxTextBytes) {
        // Too long to send: without the texts, the rest still arrives.
        status.remove(QStringLiteral("lists"));
        status.remove(QStringLiteral("labels"));
        status.remove(QStringLiteral("boxLabels"));
        line = QJsonDocument(status).toJson(QJsonDocument::Compact);
    }
    return line;
}

std::uint32_t statusFlags()
{
    const int playback = statistics::playbackState();
    const QWidget *top = platform::WindowStack::instance().top();
    std::uint32_t flags = 0;
    if (playback == PLAYBACK_STATE_PLAYING && statistics::audioSecondsRendered() > 0)
        flags |= menu::playsFlag;
    if (!isBox(top))
        return flags;
    if (top->property(lastBoxProperty).toBool())
        flags |= menu::lastBoxFlag;
    const auto buttons = top->findChildren<QAbstractButton *>();
    const auto visible =
        std::count_if(buttons.begin(), buttons.end(), [](auto *button) { return button->isVisible(); });
    if (playback == PLAYBACK_STATE_STOPPED && visible == 1)
        flags |= menu::noticeFlag;
    return flags;
}

} // namespace netcommon
