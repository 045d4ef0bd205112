#include "servicepane.h"

#include "servicewait.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QSaveFile>

#include <utility>

namespace home {

namespace {

// Keeps what a person trusts beside the settings; empty, with a reason, when it cannot be written. A name of its own
// for each, so that nothing changes for the service that counts until now.
QString keep(const QByteArray &authority, const QString &settingsFile, QString *reason)
{
    const QByteArray name = QCryptographicHash::hash(authority, QCryptographicHash::Sha256).toHex().left(16);
    QString path =
        QFileInfo(settingsFile).absolutePath() + QStringLiteral("/service-%1.pem").arg(QString::fromLatin1(name));
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(authority) == authority.size() && file.commit())
        return path;
    *reason = QStringLiteral("%1: %2").arg(path, file.errorString());
    return {};
}

} // namespace

ServicePane::ServicePane(const QDBusConnection &bus, platform::DeviceSettingsWatch *settings, QObject *parent)
    : SettingPane(tr("Service"), {}, {}, settings, parent)
    , m_health(this)
    , m_search(bus, this)
    , m_check(this)
{
    connect(&m_health, &ServiceHealth::answered, this, [this](ServiceHealth::Result result) {
        if (m_offer)
            return;
        setText(result == ServiceHealth::Result::NoAddress
                    ? tr("No service is set up. Choose the one of your house, or type its address.")
                    : ServiceHealth::wordsFor(result));
    });
    connect(&m_search, &ServiceSearch::changed, this, [this] {
        if (!m_offer)
            refresh();
    });
    connect(&m_check, &ServiceCheck::done, this,
            [this](const ServiceCheck::Outcome &outcome) { offer(m_asked, outcome); });
}

void ServicePane::open()
{
    m_search.start();
    SettingPane::open();
    test();
}

void ServicePane::close()
{
    m_check.stop();
    m_search.stop();
    m_offer.reset();
}

bool ServicePane::goBack()
{
    m_check.stop();
    if (!m_offer)
        return false;
    m_offer.reset();
    refresh();
    test();
    return true;
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
    if (m_offer)
        return offerRows();
    const QString own = settings().value("service/address").toString();
    const ServicePlace place = configuredService(settings());
    QList<PaneRow> rows = {{tr("Address"), place.address.isEmpty() ? tr("none") : place.address},
                           {tr("Test it"), {}, false, [this] { test(); }}};
    if (place.isFixed) {
        rows += PaneRow{tr("The radio was started for this service"), {}};
        return rows;
    }
    const QList<PaneRow> found = foundRows(place);
    if (m_isFirst)
        rows = found + rows;
    rows += PaneRow{tr("Use another one"), {}, false, [this] { askForAddress(); }};
    if (!own.isEmpty())
        rows += PaneRow{tr("Use the one of this device"), {}, false, [this] {
                            if (use({}, {}))
                                test();
                        }};
    return m_isFirst ? rows : rows + found;
}

QList<PaneRow> ServicePane::foundRows(const ServicePlace &place)
{
    QList<PaneRow> rows;
    for (const FoundService &service : m_search.found()) {
        const bool isPresent = place.address == service.url(true) || place.address == service.url(false);
        rows += PaneRow{service.name, service.address, isPresent, [this, service] {
                            m_asked = service;
                            setText(tr("Asking the service..."));
                            m_check.start(service);
                        }};
    }
    return rows;
}

QList<PaneRow> ServicePane::offerRows()
{
    QList<PaneRow> rows = {{tr("Address"), m_offer->outcome.address}};
    if (!m_offer->service.name.isEmpty())
        rows.prepend({m_offer->service.name, {}});
    // Eight bytes in a row, left to right in every language.
    constexpr int perRow = 8 * 3;
    const QString &print = m_offer->outcome.fingerprint;
    for (int at = 0; at < print.size(); at += perRow)
        rows += PaneRow{at == 0 ? tr("Fingerprint") : QString(), QChar(0x200E) + print.mid(at, perRow - 1)};
    rows += {PaneRow{tr("Use this service"), {}, false, [this] { accept(); }},
             PaneRow{tr("Do not use it"), {}, false, [this] { goBack(); }}};
    return rows;
}

void ServicePane::offer(const FoundService &service, const ServiceCheck::Outcome &outcome)
{
    const bool isTyped = service.name.isEmpty();
    // Whoever has typed an address has chosen it, also that of a service that is not up yet. Only a certificate that
    // nothing speaks for leaves a question.
    if (isTyped && outcome.fingerprint.isEmpty() && outcome.result != ServiceHealth::Result::NotTrusted) {
        if (use(outcome.address, {}))
            setText(ServiceHealth::wordsFor(outcome.result));
        return;
    }
    if (outcome.result != ServiceHealth::Result::Healthy) {
        setText(ServiceHealth::wordsFor(outcome.result));
        return;
    }
    m_offer = Offer{service, outcome};
    refresh();
    if (!outcome.fingerprint.isEmpty())
        setText(tr("Compare the fingerprint with the one on the service's own page, /house. If they differ, something "
                   "else pretends to be the service."));
    else if (service.isEncrypted)
        setText(tr("The service answers, and its certificate is valid."));
    else
        setText(tr("The service answers, but it is not encrypted: everybody in this network could read along."));
}

void ServicePane::accept()
{
    const Offer accepted = *std::exchange(m_offer, std::nullopt);
    QString authority;
    QString reason;
    const QByteArray &pem = accepted.outcome.authority;
    if (!pem.isEmpty())
        authority = keep(pem, file(), &reason);
    refresh();
    if (!reason.isEmpty()) {
        setText(SettingPane::tr("This cannot be changed. %1").arg(reason));
        return;
    }
    if (!use(accepted.outcome.address, authority))
        return;
    test();
    if (m_isFirst)
        emit answered(Answer::StartRadio);
}

bool ServicePane::use(const QString &address, const QString &authority)
{
    return set(QStringLiteral("service/authority"), authority) && set(QStringLiteral("service/address"), address);
}

void ServicePane::test()
{
    setText(tr("Asking the service..."));
    m_health.ask(configuredService(settings()));
}

void ServicePane::askForAddress()
{
    emit asks({tr("Address of the service"), settings().value("service/address").toString(), false,
               [this](const QString &typed) {
                   // What is trusted belongs to one service.
                   const QString address = completed(typed);
                   const bool isSame = address == settings().value("service/address").toString();
                   if (!isSame && address.startsWith(QLatin1String("https://"))) {
                       m_asked = {};
                       setText(tr("Asking the service..."));
                       m_check.start(address);
                   } else if (isSame || use(address, {})) {
                       test();
                   }
               }});
}

} // namespace home
