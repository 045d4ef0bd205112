#pragma once

#include <QByteArray>
#include <QWidget>

// A text that the camera of a telephone reads: dark modules on a white square, with the margin that cameras need. Shows
// nothing for an empty text, and for one that is too long to be read from a sofa.
class QrCode : public QWidget {
    Q_OBJECT
public:
    explicit QrCode(QWidget *parent);

    void setText(const QByteArray &text); // UTF-8
    bool isEmpty() const { return m_width == 0; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QByteArray m_modules; // line by line; 1: dark
    int m_width = 0;      // modules in a line, without the margin
};
