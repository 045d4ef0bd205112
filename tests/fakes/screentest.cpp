#include "fakes/screentest.h"

#include "netcommon/ipc.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace {

QWidget *receiver(QWidget *screen)
{
    QWidget *focused = screen->focusWidget();
    return focused && focused->isVisibleTo(screen) ? focused : screen;
}

void send(QWidget *to, QEvent::Type type, int key)
{
    QKeyEvent event(type, key, Qt::NoModifier);
    QCoreApplication::sendEvent(to, &event);
}

} // namespace

namespace screentest {

void keyPress(QWidget *screen, int key)
{
    send(receiver(screen), QEvent::KeyPress, key);
}
void keyRelease(QWidget *screen, int key)
{
    send(receiver(screen), QEvent::KeyRelease, key);
}

void key(QWidget *screen, int key)
{
    const QPointer<QWidget> guard(screen);
    keyPress(screen, key);
    if (guard)
        keyRelease(screen, key);
}

QWidget *childWidget(const QWidget *parent, const char *objectName)
{
    auto *found = parent ? parent->findChild<QWidget *>(QString::fromLatin1(objectName)) : nullptr;
    if (!found)
        qFatal("no widget %s in %s", objectName, parent ? parent->metaObject()->className() : "nothing");
    return found;
}

QWidget *visibleBox()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->inherits("MsgboxDlg"))
            return widget;
    }
    return nullptr;
}

QStringList visibleWindows()
{
    QStringList names;
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible())
            names.append(QString::fromLatin1(widget->metaObject()->className()));
    }
    names.sort();
    return names;
}

int livingScreens()
{
    int number = 0;
    for (const QWidget *widget : QApplication::topLevelWidgets())
        number += widget->inherits("VelmoraParentWidget") || widget->inherits("MsgboxDlg");
    return number;
}

void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

} // namespace screentest

BoxAnswer::BoxAnswer(const QList<Answer> &answers)
    : m_answers(answers)
{
    connect(&m_timer, &QTimer::timeout, this, &BoxAnswer::look);
    m_timer.start(5);
}

QStringList BoxAnswer::answered() const
{
    return screentest::visibleBox() ? QStringList() : m_texts;
}

void BoxAnswer::look()
{
    QWidget *box = screentest::visibleBox();
    if (!box || box == m_seen)
        return;
    m_seen = box;
    qApp->setProperty(netcommon::lastBoxProperty, box->property(netcommon::lastBoxProperty)); // for FakeIpc
    auto *ok = screentest::child<QPushButton>(box, "okBtn");
    auto *cancel = screentest::child<QPushButton>(box, "cancelBtn");
    m_texts.append(screentest::child<QLabel>(box, "contentLabel")->text());
    m_buttons.append(cancel->isVisible() ? ok->text() + QLatin1Char('|') + cancel->text() : ok->text());
    m_icon = screentest::child<QLabel>(box, "infoIconLabel")->styleSheet();
    const Answer answer = m_answers.isEmpty() ? Ok : m_answers.takeFirst();
    // The click ends the box's event loop; a slot further up may then delete this object.
    if (answer == Ok)
        ok->click();
    else if (answer == Cancel)
        cancel->click();
}
