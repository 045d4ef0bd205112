#include "e2e/journey.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QUrlQuery>

#include <csignal>
#include <sys/prctl.h>

namespace {

constexpr int lookMs = 100;
constexpr int startSeconds = 60;

QString readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void makePrivate(const QString &folder)
{
    QDir().mkpath(folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

bool copyTree(const QString &from, const QString &to)
{
    if (!QDir().mkpath(to))
        return false;
    // Hard links, if both are on one file system; the files are never written again.
    QProcess link;
    link.start("cp", {"-alT", from, to});
    return (link.waitForFinished(60000) && link.exitCode() == 0) || QProcess::execute("cp", {"-aT", from, to}) == 0;
}

QString &usualLanguage()
{
    static QString language;
    return language;
}

} // namespace

void Journey::setLanguage(const QString &language)
{
    usualLanguage() = language;
}

Journey::Journey(const Options &options)
    : m_options(options)
    , m_data(m_root.filePath("server"))
    , m_serverUrl(options.serverUrl)
{
    makePrivate(m_data);
    copyTree(options.library, m_root.filePath("server/demo"));
    if (!usualLanguage().isEmpty()) {
        QFile settings(m_root.filePath("device.conf"));
        if (settings.open(QIODevice::WriteOnly))
            settings.write("[language]\nlocale = " + usualLanguage().toLatin1() + '\n');
    }
}

Journey::~Journey()
{
    if (QTest::currentTestFailed()) {
        QDir().mkpath(QStringLiteral(JOURNEY_PICTURES));
        screenshot(QLatin1String(QTest::currentTestFunction()));
        for (const QString report : {"radio.log", "server.log"}) {
            const QString kept =
                QStringLiteral(JOURNEY_PICTURES "/%1-%2").arg(QLatin1String(QTest::currentTestFunction()), report);
            QFile::remove(kept);
            QFile::copy(m_root.filePath(report), kept);
        }
        qWarning("last status: %s", QJsonDocument(m_last).toJson(QJsonDocument::Compact).constData());
    }
    if (m_menu && m_menu->state() != QProcess::NotRunning) {
        m_menu->terminate();
        if (!m_menu->waitForFinished(15000))
            m_menu->kill();
        m_menu->waitForFinished();
    }
    stopServer();
}

void Journey::dieWithUs(QProcess &process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

QProcessEnvironment Journey::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C.UTF-8"); // texts are compared
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("VELMORA_PRIVATE_ROOT", m_root.filePath("device"));
    environment.insert("VELMORA_WS_SERVER", m_options.radioUrl.isEmpty() ? m_serverUrl : m_options.radioUrl);
    const QString authority = m_root.filePath("server/tls/authority.pem"); // where the service has made one
    if (QFile::exists(authority))
        environment.insert("VELMORA_WS_CA_FILE", authority);
    environment.insert("VELMORA_WS_STATE_DIR", m_root.filePath("state"));
    environment.insert("XDG_STATE_HOME", m_root.filePath("statehome"));
    const QString usualSink = QStringLiteral("fakesink sync=%1").arg(m_options.isShort ? "false" : "true");
    environment.insert("VELMORA_AUDIO_SINK", m_options.sink.isEmpty() ? usualSink : m_options.sink);
    environment.insert("VELMORA_DEVICE_CONF", m_root.filePath("device.conf"));
    environment.insert("QT_LOGGING_RULES", "qt.*=false");
    environment.remove("VELMORA_MENU_SOCKET");
    // The radio's own crash reporter would keep the process waiting; the sanitizer's report is more useful here.
    environment.insert("ASAN_OPTIONS",
                       environment.value("ASAN_OPTIONS") +
                           QStringLiteral(":handle_segv=2:handle_abort=2:handle_sigill=2:handle_sigfpe=2"));
    return environment;
}

bool Journey::startServer()
{
    m_server = std::make_unique<QProcess>();
    dieWithUs(*m_server);
    const QString report = m_root.filePath("server.log");
    m_server->setProcessChannelMode(QProcess::MergedChannels);
    m_server->setStandardOutputFile(report, QIODevice::Append);
    m_options.serverOptions.replaceInStrings("ROOT", m_root.path());
    QStringList arguments{"--listen",      QStringLiteral("127.0.0.1:%1").arg(m_serverPort),
                          "--data",        m_data,
                          "--demo-tracks", "4", // of each style, so that they are made soon
                          "--analysis",    "off"};
    if (!m_options.radioUrl.isEmpty())
        arguments += {"--public-url", m_options.radioUrl};
    m_server->start(QStringLiteral(JOURNEY_SERVER), arguments + m_options.serverOptions);
    static const QRegularExpression listening("listening on (https?://\\S+:(\\d+))");
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < startSeconds * 1000 && m_server->state() != QProcess::NotRunning) {
        QRegularExpressionMatch match;
        auto matches = listening.globalMatch(readAll(report));
        int found = 0;
        while (matches.hasNext()) {
            match = matches.next();
            ++found;
        }
        if (found > 0 && (m_serverPort == 0 || match.captured(2).toInt() == m_serverPort)) {
            m_serverUrl = match.captured(1);
            m_serverPort = match.captured(2).toInt();
            return true;
        }
        QTest::qWait(lookMs);
    }
    m_problem = QStringLiteral("the server did not start: ") + readAll(report);
    return false;
}

void Journey::stopServer()
{
    if (!m_server || m_server->state() == QProcess::NotRunning)
        return;
    m_server->terminate();
    if (!m_server->waitForFinished(10000))
        m_server->kill();
    m_server->waitForFinished();
}

QJsonObject Journey::ask(const char *function, const QJsonObject &parameters, const QString &token) const
{
    QNetworkAccessManager network;
    QNetworkRequest request(QUrl(m_serverUrl + QStringLiteral("/v1/") + QLatin1String(function)));
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
    if (!token.isEmpty())
        request.setRawHeader("Authorization", "Bearer " + token.toLatin1());
    const std::unique_ptr<QNetworkReply> reply(network.post(request, QJsonDocument(parameters).toJson()));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    finished.wait(30000);
    return QJsonDocument::fromJson(reply->readAll()).object();
}

QString Journey::partnerToken() const
{
    // Any key of the right length: no device will use this session.
    const QJsonObject partner = ask("partnerLogin", {{"deviceKey", QString(43, QLatin1Char('A'))}}, {});
    return partner.value("data").toObject().value("partnerToken").toString();
}

bool Journey::createAccount(const QString &userName, const QString &password)
{
    const QJsonObject made = ask("createUser", {{"userName", userName}, {"password", password}}, partnerToken());
    m_problem = QString::fromUtf8(QJsonDocument(made).toJson(QJsonDocument::Compact));
    const QString link = mailedLink(userName, QStringLiteral("confirm"));
    if (link.isEmpty())
        return false;
    QNetworkAccessManager browser; // keeps the cookie
    const auto finish = [](QNetworkReply *reply) {
        const std::unique_ptr<QNetworkReply> owner(reply);
        QSignalSpy finished(reply, &QNetworkReply::finished);
        finished.wait(30000);
        return QString::fromUtf8(reply->readAll());
    };
    QNetworkRequest request{QUrl(link)};
    const QString page = finish(browser.get(request));
    static const QRegularExpression formToken("name=\"csrf\" value=\"([^\"]+)\"");
    QUrlQuery form(QUrl(link).query());
    form.addQueryItem(QStringLiteral("csrf"), formToken.match(page).captured(1));
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/x-www-form-urlencoded");
    m_problem = finish(browser.post(request, form.query().toLatin1()));
    return m_problem.contains(QStringLiteral("The account is made"));
}

QString Journey::reminderLink(const QString &userName)
{
    ask("emailPassword", {{"userName", userName}}, partnerToken());
    return mailedLink(userName, QStringLiteral("reset"));
}

QString Journey::mailedLink(const QString &userName, const QString &page)
{
    const QRegularExpression link(QStringLiteral("To: <%1>.*(http://[^ \\r\\n]+/%2\\?token=[A-Za-z0-9_-]+)")
                                      .arg(QRegularExpression::escape(userName), page),
                                  QRegularExpression::DotMatchesEverythingOption);
    QElapsedTimer clock;
    clock.start();
    do {
        const QDir outbox(m_root.filePath("server/outbox"));
        for (const QString &mail : outbox.entryList(QDir::Files)) {
            const auto match = link.match(readAll(outbox.filePath(mail)));
            if (match.hasMatch())
                return match.captured(1);
        }
        QTest::qWait(lookMs);
    } while (clock.elapsed() < 20000);
    return {};
}

bool Journey::makeLibrary()
{
    const QString library = QStringLiteral(JOURNEY_LIBRARY);
    makePrivate(library);
    return QProcess::execute(QStringLiteral(JOURNEY_DEMOMUSIC), {"--each", "4", library + "/demo"}) == 0;
}

bool Journey::prepare()
{
    if (m_options.hasServer && m_serverUrl.isEmpty() && !startServer())
        return false;
    QDir().mkpath(m_root.filePath("device"));
    return !m_options.isSetUp || !m_options.hasServer || setUpDevice();
}

bool Journey::setUpDevice()
{
    QProcess setup;
    dieWithUs(setup);
    QProcessEnvironment direct = environment();
    direct.insert("VELMORA_WS_SERVER", m_serverUrl);
    setup.setProcessEnvironment(direct);
    setup.setProcessChannelMode(QProcess::MergedChannels);
    setup.start(QStringLiteral(JOURNEY_SETUP), {m_root.filePath("server/demo-account.txt")});
    if (setup.waitForFinished(60000) && setup.exitCode() == 0)
        return true;
    m_problem = QStringLiteral("setting up failed: ") + QString::fromUtf8(setup.readAll());
    return false;
}

void Journey::launch()
{
    m_menu = std::make_unique<QProcess>();
    dieWithUs(*m_menu);
    m_menu->setProcessEnvironment(environment());
    m_menu->setProcessChannelMode(QProcess::MergedChannels);
    m_menu->setStandardOutputFile(m_root.filePath("radio.log"));
    m_menu->start(QStringLiteral(JOURNEY_MENU), QStringList{"--socket", m_root.filePath("menu.sock")} +
                                                    m_options.menuOptions + QStringList{"--", m_options.radio} +
                                                    m_options.radioOptions);
}

bool Journey::start()
{
    if (!prepare())
        return false;
    launch();
    if (!waitFor([](const QJsonObject &now) { return now.value("screen").isString(); }, startSeconds)) {
        m_problem = QStringLiteral("the radio did not come up: ") + radioReport().right(2000);
        return false;
    }
    return true;
}

bool Journey::startPlaying()
{
    if (!start())
        return false;
    m_problem = "no music";
    return waitForAudio(1);
}

bool Journey::writeSettings(const QByteArray &text)
{
    QFile settings(settingsFile());
    return QDir().mkpath(QFileInfo(settings).path()) && settings.open(QIODevice::WriteOnly) &&
           settings.write(text) == text.size();
}

QStringList Journey::command(const QStringList &arguments, int *exitCode)
{
    QProcess process;
    dieWithUs(process);
    process.setProcessEnvironment(environment());
    process.start(QStringLiteral(JOURNEY_MENU), QStringList{"--socket", m_root.filePath("menu.sock")} + arguments);
    process.waitForFinished(30000);
    *exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

bool Journey::menu(const QStringList &arguments)
{
    int code = 0;
    command(arguments, &code);
    return code == 0;
}

bool Journey::key(const QStringList &names)
{
    return menu(QStringList{"key"} + names);
}

bool Journey::keyUntil(const QString &name, const std::function<bool(const QJsonObject &)> &isReached, int seconds)
{
    return waitFor(
        [&](const QJsonObject &now) {
            if (isReached(now))
                return true;
            key({name});
            return false;
        },
        seconds);
}

bool Journey::answerBox(const QString &text, const QStringList &keys)
{
    return waitForBox(text) && key(keys);
}

bool Journey::openMenuEntry(int up)
{
    return waitFor(isPlaying) && key({"right", "select"}) && waitForScreen("MenuDlg") &&
           key(QStringList(up, "up") + QStringList("select"));
}

bool Journey::leaveWelcome(const QString &side, const QString &screen)
{
    return waitForScreen("WelcomeDlg") && key({"select"}) &&
           answerBox("Do you already have a Velmora account ? ", {side, "select"}) && waitForScreen(screen);
}

QJsonObject Journey::status()
{
    int code = 0;
    const QStringList lines = command({"status"}, &code);
    m_last = code == 0 && !lines.isEmpty() ? QJsonDocument::fromJson(lines.first().toUtf8()).object() : QJsonObject();
    return m_last;
}

bool Journey::waitFor(const std::function<bool(const QJsonObject &)> &isReached, int seconds)
{
    QElapsedTimer clock;
    clock.start();
    do {
        if (isReached(status()))
            return true;
        QTest::qWait(lookMs);
    } while (clock.elapsed() < seconds * 1000);
    return false;
}

bool Journey::waitForScreen(const QString &className, int seconds)
{
    return waitFor(
        [&](const QJsonObject &now) {
            return now.value("screen").toString() == className && now.value("box").isNull();
        },
        seconds);
}

bool Journey::waitForBox(const QString &text, int seconds)
{
    return waitFor(
        [&](const QJsonObject &now) {
            return now.value("box").isString() && now.value("boxText").toString().startsWith(text);
        },
        seconds);
}

bool Journey::waitForNoBox(int seconds)
{
    return waitFor([](const QJsonObject &now) { return now.value("box").isNull(); }, seconds);
}

bool Journey::waitForAudio(double moreSeconds, int seconds)
{
    const double before = status().value("audioSeconds").toDouble();
    return waitFor([&](const QJsonObject &now) { return now.value("audioSeconds").toDouble() >= before + moreSeconds; },
                   seconds);
}

QString Journey::label(const QString &objectName)
{
    return status().value("labels").toObject().value(objectName).toString();
}

bool Journey::isPlaying(const QJsonObject &now)
{
    return now.value("playback").toInt() == 5 && now.value("screen").toString() == QLatin1String("VelmoraMainDlg") &&
           now.value("box").isNull();
}

int Journey::count(const QJsonObject &now, const QString &listName)
{
    return now.value("lists").toObject().value(listName).toObject().value("count").toInt();
}

QStringList Journey::rows(const QString &listName)
{
    QStringList result;
    const QJsonObject list = status().value("lists").toObject().value(listName).toObject();
    for (const QJsonValue row : list.value("rows").toArray())
        result.append(row.toString());
    return result;
}

int Journey::row(const QString &listName)
{
    return status().value("lists").toObject().value(listName).toObject().value("row").toInt(-1);
}

void Journey::screenshot(const QString &name)
{
    QDir().mkpath(QStringLiteral(JOURNEY_PICTURES));
    menu({"screenshot", QStringLiteral(JOURNEY_PICTURES "/%1.png").arg(name)});
}

bool Journey::waitForEnd(int seconds)
{
    return m_menu->state() == QProcess::NotRunning || m_menu->waitForFinished(seconds * 1000);
}

int Journey::exitCode() const
{
    return m_menu->exitStatus() == QProcess::NormalExit ? m_menu->exitCode() : -1;
}

void Journey::terminate()
{
    m_menu->terminate();
}

bool Journey::exits()
{
    return menu({"exit"}) && waitForEnd() && exitCode() == 0;
}

qint64 Journey::radioPid()
{
    return status().value("pid").toInteger();
}

QString Journey::settingsFile() const
{
    const QDir device(m_root.filePath("device"));
    return device.filePath("var/local/misc/velmora/velmora_5.ini");
}

QString Journey::radioReport()
{
    return readAll(m_root.filePath("radio.log"));
}

QString Journey::serverReport()
{
    return readAll(m_root.filePath("server.log"));
}
