#include "server/store/store.h"

#include "server/store/migrations.h"

namespace velmora::server {

Store::Store(const std::filesystem::path &file)
    : m_db(file)
{
    migrate(m_db);
}

std::string Store::setting(const std::string &name)
{
    const Lock db = lock();
    Statement row = db->prepare("SELECT value FROM settings WHERE name = ?1");
    row.with(name);
    return row.step() ? row.text(0) : std::string();
}

void Store::setSetting(const std::string &name, const std::string &value)
{
    const Lock db = lock();
    db->run("INSERT INTO settings (name, value) VALUES (?1, ?2) ON CONFLICT (name) DO UPDATE SET value = ?2", name,
            value);
}

} // namespace velmora::server
