#pragma once

#include "arena.h"

#include <array>
#include <filesystem>
#include <optional>

namespace velmora::ws {

using HardwareAddress = std::array<unsigned char, 6>;

// The identity of a device, chosen at its first start and kept from then on.
struct DeviceState {
    HardwareAddress address{};
    SecretText key; // 32 random bytes, base64url
};

// Reads the state from the folder, which is owner-only; makes what is missing and keeps it there. A damaged file is
// kept beside the new one, and whatever in it is whole is kept in use. Never fails: what cannot be written holds for
// this process only, and standard error says so.
DeviceState loadDeviceState(const std::filesystem::path &folder, const std::filesystem::path &sysClassNet);

// The state of this process's device; `folder` is read again only when it is another one. Any thread.
DeviceState deviceState(const std::filesystem::path &folder);

// The permanent address of the first Ethernet device, in the order of the kernel.
std::optional<HardwareAddress> permanentAddress(const std::filesystem::path &sysClassNet);

} // namespace velmora::ws
