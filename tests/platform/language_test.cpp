// The language of the texts, as libNetCommon chooses it: at the start, and while a program runs.

#include "fakes/row.h"
#include "netcommon/ipcthread.h"

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>
#include <QWidget>

namespace {

const QTemporaryDir folder;

void choose(const QByteArray &locale)
{
    QFile file(folder.filePath("device.conf"));
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no settings");
    file.write("[language]\nlocale = " + locale + "\n[speech]\nenabled = true\n");
}

// In place of speech-dispatcher's command: keeps what it is to say.
QByteArray said()
{
    QFile file(folder.filePath("spd-say.said"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class Window : public QWidget {
public:
    int changes = 0;

protected:
    void changeEvent(QEvent *event) override
    {
        changes += event->type() == QEvent::LanguageChange ? 1 : 0;
        QWidget::changeEvent(event);
    }
};

QString cancel()
{
    return QCoreApplication::translate("MsgboxDlg", "Cancel");
}

} // namespace

class LanguageTest : public QObject {
    Q_OBJECT
private slots:
    void theFirstWindowHasTheLanguageOfTheSettings()
    {
        QVERIFY(netcommon::IpcThread::getInstance()); // the library is linked
        Window window;
        window.show();
        QCOMPARE(cancel(), "Abbrechen");
        QCOMPARE(QLocale().name(), "de_CH");
        QCOMPARE(QCoreApplication::translate("home::SleepPane", "%n minutes are left.", nullptr, 1), "Noch 1 Minute.");
        QTest::qWait(0);
        QCOMPARE(window.changes, 0);
    }

    void whatIsSpokenFollowsTheLanguage()
    {
        Window window;
        QPushButton thumb(&window), other(&window);
        thumb.setObjectName("thumbupBtn");
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        struct Case {
            const char *locale, *words;
            int changes; // of the window's texts, since it was made
        };
        for (const auto &[locale, words, changes] :
             {Case{"de_CH", "--language de -- Daumen hoch\n", 0}, Case{"pl_PL", "--language pl -- Lubię\n", 1}}) {
            choose(locale);
            QTRY_COMPARE(QLocale().name(), locale);
            QTRY_COMPARE(window.changes, changes); // else the next window could get this change, too
            other.setFocus();
            thumb.setFocus();
            QTRY_VERIFY2(said().contains(words), said().constData());
        }
    }

    void itChangesWhileTheProgramRuns()
    {
        struct Case {
            const char *locale, *cancel;
            Qt::LayoutDirection direction;
            int changes; // of the texts
        };
        // Czech has no texts, but its own dates; empty is as the system is set up, which is English here.
        const Case cases[] = {{"ar_EG", "إلغاء", Qt::RightToLeft, 1},  {"ja_JP", "キャンセル", Qt::LeftToRight, 1},
                              {"cs_CZ", "Cancel", Qt::LeftToRight, 1}, {"en_GB", "Cancel", Qt::LeftToRight, 0},
                              {"pl_PL", "Anuluj", Qt::LeftToRight, 1}, {"", "Cancel", Qt::LeftToRight, 1}};
        for (const auto &[locale, text, direction, changes] : cases) {
            const Row row(QString::fromLatin1(locale));
            Window window;
            window.show();
            choose(locale);
            QTRY_COMPARE(QLocale().name(), *locale ? locale : "C");
            QTRY_COMPARE(window.changes, changes);
            QCOMPARE(cancel(), QString::fromUtf8(text));
            QCOMPARE(QGuiApplication::layoutDirection(), direction);
        }
    }
};

int main(int argc, char **argv)
{
    qputenv("VELMORA_DEVICE_CONF", folder.filePath("device.conf").toLocal8Bit());
    QFile speaker(folder.filePath("spd-say"));
    if (!speaker.open(QIODevice::WriteOnly) || speaker.write("#!/bin/sh\necho \"$*\" >>\"$0.said\"\n") < 0 ||
        !speaker.setPermissions(QFile::ReadOwner | QFile::ExeOwner))
        qFatal("no speaker");
    speaker.close();
    qputenv("PATH", folder.path().toLocal8Bit() + ':' + qgetenv("PATH"));
    choose("de_CH");
    QApplication application(argc, argv);
    LanguageTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "language_test.moc"
