#pragma once

#include "fault.h"

#include <memory>
#include <string>
#include <vector>

namespace faults {

// Stands between the radio and the service, on a port of its own of 127.0.0.1, and does wrong what it is told. One
// thread a connection: a radio opens few. Any thread may call.
class FaultProxy {
public:
    FaultProxy();
    ~FaultProxy(); // ends every connection
    FaultProxy(const FaultProxy &) = delete;
    FaultProxy &operator=(const FaultProxy &) = delete;

    int port() const;
    void setService(int port);                   // of 127.0.0.1; before the first request
    void setMediaRate(int bytesPerSecond);       // of each transfer of audio; 0: as fast as it comes
    void begin(std::vector<Fault> faults);       // replaces those of before; their time starts now
    bool isOver() const;                         // every fault has had its time or its requests
    int hits() const;                            // of the present faults
    int requests(const std::string &path) const; // with this in their path, since the proxy began

private:
    class Work;
    std::unique_ptr<Work> m_work;
};

} // namespace faults
