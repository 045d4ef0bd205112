#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace velmora::server {

// The database refuses: a full disk, a damaged file, a violated constraint. The text is for the log.
class StoreError : public std::runtime_error {
public:
    explicit StoreError(const std::string &what, bool constraint = false)
        : std::runtime_error(what)
        , m_isConstraint(constraint)
    {
    }
    // A uniqueness or foreign-key rule was violated; anything else is a fault of the store itself.
    bool isConstraint() const { return m_isConstraint; }

private:
    bool m_isConstraint;
};

// Bytes that are no text: bound as a BLOB, compared byte by byte.
struct Blob {
    std::string_view bytes;
};

// One prepared statement: bound, stepped through once, finalised with its owner. Texts are UTF-8; a bound text is
// copied.
class Statement {
public:
    Statement(sqlite3 *db, std::string_view sql);
    ~Statement();
    Statement(Statement &&other) noexcept;
    Statement &operator=(Statement &&) = delete;
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    // Binds the values to parameters 1, 2, ...
    template <typename... Values>
    Statement &with(const Values &...values)
    {
        int index = 0;
        (bind(++index, values), ...);
        return *this;
    }

    // The next row. False when there is none (a writing statement has then been carried out).
    bool step();
    // For running the same statement again with other values.
    void reset();

    int64_t integer(int column) const;  // 0 for NULL
    std::string text(int column) const; // empty for NULL
    std::string blob(int column) const; // the bytes as they are; empty for NULL
    double real(int column) const;      // 0 for NULL
    bool isNull(int column) const;

private:
    void bind(int index, int64_t value);
    void bind(int index, int value) { bind(index, static_cast<int64_t>(value)); }
    void bind(int index, bool value) { bind(index, static_cast<int64_t>(value)); }
    void bind(int index, double value);
    void bind(int index, const Blob &value);
    void bind(int index, std::string_view value);
    void bind(int index, const std::string &value) { bind(index, std::string_view(value)); }
    void bind(int index, const char *value) { bind(index, std::string_view(value)); }
    void bind(int index, std::nullptr_t);
    template <typename T>
    void bind(int index, const std::optional<T> &value)
    {
        if (value)
            bind(index, *value);
        else
            bind(index, nullptr);
    }
    void check(int result) const;

    sqlite3_stmt *m_statement = nullptr;
};

} // namespace velmora::server
