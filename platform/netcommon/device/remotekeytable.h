#pragma once

#include <QHash>
#include <QString>
#include <QVarLengthArray>

#include <cstdint>

// Which key of a PC's keyboard is which key of the remote control, and what the keys are called on the menu system's
// command line. docs/remote-keys.md shows both tables.
namespace netcommon::keys {

struct Stroke {
    int key = 0; // Qt key code
    Qt::KeyboardModifiers modifiers;
    QString text;
    bool isAutoRepeat = false;
    std::uint64_t timestamp = 0; // milliseconds
};

// The key code that the application gets for a key. `isTextEntry`: a writable field has the focus.
int remoteKey(const Stroke &stroke, bool isTextEntry);
// True for arrows, page keys, Delete and the volume's two keys. All other keys act once, however long they are held.
bool mayRepeat(int key);

// Which keys are down, and so what a press or a release becomes. A key that is held arrives in one of three ways:
// as presses and releases that are marked as repeated, as marked presses only, or as plain presses without a release
// between them. Each way becomes alternating marked releases and presses, because focus moves act on releases.
class HeldKeys {
public:
    struct Delivery {
        bool isPress;
        int key;
        bool isAutoRepeat;
        bool operator==(const Delivery &) const = default;
    };
    using Deliveries = QVarLengthArray<Delivery, 2>;

    Deliveries pressed(const Stroke &stroke, bool isTextEntry);
    // A release is translated as its press was, even if the focus has moved.
    Deliveries released(const Stroke &stroke, bool isTextEntry);
    // Another program gets the keys now: releases may be missed.
    void forget() { m_held.clear(); }

private:
    struct Held {
        int key; // as it was passed on
        bool isDown;
        std::uint64_t lastPress;
    };
    QHash<int, Held> m_held; // by the key as pressed
};

struct NamedKey {
    const char *name;
    int key;
    bool isTyped; // a key of a PC's keyboard, translated as if it had been pressed there
};

// Null for a name that is not known.
const NamedKey *keyByName(const QString &name);
// All names in their order, separated by blanks.
QString allKeyNames();

} // namespace netcommon::keys
