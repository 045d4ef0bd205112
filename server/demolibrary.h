#pragma once

#include "server/catalogue/catalogue.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <sys/types.h>
#include <thread>

namespace velmora::server {

// The demo catalogue: a program of its own, velmora-demomusic, writes music into a folder, which the library looks
// through like any other. This class keeps the program running until all is written, passes on what listeners wait
// for, and enters the advertisements, which are no music.
class DemoLibrary {
public:
    struct Settings {
        std::filesystem::path program; // velmora-demomusic
        std::filesystem::path folder;
        int tracksOfStyle = 1000; // at most so many
        // A program that ends early is started again after this pause, which doubles every time, and not more often
        // than this unless it has written something in between.
        std::chrono::milliseconds firstPause{1000};
        int mostRestarts = 6;
    };

    // `say` gets a line of progress after every track and every problem, also on a thread of this object's.
    DemoLibrary(Catalogue &catalogue, Settings settings, std::function<void(const std::string &)> say);
    ~DemoLibrary(); // stops
    DemoLibrary(const DemoLibrary &) = delete;
    DemoLibrary &operator=(const DemoLibrary &) = delete;

    // Where the music is going to be: a folder for the library.
    static std::filesystem::path musicIn(const std::filesystem::path &folder) { return folder / "music"; }

    // Makes the folder, starts the program, and waits until it has said which styles there will be. Throws StoreError.
    void start();
    // Ends the program, which leaves whole files only. At once.
    void stop();

private:
    bool startProgram();
    // The next line of the program's output; nothing at its end.
    std::optional<std::string> readLine();
    bool readDescription();
    void enterAds();
    void keep(bool isDescribed);                // runs on m_thread
    bool follow();                              // until the program has ended; whether all is written
    int reap();                                 // its exit status, -1 when it was killed
    bool rest(std::chrono::milliseconds pause); // false when it is time to stop
    void take(const std::string &file);
    void wish(const std::set<std::string> &styles);
    void sendWishes(); // under m_mutex

    Catalogue &m_catalogue;
    Settings m_settings;
    std::function<void(const std::string &)> m_say;

    // Of the thread that starts the program: the caller's of start(), then m_thread.
    std::map<std::filesystem::path, std::string> m_adIds; // by audio file
    int64_t m_made = 0;                                   // tracks that are there
    int64_t m_total = 0;
    bool m_hasMade = false;   // something since the last start of the program
    FILE *m_output = nullptr; // its standard output

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_wake;
    pid_t m_pid = -1; // -1: no program runs
    int m_input = -1; // the service's end of its standard input
    bool m_isStopping = false;
    std::set<std::string> m_wished;

    std::thread m_thread;
};

} // namespace velmora::server
