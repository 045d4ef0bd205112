#include "speech.h"

#include "language.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QWidget>

#include <utility>

namespace netcommon {

namespace {

struct Name {
    const char *object;
    const char *text;
};
// Of screens by their classes, of controls by their object names.
constexpr Name screenNames[] = {
    {"VelmoraMainDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Stations and music")},
    {"SelectUserDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Choose an account")},
    {"InternetRadioDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Activate this radio")},
    {"SignInDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Sign in")},
    {"EmailPwdDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Password reminder")},
    {"WelcomeDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Welcome")},
    {"CreateStationDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Create a station")},
    {"RenameStationDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Rename a station")},
    {"MenuDlg", QT_TRANSLATE_NOOP("netcommon::Speech", "Menu")},
};
constexpr Name controlNames[] = {
    {"stationListWidget", QT_TRANSLATE_NOOP("netcommon::Speech", "Stations")},
    {"playListWidget", QT_TRANSLATE_NOOP("netcommon::Speech", "Song history")},
    {"searchResultListWidget", QT_TRANSLATE_NOOP("netcommon::Speech", "Results")},
    {"playBtn", QT_TRANSLATE_NOOP("netcommon::Speech", "Play or pause")},
    {"nextBtn", QT_TRANSLATE_NOOP("netcommon::Speech", "Next track")},
    {"thumbdownBtn", QT_TRANSLATE_NOOP("netcommon::Speech", "Thumbs down")},
    {"thumbupBtn", QT_TRANSLATE_NOOP("netcommon::Speech", "Thumbs up")},
};

constexpr char ownName[] = "velmoraName"; // of a control: the accessible name that was given here

template <size_t count>
QString named(const Name (&names)[count], const QString &object)
{
    for (const Name &name : names)
        if (object == QLatin1String(name.object))
            return QCoreApplication::translate("netcommon::Speech", name.text);
    return {};
}

// The message of a box, else the name of the screen.
QString windowText(const QWidget *window)
{
    const auto *const message = window->findChild<QLabel *>(QStringLiteral("contentLabel"));
    if (window->isModal() && message)
        return message->text().trimmed();
    for (const QMetaObject *kind = window->metaObject(); kind; kind = kind->superClass())
        if (QString name = named(screenNames, QString::fromLatin1(kind->className())); !name.isEmpty())
            return name;
    return window->accessibleName();
}

// The control's name, and the row of a list.
QStringList controlWords(QWidget *control)
{
    QStringList words;
    const QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(control);
    if (accessible && control != control->window())
        words += accessible->text(QAccessible::Name);
    if (const auto *const list = qobject_cast<QListWidget *>(control))
        words += list->currentItem() ? list->currentItem()->text() : QString();
    return words;
}

} // namespace

QString wordsOfFocus()
{
    QWidget *const control = QApplication::focusWidget();
    if (!control)
        return {};
    nameControls(control->window());
    QStringList words = QStringList(windowText(control->window())) + controlWords(control);
    words.removeAll(QString());
    return words.join(QStringLiteral(", "));
}

void nameControls(QWidget *window)
{
    for (QWidget *control : window->findChildren<QWidget *>()) {
        // A name of ours is given again: the language may have changed.
        if (!control->accessibleName().isEmpty() && control->accessibleName() != control->property(ownName).toString())
            continue;
        QString name = named(controlNames, control->objectName());
        if (const auto *const field = qobject_cast<QLineEdit *>(control); field && name.isEmpty())
            name = field->placeholderText();
        if (name.isEmpty() || name == control->accessibleName())
            continue;
        control->setProperty(ownName, name);
        control->setAccessibleName(name);
    }
}

SpokenFocus::SpokenFocus(Speaker speaker, QObject *parent)
    : QObject(parent)
    , m_speaker(std::move(speaker))
{
    connect(qApp, &QApplication::focusChanged, this, &SpokenFocus::focusMoved);
}

void SpokenFocus::speak(const QString &text)
{
    const Language *const language = Language::instance();
    // The text is one argument, and never an option.
    QProcess::startDetached(QStringLiteral("spd-say"),
                            {QStringLiteral("--application-name"), QStringLiteral("velmora"),
                             QStringLiteral("--language"), language ? language->ofTexts() : QStringLiteral("en"),
                             QStringLiteral("--"), text});
}

void SpokenFocus::focusMoved(QWidget *, QWidget *now)
{
    if (!now)
        return;
    nameControls(now->window());
    QStringList words;
    if (const QString window = windowText(now->window()); window != m_window) {
        m_window = window;
        words += window;
    }
    if (auto *const list = qobject_cast<QListWidget *>(now))
        connect(list, &QListWidget::currentRowChanged, this, &SpokenFocus::rowChanged, Qt::UniqueConnection);
    words += controlWords(now);
    words.removeAll(QString());
    const QString text = words.join(QStringLiteral(", "));
    if (!text.isEmpty() && std::exchange(m_said, text) != text)
        m_speaker(text);
}

void SpokenFocus::rowChanged()
{
    const auto *const list = qobject_cast<QListWidget *>(sender());
    if (list && list->hasFocus() && list->currentItem())
        m_speaker(m_said = list->currentItem()->text());
}

} // namespace netcommon
