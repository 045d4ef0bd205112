// velmora-faults: runs the rows of the table of faults side by side, each in a process of its own, and prints the table
// with what was measured. Started by tools/faults and, for the quick rows, by ./test.

#include "faults/rig.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <csignal>
#include <cstdio>
#include <deque>
#include <map>
#include <memory>
#include <sys/prctl.h>

namespace {

using faults::Scenario;
using faults::Verdict;

QByteArray toJson(const Verdict &verdict)
{
    return QJsonDocument({{"problem", verdict.problem},
                          {"silence", verdict.silence},
                          {"longest", verdict.longest},
                          {"worstAnswerMs", verdict.worstAnswerMs},
                          {"hits", verdict.hits},
                          {"end", verdict.end}})
        .toJson(QJsonDocument::Compact);
}

Verdict fromJson(const QByteArray &text)
{
    const QJsonObject found = QJsonDocument::fromJson(text).object();
    Verdict verdict;
    verdict.problem = found.value("problem").toString("no verdict");
    verdict.silence = found.value("silence").toDouble();
    verdict.longest = found.value("longest").toDouble();
    verdict.worstAnswerMs = found.value("worstAnswerMs").toInt();
    verdict.hits = found.value("hits").toInt();
    verdict.end = found.value("end").toString();
    return verdict;
}

// In a cell of a table: one line.
QString cell(const QString &text)
{
    return text.section('\n', 0, 0).left(70).trimmed();
}

void print(const Scenario &scenario, const Verdict &verdict)
{
    std::printf(
        "| %s | %.1f | %.1f | %.1f | %d | %d ms | %s | %s |\n", scenario.name.c_str(), scenario.silence,
        verdict.silence, verdict.longest, verdict.hits, verdict.worstAnswerMs, qPrintable(cell(verdict.end)),
        qPrintable(verdict.problem.isEmpty() ? QStringLiteral("as promised") : "**" + cell(verdict.problem) + "**"));
    std::fflush(stdout);
}

// Runs the rows, so many at once, and prints them in their order. How many broke their promise.
int runRows(std::deque<int> rows, int jobs)
{
    std::map<int, std::unique_ptr<QProcess>> running;
    std::map<int, Verdict> done;
    std::deque<int> unprinted = rows;
    int failures = 0;
    while (!unprinted.empty()) {
        while (!rows.empty() && int(running.size()) < jobs) {
            auto process = std::make_unique<QProcess>();
            process->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
            process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
            process->start(QCoreApplication::applicationFilePath(), {"--row", QString::number(rows.front())});
            running[rows.front()] = std::move(process);
            rows.pop_front();
        }
        for (auto it = running.begin(); it != running.end();) {
            if (!it->second->waitForFinished(50) && it->second->state() != QProcess::NotRunning) {
                ++it;
                continue;
            }
            done[it->first] = fromJson(it->second->readAllStandardOutput());
            it = running.erase(it);
        }
        while (!unprinted.empty() && done.contains(unprinted.front())) {
            const Scenario &scenario = faults::scenarios().at(size_t(unprinted.front()));
            const Verdict &verdict = done[unprinted.front()];
            print(scenario, verdict);
            if (!verdict.problem.isEmpty()) {
                ++failures;
                std::fprintf(stderr, "--- %s: %s\n", scenario.name.c_str(), qPrintable(verdict.problem));
            }
            unprinted.pop_front();
        }
    }
    return failures;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"quick", "the quick rows only"},
                       {"jobs", "so many rows at once (1)", "N", "1"},
                       {"row", "one row alone; prints its verdict as JSON", "NUMBER"}});
    parser.addPositionalArgument("text", "rows with this in their names", "[TEXT]");
    parser.addHelpOption();
    parser.process(application);
    const auto &table = faults::scenarios();
    if (parser.isSet("row")) {
        std::puts(toJson(faults::run(table.at(parser.value("row").toUInt()))).constData());
        return 0;
    }
    if (!faults::makeMusic()) {
        std::fputs("faults: the music cannot be made\n", stderr);
        return 2;
    }
    std::deque<int> rows;
    const QString text = parser.positionalArguments().value(0);
    for (size_t row = 0; row < table.size(); ++row)
        if ((table[row].isQuick || !parser.isSet("quick")) && QString::fromStdString(table[row].name).contains(text))
            rows.push_back(int(row));
    std::puts(
        "| What goes wrong | Silence allowed, s | Silence | Longest | Requests hit | Slowest answer | End | Verdict |\n"
        "|---|---|---|---|---|---|---|---|");
    return runRows(rows, qMax(1, parser.value("jobs").toInt())) > 0 ? 1 : 0;
}
