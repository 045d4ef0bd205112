#pragma once

#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// A headless browser, driven through the WebDriver protocol. Waits for every answer.
class WebDriver {
public:
    WebDriver();
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
    // The page as this screen shows it, in CSS pixels, and in the light or the dark scheme.
    void setScreen(int width, int height, bool isLight);
    void screenshot(const QString &file);

private:
    QJsonValue ask(const QByteArray &verb, const QString &path, const QJsonObject &body = {});
    QString element(const QString &css);

    QTemporaryDir m_profile;
    QProcess m_driver;
    QNetworkAccessManager m_network;
    QString m_base;
    QString m_session;
    QString m_problem;
};
