#pragma once

#include <QObject>

class QDialog;
class QLineEdit;

// Makes line edits work as the entry fields of a dialog with an on-screen keyboard; a child of the dialog. A line edit
// that has the focus would consume every key release and move its cursor with the arrows. This filter gives those keys
// to the dialog instead, which passes the presses on to the keyboard.
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
    QObject *const m_dialog; // the parent; no longer a QDialog while it is being destroyed
};
