#pragma once

#include "page.h"
#include "pane.h"
#include "platform/shared/devicesettings.h"

#include <functional>

class QListWidget;

namespace home {

class ServicePane;

// Home: a list of subjects at the left, the pane of the current one at the right, and over it, when a text is asked
// for, a field with the on-screen keyboard.
class HomePage : public Page {
    Q_OBJECT
public:
    // `offersQuit`: there is something behind the radio to go back to. `isFirst`: no service is set up yet, so it opens
    // with that question, and the radio starts when a service has been chosen.
    explicit HomePage(bool offersQuit = true, bool isFirst = false);
    ~HomePage() override;

    // Opens what the other one shows; call when this one is shown.
    void goOnFrom(const HomePage &before);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    class Typing;

    void addPanes(bool offersQuit);
    // `act`: Select in the left list does this at once.
    void add(Pane *pane, const std::function<void()> &act = {});
    void insert(qsizetype place, Pane *pane, const std::function<void()> &act = {});
    void openPane(int index);
    void showPane(); // what the open pane says now
    void choose();   // Select in the list that has the focus
    bool isInPane() const;
    void goBack(); // one step, within the pane or out of it
    void enterPane();
    void leavePane();
    void ask(const TextQuestion &question);
    void showHints();

    bool m_isFirst; // and has not been shown yet
    platform::DeviceSettingsWatch m_settings;
    ServicePane *m_service = nullptr; // a child
    struct Entry {
        Pane *pane; // a child
        std::function<void()> act;
    };
    QList<Entry> m_entries;
    Pane *m_open = nullptr; // the pane of the current entry
    QList<int> m_above;     // while it shows rows below its first ones: where it was in the rows above
    QListWidget *m_subjects = nullptr;
    QLabel *m_title = nullptr;
    QLabel *m_text = nullptr;
    QLabel *m_counter = nullptr;
    QListWidget *m_rows = nullptr;
    QLabel *m_returnHint = nullptr; // visible where Back leads somewhere
    QList<QLabel *> m_typingHints;  // visible with m_typing
    Typing *m_typing = nullptr;     // a child; visible while a text is asked for
};

} // namespace home
