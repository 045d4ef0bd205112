#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace velmora::server {

// Looks whether a folder is there, on a thread of its own: a call into a dead network mount does not return. One such
// thread a folder at most; it holds nothing but its own few bytes. Used by one thread.
class RootProbe {
public:
    struct Answer {
        int folder = -1;     // open, the caller's; -1 when the folder is away
        std::string problem; // why it is away, for people
        bool isEmpty = false;
        bool isSilent = false; // it did not answer in time
    };

    explicit RootProbe(std::chrono::milliseconds patience = std::chrono::seconds(5));
    Answer look(const std::filesystem::path &root);

private:
    struct Shared;
    std::chrono::milliseconds m_patience;
    std::map<std::filesystem::path, std::shared_ptr<Shared>> m_standing; // that have not come back
};

} // namespace velmora::server
