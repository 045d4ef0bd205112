// The catalogues are those of the sources, complete, and their texts fit into the places that the sources have for
// them.
#include "fakes/row.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>
#include <QXmlStreamReader>

namespace {

struct Text {
    QString context;
    QString source;
    QStringList forms; // one, or one for each plural form
    bool isFinished = true;
};

QList<Text> readCatalogue(const QByteArray &content)
{
    QList<Text> all;
    QString context;
    QXmlStreamReader xml(content);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            all += Text{context, xml.readElementText(), {}};
        } else if (xml.name() == QLatin1String("translation")) {
            all.last().isFinished = !xml.attributes().hasAttribute(QLatin1String("type"));
            QString plain;
            while (xml.readNext() != QXmlStreamReader::EndElement && !xml.atEnd()) {
                if (xml.isStartElement())
                    all.last().forms += xml.readElementText(); // a plural form
                else
                    plain += xml.text();
            }
            if (all.last().forms.isEmpty())
                all.last().forms += plain;
        }
    }
    return all;
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TranslationsTest : public QObject {
    Q_OBJECT
    const QDir m_folder{QStringLiteral(VELMORA_SOURCE_DIR "/translations")};
    const QStringList m_languages = QStringLiteral(VELMORA_LANGUAGES).split(u' ');

private slots:
    void theCataloguesHoldTheTextsOfTheSources()
    {
        const QTemporaryDir copies;
        QStringList files;
        for (const QString &language : m_languages) {
            const QString name = QStringLiteral("velmora_%1.ts").arg(language);
            files += copies.filePath(name);
            QVERIFY2(QFile::copy(m_folder.filePath(name), files.last()), qPrintable(name));
        }
        QProcess lupdate;
        lupdate.setWorkingDirectory(QStringLiteral(VELMORA_SOURCE_DIR));
        lupdate.start(QStringLiteral(VELMORA_LUPDATE), QStringLiteral(VELMORA_LUPDATE_OPTIONS).split(u' ') +
                                                           QStringList{"-source-language", "en", "-ts"} + files);
        QVERIFY(lupdate.waitForFinished());
        QCOMPARE(lupdate.exitCode(), 0);
        for (const QString &file : files)
            QVERIFY2(content(file) == content(m_folder.filePath(QFileInfo(file).fileName())),
                     qPrintable(QFileInfo(file).fileName() + ": run the build target update-texts"));
    }

    void thePagesAndMailsAreTranslated()
    {
        const QTemporaryDir copies;
        for (const QString &language : m_languages) {
            const Row row(language);
            const QString original = m_folder.filePath("pages/" + language + ".po");
            const QString copy = copies.filePath(language + ".po");
            QVERIFY(QFile::copy(original, copy));
            QCOMPARE(QProcess::execute(m_folder.filePath("pages/update"), {copy}), 0);
            QVERIFY2(content(copy) == content(original), "run the build target update-page-texts");
            QProcess open;
            open.start("msgattrib", {"--untranslated", copy});
            QVERIFY(open.waitForFinished());
            QCOMPARE(open.readAllStandardOutput(), QByteArray());
            QVERIFY(!content(copy).contains("#, fuzzy"));
        }
    }

    // The English texts that no test of a screen compares, letter by letter: translations are looked up by them.
    void theEnglishTextsAreThese()
    {
        const std::pair<const char *, const char *> table[] = {
            {"AboutDlg", "About Velmora"},
            {"AboutDlg", "With Velmora you can explore this vast trove of music to your heart's content.\nJust drop "
                         "the name of one of your favorite songs or artists into Velmora and\nlet the Prism Project "
                         "go.\n\nIt will quickly scan its entire world of analyzed music, almost a century of popular "
                         "recordings - new and old, well known and completely obscure - to find songs with interesting "
                         "musical similarities to your choice.\n\nThen sit back and enjoy as it creates a listening "
                         "experience full of current and soon-to-be favorite songs for you."},
            {"AboutDlg", "I am done here"},
            {"CreateStationDlg", "Create a New Station"},
            {"CreateStationDlg", "Tell us one of your favorite\nartists and we'll create a\nstation that explores "
                                 "that\npart of the music universe."},
            {"CreateStationDlg", "Symbol/Num"},
            {"CreateStationDlg", "Caps"},
            {"CreateStationDlg", "Search..."},
            {"CreateStationDlg", "Create station list failed ,please try later!"},
            {"CreateStationDlg", "Create station failed,because system gets invalid data from Velmora!"},
            {"EmailPwdDlg", "Email Password"},
            {"EmailPwdDlg", "Please input you Email\naddress to get the password."},
            {"EmailPwdDlg", "Symbol/Num"},
            {"EmailPwdDlg", "Caps"},
            {"EmailPwdDlg", "Email passowrd..."},
            {"InternetRadioDlg", "Activation Code"},
            {"InternetRadioDlg", "and follow the instructions there to create a new account."},
            {"InternetRadioDlg", "When you are done with that, come back to this screen and click “continue.”"},
            {"InternetRadioDlg", "Please wait..."},
            {"MenuDlg", "Close Menu"},
            {"RenameStationDlg", "Rename this station"},
            {"RenameStationDlg", "Tell us the new station name\nand we'll update it in your\nstation list."},
            {"RenameStationDlg", "Symbol/Num"},
            {"RenameStationDlg", "Caps"},
            {"RenameStationDlg", "Rename station..."},
            {"SelectUserDlg", "Select or create Velmora account."},
            {"SelectUserDlg", "Please wait..."},
            {"SelectUserDlg", "Delete User..."},
            {"SelectUserDlg", "Disassociate device failed because of network error. please try again later!"},
            {"SignInDlg", "Sign in to your Velmora account"},
            {"SignInDlg", "Email:"},
            {"SignInDlg", "Password:"},
            {"SignInDlg", "Symbol/Num"},
            {"SignInDlg", "Caps"},
            {"SignInDlg", "Email Password"},
            {"SignInDlg", "Please wait..."},
            {"VelmoraMainDlg", "Artist:"},
            {"VelmoraMainDlg", "Album:"},
            {"VelmoraMainDlg", "ThumbUp..."},
            {"VelmoraMainDlg", "ThumbDown..."},
            {"VelmoraMainDlg", "Sleep..."},
            {"WelcomeDlg", "Welcome to Velmora"},
            {"WelcomeDlg", "To experience free personalized radio playing only the music you love\nyou will need to "
                           "activate Velmora on this device.\n\nPlease select “Activate Velmora” below."},
            {"WelcomeDlg", "Activate Velmora"},
            {"WhyDlg", "Why is this track playing?"},
            {"WhyDlg", "I am done here"},
        };
        const auto catalogue = readCatalogue(content(m_folder.filePath("velmora_de.ts")));
        for (const auto &[context, source] : table) {
            const Row row(source);
            QVERIFY(std::any_of(catalogue.begin(), catalogue.end(), [&](const Text &text) {
                return text.context == QLatin1String(context) && text.source == QString::fromUtf8(source);
            }));
        }
    }

    void everyTextIsTranslatedAndKeepsItsMarks()
    {
        static const QRegularExpression mark(QStringLiteral("%[1-9n]"));
        static const QRegularExpression blanks(QStringLiteral("^ *"));
        for (const QString &language : m_languages) {
            const QList<Text> all = readCatalogue(content(m_folder.filePath("velmora_" + language + ".ts")));
            QVERIFY(all.size() > 200);
            for (const Text &text : all) {
                const Row row(language + ": " + text.source);
                QVERIFY(text.isFinished);
                for (const QString &form : text.forms) {
                    QVERIFY(!form.trimmed().isEmpty());
                    if (text.forms.size() == 1) // "one minute" needs no number
                        QCOMPARE(form.count(mark), text.source.count(mark));
                    // Texts that are put together, and those that a box places by their blanks.
                    QVERIFY(form.contains(u'\n') || !text.source.endsWith(u'\n'));
                    const auto indent = blanks.match(text.source).capturedLength();
                    QVERIFY(indent < 2 || blanks.match(form).capturedLength() == indent);
                }
            }
        }
    }
};

QTEST_APPLESS_MAIN(TranslationsTest)
#include "translations_test.moc"
