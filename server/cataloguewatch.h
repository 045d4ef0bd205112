#pragma once

#include "server/catalogue/catalogue.h"
#include "server/store/repeatedtask.h"

namespace velmora::server {

// Where another process looks after the music: tells the catalogue within a second that its file has changed.
class CatalogueWatch {
public:
    explicit CatalogueWatch(Catalogue &catalogue);

private:
    void look();
    int64_t version(); // changes with each change of another process

    Catalogue &m_catalogue;
    int64_t m_known; // version; the task's, once that runs
    RepeatedTask m_task;
};

} // namespace velmora::server
