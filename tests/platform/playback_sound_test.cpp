// What reaches the sink: its loudness is measured in the samples.

#include "playbackrig.h"

#include "platform/netcommon/playback/levelling.h"
#include "platform/netcommon/playback/playbackboard.h"

#include <QtTest>

#include <cmath>

using netcommon::PlaybackBoard;

namespace {

constexpr char captureTo[] = "audioconvert ! audio/x-raw,format=S16LE ! filesink sync=false buffer-mode=2 location=";

struct Heard {
    double loudness = 0; // root mean square, 1: full scale
    double peak = 0;
    qsizetype samples = 0;
};

Heard heardIn(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    Heard heard;
    double sum = 0;
    for (qsizetype at = 0; at + 1 < bytes.size(); at += 2, ++heard.samples) {
        const double sample = qFromLittleEndian<qint16>(bytes.constData() + at) / 32768.0;
        sum += sample * sample;
        heard.peak = std::max(heard.peak, std::abs(sample));
    }
    heard.loudness = std::sqrt(sum / double(std::max<qsizetype>(heard.samples, 1)));
    return heard;
}

// An MP3 whose tags say how loud it is.
QByteArray tagged(const QByteArray &gain)
{
    const QByteArray text = QByteArray("\0REPLAYGAIN_TRACK_GAIN\0", 23) + gain;
    const QByteArray frame = QByteArray("TXXX\0\0\0", 7) + char(text.size()) + QByteArray(2, '\0') + text;
    return QByteArray("ID3\x03\0\0\0\0\0", 9) + char(frame.size()) + frame + mediasample::file("bare-2600ms.mp3");
}

} // namespace

class PlaybackSoundTest : public QObject {
    Q_OBJECT
private slots:
    void cleanup()
    {
        auto &sound = PlaybackBoard::instance().sound();
        sound.isLevelled = true;
        sound.volume = 100;
        sound.isVolumeChosen = false;
        sound.isMuted = false;
        sound.fade = 1;
    }

    void tracksAreLevelledAsTheServiceSaysElseAsTheirTagsSay()
    {
        const auto play = [this](const QByteArray &body, const QByteArray &headers, bool isElsewhere = false) {
            const QString heard = m_folder.filePath("heard");
            {
                PlaybackRig rig(captureTo + QFile::encodeName(heard));
                MediaFile file{.body = body, .headers = headers};
                if (isElsewhere) {
                    rig.server.serve("/elsewhere", {.body = body});
                    file = {.status = 302, .location = rig.server.url("/elsewhere"), .headers = headers};
                }
                rig.play(file);
                if (!QTest::qWaitFor([&] { return rig.hasEnded(); }, 60000))
                    return Heard();
            }
            return heardIn(heard);
        };
        const QByteArray tone = mediasample::wav(1000);
        const QByteArray plainMp3 = mediasample::file("bare-2600ms.mp3");
        const Heard asItIs = play(tone, {});
        QCOMPARE(asItIs.samples, 8000);
        const double asMp3 = play(plainMp3, {}).loudness;
        QVERIFY(asItIs.loudness > 0.1 && asMp3 > 0.01);

        const auto decibels = [](double loudness, double reference) {
            return std::round(200 * std::log10(loudness / reference)) / 10;
        };
        QCOMPARE(decibels(play(tone, "Velmora-Gain: -6.50\r\nVelmora-Peak: 0.39\r\n").loudness, asItIs.loudness), -6.5);
        QCOMPARE(decibels(play(tone, "Velmora-Gain: -6.50\r\n", true).loudness, asItIs.loudness), -6.5);
        QCOMPARE(decibels(play(tone, "Velmora-Gain: 4.00\r\nVelmora-Peak: 0.39\r\n").loudness, asItIs.loudness), 4);
        QCOMPARE(decibels(play(tone, "Velmora-Gain: loud\r\n").loudness, asItIs.loudness), 0);
        QCOMPARE(decibels(play(tagged("-9.00 dB"), {}).loudness, asMp3), -9);
        QCOMPARE(decibels(play(tagged("-9.00 dB"), "Velmora-Gain: -3.00\r\n").loudness, asMp3), -3);
        const Heard limited = play(tone, "Velmora-Gain: 12\r\nVelmora-Peak: 0.39\r\n");
        QVERIFY2(limited.peak < 0.99 && limited.loudness > 2 * asItIs.loudness,
                 qPrintable(QString::number(limited.peak)));
        PlaybackBoard::instance().sound().isLevelled = false;
        QCOMPARE(decibels(play(tone, "Velmora-Gain: -6.50\r\n").loudness, asItIs.loudness), 0);
    }

    void aLimiterIsNeededOnlyBeyondFullScale()
    {
        using namespace netcommon;
        QCOMPARE(levelFor({0, {}}), (Level{1, false}));
        QCOMPARE(levelFor({-20, 1.5}), (Level{0.1, false}));
        QCOMPARE(levelFor({20, 0.1}), (Level{10, false}));
        QCOMPARE(levelFor({20, 0.11}), (Level{10, true}));
        QCOMPARE(levelFor({20, {}}), (Level{10, true}));
        QCOMPARE(levelFor({500, 0.01}), (Level{10, false})); // more is no music
        QVERIFY(!readLoudness("", "0.5") && !readLoudness("nan", "") && !readLoudness("1e999", ""));
        QVERIFY(!readLoudness("1", "-3")->peak);
    }

    // A sink with a volume of its own is set; the samples that it gets are left alone.
    void theVolumeIsTheSinksOwnIfItHasOne()
    {
        const QString before = m_folder.filePath("before"), after = m_folder.filePath("after");
        const QByteArray own =
            "tee name=t ! queue ! audioconvert ! audio/x-raw,format=S16LE ! filesink sync=false location=" +
            QFile::encodeName(before) + " t. ! queue ! volume ! " + captureTo + QFile::encodeName(after);
        const std::tuple<int, bool, double> cases[] = {
            {100, false, 1}, {50, false, 0.125}, {50, true, 0}, {0, false, 0}};
        double whole = 0;
        for (const auto &[percent, isMuted, expected] : cases) {
            auto &sound = PlaybackBoard::instance().sound();
            sound.volume = percent;
            sound.isVolumeChosen = true;
            sound.isMuted = isMuted;
            for (const QByteArray &sink : {own, captureTo + QFile::encodeName(after)}) {
                {
                    PlaybackRig rig(sink);
                    rig.play(MediaFile{.body = mediasample::wav(1000)});
                    TRY_VERIFY(rig.hasEnded());
                }
                if (whole == 0)
                    whole = heardIn(after).loudness;
                QVERIFY2(
                    qAbs(heardIn(after).loudness - expected * whole) < 0.001,
                    qPrintable(
                        QStringLiteral("%1 %2 %3").arg(percent).arg(sink == own).arg(heardIn(after).loudness / whole)));
                if (sink == own)
                    QVERIFY(qAbs(heardIn(before).loudness - whole) < 0.001);
            }
        }
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(PlaybackSoundTest)
#include "playback_sound_test.moc"
