#pragma once

#include <QString>
#include <QWidget>

#if defined(__GNUC__)
#define QTVIRTUALKB_EXPORT __attribute__((visibility("default")))
#else
#define QTVIRTUALKB_EXPORT
#endif

class QLineEdit;

// The on-screen keyboard: a child widget of the dialog that it types for. It is driven by the remote's arrow and
// Select keys, which it takes from the dialog and from the bound field, and by a PC keyboard's letters. GUI thread
// only.
class QTVIRTUALKB_EXPORT QtVirtualKbDlg : public QWidget {
    Q_OBJECT
public:
    explicit QtVirtualKbDlg(QWidget *parent);
    ~QtVirtualKbDlg() override;

    // Binds the keyboard to `field` (not owned). `fgPrompt`: the field shows a prompt that the first key replaces.
    void enableLineEdit(QLineEdit *field, bool fgPrompt);
    // Shows the keyboard. `fgAnimated` is accepted and without effect.
    void showWindow(bool fgAnimated);
    // Takes the highlight away; keys are no longer taken.
    void loseFocus();
    void restoreFocus();
    // The highlight stands on a right-most key, so that a further Right leaves the keyboard.
    bool isLastKey() const;

    // The green key means something on the page that shows (letters).
    bool m_isModeAble = true;

public slots:
    void changePage();
    void changeMode();

signals:
    // The text was confirmed. Empty while the field shows its prompt.
    void signalSendContext(QString content);
    // The field has become empty; the keyboard is back in prompt state.
    void signalRestoreInitState();
    // The first key after prompt state; raised before the character is typed.
    void signalFirstKey();
    // 1 letters, 2 symbols and digits.
    void signalPageNum(int pageNum);
    // false while a message box covers the dialog, true when it is gone.
    void signalChangeHighlight(bool highlight);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    Private *d;
};
