#include "e2e/webdriver.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QtTest>

#include <csignal>
#include <memory>
#include <sys/prctl.h>

namespace {

constexpr int answerMs = 60000;
constexpr int implicitWaitMs = 5000;
const QString elementKey = QStringLiteral("element-6066-11e4-a52e-4f735466cecf"); // fixed by the protocol

} // namespace

WebDriver::WebDriver(Browser browser)
    : m_browser(browser)
{
}

WebDriver::~WebDriver()
{
    if (!m_session.isEmpty())
        ask("DELETE", m_session);
    m_driver.terminate();
    if (!m_driver.waitForFinished(5000))
        m_driver.kill();
    m_driver.waitForFinished();
}

bool WebDriver::start(bool hasScripts)
{
    m_driver.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_driver.setProcessChannelMode(QProcess::MergedChannels);
    if (!(m_browser == Browser::Firefox ? startFirefox(hasScripts) : startChromium(hasScripts)))
        return false;
    // A click returns before the next page is loaded, so this waits for the element.
    ask("POST", m_session + QStringLiteral("/timeouts"), {{"implicit", implicitWaitMs}});
    return true;
}

bool WebDriver::startFirefox(bool hasScripts)
{
    QFile preferences(m_profile.filePath("user.js"));
    if (!preferences.open(QIODevice::WriteOnly))
        return false;
    preferences.write("user_pref('marionette.port', 0);\n"
                      "user_pref('browser.shell.checkDefaultBrowser', false);\n"
                      "user_pref('browser.startup.homepage_override.mstone', 'ignore');\n"
                      "user_pref('datareporting.policy.dataSubmissionEnabled', false);\n"
                      "user_pref('network.captive-portal-service.enabled', false);\n"
                      "user_pref('network.connectivity-service.enabled', false);\n"
                      "user_pref('app.update.enabled', false);\n"
                      "user_pref('services.settings.server', 'http://127.0.0.1:1');\n");
    preferences.write(hasScripts ? "" : "user_pref('javascript.enabled', false);\n");
    preferences.close();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", m_profile.path());
    environment.insert("MOZ_REMOTE_SETTINGS_DEVTOOLS", "1");
    m_driver.setProcessEnvironment(environment);
    m_driver.start("firefox-esr", {"--headless", "--marionette", "--no-remote", "--profile", m_profile.path(),
                                   "--width", "412", "--height", "915", "about:blank"});
    // It writes the port that it has chosen into its profile.
    QFile port(m_profile.filePath("MarionetteActivePort"));
    const bool isUp =
        QTest::qWaitFor([&] { return m_driver.state() == QProcess::NotRunning || port.size() > 0; }, answerMs) &&
        port.open(QIODevice::ReadOnly);
    if (isUp)
        m_firefox.connectToHost(QStringLiteral("127.0.0.1"), port.readAll().trimmed().toUShort());
    if (!isUp || !m_firefox.waitForConnected(answerMs)) {
        m_problem = QStringLiteral("the browser did not start: ") + QString::fromUtf8(m_driver.readAll());
        return false;
    }
    readMessage(); // it says what it is
    if (command(QStringLiteral("WebDriver:NewSession"), {}).toObject().value("sessionId").toString().isEmpty()) {
        m_problem = QStringLiteral("the browser gave no session");
        return false;
    }
    m_session = QStringLiteral("/session/firefox");
    return true;
}

// A message is its length, a colon and JSON.
QJsonArray WebDriver::readMessage()
{
    QByteArray message;
    qsizetype colon = -1;
    while ((colon = message.indexOf(':')) < 0 || message.size() < colon + 1 + message.left(colon).toInt()) {
        if (m_firefox.bytesAvailable() == 0 && !m_firefox.waitForReadyRead(answerMs))
            return {};
        message += m_firefox.readAll(); // one command is under way at a time
    }
    return QJsonDocument::fromJson(message.mid(colon + 1)).array();
}

QJsonValue WebDriver::command(const QString &name, const QJsonObject &parameters)
{
    const QByteArray message =
        QJsonDocument(QJsonArray{0, ++m_lastCommand, name, parameters}).toJson(QJsonDocument::Compact);
    m_firefox.write(QByteArray::number(message.size()) + ':' + message);
    const QJsonArray answer = readMessage(); // [1, number, error, result]
    return answer.size() < 4 ? QJsonValue(QStringLiteral("no answer")) : answer[2].isNull() ? answer[3] : answer[2];
}

// The path of a request as a command of the same meaning.
QJsonValue WebDriver::askFirefox(const QByteArray &verb, const QString &path, QJsonObject body)
{
    const QStringList parts = path.mid(m_session.size() + 1).split('/');
    if (parts.first() == "element" && parts.size() > 1) {
        static const QHash<QString, QString> ofElement = {{"text", "WebDriver:GetElementText"},
                                                          {"attribute", "WebDriver:GetElementAttribute"},
                                                          {"value", "WebDriver:ElementSendKeys"},
                                                          {"click", "WebDriver:ElementClick"}};
        body.insert("id", parts[1]);
        if (parts.size() > 3)
            body.insert("name", parts[3]);
        return command(ofElement.value(parts[2]), body).toObject().value("value");
    }
    static const QHash<QString, QString> ofPage = {{"url", "WebDriver:Navigate"},
                                                   {"element", "WebDriver:FindElement"},
                                                   {"title", "WebDriver:GetTitle"},
                                                   {"actions", "WebDriver:PerformActions"},
                                                   {"execute", "WebDriver:ExecuteAsyncScript"},
                                                   {"timeouts", "WebDriver:SetTimeouts"},
                                                   {"screenshot", "WebDriver:TakeScreenshot"}};
    const QString name = verb == "DELETE" ? QStringLiteral("Marionette:Quit") : ofPage.value(parts.first());
    return command(name, body).toObject().value("value");
}

bool WebDriver::startChromium(bool hasScripts)
{
    m_driver.start("chromedriver", {"--port=0"});
    QByteArray said;
    static const QRegularExpression started("successfully on port (\\d+)");
    QElapsedTimer clock;
    clock.start();
    QRegularExpressionMatch match;
    while (!match.hasMatch() && clock.elapsed() < answerMs) {
        if (!m_driver.waitForReadyRead(500) && m_driver.state() == QProcess::NotRunning)
            break;
        said += m_driver.readAll();
        match = started.match(QString::fromUtf8(said));
    }
    if (!match.hasMatch()) {
        m_problem = QStringLiteral("the browser's driver did not start: ") + QString::fromUtf8(said);
        return false;
    }
    m_base = QStringLiteral("http://127.0.0.1:") + match.captured(1);
    const QJsonArray arguments = {"--headless",
                                  "--no-sandbox",
                                  "--disable-dev-shm-usage", // a container has none, or a small one
                                  "--disable-gpu",
                                  "--disable-quic",
                                  "--no-first-run",
                                  "--disable-background-networking",
                                  "--disable-component-update",
                                  "--disable-sync",
                                  "--window-size=412,915", // a telephone's
                                  QStringLiteral("--user-data-dir=") + m_profile.path()};
    const int scripts = hasScripts ? 1 : 2;
    const QJsonObject options{{"args", arguments},
                              {"prefs", QJsonObject{{"profile.managed_default_content_settings.javascript", scripts}}}};
    const QJsonObject capabilities{{"alwaysMatch", QJsonObject{{"goog:chromeOptions", options}}}};
    const QJsonObject answer = ask("POST", "/session", {{"capabilities", capabilities}}).toObject();
    const QString id = answer.value("sessionId").toString();
    if (id.isEmpty()) {
        m_problem = QStringLiteral("the browser did not start: ") +
                    QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact)).left(1000);
        return false;
    }
    m_session = QStringLiteral("/session/") + id;
    return true;
}

QJsonValue WebDriver::ask(const QByteArray &verb, const QString &path, const QJsonObject &body)
{
    if (m_browser == Browser::Firefox)
        return askFirefox(verb, path, body);
    QNetworkRequest request(QUrl(m_base + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
    const QByteArray data = verb == "POST" ? QJsonDocument(body).toJson() : QByteArray();
    const std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, verb, data));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!reply->isFinished())
        finished.wait(answerMs);
    return QJsonDocument::fromJson(reply->readAll()).object().value("value");
}

bool WebDriver::open(const QString &url)
{
    return ask("POST", m_session + QStringLiteral("/url"), {{"url", url}}).isNull();
}

QString WebDriver::element(const QString &css)
{
    return ask("POST", m_session + QStringLiteral("/element"), {{"using", "css selector"}, {"value", css}})
        .toObject()
        .value(elementKey)
        .toString();
}

QString WebDriver::text(const QString &css)
{
    const QString id = element(css);
    return id.isEmpty() ? QString() : ask("GET", m_session + QStringLiteral("/element/%1/text").arg(id)).toString();
}

QString WebDriver::attribute(const QString &css, const QString &name)
{
    const QString id = element(css);
    return id.isEmpty() ? QString()
                        : ask("GET", m_session + QStringLiteral("/element/%1/attribute/%2").arg(id, name)).toString();
}

bool WebDriver::type(const QString &css, const QString &text)
{
    const QString id = element(css);
    return !id.isEmpty() &&
           ask("POST", m_session + QStringLiteral("/element/%1/value").arg(id), {{"text", text}}).isNull();
}

bool WebDriver::click(const QString &css)
{
    const QString id = element(css);
    return !id.isEmpty() && ask("POST", m_session + QStringLiteral("/element/%1/click").arg(id)).isNull();
}

QString WebDriver::title()
{
    return ask("GET", m_session + QStringLiteral("/title")).toString();
}

bool WebDriver::press(const QString &keys)
{
    QJsonArray steps;
    for (const QChar key : keys) {
        steps.append(QJsonObject{{"type", "keyDown"}, {"value", QString(key)}});
        steps.append(QJsonObject{{"type", "keyUp"}, {"value", QString(key)}});
    }
    const QJsonObject keyboard{{"type", "key"}, {"id", "keyboard"}, {"actions", steps}};
    return ask("POST", m_session + QStringLiteral("/actions"), {{"actions", QJsonArray{keyboard}}}).isNull();
}

QJsonValue WebDriver::execute(const QString &script)
{
    return ask(
        "POST", m_session + QStringLiteral("/execute/async"),
        {{"script",
          QStringLiteral("const done = arguments[0]; (async () => {%1})().then(done, e => done('' + e))").arg(script)},
         {"args", QJsonArray()}});
}

void WebDriver::setScreen(int width, int height, bool isLight)
{
    const auto tell = [this](const char *command, const QJsonObject &parameters) {
        ask("POST", m_session + QStringLiteral("/goog/cdp/execute"), {{"cmd", command}, {"params", parameters}});
    };
    tell("Emulation.setDeviceMetricsOverride",
         {{"width", width}, {"height", height}, {"deviceScaleFactor", 1}, {"mobile", width < height}});
    const QJsonObject scheme{{"name", "prefers-color-scheme"}, {"value", isLight ? "light" : "dark"}};
    tell("Emulation.setEmulatedMedia", {{"features", QJsonArray{scheme}}});
}

void WebDriver::screenshot(const QString &file)
{
    QFile picture(file);
    if (picture.open(QIODevice::WriteOnly))
        picture.write(
            QByteArray::fromBase64(ask("GET", m_session + QStringLiteral("/screenshot")).toString().toLatin1()));
}
