#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace netcommon {

// The television behind HDMI, through the kernel's CEC interface: it is turned on and shows this device when the link
// is made, its standby is reported, and it can be sent to standby. The television's remote arrives as an input device
// (remoteinput.h). GUI thread; no call waits for the television.
class CecLink : public QObject {
    Q_OBJECT
public:
    // As ioctl(2).
    using Control = std::function<int(int descriptor, unsigned long request, void *argument)>;

    // Null: there is no such adapter, or it cannot be used.
    static std::unique_ptr<CecLink> open(const char *path = "/dev/cec0");
    // descriptor: owned by the link.
    CecLink(int descriptor, Control control);
    ~CecLink() override;

    // False: the adapter refuses to be a playback device.
    bool configure();
    void standby();
    // Messages and events are there: reads one of each.
    void read();

signals:
    void televisionSleeps();

private:
    bool ask(unsigned long request, void *argument) { return m_control(m_descriptor, request, argument) == 0; }
    void addressed();
    void send(unsigned char to, std::initializer_list<unsigned char> message);

    const int m_descriptor;
    const Control m_control;
    std::unique_ptr<QSocketNotifier> m_messages;
    std::unique_ptr<QSocketNotifier> m_events;
    unsigned char m_from = 0xf; // our logical address; 15: none yet
    bool m_isShown = false;     // the television was asked to show this device
};

} // namespace netcommon
