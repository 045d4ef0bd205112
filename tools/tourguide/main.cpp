// `tools/tour` builds and starts this.

#include "tools/tourguide/tour.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QTranslator>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false")); // the settings class reports what it does
    QCommandLineParser line;
    line.addHelpOption();
    line.addPositionalArgument(QStringLiteral("pictures"), QStringLiteral("folder for the pictures"));
    line.addPositionalArgument(QStringLiteral("drafts"), QStringLiteral("folder of the drafts"));
    line.addPositionalArgument(QStringLiteral("part"),
                               QStringLiteral("only this part: ") + Tour::ways().join(QStringLiteral(", ")));
    const QCommandLineOption language(QStringLiteral("language"), QStringLiteral("of all texts, as \"de\""),
                                      QStringLiteral("CODE"));
    line.addOption(language);
    line.process(app);
    QTranslator texts;
    if (line.isSet(language)) {
        if (!texts.load(QStringLiteral(":/translations/velmora_%1.qm").arg(line.value(language)))) {
            std::fprintf(stderr, "tour: there are no texts in \"%s\"\n", qPrintable(line.value(language)));
            return 2;
        }
        QCoreApplication::installTranslator(&texts);
        Journey::setLanguage(line.value(language));
    }
    const QStringList arguments = line.positionalArguments();
    const QString part = arguments.value(2);
    if (arguments.size() < 2 || !QDir().mkpath(arguments[0]) || (!part.isEmpty() && !Tour::ways().contains(part))) {
        std::fprintf(stderr, "%s", qPrintable(line.helpText()));
        return 2;
    }
    if (!QDir(QStringLiteral(JOURNEY_LIBRARY "/demo")).exists()) {
        std::printf("tour: making the demo catalogue\n");
        std::fflush(stdout);
        if (!Journey::makeLibrary()) {
            std::fprintf(stderr, "tour: the demo catalogue could not be made\n");
            return 1;
        }
    }
    Tour tour(arguments[0], arguments[1], part);
    tour.walk();
    if (!tour.writePage()) {
        std::fprintf(stderr, "tour: %s cannot be written to\n", qPrintable(arguments[0]));
        return 1;
    }
    return tour.missing().isEmpty() ? 0 : 1;
}
