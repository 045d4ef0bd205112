#pragma once

#include <QCoreApplication>
#include <QTranslator>
#include <QtTest>

// The texts are in this language as long as this lives; "en" needs no catalogue.
class InLanguage {
public:
    explicit InLanguage(const QString &language)
    {
        QVERIFY(language == "en" || m_translator.load(QStringLiteral(":/translations/velmora_%1.qm").arg(language)));
        QCoreApplication::installTranslator(&m_translator);
        QCoreApplication::processEvents(); // windows hear of it
    }
    ~InLanguage() { QCoreApplication::removeTranslator(&m_translator); }
    InLanguage(const InLanguage &) = delete;

    static QStringList all() { return QStringLiteral(VELMORA_LANGUAGES).split(u' '); }

private:
    QTranslator m_translator;
};
