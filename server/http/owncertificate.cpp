#include "server/http/owncertificate.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <openssl/bn.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server::http {

namespace {

constexpr long day = 24 * 3600L;
constexpr long authorityDays = 20 * 365;
constexpr long certificateDays = 800; // telephones refuse longer ones
constexpr long renewedDays = 365;     // before its end; looked at at each start only
constexpr long earlyDays = 1;         // clocks of telephones may be late

template <auto Free>
struct Freer {
    template <typename T>
    void operator()(T *thing) const
    {
        Free(thing);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Freer<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freer<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Freer<X509_EXTENSION_free>>;
using Number = std::unique_ptr<BIGNUM, Freer<BN_free>>;

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

void require(bool isDone, const char *what)
{
    if (!isDone)
        throw std::runtime_error(std::string("the service's own certificate: ") + what);
}

template <typename Read>
auto readPem(const std::filesystem::path &path, Read read)
{
    const File file(std::fopen(path.c_str(), "re"));
    pem_password_cb *never = [](char *, int, int, void *) { return -1; }; // or OpenSSL asks at the terminal
    return file ? read(file.get(), nullptr, never, nullptr) : nullptr;
}

// Owner-only, and whole or not at all.
template <typename Write>
void writePem(const std::filesystem::path &path, Write write)
{
    const std::string beside = path.string() + ".new";
    ::unlink(beside.c_str());
    const int handle = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    File file(handle < 0 ? nullptr : ::fdopen(handle, "w"));
    const bool isWritten = file && write(file.get()) && std::fflush(file.get()) == 0 && ::fsync(handle) == 0;
    file.reset();
    if (!isWritten || ::rename(beside.c_str(), path.c_str()) != 0) {
        ::unlink(beside.c_str());
        throw std::runtime_error("cannot write " + path.string());
    }
}

void writeKey(const std::filesystem::path &path, EVP_PKEY *key)
{
    writePem(path, [&](std::FILE *file) {
        return PEM_write_PrivateKey(file, key, nullptr, nullptr, 0, nullptr, nullptr) == 1;
    });
}

std::string alternativeNames(const std::vector<std::string> &names, const std::vector<std::string> &addresses)
{
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "DNS:" : ",DNS:") + name;
    for (const std::string &address : addresses)
        text += (text.empty() ? "IP:" : ",IP:") + address;
    return text;
}

Extension extension(X509V3_CTX &context, int kind, const std::string &value)
{
    Extension made(X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    require(made != nullptr, "an extension cannot be made");
    return made;
}

// Signed by the issuer, or by itself without one. `names`: empty for an authority.
Certificate make(EVP_PKEY *key, X509 *issuer, EVP_PKEY *issuerKey, const char *subject, long days,
                 const std::string &names)
{
    Certificate made(X509_new());
    const Number serial(BN_new());
    require(made && serial && X509_set_version(made.get(), X509_VERSION_3) == 1 &&
                BN_rand(serial.get(), 127, BN_RAND_TOP_ANY, BN_RAND_BOTTOM_ANY) == 1 &&
                BN_to_ASN1_INTEGER(serial.get(), X509_get_serialNumber(made.get())) != nullptr &&
                X509_gmtime_adj(X509_getm_notBefore(made.get()), -earlyDays * day) != nullptr &&
                X509_gmtime_adj(X509_getm_notAfter(made.get()), days * day) != nullptr &&
                X509_set_pubkey(made.get(), key) == 1,
            "it cannot be made");
    X509_NAME *name = X509_get_subject_name(made.get());
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, reinterpret_cast<const unsigned char *>(subject), -1,
                                       -1, 0) == 1,
            "it cannot be named");
    X509 *signer = issuer ? issuer : made.get();
    require(X509_set_issuer_name(made.get(), X509_get_subject_name(signer)) == 1, "it cannot be named");
    X509V3_CTX context;
    X509V3_set_ctx(&context, signer, made.get(), nullptr, nullptr, 0);
    struct Value {
        int kind;
        std::string text;
    };
    const std::vector<Value> values = issuer ? std::vector<Value>{{NID_basic_constraints, "critical,CA:FALSE"},
                                                                  {NID_key_usage, "critical,digitalSignature"},
                                                                  {NID_ext_key_usage, "serverAuth"},
                                                                  {NID_subject_key_identifier, "hash"},
                                                                  {NID_authority_key_identifier, "keyid"},
                                                                  {NID_subject_alt_name, names}}
                                             : std::vector<Value>{{NID_basic_constraints, "critical,CA:TRUE,pathlen:0"},
                                                                  {NID_key_usage, "critical,keyCertSign"},
                                                                  {NID_subject_key_identifier, "hash"}};
    for (const Value &value : values)
        require(X509_add_ext(made.get(), extension(context, value.kind, value.text).get(), -1) == 1,
                "an extension cannot be added");
    require(X509_sign(made.get(), issuer ? issuerKey : key, EVP_sha256()) > 0, "it cannot be signed");
    return made;
}

// Whether the certificate still does: of this key and this authority, for exactly these names, and valid for long.
bool isGood(X509 *certificate, EVP_PKEY *key, X509 *authority, EVP_PKEY *authorityKey, const std::string &names)
{
    if (!certificate || !key || X509_check_private_key(certificate, key) != 1 ||
        X509_verify(certificate, authorityKey) != 1)
        return false;
    std::time_t soon = std::time(nullptr) + renewedDays * day;
    if (X509_cmp_time(X509_get0_notAfter(certificate), &soon) <= 0)
        return false;
    X509V3_CTX context;
    X509V3_set_ctx(&context, authority, certificate, nullptr, nullptr, 0);
    const Extension wanted = extension(context, NID_subject_alt_name, names);
    X509_EXTENSION *present = X509_get_ext(certificate, X509_get_ext_by_NID(certificate, NID_subject_alt_name, -1));
    return present &&
           ASN1_OCTET_STRING_cmp(X509_EXTENSION_get_data(present), X509_EXTENSION_get_data(wanted.get())) == 0;
}

std::string fingerprintOf(X509 *certificate)
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    require(X509_digest(certificate, EVP_sha256(), digest.data(), &length) == 1, "it has no fingerprint");
    std::string text;
    for (unsigned int i = 0; i < length; ++i) {
        std::array<char, 4> hex{};
        std::snprintf(hex.data(), hex.size(), i == 0 ? "%02X" : ":%02X", digest[i]);
        text += hex.data();
    }
    return text;
}

} // namespace

OwnCertificate ownCertificate(const std::filesystem::path &folder, const std::vector<std::string> &names,
                              const std::vector<std::string> &addresses)
{
    struct stat status {};
    if ((::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) || ::stat(folder.c_str(), &status) != 0 ||
        !S_ISDIR(status.st_mode) || status.st_uid != ::geteuid() || ::chmod(folder.c_str(), 0700) != 0)
        throw std::runtime_error("cannot use the folder " + folder.string());
    OwnCertificate own{folder / "chain.pem", folder / "key.pem", folder / "authority.pem", {}};
    const std::filesystem::path authorityKeyFile = folder / "authority-key.pem";

    Certificate authority(readPem(own.authority, PEM_read_X509));
    Key authorityKey(readPem(authorityKeyFile, PEM_read_PrivateKey));
    if (!authority || !authorityKey || X509_check_private_key(authority.get(), authorityKey.get()) != 1) {
        authorityKey.reset(EVP_EC_gen("P-256"));
        require(authorityKey != nullptr, "its key cannot be made");
        authority = make(authorityKey.get(), nullptr, nullptr, "Velmora, this house", authorityDays, {});
        writeKey(authorityKeyFile, authorityKey.get());
        writePem(own.authority, [&](std::FILE *file) { return PEM_write_X509(file, authority.get()) == 1; });
    }
    const std::string wanted = alternativeNames(names, addresses);
    Certificate certificate(readPem(own.chain, PEM_read_X509));
    Key key(readPem(own.key, PEM_read_PrivateKey));
    if (!isGood(certificate.get(), key.get(), authority.get(), authorityKey.get(), wanted)) {
        key.reset(EVP_EC_gen("P-256"));
        require(key != nullptr, "its key cannot be made");
        certificate = make(key.get(), authority.get(), authorityKey.get(), "Velmora", certificateDays, wanted);
        writeKey(own.key, key.get());
        writePem(own.chain, [&](std::FILE *file) {
            return PEM_write_X509(file, certificate.get()) == 1 && PEM_write_X509(file, authority.get()) == 1;
        });
    }
    own.fingerprint = fingerprintOf(certificate.get());
    return own;
}

} // namespace velmora::server::http
