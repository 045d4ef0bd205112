#pragma once

#include "velmora_ws.h"

#include <utility>

// Owns one request handle of the web-service library and releases it. Move only.
class WsHandle {
public:
    WsHandle() = default;
    explicit WsHandle(HANDLE_T handle)
        : m_handle(handle)
    {
    }
    WsHandle(WsHandle &&other) noexcept
        : m_handle(std::exchange(other.m_handle, 0))
    {
    }
    WsHandle &operator=(WsHandle &&other) noexcept
    {
        if (this != &other)
            reset(std::exchange(other.m_handle, 0));
        return *this;
    }
    WsHandle(const WsHandle &) = delete;
    WsHandle &operator=(const WsHandle &) = delete;
    ~WsHandle() { reset(); }

    HANDLE_T get() const { return m_handle; }
    explicit operator bool() const { return m_handle != 0; }
    // Gives the handle away: the caller owns it from now on.
    [[nodiscard]] HANDLE_T take() { return std::exchange(m_handle, 0); }
    void reset(HANDLE_T handle = 0)
    {
        if (m_handle != 0)
            velmora_ws_release_handle(m_handle);
        m_handle = handle;
    }

private:
    HANDLE_T m_handle = 0;
};
