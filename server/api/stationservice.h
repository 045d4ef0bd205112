#pragma once

#include "server/accounts/activationcodes.h"
#include "server/accounts/devices.h"
#include "server/accounts/houserules.h"
#include "server/accounts/sessions.h"
#include "server/accounts/signups.h"
#include "server/api/mediaaddresses.h"
#include "server/catalogue/catalogue.h"
#include "server/catalogue/search.h"
#include "server/stations/feedback.h"
#include "server/stations/plays.h"
#include "server/store/repeatedtask.h"
#include "server/store/store.h"

namespace velmora::server {

// A mail that no mail server has taken.
struct KeptMail {
    std::string name;      // among the kept ones
    int64_t writtenAt = 0; // Unix seconds
    std::string recipient;
    std::string subject;
    std::string text; // what a person reads, with the link
};

// Sends the service's mails. All functions return at once; whether a mail was sent is not reported.
class Mailer {
public:
    virtual ~Mailer() = default;
    // Has the mailer's thread do it: what is mailed to whom depends on who has an account, and neither the answer to a
    // request nor its time may tell. False when too much waits. The job throws nothing.
    virtual bool later(std::function<void()> job) = 0;
    // The link makes the account.
    virtual void sendSignUp(const std::string &address, const std::string &token) = 0;
    // To somebody who signs up with the address of an account.
    virtual void sendHasAccount(const std::string &address) = 0;
    // The link gives the account this address in place of its own.
    virtual void sendNewAddress(const std::string &address, const std::string &token) = 0;
    // To the address that was replaced.
    virtual void sendAddressChanged(const std::string &address) = 0;
    // The token becomes part of a link in the mail, which is the only copy of it.
    virtual void sendPasswordReset(const std::string &address, const std::string &token) = 0;
    virtual void sendPinRescue(const std::string &address, const std::string &token) = 0;

    // How many mails wait to be sent. Any thread.
    virtual size_t waiting() { return 0; }
    // False: every mail is kept for the owner of the service to pass on.
    virtual bool hasServer() const { return true; }
    // The kept ones, the newest first, a hundred at most. From any thread.
    virtual std::vector<KeptMail> kept() const { return {}; }
    // False when none is called so.
    virtual bool forget(const std::string &) { return false; }
};

inline constexpr int64_t resetSeconds = 3600; // the life of links for a new password or PIN

class Library;

struct ServiceSettings {
    std::filesystem::path dataDirectory; // created with access for its owner only, if it does not exist
    std::string database;                // of accounts: a PostgreSQL's address; empty: a file in the folder
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

    Store store; // of accounts and what belongs to them

private:
    std::filesystem::path databaseFile() const;
    std::optional<Store> m_catalogueFile; // where accounts are elsewhere

public:
    Store &catalogueStore; // of the music; the same store where accounts are in its file
    PasswordHasher hasher;
    Accounts accounts;
    Sessions sessions;
    SignUps signUps;
    HouseRules house;
    Devices devices;
    ActivationCodes activationCodes;
    Catalogue catalogue;
    Search search;
    SealedTokens tokens;
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
    // When set, nothing can be changed: functions that write answer 5096, pages say so. What listening itself writes
    // (sessions, lists, plays) is still written. Set before the server answers.
    bool isUnderMaintenance = false;

    // Makes an account at once, with its Tapestry station and its starter stations: for the service's own purposes.
    CreateResult createAccount(const std::string &userName, const std::string &password, const Profile &profile,
                               AccountId *id);
    // Sends the address a mail: a link that makes the account, or word that there is one. Sets the hash of the password
    // itself. False when too many mails wait, or there is no mailer. checkNew() was Done.
    bool signUp(SignUp signUp, const std::string &password);
    // The link was opened: makes the account of the token. Nothing when the token is not valid, its invitation is used
    // up, or nobody may sign up any more; 0 when the address has got an account meanwhile.
    std::optional<AccountId> finishSignUp(const std::string &token);
    // Mails the account of this name a link for a new password, if there is one. False as signUp().
    bool remind(const std::string &userName);
    // Mails the new address a link that makes it the account's, or word that it has an account. False as signUp().
    bool changeAddress(AccountId account, const std::string &address);
    // A random key, created once and kept in the store.
    std::string keptKey(const std::string &name);

private:
    CreateResult create(const SignUp &signUp, AccountId *id);
    void keepDays();
    void mailSignUp(const SignUp &signUp);
    void mailReminder(const std::string &userName);
    void mailNewAddress(AccountId account, const std::string &address);

    RateLimit m_signUpsToAddress{3, std::chrono::hours(1)};
    RateLimit m_remindersToAccount{3, std::chrono::hours(1)};
    std::optional<RepeatedTask> m_upkeep; // ends before everything else
};

} // namespace velmora::server
