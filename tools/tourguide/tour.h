#pragma once

#include "e2e/journey.h"

#include <QList>
#include <QString>
#include <QStringList>

// Every screen and state of the real radio against the real service: one picture a stop, and a page that shows each
// beside its draft. GUI-less; one journey at a time.
class Tour {
public:
    // `only`: the name of one way, or empty for all.
    Tour(const QString &pictures, const QString &drafts, const QString &only);

    static QStringList ways();
    void walk();
    bool writePage() const;
    QStringList missing() const { return m_missing; } // titles of the stops that were not reached

private:
    struct Stop {
        QString name;
        QString title;
        QString draft; // without .png; copied beside the pictures
    };
    struct Way {
        const char *name;
        void (Tour::*walk)();
    };
    static const QList<Way> &allWays();

    // --- one stop
    bool stop(Journey &journey, bool isReached, const QString &name, const QString &title, const char *draft = "",
              int settle = settleMs);
    bool begin(Journey &journey);

    // --- the ways
    void loading(const QString &name, const QString &title, const QStringList &menuOptions = {});
    void newDevice();
    void activation();
    void evening();
    void stationScreens();
    void accounts();
    void slowService();
    void serviceGone();
    void withoutKeys();
    void names();
    void bare();
    void scales();
    void home();

    // The panel slides for half a second; a field's cursor is lit in the second after the last key.
    static constexpr int settleMs = 1200;
    static constexpr int marqueeMs = 2500;
    static constexpr int stillMs = 400;  // a marquee has not begun
    static constexpr int thumbMs = 3000; // a rating has come back

    const QString m_pictures;
    const QString m_drafts;
    const QString m_only;
    QList<Stop> m_stops;
    QStringList m_missing;
};
