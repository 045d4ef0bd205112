#pragma once

#include "server/accounts/activationcodes.h"
#include "server/accounts/devices.h"
#include "server/accounts/sessions.h"
#include "server/api/mediaaddresses.h"
#include "server/catalogue/catalogue.h"
#include "server/catalogue/search.h"
#include "server/stations/feedback.h"
#include "server/stations/plays.h"
#include "server/store/store.h"

namespace velmora::server {

// Sends the service's mails. Both functions return at once; whether a mail was sent is not reported.
class Mailer {
public:
    virtual ~Mailer() = default;
    // The token becomes part of a link in the mail, which is the only copy of it.
    virtual void sendPasswordReset(const std::string &address, const std::string &token) = 0;
    virtual void sendPinRescue(const std::string &address, const std::string &token) = 0;
};

class Library;

struct ServiceSettings {
    std::filesystem::path dataDirectory; // created with access for its owner only, if it does not exist
    TokenLifetimes lifetimes;
    PasswordCost passwordCost;
    Clock clock = systemClock();
    Random random = randomBelow;
    // How long a playlist request waits for the station's own music while the catalogue is still being made.
    std::chrono::milliseconds patience{8000};
};

// The whole service without a network: the object that the functions, the media, the pages
// and the demo catalogue use. Its parts may be used from any thread.
class StationService {
    // The first members: the others need the directory and the library for secrets.
    struct Ground {
        explicit Ground(const ServiceSettings &settings);
        std::filesystem::path directory;
    } m_ground;

public:
    // Throws StoreError or std::runtime_error, with a text for the person who started the program.
    explicit StationService(const ServiceSettings &settings);

    const std::filesystem::path &dataDirectory() const { return m_ground.directory; }

    Store store;
    PasswordHasher hasher;
    Accounts accounts;
    Sessions sessions;
    Devices devices;
    ActivationCodes activationCodes;
    Catalogue catalogue;
    Search search;
    MusicTokens musicTokens;
    Stations stations;
    Playlists playlists;
    Feedback feedback;
    Plays plays;
    MediaAddresses addresses;

    // Not owned; set before the server answers. Without one, functions that send mail fail.
    Mailer *mailer = nullptr;
    // Not owned; set before the server answers. Null without own music.
    Library *library = nullptr;
    const Clock clock;
    const std::chrono::milliseconds patience;
    // When set, everything that writes answers 5096. Set before the server answers.
    bool isUnderMaintenance = false;

    // Makes an account, its Tapestry station and its starter stations.
    CreateResult createAccount(const std::string &userName, const std::string &password, const Profile &profile,
                               AccountId *id);

private:
    // A random key, created once and kept in the store.
    std::string keptKey(const std::string &name);
};

} // namespace velmora::server
