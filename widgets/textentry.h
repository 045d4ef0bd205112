#pragma once

#include <QObject>

class QDialog;
class QLineEdit;

// What every dialog with an on-screen keyboard needs of its entry fields; a child of the dialog. A field that holds the
// keyboard focus would swallow every key release and move its own cursor with the arrows: it hands them to the dialog
// instead, which decides and passes the presses on to the keyboard.
class TextEntry : public QObject {
    Q_OBJECT
public:
    explicit TextEntry(QDialog *dialog);

    // Makes `field` an entry field of the dialog, read-only until its first key.
    void add(QLineEdit *field);

    static void setPromptStyle(QLineEdit *field); // idle, grey text
    static void setTypingStyle(QLineEdit *field); // focused, black text

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QObject *const m_dialog; // the parent; a plain object while it is being destroyed
};
