// Runs the product binary once with its real paths, if these paths hold no data yet.

#include "e2e/journey.h"

#include <QDir>
#include <QFileInfo>
#include <QTcpServer>

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
        QString made = settingsFolder; // the first folder of the path that is missing; removed afterwards
        while (!QFileInfo::exists(QFileInfo(made).path()))
            made = QFileInfo(made).path();
        if (!QDir().mkpath(settingsFolder))
            QSKIP(qPrintable(settingsFolder + QStringLiteral(" cannot be made by this user")));
        {
            QTcpServer silent; // never answers
            QVERIFY(silent.listen(QHostAddress::LocalHost));
            Journey journey({.hasServer = false,
                             .serverUrl = QStringLiteral("http://127.0.0.1:%1").arg(silent.serverPort()),
                             .radio = QStringLiteral(PRODUCT_RADIO)});
            QVERIFY2(journey.start(), qPrintable(journey.problem()));
            QVERIFY(journey.waitForScreen("WelcomeDlg"));
            QVERIFY(QFileInfo::exists(scratchFolder));
            QVERIFY(journey.exits());
            QVERIFY(!QFileInfo::exists(scratchFolder));
            QVERIFY(QFileInfo::exists(settingsFolder + QStringLiteral("/velmora_5.ini")));
        }
        QVERIFY(QDir(made).removeRecursively());
    }
};

QTEST_GUILESS_MAIN(ProductTest)
#include "product_test.moc"
