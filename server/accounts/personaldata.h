#pragma once

#include "server/accounts/accounts.h"

#include <cstdio>
#include <filesystem>

namespace velmora::server {

// Everything that is stored about a person: for them to take along, or to be gone. Any thread; both take the store's
// lock in pieces.
class PersonalData {
public:
    // `music`: the store of the tracks that accounts refer to.
    PersonalData(Store &store, Store &music)
        : m_store(store)
        , m_music(music)
    {
    }

    // One JSON object in UTF-8, times in UTC, without hashes and keys. Writes a file that is its owner's
    // only. False when there is no such account, or the disk takes no more.
    bool write(AccountId account, const std::filesystem::path &file);
    // The account, its radios, sessions, stations, thumbs and plays, also what the database file still held of them.
    // An end in the middle leaves an account with less history, which can be removed again. False: no such account.
    bool remove(AccountId account);

private:
    void writeShared(AccountId account, std::FILE *out);

    Store &m_store;
    Store &m_music;
};

} // namespace velmora::server
