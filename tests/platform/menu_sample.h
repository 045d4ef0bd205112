#pragma once

#include <QDialog>

class QListWidget;

// The screens of a small program that stands where the radio stands: it says on standard output what reaches it.
class SampleDlg : public QDialog {
    Q_OBJECT
public:
    SampleDlg();

public slots:
    void handleExit(bool isFromParent, bool isSystemError);
    void handleScreenSaver(bool fgEnter);

signals:
    void signalResponseParent(int type);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    QListWidget *m_list;
};

class SampleBoxDlg : public QDialog {
    Q_OBJECT
public:
    explicit SampleBoxDlg(QWidget *parent);

protected:
    void keyReleaseEvent(QKeyEvent *event) override;
};
