#include "remotekeytable.h"

#include "netcommon/remotekeys.h"

#include <QStringList>

namespace netcommon::keys {

namespace {

// Longer than any keyboard's repeat delay. A later press of a held key means that its release was missed.
constexpr std::uint64_t longestRepeatMs = 1500;

struct Translation {
    int pressed;
    int remote;
};

constexpr Translation translations[] = {
    {Qt::Key_Return, Qt::Key_Select},
    {Qt::Key_Enter, Qt::Key_Select},
    {Qt::Key_Escape, Qt::Key_Back},
    {Qt::Key_Backspace, Qt::Key_Back},
    {Qt::Key_Home, Qt::Key_TopMenu},
    {Qt::Key_HomePage, Qt::Key_TopMenu},
    {Qt::Key_F1, redKey},
    {Qt::Key_F2, greenKey},
    {Qt::Key_F3, Qt::Key_Yellow},
    {Qt::Key_F4, Qt::Key_Blue},
    // Remote controls that the display server knows by colour.
    {Qt::Key_Red, redKey},
    {Qt::Key_Green, greenKey},
    {Qt::Key_F8, Qt::Key_VolumeMute},
    {Qt::Key_F9, Qt::Key_VolumeDown},
    {Qt::Key_F10, Qt::Key_VolumeUp},
    // The remote has a single key for pause and play.
    {Qt::Key_MediaPause, Qt::Key_Pause},
    {Qt::Key_MediaTogglePlayPause, Qt::Key_Pause},
};

constexpr NamedKey namedKeys[] = {
    {"up", Qt::Key_Up, false},
    {"down", Qt::Key_Down, false},
    {"left", Qt::Key_Left, false},
    {"right", Qt::Key_Right, false},
    {"select", Qt::Key_Select, false},
    {"back", Qt::Key_Back, false},
    {"red", redKey, false},
    {"green", greenKey, false},
    {"yellow", Qt::Key_Yellow, false},
    {"blue", Qt::Key_Blue, false},
    {"home", Qt::Key_TopMenu, false},
    {"menu", Qt::Key_MenuPB, false},
    {"play", Qt::Key_MediaPlay, false},
    {"pause", Qt::Key_Pause, false},
    {"stop", Qt::Key_MediaStop, false},
    {"next", Qt::Key_MediaNext, false},
    {"volumeup", Qt::Key_VolumeUp, false},
    {"volumedown", Qt::Key_VolumeDown, false},
    {"mute", Qt::Key_VolumeMute, false},
    {"pageup", Qt::Key_PageUp, false},
    {"pagedown", Qt::Key_PageDown, false},
    {"top", Qt::Key_Home, false},
    {"end", Qt::Key_End, false},
    {"enter", Qt::Key_Return, true},
    {"escape", Qt::Key_Escape, true},
    {"backspace", Qt::Key_Backspace, true},
    {"delete", Qt::Key_Delete, true},
};

bool isForField(const Stroke &stroke)
{
    switch (stroke.key) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return false;
    default:
        return !(stroke.modifiers & (Qt::ControlModifier | Qt::MetaModifier)) && !stroke.text.isEmpty() &&
               stroke.text.at(0).isPrint();
    }
}

} // namespace

bool mayRepeat(int key)
{
    switch (key) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Delete:
    case Qt::Key_VolumeUp:
    case Qt::Key_VolumeDown:
    case Qt::Key_F9: // as pressed
    case Qt::Key_F10:
        return true;
    default:
        return false;
    }
}

int remoteKey(const Stroke &stroke, bool isTextEntry)
{
    if (isTextEntry && isForField(stroke))
        return stroke.key;
    for (const Translation &translation : translations)
        if (translation.pressed == stroke.key)
            return translation.remote;
    return stroke.key;
}

HeldKeys::Deliveries HeldKeys::pressed(const Stroke &stroke, bool isTextEntry)
{
    const auto held = m_held.find(stroke.key);
    const bool isHeld = held != m_held.end();
    const bool isRepeat =
        stroke.isAutoRepeat || (isHeld && held->isDown && stroke.timestamp - held->lastPress < longestRepeatMs);
    if (!isRepeat) {
        const int key = remoteKey(stroke, isTextEntry);
        m_held[stroke.key] = {key, true, stroke.timestamp};
        return {Delivery{true, key, false}};
    }
    Deliveries deliveries;
    if (mayRepeat(stroke.key)) {
        if (isHeld && held->isDown)
            deliveries.append(Delivery{false, held->key, true});
        deliveries.append(Delivery{true, isHeld ? held->key : remoteKey(stroke, isTextEntry), true});
    }
    if (isHeld) {
        held->isDown = true;
        held->lastPress = stroke.timestamp;
    }
    return deliveries;
}

HeldKeys::Deliveries HeldKeys::released(const Stroke &stroke, bool isTextEntry)
{
    const auto held = m_held.find(stroke.key);
    const bool isHeld = held != m_held.end();
    const int key = isHeld ? held->key : remoteKey(stroke, isTextEntry);
    if (!stroke.isAutoRepeat) {
        m_held.remove(stroke.key);
        return {Delivery{false, key, false}};
    }
    if (!mayRepeat(stroke.key))
        return {};
    if (isHeld)
        held->isDown = false;
    return {Delivery{false, key, true}};
}

const NamedKey *keyByName(const QString &name)
{
    for (const NamedKey &key : namedKeys)
        if (name == QLatin1String(key.name))
            return &key;
    return nullptr;
}

QString allKeyNames()
{
    QStringList names;
    for (const NamedKey &key : namedKeys)
        names += QLatin1String(key.name);
    return names.join(QLatin1Char(' '));
}

} // namespace netcommon::keys
