#include "servicepane.h"

#include "servicewait.h"

namespace home {

ServicePane::ServicePane(platform::DeviceSettingsWatch *settings, QObject *parent)
    : SettingPane(tr("Service"), {}, {}, settings, parent)
    , m_health(this)
{
    connect(&m_health, &ServiceHealth::answered, this,
            [this](ServiceHealth::Result result) { setText(ServiceHealth::wordsFor(result)); });
}

void ServicePane::open()
{
    SettingPane::open();
    test();
}

QString ServicePane::completed(const QString &typed)
{
    QString text = typed.trimmed();
    if (text.isEmpty() || text.contains(QLatin1String("://")))
        return text;
    const QString plain = QStringLiteral("http://") + text;
    return isInTheHouse(plain) ? plain : QStringLiteral("https://") + text;
}

QList<PaneRow> ServicePane::makeRows()
{
    const QString own = settings().value("service/address").toString();
    const ServicePlace place = configuredService(own);
    QList<PaneRow> rows = {{tr("Address"), place.address.isEmpty() ? tr("none") : place.address},
                           {tr("Test it"), {}, false, [this] { test(); }}};
    if (place.isFixed)
        rows += PaneRow{tr("The radio was started for this service"), {}};
    else
        rows += PaneRow{tr("Use another one"), {}, false, [this] { askForAddress(); }};
    if (!place.isFixed && !own.isEmpty())
        rows += PaneRow{tr("Use the one of this device"), {}, false, [this] {
                            set(QStringLiteral("service/address"), QString());
                            test();
                        }};
    return rows;
}

void ServicePane::test()
{
    setText(tr("Asking the service..."));
    m_health.ask(configuredService(settings().value("service/address").toString()));
}

void ServicePane::askForAddress()
{
    emit asks({tr("Address of the service"), settings().value("service/address").toString(), false,
               [this](const QString &typed) {
                   set(QStringLiteral("service/address"), completed(typed));
                   if (configuredService(settings().value("service/address").toString()).address == completed(typed))
                       test();
               }});
}

} // namespace home
