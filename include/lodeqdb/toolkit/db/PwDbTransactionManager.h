// Transactions: a way to reach objects without the open protocol's refusals, for code that
// touches many objects and ends all its uses at one point.
//
//   PwDbTransactionManager* manager = database.transactionManager();
//   PwDbTransaction* transaction = manager->beginTransaction();
//   PwDbObject* object = nullptr;
//   transaction->fetchObject(object, id, PwDb::OpenForRead);
//   ...
//   manager->finishTransaction();      // every object fetched by it is given back
//
// Transactions nest; finishTransaction ends the innermost. An object fetched through a
// transaction may also be open directly: fetching neither asks nor changes the open state.
#pragma once

#include <memory>
#include <vector>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;
class PwDbObject;

class PwDbTransaction {
  public:
    explicit PwDbTransaction(PwDbDatabase* database);
    virtual ~PwDbTransaction();

    /// Fetches the object `id` of this transaction's database. An object fetched for write is
    /// writable until the transaction ends. StatusNullObjectId, StatusInvalidObjectId,
    /// StatusWrongDatabase and StatusWasErased (unless `openErased`) as for an open.
    virtual Plotwright::ErrorStatus fetchObject(PwDbObject*& object, PwDbObjectId id,
                                                PwDb::OpenMode mode, bool openErased = false);
    /// Number of objects this transaction holds.
    size_t numFetched() const { return m_fetched.size(); }

  private:
    friend class PwDbTransactionManager;
    void releaseAll();

    PwDbDatabase* m_database;
    struct Fetch {
        PwDbObject* object;
        bool forWrite;
    };
    std::vector<Fetch> m_fetched;
};

class PwDbTransactionManager {
  public:
    explicit PwDbTransactionManager(PwDbDatabase* database);
    /// Ends every transaction still in progress.
    virtual ~PwDbTransactionManager();

    /// Starts a transaction inside the current one (or the first) and gives it; it belongs to
    /// the manager.
    virtual PwDbTransaction* beginTransaction();
    /// Ends the innermost transaction, giving back every object it fetched.
    /// StatusNoActiveTransaction when none is in progress.
    virtual Plotwright::ErrorStatus finishTransaction();
    /// The innermost transaction in progress, or null.
    virtual PwDbTransaction* currentTransaction() const;
    int numActiveTransactions() const { return static_cast<int>(m_active.size()); }

  private:
    PwDbDatabase* m_database;
    std::vector<std::unique_ptr<PwDbTransaction>> m_active;
};
