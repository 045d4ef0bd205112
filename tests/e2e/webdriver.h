#pragma once

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QString>
#include <QTcpSocket>
#include <QTemporaryDir>

// A headless browser, driven through the WebDriver protocol: Chromium by its driver, Firefox by the protocol that it
// speaks itself (Marionette), whose commands are the same under other names. Waits for every answer.
class WebDriver {
public:
    enum class Browser { Chromium, Firefox };
    explicit WebDriver(Browser browser = Browser::Chromium);
    ~WebDriver();
    WebDriver(const WebDriver &) = delete;
    WebDriver &operator=(const WebDriver &) = delete;

    // False with a reason in problem(). `hasScripts`: pages may run scripts, which execute() needs.
    bool start(bool hasScripts = false);
    QString problem() const { return m_problem; }

    bool open(const QString &url);
    QString text(const QString &css); // empty when there is no such element
    QString attribute(const QString &css, const QString &name);
    bool type(const QString &css, const QString &text);
    bool click(const QString &css);
    QString title();
    // Presses the keys, one after the other, wherever the focus is.
    bool press(const QString &keys);
    // The value of this function body.
    QJsonValue execute(const QString &script);
    // The page as this screen shows it, in CSS pixels, and in the light or the dark scheme. Chromium only.
    void setScreen(int width, int height, bool isLight);
    void screenshot(const QString &file);

private:
    bool startChromium(bool hasScripts);
    bool startFirefox(bool hasScripts);
    QJsonValue askFirefox(const QByteArray &verb, const QString &path, QJsonObject body);
    QJsonValue command(const QString &name, const QJsonObject &parameters);
    QJsonArray readMessage();
    QJsonValue ask(const QByteArray &verb, const QString &path, const QJsonObject &body = {});
    QString element(const QString &css);

    const Browser m_browser;
    QTemporaryDir m_profile;
    QProcess m_driver;
    QNetworkAccessManager m_network;
    QTcpSocket m_firefox;
    int m_lastCommand = 0;
    QString m_base;
    QString m_session;
    QString m_problem;
};
