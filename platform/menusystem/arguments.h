#pragma once

#include "menumessages.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

// The command line of velmora-menu.
namespace menusystem {

struct Request {
    netcommon::menu::MessageType type;
    std::uint32_t value = 0;
    std::uint32_t flag = 0;
    QByteArray text;
};

struct Arguments {
    enum class Mode { Run, Command, Settings, Help, MeasureScreen };

    Mode mode = Mode::Command;
    QString socket; // empty: the default place

    // Mode::Run
    QStringList program; // with its arguments
    bool isWindowed = false;
    bool isSupervisor = false;   // starts the radio again after a fault, a crash or a hang
    bool isKiosk = false;        // a person who leaves the radio comes to Home
    QString home;                // velmora-home
    std::optional<double> scale; // none: what fits the screen
    int hangSeconds = 30;        // without an answer for so long, the radio counts as hanging
    int insistSeconds = 10;      // from the order to exit until the radio is terminated

    // Mode::Command
    std::vector<Request> requests; // in their order

    // Mode::Settings
    QStringList settingWords; // get KEY, set KEY VALUE, or settings
};

// Empty, with a reason, when a word is not understood.
std::optional<Arguments> parseArguments(const QStringList &words, QString *reason);
QString usage();

} // namespace menusystem
