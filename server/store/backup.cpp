#include "server/store/backup.h"

#include "server/store/database.h"
#include "server/store/datafolder.h"
#include "server/store/migrations.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

namespace fs = std::filesystem;

constexpr std::array smallFiles = {"demo-account.txt"};
// SQLite's header: its name, and the versions for writing and reading, which are 1 in a file that is whole by itself.
constexpr std::string_view magic("SQLite format 3\0", 16);
constexpr size_t versionAt = 18;

[[noreturn]] void fail(const std::string &what)
{
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

void syncFile(const fs::path &file)
{
    const int handle = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isSynced = handle >= 0 && ::fsync(handle) == 0;
    const int problem = errno;
    if (handle >= 0)
        ::close(handle);
    errno = problem;
    if (!isSynced)
        fail("cannot write " + file.string());
}

void writePrivately(const fs::path &file, const std::string &content)
{
    ::unlink(file.c_str());
    const int handle = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    const bool isWritten =
        handle >= 0 && ::write(handle, content.data(), content.size()) == static_cast<ssize_t>(content.size());
    const int problem = errno;
    if (handle >= 0)
        ::close(handle);
    errno = problem;
    if (!isWritten)
        fail("cannot write " + file.string());
    syncFile(file);
}

void removeDatabase(const fs::path &file)
{
    for (const char *suffix : {"", "-wal", "-shm", "-journal"})
        ::unlink((file.string() + suffix).c_str());
}

// Removes what is left of an unfinished database.
struct Unfinished {
    const fs::path file;
    ~Unfinished() { removeDatabase(file); }
};

void checkIntegrity(Database &db)
{
    Statement row = db.prepare("PRAGMA integrity_check(1)");
    if (!row.step() || row.text(0) != "ok")
        throw StoreError(row.text(0));
}

// A database that is whole; `name` is how the person calls it.
std::unique_ptr<Database> openWhole(const fs::path &file, const fs::path &name)
{
    try {
        auto db = std::make_unique<Database>(file);
        checkIntegrity(*db);
        return db;
    } catch (const StoreError &error) {
        throw std::runtime_error(name.string() + " is damaged: " + error.what());
    }
}

// A file that is no backup must not be opened as a database: that may change it.
void checkHeader(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        fail("cannot read " + file.string());
    std::array<char, 20> header{};
    stream.read(header.data(), header.size());
    if (std::string_view(header.data(), magic.size()) != magic || header[versionAt] != 1 || header[versionAt + 1] != 1)
        throw std::runtime_error(file.string() + " is no backup: velmora-server backup makes them");
}

// A name for a folder that does not exist yet.
fs::path freshFolder(const fs::path &dataFolder)
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> time{};
    std::strftime(time.data(), time.size(), "%Y%m%d-%H%M%S", &parts);
    fs::path folder = dataFolder / (std::string("before-restore-") + time.data());
    for (int number = 2; fs::exists(folder); ++number)
        folder = dataFolder / (std::string("before-restore-") + time.data() + "-" + std::to_string(number));
    return folder;
}

// Pictures of albums that are not on this machine are looked for again.
void forgetMissingPictures(Database &db)
{
    std::vector<std::pair<int64_t, std::string>> missing;
    {
        Statement row = db.prepare("SELECT DISTINCT album_id, picture_path FROM tracks WHERE picture_path <> ''");
        while (row.step()) {
            std::error_code error;
            if (!fs::exists(row.text(1), error))
                missing.emplace_back(row.integer(0), row.text(1));
        }
    }
    for (const auto &[album, picture] : missing) {
        db.run("UPDATE tracks SET picture_path = '' WHERE album_id = ?1 AND picture_path = ?2", album, picture);
        db.run("UPDATE albums SET is_cover_looked_for = 0 WHERE id = ?1", album);
    }
}

} // namespace

void writeBackup(const fs::path &dataFolder, const fs::path &file)
{
    const fs::path database = dataFolder / DataFolder::databaseName;
    const fs::path folder = fs::absolute(file).parent_path();
    std::error_code error;
    if (!fs::exists(database, error))
        throw std::runtime_error("there is nothing to back up in " + dataFolder.string());
    if (!fs::is_directory(folder, error))
        throw std::runtime_error("there is no folder " + folder.string());
    if (fs::equivalent(folder, dataFolder, error))
        throw std::runtime_error("a backup does not belong into the data folder");
    const Unfinished part{file.string() + ".part"};
    removeDatabase(part.file);
    {
        Database copy(part.file);
        {
            Database source(database);
            source.copyTo(copy);
        }
        checkIntegrity(copy);
        // The file is synced as a whole below.
        copy.execute("PRAGMA journal_mode = DELETE; PRAGMA synchronous = OFF; CREATE TABLE backup_files (name TEXT "
                     "PRIMARY KEY, content BLOB NOT NULL) WITHOUT ROWID;");
        for (const char *name : smallFiles) {
            std::ifstream stream(dataFolder / name, std::ios::binary);
            const std::string content{std::istreambuf_iterator<char>(stream), {}};
            if (stream)
                copy.run("INSERT INTO backup_files (name, content) VALUES (?1, ?2)", name, Blob{content});
        }
    }
    syncFile(part.file);
    if (::rename(part.file.c_str(), file.c_str()) != 0)
        fail("cannot write " + file.string());
    syncFolder(folder);
}

fs::path restoreBackup(const fs::path &file, const fs::path &dataFolder)
{
    checkHeader(file);
    const fs::path database = dataFolder / DataFolder::databaseName;
    const Unfinished restored{database.string() + ".restored"};
    removeDatabase(restored.file);
    writePrivately(restored.file, {});
    fs::copy_file(file, restored.file, fs::copy_options::overwrite_existing);
    fs::permissions(restored.file, fs::perms::owner_read | fs::perms::owner_write);
    std::vector<std::pair<std::string, std::string>> files;
    {
        const std::unique_ptr<Database> opened = openWhole(restored.file, file);
        Database &db = *opened;
        {
            Statement row = db.prepare("SELECT 1 FROM sqlite_master WHERE name = 'backup_files'");
            if (!row.step())
                throw std::runtime_error(file.string() + " is no backup: velmora-server backup makes them");
        }
        if (schemaVersion(db) > newestSchemaVersion())
            throw std::runtime_error(file.string() + " is of a newer velmora-server");
        {
            Statement row = db.prepare("SELECT name, content FROM backup_files");
            while (row.step())
                files.emplace_back(row.text(0), row.blob(1));
        }
        db.execute("DROP TABLE backup_files");
        migrate(db);
        forgetMissingPictures(db);
    } // closed: whole without a log beside it
    syncFile(restored.file);

    fs::path aside;
    if (fs::exists(database)) {
        aside = freshFolder(dataFolder);
        if (::mkdir(aside.c_str(), 0700) != 0)
            fail("cannot make " + aside.string());
        try {
            // Brings the log into the database. One that is damaged is put aside as it is.
            Database(database).execute("PRAGMA wal_checkpoint(TRUNCATE)");
        } catch (const StoreError &) {
        }
        // The log goes first: it must never lie beside another database. The database keeps its place until the other
        // one takes it.
        for (const char *log : {"-wal", "-shm"}) {
            if (::rename((database.string() + log).c_str(),
                         (aside / (std::string(DataFolder::databaseName) + log)).c_str()) != 0 &&
                errno != ENOENT)
                fail("cannot put aside " + database.string() + log);
        }
        if (::link(database.c_str(), (aside / DataFolder::databaseName).c_str()) != 0)
            fail("cannot put aside " + database.string());
        for (const char *name : smallFiles)
            ::rename((dataFolder / name).c_str(), (aside / name).c_str());
        syncFolder(aside);
    }
    if (::rename(restored.file.c_str(), database.c_str()) != 0)
        fail("cannot write " + database.string());
    for (const auto &[name, content] : files) {
        if (fs::path(name).filename() == name) // a name, never a path
            writePrivately(dataFolder / name, content);
    }
    syncFolder(dataFolder);
    return aside;
}

} // namespace velmora::server
