#include "language.h"

#include "platform/shared/devicesettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QPointer>

namespace netcommon {

namespace {

QPointer<Language> languageInstance; // programs with one application object after the other make one each

// Qt asks for this text to know in which direction a language is written: "LTR" or "RTL".
[[maybe_unused]] const char *const direction = QT_TRANSLATE_NOOP("QGuiApplication", "QT_LAYOUT_DIRECTION");

QString catalogueOf(const QString &name)
{
    return QStringLiteral(":/translations/velmora_%1.qm").arg(name);
}

// The first of the locale's languages that there are texts for. QTranslator's own search would pass over English.
QString languageFor(const QLocale &locale)
{
    for (const QString &name : locale.uiLanguages()) {
        QString plain = name.section(u'-', 0, 0);
        if (plain == QLatin1String("en") || QFile::exists(catalogueOf(plain)))
            return plain;
    }
    return QStringLiteral("en");
}

} // namespace

void Language::install(QCoreApplication *application)
{
    languageInstance = new Language(application);
}

Language *Language::instance()
{
    return languageInstance;
}

Language::Language(QCoreApplication *application)
    : QObject(application)
{
    choose(platform::DeviceSettings().value("language/locale").toString());
    QCoreApplication::installTranslator(&m_translator);
}

void Language::choose(const QString &locale)
{
    if (m_chosen == locale)
        return;
    m_chosen = locale;
    const QLocale chosen = locale.isEmpty() ? QLocale::system() : QLocale(locale);
    QLocale::setDefault(chosen);
    const QString name = languageFor(chosen);
    // An installed translator reports the change by itself, also that to English, which has no catalogue.
    if (name != ofTexts() && !m_translator.load(catalogueOf(name)) && name != QLatin1String("en"))
        qWarning("Language,%s: its texts cannot be read, they stay English", qPrintable(name));
}

QString Language::ofTexts() const
{
    const QString name = m_translator.language().section(u'_', 0, 0);
    return name.isEmpty() ? QStringLiteral("en") : name;
}

} // namespace netcommon
