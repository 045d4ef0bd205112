// Every picture that the code, a form or a style sheet names is there, has its size, and shows its master as it is now.

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Sliced by the style sheets in pixels of the file: one size only.
const QStringList oneSize = {QStringLiteral("Welcome_Bg"), QStringLiteral("DialogBox_Bg"), QStringLiteral("Menu_Bg")};

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Without ".png", and "Loading_%1" for a name that is put together while the program runs.
QSet<QString> namedPictures(const QString &root)
{
    static const QRegularExpression named(QStringLiteral("(?::/images/|\")([A-Za-z0-9_%]+)\\.png"));
    QSet<QString> names;
    for (const char *folder : {"app", "account", "station", "player", "widgets", "platform", "resources"}) {
        QDirIterator files(QDir(root).filePath(QLatin1String(folder)), {"*.cpp", "*.h", "*.ui", "*.qss"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            auto matches = named.globalMatch(QString::fromUtf8(readAll(files.next())));
            while (matches.hasNext())
                names += matches.next().captured(1);
        }
    }
    return names;
}

QString sizeFault(const QString &path, const QSize &size)
{
    const QString name = QFileInfo(path).fileName();
    const QImage picture(path);
    if (picture.isNull())
        return QStringLiteral("%1 is missing").arg(name);
    if (picture.size() != size)
        return QStringLiteral("%1 is %2 x %3").arg(name).arg(picture.width()).arg(picture.height());
    return {};
}

// What is wrong below `root`, one line each.
QStringList faults(const QString &root)
{
    QStringList all;
    const QDir images(QDir(root).filePath(QStringLiteral("resources/images")));
    const QDir masters(QDir(root).filePath(QStringLiteral("resources/artwork")));
    QMap<QString, QSize> rendered;
    const QString list = QString::fromUtf8(readAll(images.filePath(QStringLiteral("rendered.txt"))));
    for (const QString &line : list.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList words = line.split(QLatin1Char(' '));
        if (words.size() != 4) {
            all += QStringLiteral("rendered.txt: ") + line;
            continue;
        }
        const QString name = words[0].chopped(4);
        const QSize size(words[2].toInt(), words[3].toInt());
        rendered[name] = size;
        const QByteArray master = readAll(masters.filePath(name + QStringLiteral(".svg")));
        if (master.isEmpty())
            all += name + QStringLiteral(" has no master");
        else if (QCryptographicHash::hash(master, QCryptographicHash::Sha256).toHex() != words[1].toLatin1())
            all += name + QStringLiteral(" is older than its master: run tools/render-artwork");
        all += sizeFault(images.filePath(name + QStringLiteral(".png")), size);
        const QString twice = images.filePath(name + QStringLiteral("@2x.png"));
        if (!oneSize.contains(name))
            all += sizeFault(twice, size * 2);
        else if (QFile::exists(twice))
            all += name + QStringLiteral(" has a double size, which would be sliced at half its corners");
    }
    for (const QString &name : namedPictures(root)) {
        if (name.contains(QLatin1Char('%'))) {
            QString pattern = QRegularExpression::escape(name);
            pattern.replace(QRegularExpression(QStringLiteral("\\\\%\\d+")), QStringLiteral(".+"));
            const QRegularExpression any(QRegularExpression::anchoredPattern(pattern));
            const QStringList there = rendered.keys();
            if (!std::any_of(there.begin(), there.end(), [&](const QString &n) { return any.match(n).hasMatch(); }))
                all += name + QStringLiteral(" is named, and nothing like it is there");
        } else if (!rendered.contains(name)) {
            all += name + QStringLiteral(" is named, and not there");
        }
    }
    for (const QString &master : masters.entryList({QStringLiteral("*.svg")}))
        if (!rendered.contains(master.chopped(4)))
            all += master + QStringLiteral(" was never rendered");
    all.removeAll(QString());
    return all;
}

void write(const QString &path, const QByteArray &text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

void paint(const QString &path, int width, int height)
{
    QDir().mkpath(QFileInfo(path).path());
    QImage picture(width, height, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(path));
}

} // namespace

class ArtworkTest : public QObject {
    Q_OBJECT
private slots:
    void everyNamedPictureIsThereInItsSizeAndAsItsMaster()
    {
        const QString root = QStringLiteral(VELMORA_SOURCE_DIR);
        QVERIFY(namedPictures(root).size() > 30);
        QCOMPARE(faults(root).join(QLatin1Char('\n')), QString());
    }

    void aFaultIsFound_data()
    {
        QTest::addColumn<QString>("fault");
        for (const char *fault : {"", "a is missing", "size", "double size", "a is older", "b is named"})
            QTest::newRow(*fault ? fault : "none") << QString::fromLatin1(fault);
    }

    void aFaultIsFound()
    {
        QFETCH(QString, fault);
        QTemporaryDir root;
        const QString resources = root.filePath(QStringLiteral("resources/"));
        const QByteArray master("<svg/>");
        write(resources + "artwork/a.svg", fault == "a is older" ? master + " " : master);
        const QByteArray sum = QCryptographicHash::hash(master, QCryptographicHash::Sha256).toHex();
        write(resources + "images/rendered.txt", "a.png " + sum + " 8 4\n");
        if (fault != "a is missing")
            paint(resources + "images/a.png", fault == "size" ? 9 : 8, 4);
        paint(resources + "images/a@2x.png", fault == "double size" ? 8 : 16, 8);
        write(root.filePath("app/x.cpp"), "\":/images/a.png\"");
        write(root.filePath("player/x.ui"), fault == "b is named" ? "url(:/images/b.png)" : "");
        QCOMPARE(faults(root.path()).size(), fault.isEmpty() ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(ArtworkTest)
#include "artwork_test.moc"
