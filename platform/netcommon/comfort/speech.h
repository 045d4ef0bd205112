#pragma once

#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace netcommon {

// Says what gets the focus: the screen, the message of a box, the control, the row of a list. The words are those that
// screen readers get: accessible names. GUI thread.
class SpokenFocus : public QObject {
    Q_OBJECT
public:
    using Speaker = std::function<void(const QString &text)>; // replaces what is being said
    SpokenFocus(Speaker speaker, QObject *parent);

    // speech-dispatcher's own command, which connects to it or starts it. Without it nothing is said.
    static void speak(const QString &text);

private:
    void focusMoved(QWidget *before, QWidget *now);
    void rowChanged();

    const Speaker m_speaker;
    QString m_window; // what was said of the window last
    QString m_said;
};

// What stands on the screen and has the focus, in the same words; empty without a focus.
QString wordsOfFocus();
// Gives the window's controls that show a picture instead of words an accessible name, by their object names.
void nameControls(QWidget *window);

} // namespace netcommon
