#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora::server::http {

// A certificate that the service has made for itself, for a house without one of a known authority.
struct OwnCertificate {
    std::filesystem::path chain; // PEM, for the server
    std::filesystem::path key;
    std::filesystem::path authority; // PEM: what radios and browsers may be told to trust; stays the same
    std::string fingerprint;         // SHA-256 of the server's certificate, as browsers show it
};

// Takes the certificate from the folder, which is made owner-only. Makes an authority when there is none, which is
// valid for twenty years, and a certificate when there is none for exactly these names and addresses or when it ends
// within a year. Throws std::runtime_error with a text for the person who started the program.
OwnCertificate ownCertificate(const std::filesystem::path &folder, const std::vector<std::string> &names,
                              const std::vector<std::string> &addresses);

} // namespace velmora::server::http
