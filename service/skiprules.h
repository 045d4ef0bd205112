#pragma once

#include <QList>
#include <QString>
#include <QTime>

// At most six skips a station within an hour, by the wall clock's hours, minutes and seconds.
namespace skiprules {

constexpr int maxSkips = 6;
constexpr int windowSeconds = 3601; // a record counts while it is younger

struct Record {
    QString stationToken;
    QTime timeStamp;
};

int secondsOfDay(const QTime &time);

struct Answer {
    bool isAllowed = true;
    int count = 0;               // records of the station
    int first = -1;              // position of its oldest record, -1 when it has none
    bool isFirstExpired = false; // the oldest record has left the window and is to be removed
};
Answer ask(const QList<Record> &records, const QString &stationToken, const QTime &now);

// Whether the record is older than the window at `now`. Midnight is not handled (deliberate): a record of yesterday
// evening counts as one in the future until the clock is an hour past its time.
bool isOverdue(const Record &record, const QTime &now);

} // namespace skiprules
