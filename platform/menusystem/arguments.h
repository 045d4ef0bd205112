#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

// The command line of velmora-menu.
namespace menusystem {

struct Request {
    std::uint32_t type; // as in menumessages.h
    std::uint32_t value = 0;
    std::uint32_t flag = 0;
    QByteArray text;
};

struct Arguments {
    enum class Mode { Run, Command, Help, MeasureScreen };

    Mode mode = Mode::Command;
    QString socket; // empty: the usual place

    // Mode::Run
    QStringList program; // with its arguments
    bool isWindowed = false;
    std::optional<double> scale; // none: as fits the screen
    int hangSeconds = 30;        // without an answer: the radio hangs
    int insistSeconds = 10;      // from the wish to end until the radio is made to

    // Mode::Command
    std::vector<Request> requests; // in their order
};

// Nothing, and the reason, when a word is not understood.
std::optional<Arguments> parseArguments(const QStringList &words, QString *reason);
QString usage();

} // namespace menusystem
