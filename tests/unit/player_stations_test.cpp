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
    void aCopyOwnsEveryText();
    void nullTextsStayNull();
    void namesAreSortedWithoutRegardToCase();
    void aNewNameReplacesTheOldOne();
    void theLastStationDecidesTheRow_data();
    void theLastStationDecidesTheRow();
    void theCursorStaysInTheListAfterADeletion_data();
    void theCursorStaysInTheListAfterADeletion();
    void everyKindOfRowHasItsPictures_data();
    void everyKindOfRowHasItsPictures();
};

void PlayerStationsTest::aCopyOwnsEveryText()
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

void PlayerStationsTest::nullTextsStayNull()
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

void PlayerStationsTest::namesAreSortedWithoutRegardToCase()
{
    Records records({"velvet", "Acoustic", "VELVET", "jazz", ""});
    std::sort(records.list.begin(), records.list.end(), lessThan);
    const QStringList names = records.names();
    QCOMPARE(names.mid(0, 3), QStringList({"", "Acoustic", "jazz"}));
    QCOMPARE(names.at(3).toLower(), names.at(4).toLower());
    QVERIFY(!lessThan(records.list.at(3), records.list.at(4)) && !lessThan(records.list.at(4), records.list.at(3)));
}

void PlayerStationsTest::aNewNameReplacesTheOldOne()
{
    Records records({"old"});
    QVERIFY(rename(*records.list.first(), "new"));
    QCOMPARE(records.names(), QStringList("new"));
    QCOMPARE(token(records.list.first()), QStringLiteral("token-old"));
}

void PlayerStationsTest::theLastStationDecidesTheRow_data()
{
    QTest::addColumn<QString>("last");
    QTest::addColumn<int>("row");
    QTest::newRow("the Tapestry station") << "tapestry" << 0;
    QTest::newRow("the first own station") << "token-a" << 1;
    QTest::newRow("a later one") << "token-c" << 3;
    QTest::newRow("a station that is gone") << "token-x" << 0;
    QTest::newRow("case counts") << "TOKEN-A" << 0;
    QTest::newRow("nothing heard yet") << "" << 0;
}

void PlayerStationsTest::theLastStationDecidesTheRow()
{
    QFETCH(QString, last);
    const Records records({"a", "b", "c"});
    QTEST(rowOfLastStation(QStringLiteral("tapestry"), records.list, last), "row");
}

void PlayerStationsTest::theCursorStaysInTheListAfterADeletion_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("expected");
    QTest::newRow("in the middle") << 2 << 5 << 2;
    QTest::newRow("the last row") << 4 << 5 << 3;
    QTest::newRow("the only own station") << 1 << 2 << 0;
}

void PlayerStationsTest::theCursorStaysInTheListAfterADeletion()
{
    QFETCH(int, row);
    QFETCH(int, count);
    QTEST(rowAfterDeletion(row, count), "expected");
}

void PlayerStationsTest::everyKindOfRowHasItsPictures_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("resting");
    QTest::addColumn<QString>("playing");
    QTest::newRow("Tapestry") << 0 << ":/images/common_tapestry_icon_n_01.png"
                              << ":/images/common_tapestry_icon_s_01.png";
    QTest::newRow("ordinary") << 1 << ":/images/common_station_icon_n.png"
                              << ":/images/common_station_icon_s.png";
    QTest::newRow("shared") << 2 << ":/images/common_station_icon_arrow_n.png"
                            << ":/images/common_station_icon_arrow_s.png";
}

void PlayerStationsTest::everyKindOfRowHasItsPictures()
{
    QFETCH(int, row);
    const Records records({"own", "shared"});
    records.list.at(1)->isShared = 1;
    const Kind kind = kindOfRow(row, records.list);
    QTEST(QString::fromLatin1(iconPath(kind, false)), "resting");
    QTEST(QString::fromLatin1(iconPath(kind, true)), "playing");
}

QTEST_APPLESS_MAIN(PlayerStationsTest)
#include "player_stations_test.moc"
