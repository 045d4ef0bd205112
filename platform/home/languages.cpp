#include "languages.h"

#include <QLocale>

namespace home {

QList<Language> languages()
{
    const QStringList translated = QStringLiteral("en " VELMORA_LANGUAGES).split(u' ');
    QList<Language> all;
    for (const char *code : {"en_GB", "en_US", "en_IE", "en_AU", "en_CA", "ar_EG", "cs_CZ", "da_DK", "de_AT",
                             "de_CH", "de_DE", "es_ES", "fi_FI", "fr_BE", "fr_CH", "fr_FR", "it_IT", "ja_JP",
                             "nb_NO", "nl_BE", "nl_NL", "pl_PL", "pt_BR", "pt_PT", "sv_SE"}) {
        const QLocale locale{QLatin1String(code)};
        QString name = locale.nativeLanguageName();
        name[0] = name[0].toUpper();
        name += QStringLiteral(", ") + locale.nativeTerritoryName();
        if (!translated.contains(QString::fromLatin1(code).section(u'_', 0, 0)))
            name += QStringLiteral(" (English)"); // its texts; dates and numbers are the region's
        all += {QLatin1String(code), name};
    }
    return all;
}

} // namespace home
