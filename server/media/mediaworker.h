#pragma once

#include "server/media/mediafacts.h"

#include <chrono>
#include <filesystem>
#include <sys/types.h>

namespace velmora::media {

enum class Outcome {
    Done,
    Refused,  // the worker says that the file cannot be used
    Crashed,  // it died of the file, or answered nonsense
    TooSlow,  // it was ended, because it took too long
    NoWorker, // the program cannot be started; the file is not to blame
    NoRoom,   // the result could not be written; the file is not to blame
};

// One process of velmora-media or velmora-media-formats, started when it is needed and replaced when it has died, was
// too slow, or has read many files. A limit counts the time in which the process does nothing, or its processor time;
// on a busy machine it therefore waits longer, twenty times at most. Used by one thread, which must outlive it: the
// process ends with the thread that started it.
class MediaWorker {
public:
    // `role` is the program's argument; null: none.
    explicit MediaWorker(std::filesystem::path program, const char *role = nullptr);
    ~MediaWorker();
    MediaWorker(const MediaWorker &) = delete;
    MediaWorker &operator=(const MediaWorker &) = delete;

    // `file` is open for reading and stays the caller's. `problem` gets words for people unless it is Done. Files of
    // one folder that are read one after the other have the same number, so that each helps to read the others' texts.
    Outcome readTags(int file, MediaTags *tags, std::string *problem, uint64_t folder = 0);
    // From inside an audio file, or from a picture file.
    Outcome readPicture(Operation operation, int file, std::string *jpeg, std::string *problem);
    // A minute and a second for every minute of music.
    Outcome analyse(int file, double seconds, MediaAnalysis *analysis, std::string *problem);

    // The sound as FLAC into `to`, an empty file open for writing; how many bytes that made. A minute and ten seconds
    // for every minute of music.
    Outcome transcode(int file, int to, double seconds, uint64_t mostBytes, uint64_t *bytes, std::string *problem);

    // Makes the present request end at once, as Crashed. Any thread.
    void interrupt();

    // The program beside the one that runs.
    static std::filesystem::path besideThisProgram(const char *name = "velmora-media");

private:
    class Patience;
    // `to` is the file to write, -1 where there is none.
    Outcome ask(Request request, int file, int to, std::chrono::milliseconds longest, std::vector<Field> *fields,
                std::string *problem);
    Outcome ask(Operation operation, int file, std::chrono::milliseconds longest, std::vector<Field> *fields,
                std::string *problem)
    {
        return ask({static_cast<uint32_t>(operation)}, file, -1, longest, fields, problem);
    }
    bool start();
    void end(); // kills and forgets it
    bool send(const Request &request, int file, int to) const;
    // Fills the buffer until the time is over: 1 done, 0 too late, -1 the other end has gone, -2 interrupted.
    int receive(void *buffer, size_t count, Patience &patience) const;

    std::filesystem::path m_program;
    const char *m_role;
    pid_t m_process = -1;
    int m_socket = -1;
    int m_wake = -1; // an event that interrupt() raises
    uint32_t m_sequence = 0;
    int m_files = 0; // read by the present process
};

} // namespace velmora::media
