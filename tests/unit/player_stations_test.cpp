// Station records: the copies, their order, and which row shows which.
#include "player/stationrecord.h"

#include <QtTest>

using namespace stationrecord;

namespace {

// Records that are released when the test ends.
class Records {
public:
    explicit Records(const QList<QByteArray> &names)
    {
        for (const QByteArray &name : names) {
            VLM_STATION_MAP_T source{};
            QByteArray text = name;
            QByteArray token = "token-" + name;
            source.stationName = text.data();
            source.stationToken = token.data();
            list.append(copy(source));
        }
    }
    ~Records()
    {
        for (VLM_STATION_MAP_T *record : std::as_const(list))
            release(record);
    }
    Records(const Records &) = delete;

    QStringList names() const
    {
        QStringList result;
        for (const VLM_STATION_MAP_T *record : list)
            result.append(name(record));
        return result;
    }

    QList<VLM_STATION_MAP_T *> list;
};

} // namespace

class PlayerStationsTest : public QObject {
    Q_OBJECT
private slots:
    void namesAreSortedWithoutRegardToCase()
    {
        Records records({"velvet", "Acoustic", "VELVET", "jazz", ""});
        std::sort(records.list.begin(), records.list.end(), lessThan);
        const QStringList names = records.names();
        QCOMPARE(names.mid(0, 3), QStringList({"", "Acoustic", "jazz"}));
        QCOMPARE(names.at(3).toLower(), names.at(4).toLower());
        QVERIFY(!lessThan(records.list.at(3), records.list.at(4)) && !lessThan(records.list.at(4), records.list.at(3)));
    }

    void theLastStationDecidesTheRow()
    {
        const Records records({"a", "b", "c"});
        QCOMPARE(rowOfLastStation("tapestry", records.list, "tapestry"), 0);
        QCOMPARE(rowOfLastStation("tapestry", records.list, "token-a"), 1);
        QCOMPARE(rowOfLastStation("tapestry", records.list, "token-c"), 3);
        for (const char *unknown : {"token-x", "TOKEN-A", ""}) // gone, case counts, nothing heard yet
            QCOMPARE(rowOfLastStation("tapestry", records.list, unknown), 0);
    }
};

QTEST_APPLESS_MAIN(PlayerStationsTest)
#include "player_stations_test.moc"
