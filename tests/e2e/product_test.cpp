// The product binary once, under its real paths: only where nobody's state lies there.

#include "e2e/journey.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QTcpServer>

#include <csignal>
#include <sys/prctl.h>

namespace {

const QString settingsFolder = QStringLiteral("/var/local/misc/velmora");
const QString scratchFolder = QStringLiteral("/tmp/velmora");

} // namespace

class ProductTest : public QObject {
    Q_OBJECT
private slots:
    void aNewDeviceIsWelcomedAndLeavesNothingBehindInTheScratchFolder()
    {
        for (const QString &folder : {settingsFolder, scratchFolder}) {
            if (QFileInfo::exists(folder))
                QSKIP(qPrintable(folder + QStringLiteral(" exists: somebody's state is not touched")));
        }
        QString made = settingsFolder; // the first folder of the path that does not exist yet goes again afterwards
        while (!QFileInfo::exists(QFileInfo(made).path()))
            made = QFileInfo(made).path();
        if (!QDir().mkpath(settingsFolder))
            QSKIP(qPrintable(settingsFolder + QStringLiteral(" cannot be made by this user")));
        {
            QTcpServer silent; // never answers
            QVERIFY(silent.listen(QHostAddress::LocalHost));
            QTemporaryDir root;
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("VELMORA_WS_SERVER", QStringLiteral("http://127.0.0.1:%1").arg(silent.serverPort()));
            environment.insert("VELMORA_WS_STATE_DIR", root.filePath("state"));
            environment.insert("ASAN_OPTIONS",
                               environment.value("ASAN_OPTIONS") +
                                   QStringLiteral(":handle_segv=2:handle_abort=2:handle_sigill=2:handle_sigfpe=2"));
            const QStringList socket = {"--socket", root.filePath("menu.sock")};
            QProcess menu;
            menu.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
            menu.setProcessEnvironment(environment);
            menu.setStandardOutputFile(QProcess::nullDevice());
            menu.setStandardErrorFile(QProcess::nullDevice());
            menu.start(QStringLiteral(JOURNEY_MENU), socket + QStringList{"--", QStringLiteral(PRODUCT_RADIO)});
            const auto screen = [&] {
                QProcess status;
                status.start(QStringLiteral(JOURNEY_MENU), socket + QStringList("status"));
                status.waitForFinished();
                return QJsonDocument::fromJson(status.readAllStandardOutput()).object().value("screen").toString();
            };
            QTRY_COMPARE_WITH_TIMEOUT(screen(), QStringLiteral("WelcomeDlg"), 30000);
            QVERIFY(QFileInfo::exists(scratchFolder));
            QCOMPARE(QProcess::execute(QStringLiteral(JOURNEY_MENU), socket + QStringList("exit")), 0);
            QVERIFY(menu.waitForFinished(20000));
            QCOMPARE(menu.exitCode(), 0);
            QVERIFY(!QFileInfo::exists(scratchFolder));
            QVERIFY(QFileInfo::exists(settingsFolder + QStringLiteral("/velmora_5.ini")));
        }
        QVERIFY(QDir(made).removeRecursively());
    }
};

QTEST_GUILESS_MAIN(ProductTest)
#include "product_test.moc"
