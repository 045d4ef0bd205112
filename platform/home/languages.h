#pragma once

#include <QList>
#include <QString>

namespace home {

struct Language {
    QString locale; // as "de_DE"
    QString name;   // in the language itself
};
// The languages and regions that Home offers; the setting takes every other, too.
QList<Language> languages();

} // namespace home
