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
    void aCopyOwnsEveryText()
    {
        char id[] = "id", token[] = "token", picture[] = "picture", date[] = "date", stationName[] = "Caf\xc3\xa9";
        VLM_STATION_MAP_T source{1, 1, id, token, 1, picture, 1, 1, date, stationName};
        VLM_STATION_MAP_T *record = copy(source);
        QVERIFY(record);
        for (char *text : {id, token, picture, date, stationName})
            text[0] = '#';
        QCOMPARE(QByteArray(record->stationId), "id");
        QCOMPARE(QByteArray(record->stationToken), "token");
        QCOMPARE(QByteArray(record->stationStr16), "picture");
        QCOMPARE(QByteArray(record->stationStr24), "date");
        QCOMPARE(name(record), QStringLiteral("Caf\u00e9"));
        QCOMPARE(record->fgFlag0 + record->allowRename + record->allowDelete + record->fgFlag20 + record->isShared, 5);
        release(record);
    }

    void nullTextsStayNull()
    {
        const VLM_STATION_MAP_T source{};
        VLM_STATION_MAP_T *record = copy(source);
        QVERIFY(!record->stationId && !record->stationToken && !record->stationStr16 && !record->stationStr24 &&
                !record->stationName);
        QCOMPARE(token(record), QString());
        QCOMPARE(token(nullptr), QString());
        release(record);
        release(nullptr);
    }

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
        const std::tuple<QString, int> cases[] = {
            {"tapestry", 0}, // the Tapestry station
            {"token-a", 1},  // the first own station
            {"token-c", 3},  // a later one
            {"token-x", 0},  // a station that is gone
            {"TOKEN-A", 0},  // case counts
            {"", 0},         // nothing heard yet
        };
        for (const auto &[last, row] : cases) {
            const Records records({"a", "b", "c"});
            QCOMPARE(rowOfLastStation("tapestry", records.list, last), row);
        }
    }
};

QTEST_APPLESS_MAIN(PlayerStationsTest)
#include "player_stations_test.moc"
