// The reference: a minimal full-screen Qt program, one window of 1280 x 720 with one picture.
#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

class BareWindow : public QWidget {
    Q_OBJECT
public:
    BareWindow()
        : m_picture(QStringLiteral(":/images/Main_Bg.png"))
    {
        setWindowFlags(Qt::FramelessWindowHint);
        setFixedSize(1280, 720);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.drawPixmap(rect(), m_picture);
    }

private:
    const QPixmap m_picture;
};

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    BareWindow window;
    window.show();
    return QApplication::exec();
}

#include "barewindow.moc"
