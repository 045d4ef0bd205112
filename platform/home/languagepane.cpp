#include "languagepane.h"

#include "languages.h"

namespace home {

namespace {

QList<SettingPane::Choice> choices()
{
    QList<SettingPane::Choice> all = {
        {LanguagePane::tr("As the system is set up"), "language/locale", QStringLiteral("")}};
    for (const Language &language : languages())
        all += {language.name, "language/locale", language.locale};
    return all;
}

} // namespace

LanguagePane::LanguagePane(const QDBusConnection &bus, platform::DeviceSettingsWatch *settings, QObject *parent)
    : SettingPane(tr("Language and region"),
                  tr("The language of all texts, and how dates, times and numbers are written."), choices(), settings,
                  parent)
    , m_zone(bus, this)
{
    connect(&m_zone, &TimeZone::changed, this, [this] {
        showZones(false, {});
        if (!m_zone.mayChange())
            setText(text() + u' ' + tr("The time zone is that of the system."));
    });
    connect(&m_zone, &TimeZone::failed, this, [this](const QString &why) {
        showZones(false, {});
        setText(tr("The time zone cannot be changed. %1").arg(why));
    });
}

void LanguagePane::open()
{
    showZones(false, {});
    m_zone.ask();
}

void LanguagePane::showZones(bool isOpen, const QString &area)
{
    m_isZoneOpen = isOpen;
    m_area = area;
    refresh();
    showUsualText();
}

bool LanguagePane::goBack()
{
    if (!m_isZoneOpen)
        return false;
    showZones(!m_area.isEmpty(), {});
    return true;
}

QList<PaneRow> LanguagePane::makeRows()
{
    if (m_isZoneOpen)
        return zoneRows();
    const QString place = TimeZone::placeOf(m_zone.name());
    PaneRow zone{tr("Time zone"), place.isEmpty() ? m_zone.name() : place};
    if (m_zone.mayChange())
        zone.choose = [this] { showZones(true, {}); };
    return QList<PaneRow>{zone} + SettingPane::makeRows();
}

QList<PaneRow> LanguagePane::zoneRows()
{
    QList<PaneRow> rows;
    for (const QString &zone : TimeZone::all()) {
        const QString area = TimeZone::areaOf(zone);
        const bool isPlace = zone != area;
        const bool isOwnArea = area == TimeZone::areaOf(m_zone.name());
        if (!m_area.isEmpty() && area == m_area)
            rows += PaneRow{TimeZone::placeOf(zone), {}, zone == m_zone.name(), [this, zone] { m_zone.set(zone); }};
        else if (m_area.isEmpty() && (rows.isEmpty() || rows.last().text != area))
            rows += PaneRow{area, {}, isOwnArea, [this, area, isPlace] {
                                if (isPlace)
                                    showZones(true, area);
                                else
                                    m_zone.set(area);
                            }};
    }
    return rows;
}

} // namespace home
