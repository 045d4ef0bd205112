#pragma once

#include "servicecheck.h"
#include "servicehealth.h"
#include "servicesearch.h"
#include "settingpane.h"

#include <optional>

namespace home {

// Which service the radio uses. Services of this network are offered; one becomes the radio's only when a person has
// seen its name, its address and what speaks for it, and has said yes.
class ServicePane : public SettingPane {
    Q_OBJECT
public:
    ServicePane(const QDBusConnection &bus, platform::DeviceSettingsWatch *settings, QObject *parent);

    // A service that is chosen starts the radio.
    void setFirst(bool isFirst) { m_isFirst = isFirst; }
    void open() override;
    void close() override;
    int depth() const override { return m_offer ? 1 : 0; }
    bool goBack() override;
    // What a person types becomes an address: without a scheme it is http in the house and https elsewhere.
    static QString completed(const QString &typed);

protected:
    QList<PaneRow> makeRows() override;

private:
    struct Offer {
        FoundService service;
        ServiceCheck::Outcome outcome;
    };
    void test();
    void askForAddress();
    // False, with the pane's text saying why, when it could not be written. `authority`: a file; empty: the usual ones.
    bool use(const QString &address, const QString &authority);
    QList<PaneRow> foundRows(const ServicePlace &place);
    QList<PaneRow> offerRows();
    void offer(const FoundService &service, const ServiceCheck::Outcome &outcome);
    void accept();

    ServiceHealth m_health;
    ServiceSearch m_search;
    ServiceCheck m_check;
    FoundService m_asked;         // what m_check looks at
    std::optional<Offer> m_offer; // which is being answered
    bool m_isFirst = false;
};

} // namespace home
