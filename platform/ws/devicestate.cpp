#include "devicestate.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/if_arp.h>
#include <mutex>
#include <sodium.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace velmora::ws {

namespace fs = std::filesystem;

namespace {

constexpr char fileName[] = "device";
constexpr char header[] = "velmora-ws-state 1";
constexpr std::size_t keyLength = 43;
constexpr std::size_t maxFileSize = 4096;

class Descriptor {
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    {
    }
    ~Descriptor()
    {
        if (m_fd >= 0)
            close(m_fd);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int get() const { return m_fd; }
    bool isOpen() const { return m_fd >= 0; }

private:
    int m_fd;
};

SecretText randomKey()
{
    unsigned char bytes[32];
    randombytes_buf(bytes, sizeof bytes);
    SecretText key(sodium_base64_ENCODED_LEN(sizeof bytes, sodium_base64_VARIANT_URLSAFE_NO_PADDING), '\0');
    sodium_bin2base64(key.data(), key.size(), bytes, sizeof bytes, sodium_base64_VARIANT_URLSAFE_NO_PADDING);
    key.resize(keyLength); // without the NUL
    wipe(bytes, sizeof bytes);
    return key;
}

bool isKey(std::string_view text)
{
    unsigned char bytes[32];
    std::size_t length = 0;
    const char *end = nullptr;
    const bool isRead =
        text.size() == keyLength && sodium_base642bin(bytes, sizeof bytes, text.data(), text.size(), nullptr, &length,
                                                      &end, sodium_base64_VARIANT_URLSAFE_NO_PADDING) == 0;
    wipe(bytes, sizeof bytes);
    return isRead && length == sizeof bytes && end == text.data() + text.size();
}

// Reads 12 hexadecimal digits, with or without colons between pairs. Refuses the address of a group.
std::optional<HardwareAddress> parseAddress(std::string_view text)
{
    HardwareAddress address{};
    std::size_t length = 0;
    const char *end = nullptr;
    if (sodium_hex2bin(address.data(), address.size(), text.data(), text.size(), ":", &length, &end) != 0 ||
        length != address.size() || end != text.data() + text.size())
        return {};
    const bool isGroup = address[0] & 1;
    if (sodium_is_zero(address.data(), address.size()) || isGroup)
        return {};
    return address;
}

HardwareAddress randomAddress()
{
    HardwareAddress address{};
    randombytes_buf(address.data(), address.size());
    address[0] = static_cast<unsigned char>((address[0] & 0xfc) | 0x02); // locally administered, a single device
    return address;
}

std::string firstLine(const fs::path &file)
{
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

struct Found {
    std::optional<HardwareAddress> address;
    SecretText key; // empty: not there
    bool isDamaged = false;
    struct stat file {}; // where it was found
};

Found parseState(std::string_view text)
{
    Found found;
    bool isFirst = true;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (isFirst)
            found.isDamaged = line != header;
        else if (line.starts_with("mac="))
            found.address = parseAddress(line.substr(4));
        else if (line.starts_with("key=") && isKey(line.substr(4)))
            found.key = line.substr(4);
        isFirst = false;
    }
    found.isDamaged = found.isDamaged || !found.address || found.key.empty();
    return found;
}

void complain(const fs::path &path, const char *what)
{
    std::fprintf(stderr, "libvelmora_ws: %s: %s; the device's state holds for this process only\n", path.c_str(), what);
}

// Makes the folder, or takes one that this user owns. Only the owner may use it afterwards.
bool prepareFolder(const fs::path &folder)
{
    std::error_code error;
    fs::create_directories(folder.parent_path(), error);
    if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        complain(folder, std::strerror(errno));
        return false;
    }
    const Descriptor fd(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat info {};
    if (!fd.isOpen() || fstat(fd.get(), &info) != 0) {
        complain(folder, std::strerror(errno));
        return false;
    }
    if (info.st_uid != geteuid()) {
        complain(folder, "belongs to another user");
        return false;
    }
    if ((info.st_mode & 07777) != 0700 && fchmod(fd.get(), 0700) != 0) {
        complain(folder, std::strerror(errno));
        return false;
    }
    return true;
}

enum class Read { Done, Missing, Refused };

Read readState(const fs::path &file, Found &found)
{
    const Descriptor fd(open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!fd.isOpen() && errno == ENOENT)
        return Read::Missing;
    struct stat info {};
    if (!fd.isOpen() || fstat(fd.get(), &info) != 0) {
        complain(file, std::strerror(errno));
        return Read::Refused;
    }
    if (!S_ISREG(info.st_mode) || info.st_uid != geteuid()) {
        complain(file, "is not a file of this user");
        return Read::Refused;
    }
    if ((info.st_mode & 07777) != 0600)
        fchmod(fd.get(), 0600);
    SecretText text(maxFileSize, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        const ssize_t got = read(fd.get(), text.data() + length, text.size() - length);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        length += static_cast<std::size_t>(got);
    }
    found = parseState(std::string_view(text).substr(0, length));
    found.file = info;
    return Read::Done;
}

// A second name for the damaged file, so that what is whole in it is never without one: the new file takes the first.
void keepDamaged(const fs::path &file)
{
    fs::path kept;
    std::error_code error;
    for (int number = 1; number < 1000; ++number) {
        kept = file;
        kept += ".damaged-" + std::to_string(number);
        if (!fs::exists(fs::symlink_status(kept, error)))
            break;
    }
    // Not every file system has links.
    if (link(file.c_str(), kept.c_str()) == 0 || rename(file.c_str(), kept.c_str()) == 0)
        std::fprintf(stderr, "libvelmora_ws: %s was damaged; kept as %s\n", file.c_str(), kept.c_str());
}

bool writeAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t done = write(fd, text.data(), text.size());
        if (done < 0 && errno == EINTR)
            continue;
        if (done <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(done));
    }
    return true;
}

enum class Written { Done, Exists, Failed };

bool isSameFile(const fs::path &file, const std::optional<struct stat> &known)
{
    struct stat now {};
    return known && lstat(file.c_str(), &now) == 0 && now.st_dev == known->st_dev && now.st_ino == known->st_ino;
}

// Two processes may start at the same time: the second one takes the file of the first. `damaged`: the file that is
// replaced, none if there is no file.
Written writeState(const fs::path &folder, const DeviceState &state, const std::optional<struct stat> &damaged)
{
    const fs::path file = folder / fileName;
    std::string temporary = (folder / "device.new-XXXXXX").string();
    SecretText text;
    text.reserve(256);
    char digits[13];
    for (std::size_t i = 0; i < 6; ++i)
        std::snprintf(digits + 2 * i, 3, "%02X", state.address[i]);
    text.append(header).append("\nmac=").append(digits).append("\nkey=").append(state.key).append("\n");

    const Descriptor fd(mkostemp(temporary.data(), O_CLOEXEC)); // mode 0600
    bool isWritten = fd.isOpen() && writeAll(fd.get(), text) && fsync(fd.get()) == 0;
    const unsigned flags = isSameFile(file, damaged) ? 0 : RENAME_NOREPLACE;
    if (isWritten && renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, file.c_str(), flags) != 0) {
        if (errno == EEXIST) {
            unlink(temporary.c_str());
            return Written::Exists;
        }
        // Not every file system can refuse to replace.
        isWritten = rename(temporary.c_str(), file.c_str()) == 0;
    }
    if (!isWritten) {
        complain(file, std::strerror(errno));
        if (fd.isOpen())
            unlink(temporary.c_str());
        return Written::Failed;
    }
    const Descriptor directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.isOpen())
        fsync(directory.get());
    return Written::Done;
}

} // namespace

std::optional<HardwareAddress> permanentAddress(const fs::path &sysClassNet)
{
    struct Device {
        long index;
        fs::path path;
    };
    std::vector<Device> devices;
    std::error_code error;
    for (fs::directory_iterator it(sysClassNet, error), end; !error && it != end; it.increment(error)) {
        const std::string index = firstLine(it->path() / "ifindex");
        devices.push_back({std::strtol(index.c_str(), nullptr, 10), it->path()});
    }
    std::sort(devices.begin(), devices.end(), [](const Device &a, const Device &b) {
        return a.index != b.index ? a.index < b.index : a.path < b.path;
    });
    for (const Device &device : devices) {
        const bool isEthernet = firstLine(device.path / "type") == std::to_string(ARPHRD_ETHER);
        const bool isPermanent = firstLine(device.path / "addr_assign_type") == "0";
        if (!isEthernet || !isPermanent)
            continue;
        if (const auto address = parseAddress(firstLine(device.path / "address")))
            return address;
    }
    return {};
}

DeviceState loadDeviceState(const fs::path &folder, const fs::path &sysClassNet)
{
    Found found;
    const fs::path file = folder / fileName;
    if (sodium_init() < 0)
        std::abort(); // a kernel without random numbers: nothing safe can be made
    bool isWritable = false;
    if (folder.empty())
        complain("no state folder", "neither XDG_STATE_HOME nor HOME names one");
    else
        isWritable = prepareFolder(folder);

    // Twice at most: the second time another process has just written the file.
    for (int attempt = 0; attempt < 2; ++attempt) {
        std::optional<struct stat> damaged;
        if (isWritable) {
            const Read read = readState(file, found);
            if (read == Read::Done && !found.isDamaged)
                break;
            if (read == Read::Done) {
                damaged = found.file;
                keepDamaged(file);
            }
            isWritable = read != Read::Refused;
        }
        if (!found.address) {
            const auto permanent = permanentAddress(sysClassNet);
            found.address = permanent ? *permanent : randomAddress();
        }
        if (found.key.empty())
            found.key = randomKey();
        if (!isWritable || writeState(folder, {*found.address, found.key}, damaged) != Written::Exists)
            break;
    }
    return {*found.address, found.key};
}

DeviceState deviceState(const fs::path &folder)
{
    struct Cache {
        std::mutex mutex;
        std::optional<fs::path> folder;
        DeviceState state;
    };
    static auto *cache = new Cache; // never destroyed: the worker may outlive the end of main
    std::lock_guard lock(cache->mutex);
    if (cache->folder != folder) {
        cache->state = loadDeviceState(folder, "/sys/class/net");
        cache->folder = folder;
    }
    return cache->state;
}

} // namespace velmora::ws
