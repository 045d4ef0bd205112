#include "server/store/connection.h"

namespace velmora::server {

Transaction::Transaction(Connection &db, Durability durability)
    : m_db(db)
{
    if (db.inTransaction())
        return;
    db.begin(durability);
    m_isOpen = true;
}

Transaction::Transaction(Connection &db, const AccountLock &lock, Durability durability)
    : Transaction(db, durability)
{
    db.lockAccount(lock.account); // the delegated constructor is done: the destructor rolls back
}

Transaction::Transaction(Connection &db, const NameLock &lock, Durability durability)
    : Transaction(db, durability)
{
    db.lockName(lock.name);
}

Transaction::~Transaction()
{
    if (m_isOpen)
        m_db.rollBack();
}

void Transaction::commit()
{
    if (!m_isOpen)
        return;
    m_db.commit();
    m_isOpen = false;
}

} // namespace velmora::server
