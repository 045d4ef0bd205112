// Home and the menu system's pages: what they show, and that remote keys change the device's settings.
#include "homepage.h"
#include "menusocket.h"
#include "noticepage.h"
#include "rowlook.h"
#include "screens/inlanguage.h"
#include "screens/lookcheck.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

using namespace home;

Q_DECLARE_METATYPE(home::Answer)

// Answers every request as a service does that is well.
class HealthyService : public QTcpServer {
public:
    HealthyService()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                const QByteArray body = R"({"code":0,"data":{"status":"ready"}})";
                const bool isHealth = socket->readAll().startsWith("GET /radio/health HTTP/1.1\r\n");
                socket->write(
                    (isHealth ? "HTTP/1.1 200 OK\r\nContent-Length: " : "HTTP/1.1 404 No\r\nContent-Length: ") +
                    QByteArray::number(body.size()) + "\r\n\r\n" + body);
            });
        });
    }
    QString address() const { return QStringLiteral("http://127.0.0.1:%1/radio/").arg(serverPort()); }
};

class HomeTest : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_folder;

    static void show(QWidget &page)
    {
        page.show();
        QApplication::setActiveWindow(&page);
        QVERIFY(QTest::qWaitForWindowActive(&page));
    }
    static void keys(std::initializer_list<int> all)
    {
        for (const int key : all)
            for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
                QKeyEvent event(type, key, Qt::NoModifier);
                QCoreApplication::sendEvent(QApplication::focusWidget(), &event);
            }
    }
    static bool goTo(HomePage &page, const QString &subject)
    {
        auto *list = page.findChild<QListWidget *>("subjectList");
        for (int tries = 0; tries < list->count() && list->currentItem()->text() != subject; ++tries)
            keys({Qt::Key_Down});
        return list->currentItem()->text() == subject;
    }
    static QStringList rows(HomePage &page)
    {
        auto *list = page.findChild<QListWidget *>("paneList");
        QStringList texts;
        for (int row = 0; row < list->count(); ++row)
            texts += list->item(row)->text();
        return texts;
    }
    // Rows whose text and value do not fit beside each other.
    static QStringList cutRows(const QListWidget *list)
    {
        constexpr int margins = 2 * 14 + 26 + 16;
        QStringList cut;
        for (int row = 0; row < list->count(); ++row) {
            const QString value = list->item(row)->data(RowLook::ValueRole).toString();
            if (list->fontMetrics().horizontalAdvance(list->item(row)->text() + value) > list->width() - margins)
                cut += list->item(row)->text();
        }
        return cut;
    }
    static QString text(QWidget &page, const char *name) { return page.findChild<QLabel *>(name)->text(); }
    static QVariant setting(const char *key) { return platform::DeviceSettings().value(key); }

private slots:
    void init()
    {
        qApp->setStyleSheet(Page::styleSheet());
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("VELMORA_DEVICE_CONF", m_folder->filePath("device.conf").toLocal8Bit());
        qputenv("VELMORA_WS_CONF", m_folder->filePath("ws.conf").toLocal8Bit());
        qputenv("XDG_STATE_HOME", m_folder->path().toLocal8Bit());
        qunsetenv("VELMORA_WS_SERVER");
        qunsetenv("VELMORA_MENU_SOCKET");
    }

    void everySubjectIsReadableAndHasOneFocus()
    {
        HomePage page;
        show(page);
        auto *list = page.findChild<QListWidget *>("subjectList");
        for (int row = 0; row < list->count(); ++row) {
            list->setCurrentRow(row);
            QTRY_VERIFY(!text(page, "paneTitle").isEmpty());
            QTRY_COMPARE(lookcheck::faults(&page), QStringList());
            QCOMPARE(lookcheck::focused(&page), QStringList("subjectList"));
            if (rows(page).isEmpty())
                continue;
            keys({Qt::Key_Right});
            QVERIFY2(lookcheck::focused(&page) == QStringList("paneList"), qPrintable(text(page, "paneTitle")));
            keys({Qt::Key_Back});
        }
        QCOMPARE(list->currentItem()->text(), "Quit");
    }

    void noLanguageCutsAText()
    {
        QStringList cut;
        for (const QString &language : InLanguage::all()) {
            const InLanguage texts(language);
            HomePage page;
            show(page);
            auto *list = page.findChild<QListWidget *>("subjectList");
            for (int row = 0; row < list->count(); ++row) {
                list->setCurrentRow(row);
                cut += lookcheck::cutTexts(&page);
                cut += cutRows(list) + cutRows(page.findChild<QListWidget *>("paneList"));
            }
            for (const auto kind : {NoticePage::Kind::Waiting, NoticePage::Kind::Again, NoticePage::Kind::Stopped}) {
                NoticePage notice(kind, {});
                show(notice);
                cut += lookcheck::cutTexts(&notice);
            }
        }
        cut.removeDuplicates();
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
    }

    void theRemoteChangesSettings()
    {
        QString reason;
        QVERIFY2(platform::DeviceSettings().set("sound/volume", "45", &reason), qPrintable(reason)); // between two rows
        HomePage page;
        show(page);
        QVERIFY(goTo(page, "Volume"));
        keys({Qt::Key_Right, Qt::Key_Down, Qt::Key_Up, Qt::Key_Select});
        QCOMPARE(setting("sound/volume").toInt(), 45);
        keys({Qt::Key_Home, Qt::Key_Down, Qt::Key_Down, Qt::Key_Select}); // from 100 percent
        QCOMPARE(setting("sound/volume").toInt(), 80);
        keys({Qt::Key_End, Qt::Key_Select});
        QCOMPARE(setting("sound/key-clicks").toBool(), true);
        keys({Qt::Key_Select});
        QCOMPARE(setting("sound/key-clicks").toBool(), false);
        keys({Qt::Key_TopMenu}); // back to the first subject
        QCOMPARE(page.findChild<QListWidget *>("subjectList")->currentRow(), 0);
        QVERIFY(goTo(page, "Screen"));
        keys({Qt::Key_Select, Qt::Key_Up, Qt::Key_Select, Qt::Key_Left});
        QCOMPARE(setting("screen/saver-minutes").toInt(), 5);

        // Where the file cannot be written the pane says why.
        QVERIFY(QFile::remove(m_folder->filePath("device.conf")) && QDir().mkdir(m_folder->filePath("device.conf")));
        keys({Qt::Key_Right, Qt::Key_Up, Qt::Key_Select});
        QVERIFY2(text(page, "paneText").contains("device.conf"), qPrintable(text(page, "paneText")));
    }

    void anotherServiceIsTypedAndTested()
    {
        HealthyService service;
        QVERIFY(service.listen(QHostAddress::LocalHost));
        HomePage page;
        show(page);
        QVERIFY(goTo(page, "Service"));
        QTRY_VERIFY(text(page, "paneText").contains("No service is set up"));
        keys({Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_Select});
        QCOMPARE(lookcheck::faults(&page), QStringList());
        QTest::keyClicks(QApplication::focusWidget(), service.address());
        keys({Qt::Key_Select}); // typing has moved to Done
        QCOMPARE(setting("service/address").toString(), service.address());
        QTRY_COMPARE(text(page, "paneText"), "The service answers.");
        QCOMPARE(lookcheck::focused(&page), QStringList("paneList"));
        keys({Qt::Key_Select, Qt::Key_Back}); // opened again, and left as it was
        QCOMPARE(setting("service/address").toString(), service.address());
        qputenv("VELMORA_WS_SERVER", "http://127.0.0.1:1"); // the environment wins
        keys({Qt::Key_Left, Qt::Key_Up, Qt::Key_Down, Qt::Key_Right});
        QVERIFY(!rows(page).contains("Use another one"));
    }

    void theSleepTimerIsSetInTheMenuSystem()
    {
        namespace menu = netcommon::menu;
        const QString socket = m_folder->filePath("menu.sock");
        QString reason;
        const int listener = menu::listenAt(socket.toLocal8Bit(), &reason);
        QVERIFY2(listener >= 0, qPrintable(reason));
        qputenv("VELMORA_MENU_SOCKET", socket.toLocal8Bit());
        HomePage page;
        show(page);
        const auto answerWith = [&](const QByteArray &state) {
            int peer = -1;
            menu::Packet packet;
            const bool isAsked = QTest::qWaitFor([&] {
                peer = peer < 0 ? menu::acceptPeer(listener) : peer;
                return peer >= 0 && menu::receive(peer, packet) == menu::Received::Packet;
            });
            menu::send(peer, menu::makeMessage(menu::MessageType::Answer, 1, 0), state);
            ::close(peer);
            return isAsked && menu::typeOf(packet.message) == menu::MessageType::Sleep
                       ? QList{menu::field(packet.message, menu::flagOffset),
                               menu::field(packet.message, menu::valueOffset)}
                       : QList<std::uint32_t>();
        };
        QVERIFY(goTo(page, "Sleep timer"));
        QCOMPARE(answerWith("off"), (QList<std::uint32_t>{std::uint32_t(menu::SleepOrder::Tell), 0}));
        QTRY_VERIFY(page.findChild<QListWidget *>("paneList")->item(0)->data(Qt::AccessibleTextRole).toString() ==
                    "off, chosen");
        keys({Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Select});
        QCOMPARE(answerWith("30"), (QList<std::uint32_t>{std::uint32_t(menu::SleepOrder::Minutes), 30}));
        QTRY_VERIFY(text(page, "paneText").contains("30 minutes are left"));
        ::close(listener);
    }

    void subjectsThatEndHomeSayHow()
    {
        HomePage page;
        QSignalSpy answers(&page, &Page::finished);
        show(page);
        keys({Qt::Key_Select});
        QVERIFY(goTo(page, "Quit"));
        keys({Qt::Key_Select, Qt::Key_Select});
        QCOMPARE(answers.size(), 2);
        QCOMPARE(answers[0][0].value<Answer>(), Answer::StartRadio);
        QCOMPARE(answers[1][0].value<Answer>(), Answer::Quit);
    }

    void theWaitingPageStartsTheRadioWhenTheServiceIsBack()
    {
        HealthyService service;
        QVERIFY(service.listen(QHostAddress::LocalHost));
        const quint16 port = service.serverPort();
        const ServicePlace place{service.address()};
        service.close();
        NoticePage page(NoticePage::Kind::Waiting, place);
        QSignalSpy answers(&page, &Page::finished);
        show(page);
        QCOMPARE(text(page, "textLabel"), "The radio cannot reach its service. It starts again as soon as it can.");
        QTRY_COMPARE(text(page, "stateLabel"), "The service does not answer.");
        QCOMPARE(lookcheck::faults(&page), QStringList());
        QVERIFY(answers.isEmpty());
        QVERIFY(service.listen(QHostAddress::LocalHost, port));
        QTRY_COMPARE_WITH_TIMEOUT(answers.size(), 1, 30000);
        QCOMPARE(answers[0][0].value<Answer>(), Answer::StartRadio);
    }

    void theOtherPagesWaitForAKey()
    {
        for (const auto kind : {NoticePage::Kind::Again, NoticePage::Kind::Stopped}) {
            NoticePage page(kind, {});
            QSignalSpy answers(&page, &Page::finished);
            QSignalSpy homes(&page, &NoticePage::wantsHome);
            show(page);
            QCOMPARE(lookcheck::faults(&page), QStringList());
            QCOMPARE(lookcheck::focused(&page), QStringList("againButton"));
            keys({Qt::Key_Right, Qt::Key_Select, Qt::Key_TopMenu, Qt::Key_Left});
            QCOMPARE(homes.size(), 2);
            QVERIFY(answers.isEmpty());
            keys({Qt::Key_Select});
            QCOMPARE(answers.size(), 1);
            QCOMPARE(answers[0][0].value<Answer>(), Answer::StartRadio);
        }
    }
};

QTEST_MAIN(HomeTest)
#include "home_test.moc"
