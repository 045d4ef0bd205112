#include "phoneview.h"

#include "nowplaying.h"
#include "platform/netcommon/device/remotekeys.h"
#include "platform/netcommon/playback/playbackstatistics.h"
#include "platform/shared/windowstack.h"
#include "speech.h"

#include "netcommon/playback.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

#include <algorithm>

namespace netcommon {

namespace {

constexpr char stationList[] = "stationListWidget";
constexpr char keyboardClass[] = "QtVirtualKbDlg";
constexpr int maxStations = 101; // an account has a hundred and Tapestry
constexpr int maxTextLength = 200;

// The window that gets the keys.
QWidget *topWindow()
{
    QWidget *const box = QApplication::activeModalWidget();
    return box && box->isVisible() ? box : platform::WindowStack::instance().top();
}

// Asked by an event, because the on-screen keyboard answers for its field.
QVariant asked(QWidget *field, Qt::InputMethodQuery query)
{
    QInputMethodQueryEvent event(query);
    QCoreApplication::sendEvent(field, &event);
    return event.value(query);
}

bool takesText(QWidget *widget)
{
    return widget->isVisible() && asked(widget, Qt::ImEnabled).toBool();
}

// Whatever takes typed text now: the on-screen keyboard, which types for its field, or a field with the focus.
QWidget *typedField()
{
    QWidget *const window = topWindow();
    if (!window)
        return nullptr;
    for (QWidget *widget : window->findChildren<QWidget *>())
        if (widget->inherits(keyboardClass) && takesText(widget))
            return widget;
    auto *const field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    return field && field->window() == window && field->isVisible() && !field->isReadOnly() ? field : nullptr;
}

bool isSecret(QWidget *field)
{
    return (asked(field, Qt::ImHints).toInt() & Qt::ImhHiddenText) != 0;
}

QString nameOf(const QWidget *field)
{
    const QString name = field->property("velmoraFieldName").toString();
    return field->inherits(keyboardClass) ? name : field->accessibleName();
}

QString playbackWord()
{
    switch (statistics::playbackState()) {
    case PLAYBACK_STATE_PLAYING:
        return QStringLiteral("playing");
    case PLAYBACK_STATE_PAUSED:
        return QStringLiteral("paused");
    default:
        return QStringLiteral("stopped");
    }
}

QString boxText(const QWidget *window)
{
    const auto *const message =
        window->isModal() ? window->findChild<QLabel *>(QStringLiteral("contentLabel")) : nullptr;
    return message ? message->text().trimmed().left(maxTextLength) : QString();
}

} // namespace

// Another number for each field, so that what is typed for one never lands in the next.
int PhoneView::fieldNumber()
{
    QWidget *const field = typedField();
    if (!field) {
        m_field = nullptr;
        return 0;
    }
    const int ofKeyboard = field->property("velmoraField").toInt();
    if (field != m_field || ofKeyboard != m_fieldOfKeyboard)
        ++m_number;
    m_field = field;
    m_fieldOfKeyboard = ofKeyboard;
    return m_number;
}

QStringList PhoneView::stationNames(const QWidget *screen)
{
    const auto *const list = screen->findChild<QListWidget *>(QLatin1String(stationList));
    QStringList names;
    for (int row = 0; list && row < std::min(list->count(), maxStations); ++row) {
        const QString name = list->item(row)->text();
        names += name.isEmpty() ? m_stations.value(row) : name.left(maxTextLength);
    }
    m_stations = names;
    return names;
}

void PhoneView::describe(QJsonObject &shown, int lengthSeconds)
{
    const QWidget *const top = topWindow();
    const QWidget *const player = playingScreen();
    QString screen = QStringLiteral("other");
    if (top && top == player)
        screen = QStringLiteral("player");
    else if (top && top->inherits("home::HomePage"))
        screen = QStringLiteral("home");
    shown[QStringLiteral("screen")] = screen;
    shown[QStringLiteral("playback")] = playbackWord();
    shown[QStringLiteral("focus")] = wordsOfFocus().left(maxTextLength);
    shown[QStringLiteral("box")] = top ? boxText(top) : QString();
    if (player) {
        const NowPlaying now = nowPlaying(player);
        const QString path = statistics::coverPath();
        IMTK_PB_CTRL_BUFFER_STATUS_T buffer{};
        Playback::getInstance()->GetBufferStatus(&buffer);
        const QStringList stations = stationNames(player);
        shown[QStringLiteral("title")] = now.title;
        shown[QStringLiteral("artist")] = now.artist;
        shown[QStringLiteral("album")] = now.album;
        shown[QStringLiteral("station")] = now.station;
        shown[QStringLiteral("cover")] =
            path.contains(QLatin1String("/media/")) ? path.section(QLatin1Char('/'), -1) : QString();
        shown[QStringLiteral("position")] = int(buffer.ui4_start / 1000);
        shown[QStringLiteral("length")] = lengthSeconds;
        shown[QStringLiteral("stations")] = QJsonArray::fromStringList(stations);
        shown[QStringLiteral("stationRow")] = int(stations.indexOf(now.station));
    }
    const int field = fieldNumber();
    shown[QStringLiteral("field")] = field;
    if (field == 0)
        return;
    shown[QStringLiteral("secret")] = isSecret(m_field);
    shown[QStringLiteral("label")] = nameOf(m_field).left(maxTextLength);
    if (!isSecret(m_field))
        shown[QStringLiteral("typed")] = asked(m_field, Qt::ImSurroundingText).toString();
}

// As a click on the row would do, and Select.
QString PhoneView::playStation(int row, const QString &name)
{
    QWidget *const player = playingScreen();
    if (!player || topWindow() != player)
        return QStringLiteral("the stations are not on the screen");
    auto *const list = player->findChild<QListWidget *>(QLatin1String(stationList));
    if (!list || row >= list->count() || stationNames(player).value(row) != name)
        return QStringLiteral("there is no such station");
    list->setFocus(Qt::MouseFocusReason);
    list->setCurrentRow(row);
    RemoteKeys::press(Qt::Key_Select, false);
    return {};
}

QString PhoneView::setField(int number, const QString &text)
{
    if (fieldNumber() != number || number == 0)
        return QStringLiteral("this field is no longer typed in");
    // The characters behind the cursor may be any number; replacing stops at the end.
    const int cursor = asked(m_field, Qt::ImCursorPosition).toInt();
    QInputMethodEvent event;
    event.setCommitString(text, -cursor, INT_MAX / 2);
    QCoreApplication::sendEvent(m_field, &event);
    return {};
}

QString PhoneView::finishField(int number)
{
    if (fieldNumber() != number || number == 0)
        return QStringLiteral("this field is no longer typed in");
    QInputMethodEvent event; // the on-screen keyboard goes to its last key
    QCoreApplication::sendEvent(m_field, &event);
    RemoteKeys::press(Qt::Key_Select, false);
    return {};
}

} // namespace netcommon
