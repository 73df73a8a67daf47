// Nested transactions that hold the objects they fetched until they finish.
#include <lodeqdb/toolkit/db/PwDbTransactionManager.h>

#include <lodeqdb/toolkit/db/PwDbObject.h>
#include "toolkit/db/PwDbStub.h"

PwDbTransaction::PwDbTransaction(PwDbDatabase* database) : m_database(database) {}

PwDbTransaction::~PwDbTransaction() {
    releaseAll();
}

Plotwright::ErrorStatus PwDbTransaction::fetchObject(PwDbObject*& object, PwDbObjectId id,
                                                     PwDb::OpenMode mode, bool openErased) {
    object = nullptr;
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    if (id.database() != m_database) return Plotwright::StatusWrongDatabase;
    Plotwright::ErrorStatus undecoded = Plotwright::StatusInvalidObjectId;
    PwDbObject* found = pwdbStubObject(*id.stub(), &undecoded);
    if (found == nullptr) return undecoded;
    if (found->isErased() && !openErased) return Plotwright::StatusWasErased;
    const bool forWrite = mode == PwDb::OpenForWrite;
    ++found->m_transactionFetches;
    if (forWrite) ++found->m_transactionWriteFetches;
    m_fetched.push_back({found, forWrite});
    if (forWrite) found->assertWriteEnabled();
    object = found;
    return Plotwright::StatusOk;
}

void PwDbTransaction::releaseAll() {
    for (const Fetch& fetch : m_fetched) {
        --fetch.object->m_transactionFetches;
        if (fetch.forWrite) --fetch.object->m_transactionWriteFetches;
    }
    m_fetched.clear();
}

PwDbTransactionManager::PwDbTransactionManager(PwDbDatabase* database) : m_database(database) {}

PwDbTransactionManager::~PwDbTransactionManager() {
    while (!m_active.empty()) finishTransaction();
}

PwDbTransaction* PwDbTransactionManager::beginTransaction() {
    m_active.push_back(std::make_unique<PwDbTransaction>(m_database));
    return m_active.back().get();
}

Plotwright::ErrorStatus PwDbTransactionManager::finishTransaction() {
    if (m_active.empty()) return Plotwright::StatusNoActiveTransaction;
    m_active.pop_back();
    return Plotwright::StatusOk;
}

PwDbTransaction* PwDbTransactionManager::currentTransaction() const {
    return m_active.empty() ? nullptr : m_active.back().get();
}
