#include "service/skiprules.h"

namespace skiprules {

int secondsOfDay(const QTime &time)
{
    return time.hour() * 3600 + time.minute() * 60 + time.second();
}

Answer ask(const QList<Record> &records, const QString &stationToken, const QTime &now)
{
    Answer answer;
    for (int i = 0; i < records.size(); ++i) {
        if (records.at(i).stationToken != stationToken)
            continue;
        if (answer.count++ == 0)
            answer.first = i;
    }
    if (answer.count < maxSkips)
        return answer;
    int age = secondsOfDay(now) - secondsOfDay(records.at(answer.first).timeStamp);
    if (age < 0)
        age += 86400; // midnight has passed
    answer.isFirstExpired = answer.isAllowed = age >= windowSeconds;
    return answer;
}

bool isOverdue(const Record &record, const QTime &now)
{
    return secondsOfDay(now) - secondsOfDay(record.timeStamp) >= windowSeconds;
}

} // namespace skiprules
