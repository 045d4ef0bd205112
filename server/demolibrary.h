#pragma once

#include "server/catalogue/catalogue.h"

#include <functional>
#include <map>
#include <sys/types.h>
#include <thread>

namespace velmora::server {

// The demo catalogue in the service. A program of its own, velmora-demomusic, makes the music into a folder while the
// service answers; a track can be played from the moment its file is there.
class DemoLibrary {
public:
    struct Settings {
        std::filesystem::path program; // velmora-demomusic
        std::filesystem::path folder;
        int tracksOfStyle = 1000; // at most so many
    };

    // `say` gets a line of progress after every track and every problem, also on a thread of this object's.
    DemoLibrary(Catalogue &catalogue, Settings settings, std::function<void(const std::string &)> say);
    ~DemoLibrary(); // stops
    DemoLibrary(const DemoLibrary &) = delete;
    DemoLibrary &operator=(const DemoLibrary &) = delete;

    // Starts the program, waits for its description of the catalogue and enters that. A program that does not run is a
    // line of `say`; what an earlier run has made is entered all the same. Throws StoreError.
    void start();
    // Ends the program, which leaves whole files only. At once.
    void stop();

private:
    bool startProgram();
    // The next line of the program's output; nothing at its end.
    std::optional<std::string> readLine();
    void enter();
    void follow(); // runs on m_thread until the program has ended
    void take(const std::string &file);
    void wish(const std::set<std::string> &styles);
    std::filesystem::path path(const std::string &file) const { return m_settings.folder / file; }
    // Bits a second of the track's file; 0 when there is no file.
    int bitrateOf(const std::string &file, int durationSeconds) const;

    Catalogue &m_catalogue;
    Settings m_settings;
    std::function<void(const std::string &)> m_say;

    struct Entry {
        std::string id;
        int durationSeconds = 0;
        bool isAd = false;
    };
    std::map<std::string, Entry> m_entries; // by file relative to the folder; not changed after start()
    int m_made = 0;                         // tracks that can be played; of m_thread after start()
    int m_total = 0;

    pid_t m_pid = -1;         // -1: no program was started
    FILE *m_output = nullptr; // its standard output; of m_thread after start()
    std::mutex m_mutex;       // guards m_input and m_wished
    int m_input = -1;         // the service's end of its standard input
    std::set<std::string> m_wished;
    std::thread m_thread;
};

} // namespace velmora::server
