#include "server/cataloguewatch.h"

#include "server/store/store.h"

#include <utility>

namespace velmora::server {

CatalogueWatch::CatalogueWatch(Catalogue &catalogue)
    : m_catalogue(catalogue)
    , m_known(version())
    , m_task(std::chrono::seconds(1), [this] { look(); })
{
}

int64_t CatalogueWatch::version()
{
    return m_catalogue.store().lock()->number("PRAGMA data_version");
}

void CatalogueWatch::look()
{
    const int64_t now = version();
    if (std::exchange(m_known, now) != now)
        m_catalogue.noteChange();
}

} // namespace velmora::server
