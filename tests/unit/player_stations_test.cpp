// Station records: the copies, their order and their rows.
#include "player/stationrecord.h"

#include <QtTest>

using namespace stationrecord;

namespace {

List records(const QList<QByteArray> &names)
{
    List list;
    for (const QByteArray &name : names) {
        VLM_STATION_MAP_T source{};
        QByteArray text = name;
        QByteArray token = "token-" + name;
        source.stationName = text.data();
        source.stationToken = token.data();
        list.push_back(copyStation(source));
    }
    return list;
}

} // namespace

class PlayerStationsTest : public QObject {
    Q_OBJECT
private slots:
    void namesAreSortedWithoutRegardToCase()
    {
        List list = records({"velvet", "Acoustic", "VELVET", "jazz", ""});
        std::sort(list.begin(), list.end(),
                  [](const StationCopy &a, const StationCopy &b) { return lessThan(a.get(), b.get()); });
        QStringList names;
        for (const StationCopy &record : list)
            names.append(name(record.get()));
        QCOMPARE(names.mid(0, 3), QStringList({"", "Acoustic", "jazz"}));
        QCOMPARE(names.at(3).toLower(), names.at(4).toLower());
        QVERIFY(!lessThan(at(list, 3), at(list, 4)) && !lessThan(at(list, 4), at(list, 3)));
    }

    void theLastStationDecidesTheRow()
    {
        const List list = records({"a", "b", "c"});
        QCOMPARE(rowOfLastStation("tapestry", list, "tapestry"), 0);
        QCOMPARE(rowOfLastStation("tapestry", list, "token-a"), 1);
        QCOMPARE(rowOfLastStation("tapestry", list, "token-c"), 3);
        for (const char *unknown : {"token-x", "TOKEN-A", ""}) // gone, case counts, nothing heard yet
            QCOMPARE(rowOfLastStation("tapestry", list, unknown), 0);
    }
};

QTEST_APPLESS_MAIN(PlayerStationsTest)
#include "player_stations_test.moc"
