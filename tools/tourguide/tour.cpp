#include "tools/tourguide/tour.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

#include <cstdio>

namespace {

void say(const QString &text)
{
    std::printf("tour: %s\n", qPrintable(text));
    std::fflush(stdout);
}

} // namespace

Tour::Tour(const QString &pictures, const QString &drafts, const QString &only)
    : m_pictures(pictures)
    , m_drafts(drafts)
    , m_only(only)
{
}

const QList<Tour::Way> &Tour::allWays()
{
    static const QList<Way> all = {{"new", &Tour::newDevice},     {"code", &Tour::activation},
                                   {"player", &Tour::evening},    {"station", &Tour::stationScreens},
                                   {"accounts", &Tour::accounts}, {"slow", &Tour::slowService},
                                   {"gone", &Tour::serviceGone},  {"unseen", &Tour::withoutKeys},
                                   {"names", &Tour::names},       {"bare", &Tour::bare},
                                   {"scales", &Tour::scales},     {"home", &Tour::home}};
    return all;
}

QStringList Tour::ways()
{
    QStringList names;
    for (const Way &way : allWays())
        names += QLatin1String(way.name);
    return names;
}

void Tour::walk()
{
    for (const Way &way : allWays())
        if (m_only.isEmpty() || m_only == QLatin1String(way.name))
            (this->*way.walk)();
}

bool Tour::begin(Journey &journey)
{
    if (journey.start())
        return true;
    m_missing += journey.problem();
    say(journey.problem());
    return false;
}

bool Tour::stop(Journey &journey, bool isReached, const QString &name, const QString &title, const char *draft,
                int settle)
{
    const QString draftName = QLatin1String(draft);
    const QString path = QDir(m_pictures).absoluteFilePath(name + QStringLiteral(".png"));
    QTest::qWait(settle); // what has just been asked for is painted
    if (!isReached || !journey.menu({QStringLiteral("screenshot"), path})) {
        m_missing += title;
        const QJsonObject now = journey.status();
        say(QStringLiteral("NOT REACHED: %1 (%2, %3)")
                .arg(title, now.value(QStringLiteral("screen")).toString(),
                     now.value(QStringLiteral("boxText")).toString()));
        return false;
    }
    Stop found{name, title, {}};
    if (!draftName.isEmpty()) {
        found.draft = QStringLiteral("draft-") + draftName;
        const QString copy = QDir(m_pictures).filePath(found.draft + QStringLiteral(".png"));
        QFile::remove(copy);
        if (!QFile::copy(QDir(m_drafts).filePath(draftName + QStringLiteral(".png")), copy))
            m_missing += QStringLiteral("the draft ") + draftName;
    }
    m_stops += found;
    say(title);
    return true;
}

bool Tour::writePage() const
{
    QFile file(QDir(m_pictures).filePath(QStringLiteral("index.html")));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream page(&file);
    page << "<!doctype html><html lang=\"en\"><meta charset=\"utf-8\"><title>Velmora, every screen</title>\n"
            "<style>body{background:#0b0511;color:#eee;font:16px Arial,sans-serif;margin:24px}"
            "figure{display:inline-block;width:48%;margin:0 1% 24px 0;vertical-align:top}"
            "img{width:100%}figcaption,p{color:#c5c5c5}h2{margin:16px 0 8px}</style>\n"
            "<h1>Every screen of the radio</h1>\n"
            "<p>Left the radio, right the draft where there is one. Names and music are those of the demo "
            "catalogue.</p>\n";
    for (const Stop &stop : m_stops) {
        page << "<h2>" << stop.title.toHtmlEscaped() << "</h2>\n<figure><a href=\"" << stop.name
             << ".png\"><img loading=\"lazy\" alt=\"\" src=\"" << stop.name
             << ".png\"></a><figcaption>the radio</figcaption></figure>";
        if (!stop.draft.isEmpty())
            page << "<figure><a href=\"" << stop.draft << ".png\"><img loading=\"lazy\" alt=\"\" src=\"" << stop.draft
                 << ".png\"></a><figcaption>the draft</figcaption></figure>";
        page << "\n";
    }
    for (const QString &missing : m_missing)
        page << "<p>not reached: " << missing.toHtmlEscaped() << "</p>\n";
    page.flush();
    return file.error() == QFileDevice::NoError;
}
