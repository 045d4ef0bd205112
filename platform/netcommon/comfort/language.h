#pragma once

#include <QObject>
#include <QTranslator>

class QCoreApplication;

namespace netcommon {

// The language of all texts, and how dates, times and numbers are written. At the start it is the device's setting, so
// that the first window has it. A later choice sends QEvent::LanguageChange; a screen that does not handle the event
// keeps its texts until it is made again. GUI thread; the application owns it.
class Language : public QObject {
public:
    static void install(QCoreApplication *application);
    static Language *instance(); // null without a GUI application

    // `locale` as "de_DE"; empty: as the system is set up. A language without a catalogue gives English texts.
    void choose(const QString &locale);

    // Of the texts, as "de".
    QString ofTexts() const;

private:
    explicit Language(QCoreApplication *application);

    QTranslator m_translator;               // installed with this object; empty: English
    QString m_chosen = QStringLiteral("?"); // nothing yet
};

} // namespace netcommon
