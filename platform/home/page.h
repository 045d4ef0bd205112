#pragma once

#include "answer.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace home {

// A full-screen page on the canvas of 1280 x 720, with a panel and a strip of key hints, in the look of the radio.
class Page : public QWidget {
    Q_OBJECT
public:
    Page();

    // The style sheet of the whole program.
    static QString styleSheet();

signals:
    void finished(home::Answer answer);
    void languageChanged(); // its texts and places are still the old ones

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    // Pages call it first.
    void keyPressEvent(QKeyEvent *event) override;
    // Whether this release ends a press that came to this page, too. The release alone may belong to a press that has
    // just closed another page.
    bool endsPress(const QKeyEvent *event);

    // Where something lies: mirrored where the language is written from right to left.
    QRect placed(const QRect &where) const;

    // The page's children belong to it. Fonts in points at 96 dots per inch.
    QLabel *addLabel(const char *name, const QRect &where, int points, bool isBold = false);
    QPushButton *addButton(const char *name, const QString &text, const QRect &where);
    // One cap of the strip at `x`; its picture is one of the resources.
    QLabel *addHint(const char *name, const char *picture, const QString &text, int x, int width);

private:
    int m_pressed = 0; // key code of the last press, until its release
};

} // namespace home
