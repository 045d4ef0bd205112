#include "evdevremote.h"

#include "netcommon/remotekeys.h"

#include <algorithm>
#include <cstring>

#include <linux/input.h>

namespace netcommon::evdev {

namespace {

struct Meaning {
    std::uint16_t code;
    int key;
};

constexpr Meaning meanings[] = {
    {KEY_UP, Qt::Key_Up},
    {KEY_DOWN, Qt::Key_Down},
    {KEY_LEFT, Qt::Key_Left},
    {KEY_RIGHT, Qt::Key_Right},
    {KEY_OK, Qt::Key_Select},
    {KEY_SELECT, Qt::Key_Select},
    {KEY_ENTER, Qt::Key_Select},
    {KEY_KPENTER, Qt::Key_Select},
    {KEY_EXIT, Qt::Key_Back},
    {KEY_BACK, Qt::Key_Back},
    {KEY_ESC, Qt::Key_Back},
    {KEY_RED, redKey},
    {KEY_GREEN, greenKey},
    {KEY_YELLOW, Qt::Key_Yellow},
    {KEY_BLUE, Qt::Key_Blue},
    {KEY_HOME, Qt::Key_TopMenu},
    {KEY_HOMEPAGE, Qt::Key_TopMenu},
    {KEY_ROOT_MENU, Qt::Key_TopMenu},
    {KEY_MENU, Qt::Key_MenuPB},
    {KEY_SETUP, Qt::Key_MenuPB},
    {KEY_CONTEXT_MENU, Qt::Key_MenuPB},
    {KEY_PLAY, Qt::Key_MediaPlay},
    {KEY_PLAYCD, Qt::Key_MediaPlay},
    {KEY_PAUSE, Qt::Key_Pause},
    {KEY_PAUSECD, Qt::Key_Pause},
    {KEY_PLAYPAUSE, Qt::Key_Pause},
    {KEY_STOP, Qt::Key_MediaStop},
    {KEY_STOPCD, Qt::Key_MediaStop},
    {KEY_NEXT, Qt::Key_MediaNext},
    {KEY_NEXTSONG, Qt::Key_MediaNext},
    {KEY_CHANNELUP, Qt::Key_PageUp},
    {KEY_CHANNELDOWN, Qt::Key_PageDown},
    {KEY_PAGEUP, Qt::Key_PageUp},
    {KEY_PAGEDOWN, Qt::Key_PageDown},
    {KEY_VOLUMEUP, Qt::Key_VolumeUp},
    {KEY_VOLUMEDOWN, Qt::Key_VolumeDown},
    {KEY_MUTE, Qt::Key_VolumeMute},
};

} // namespace

bool isRemote(const KeySet &keys, std::uint16_t busType)
{
    if (keys.test(KEY_A) && keys.test(KEY_Z))
        return false;
    return busType == BUS_CEC || keys.test(KEY_OK) || keys.test(KEY_SELECT) || keys.test(KEY_RED);
}

int remoteKey(std::uint16_t code)
{
    for (const Meaning &meaning : meanings)
        if (meaning.code == code)
            return meaning.key;
    if (code >= KEY_NUMERIC_0 && code <= KEY_NUMERIC_9)
        return Qt::Key_0 + code - KEY_NUMERIC_0;
    if (code >= KEY_1 && code <= KEY_9)
        return Qt::Key_1 + code - KEY_1;
    return code == KEY_0 ? int(Qt::Key_0) : 0;
}

std::vector<Stroke> Reader::read(const QByteArray &bytes)
{
    constexpr int released = 0;
    constexpr int repeated = 2;
    std::vector<Stroke> strokes;
    m_rest += bytes;
    qsizetype at = 0;
    for (; at + qsizetype(sizeof(input_event)) <= m_rest.size(); at += sizeof(input_event)) {
        input_event event;
        std::memcpy(&event, m_rest.constData() + at, sizeof event);
        if (event.type == EV_SYN && event.code == SYN_DROPPED) {
            // Releases may be among what was lost.
            m_isOverrun = true;
            for (const int key : m_down)
                strokes.push_back({key, false, false});
            m_down.clear();
        } else if (event.type == EV_SYN && event.code == SYN_REPORT) {
            m_isOverrun = false;
        } else if (event.type == EV_KEY && !m_isOverrun) {
            const int key = remoteKey(event.code);
            const bool isDown = std::find(m_down.begin(), m_down.end(), key) != m_down.end();
            if (key == 0 || (event.value == released && !isDown))
                continue;
            if (event.value == released)
                std::erase(m_down, key);
            else if (!isDown)
                m_down.push_back(key);
            strokes.push_back({key, event.value != released, event.value == repeated});
        }
    }
    m_rest.remove(0, at);
    return strokes;
}

} // namespace netcommon::evdev
