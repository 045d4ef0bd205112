#include "languages.h"

#include <QLocale>

namespace home {

QList<Language> languages()
{
    QList<Language> all;
    for (const char *code :
         {"en_GB", "en_US", "en_IE", "en_AU", "en_CA", "cs_CZ", "da_DK", "de_AT", "de_CH", "de_DE", "es_ES", "fi_FI",
          "fr_BE", "fr_CH", "fr_FR", "it_IT", "ja_JP", "nb_NO", "nl_BE", "nl_NL", "pl_PL", "pt_BR", "pt_PT", "sv_SE"}) {
        const QLocale locale{QLatin1String(code)};
        QString name = locale.nativeLanguageName();
        name[0] = name[0].toUpper();
        all += {QLatin1String(code), QStringLiteral("%1, %2").arg(name, locale.nativeTerritoryName())};
    }
    return all;
}

} // namespace home
