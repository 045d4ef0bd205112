// Every picture that the code, a form or a style sheet names exists, has its size, and is rendered from its current
// master.

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QImage>
#include <QMap>
#include <QRegularExpression>
#include <QtTest>

namespace {

// The style sheets slice these in pixels of the file: one size only.
const QStringList oneSize = {"Welcome_Bg", "DialogBox_Bg", "Menu_Bg"};
// Soft pictures, without an edge that a third size would sharpen.
const QStringList twoSizes = {"Main_Bg", "Screen_Bg", "thumnail_mask", "mst_thumnail_mask", "FocusBar_Transparent"};

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Without ".png", and "Loading_%1" for a name that is put together while the program runs.
QSet<QString> namedPictures(const QString &root)
{
    static const QRegularExpression named("(?::/images/|\")([A-Za-z0-9_%]+)\\.png");
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
    const QDir images(QDir(root).filePath("resources/images"));
    const QDir masters(QDir(root).filePath("resources/artwork"));
    QMap<QString, QSize> rendered;
    const QString list = QString::fromUtf8(readAll(images.filePath("rendered.txt")));
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
        if (!oneSize.contains(name) && !twoSizes.contains(name))
            all += sizeFault(images.filePath(name + QStringLiteral("@3x.png")), size * 3);
    }
    for (const QString &name : namedPictures(root)) {
        QString pattern = name;
        pattern.replace(QRegularExpression(QStringLiteral("%\\d+")), "*");
        if (QStringList(rendered.keys()).filter(QRegularExpression::fromWildcard(pattern)).isEmpty())
            all += name + QStringLiteral(" is named, and nothing like it is there");
    }
    for (const QString &master : masters.entryList({"*.svg"}))
        if (!rendered.contains(master.chopped(4)))
            all += master + QStringLiteral(" was never rendered");
    const QDir unpacked(QDir(root).filePath("resources/first"));
    for (const QString &copy : unpacked.entryList({"*.bmp"}))
        if (QImage(unpacked.filePath(copy)).convertToFormat(QImage::Format_RGB32) !=
            QImage(images.filePath(copy.chopped(4) + QStringLiteral(".png"))).convertToFormat(QImage::Format_RGB32))
            all += copy + QStringLiteral(" is another picture than the packed one: run tools/render-artwork");
    all.removeAll(QString());
    return all;
}

} // namespace

class ArtworkTest : public QObject {
    Q_OBJECT
private slots:
    void everyNamedPictureExistsInItsSizeAndMatchesItsMaster()
    {
        const QString root = QStringLiteral(VELMORA_SOURCE_DIR);
        QVERIFY(namedPictures(root).size() > 30);
        QCOMPARE(faults(root).join(QLatin1Char('\n')), QString());
    }
};

QTEST_GUILESS_MAIN(ArtworkTest)
#include "artwork_test.moc"
