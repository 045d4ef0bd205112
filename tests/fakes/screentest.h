#pragma once

#include "fakes/row.h"
#include "service/velmorametatypes.h"

#include <QApplication>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QtTest>
#include <QWidget>

// What screen tests share: the remote's keys, the answer to the next message box, finding widgets. GUI thread only.
namespace screentest {

// Qt key codes of the remote. A plain enumeration: Qt takes key codes as int.
enum RemoteKey {
    Back = 0x01000061,
    Select = 0x01010000,
    Left = 0x01000012,
    Up = 0x01000013,
    Right = 0x01000014,
    Down = 0x01000015,
    Red = 0x010000CB,
    Green = 0x010000C0,
    TopMenu = 0x0100010A
};

// Sent to the widget that has the focus in `screen`, else to `screen` itself; propagated like a real key.
void keyPress(QWidget *screen, int key);
void keyRelease(QWidget *screen, int key);
void key(QWidget *screen, int key); // both; the screen may be gone afterwards

// Child by object name; fails loudly (aborts the test program with a message) when there is none.
QWidget *childWidget(const QWidget *parent, const char *objectName);
template <typename T>
T *child(const QWidget *parent, const char *objectName)
{
    T *found = qobject_cast<T *>(childWidget(parent, objectName));
    if (!found)
        qFatal("%s is no %s", objectName, T::staticMetaObject.className());
    return found;
}

QWidget *visibleBox();        // the message box that shows now, else null
QStringList visibleWindows(); // class names of the visible top-levels
int livingScreens();          // top-level dialogs that are screens or boxes, hidden ones too

// Runs deferred deletions and everything that is queued.
void settle();

// Called once per program, before its first screen. Registers the types of queued signals; closing the last window does
// not quit.
inline void prepare()
{
    registerVelmoraMetaTypes();
    QApplication::setQuitOnLastWindowClosed(false);
}

} // namespace screentest

// Answers the message boxes that will be shown while this object lives, one prepared answer a box, in order. A box
// without an answer is confirmed, so that no test hangs, and noted like the others.
class BoxAnswer : public QObject {
    Q_OBJECT
public:
    enum class Answer { Ok, Cancel, Nothing }; // Nothing: the box stays open; the test closes it
    using enum Answer;

    explicit BoxAnswer(const QList<Answer> &answers);

    int shown() const { return static_cast<int>(m_texts.size()); } // boxes seen
    QStringList texts() const { return m_texts; }                  // of contentLabel
    QStringList answered() const;                                  // texts; none as long as a box shows
    QStringList buttons() const { return m_buttons; }              // "OK" or "Yes|No"
    QString icon() const { return m_icon; }                        // style sheet of the last box's infoIconLabel

private:
    void look();

    QList<Answer> m_answers;
    QStringList m_texts;
    QStringList m_buttons;
    QString m_icon;
    QPointer<QWidget> m_seen; // the box that was answered last
    QTimer m_timer;
};
