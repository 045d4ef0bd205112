// Linked into a separate build of the radio. Shows the screens that no key and no reply opens, one after the other,
// over the player. VELMORA_GALLERY names them, separated by commas: about, info, reminder.

#include "app/screenfactory.h"
#include "app/velmoraparentwidget.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>

namespace {

class Gallery : public QObject {
public:
    explicit Gallery(QObject *parent)
        : QObject(parent)
        , m_names(qEnvironmentVariable("VELMORA_GALLERY").split(u',', Qt::SkipEmptyParts))
    {
        connect(&m_timer, &QTimer::timeout, this, &Gallery::showNext);
        m_timer.start(200);
    }

private:
    static VelmoraParentWidget *player()
    {
        for (QWidget *window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->inherits("VelmoraMainDlg"))
                return static_cast<VelmoraParentWidget *>(window);
        return nullptr;
    }

    void showNext()
    {
        const QPointer<VelmoraParentWidget> screen = player();
        if (m_names.isEmpty() || !screen || screen != QApplication::activeWindow())
            return;
        const QString name = m_names.takeFirst();
        if (name == QLatin1String("about"))
            QMetaObject::invokeMethod(screen, "showAboutVelmora");
        else if (name == QLatin1String("info"))
            screen->showMsgbox(MSG_INFO, tr("The kitchen radio plays the same station now."));
        else if (name == QLatin1String("reminder"))
            ScreenFactory::instance()->emailPassword()->show();
    }

    QStringList m_names;
    QTimer m_timer;
};

void openGallery()
{
    new Gallery(QCoreApplication::instance());
}

Q_COREAPP_STARTUP_FUNCTION(openGallery)

} // namespace
