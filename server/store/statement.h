#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace velmora::server {

// The database refuses. The text is for the log; it holds no value of a statement.
class StoreError : public std::runtime_error {
public:
    enum class Kind {
        Fault,      // a full disk, a damaged file, a statement that the database does not understand
        Constraint, // a uniqueness or foreign-key rule was violated
        Conflict,   // the transaction was cancelled in favour of another one: done again, it may succeed
        Unavailable // no connection, or a database that only reads now: what was not committed is lost
    };

    explicit StoreError(const std::string &what, Kind kind = Kind::Fault)
        : std::runtime_error(what)
        , m_kind(kind)
    {
    }
    Kind kind() const { return m_kind; }
    bool isConstraint() const { return m_kind == Kind::Constraint; }
    bool isConflict() const { return m_kind == Kind::Conflict; }
    bool isUnavailable() const { return m_kind == Kind::Unavailable; }

private:
    Kind m_kind;
};

// Bytes that are no text, compared byte by byte.
struct Blob {
    std::string_view bytes;
};

// A statement as the engine runs it. One thread at a time; valid as long as its connection.
class StatementDriver {
public:
    enum class Type { Integer, Real, Text, Bytes, Unknown };

    virtual ~StatementDriver() = default;
    virtual void bind(int index, int64_t value) = 0;
    virtual void bind(int index, double value) = 0;
    virtual void bind(int index, std::string_view value) = 0;
    virtual void bind(int index, const Blob &value) = 0;
    virtual void bindNull(int index, Type type) = 0;
    virtual bool step() = 0;
    virtual void reset() = 0;
    virtual int64_t integer(int column) const = 0;
    virtual double real(int column) const = 0;
    virtual std::string text(int column) const = 0;
    virtual std::string blob(int column) const = 0;
    virtual bool isNull(int column) const = 0;
};

// One prepared statement: bound, stepped through once, ended with its owner. Parameters are ?1, ?2, ... in every
// engine. Texts are UTF-8; a bound text is copied.
//
// One text serves both engines: ON CONFLICT and RETURNING instead of OR IGNORE and the last row's id; flags are numbers
// and are compared with 0 or 1; an id is never compared with a text; a parameter is never only tested for NULL.
class Statement {
public:
    explicit Statement(std::unique_ptr<StatementDriver> driver)
        : m_driver(std::move(driver))
    {
    }

    // Binds the values to parameters 1, 2, ...
    template <typename... Values>
    Statement &with(const Values &...values)
    {
        int index = 0;
        (bind(++index, values), ...);
        return *this;
    }

    // Binds one value.
    template <typename Value>
    void set(int index, const Value &value)
    {
        bind(index, value);
    }

    // The next row. False when there is none (a writing statement has then been carried out).
    bool step() { return m_driver->step(); }
    // For running the same statement again with other values.
    void reset() { m_driver->reset(); }

    int64_t integer(int column) const { return m_driver->integer(column); } // 0 for NULL; 1 for true
    std::string text(int column) const { return m_driver->text(column); }   // empty for NULL
    std::string blob(int column) const { return m_driver->blob(column); }   // the bytes as they are; empty for NULL
    double real(int column) const { return m_driver->real(column); }        // 0 for NULL
    bool isNull(int column) const { return m_driver->isNull(column); }

private:
    using Type = StatementDriver::Type;
    void bind(int index, int64_t value) { m_driver->bind(index, value); }
    void bind(int index, int value) { m_driver->bind(index, static_cast<int64_t>(value)); }
    void bind(int index, bool value) { m_driver->bind(index, static_cast<int64_t>(value)); }
    void bind(int index, double value) { m_driver->bind(index, value); }
    void bind(int index, const Blob &value) { m_driver->bind(index, value); }
    void bind(int index, std::string_view value) { m_driver->bind(index, value); }
    void bind(int index, const std::string &value) { m_driver->bind(index, std::string_view(value)); }
    void bind(int index, const char *value) { m_driver->bind(index, std::string_view(value)); }
    void bind(int index, std::nullptr_t) { m_driver->bindNull(index, Type::Unknown); }
    template <typename T>
    void bind(int index, const std::optional<T> &value)
    {
        if (value)
            bind(index, *value);
        else
            m_driver->bindNull(index, typeOf<T>());
    }
    template <typename T>
    static constexpr Type typeOf()
    {
        if constexpr (std::is_integral_v<T>)
            return Type::Integer;
        else if constexpr (std::is_floating_point_v<T>)
            return Type::Real;
        else if constexpr (std::is_same_v<T, Blob>)
            return Type::Bytes;
        else
            return Type::Text;
    }

    std::unique_ptr<StatementDriver> m_driver;
};

} // namespace velmora::server
