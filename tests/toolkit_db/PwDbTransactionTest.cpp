// Transactions: nesting, fetching, giving objects back when they finish.
#include <lodeqdb/toolkit/db/PwDbTransactionManager.h>

#include <gtest/gtest.h>

#include <memory>

#include "PwDbTestObjects.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

using Plotwright::StatusOk;

class Transactions : public testing::Test {
  protected:
    void SetUp() override {
        auto* note = new PwTestNote;
        ASSERT_EQ(database.addPwDbObject(id, note), StatusOk);
        note->close();
    }

    PwDbDatabase database;
    PwDbObjectId id;
    PwDbTransactionManager* manager = database.transactionManager();
};

TEST_F(Transactions, NestAndFinishInnermostFirst) {
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(manager->currentTransaction(), nullptr);
    PwDbTransaction* outer = manager->beginTransaction();
    PwDbTransaction* inner = manager->beginTransaction();
    EXPECT_NE(outer, inner);
    EXPECT_EQ(manager->currentTransaction(), inner);
    EXPECT_EQ(manager->numActiveTransactions(), 2);
    EXPECT_EQ(manager->finishTransaction(), StatusOk);
    EXPECT_EQ(manager->currentTransaction(), outer);
    EXPECT_EQ(manager->finishTransaction(), StatusOk);
    EXPECT_EQ(manager->finishTransaction(), Plotwright::StatusNoActiveTransaction);
}

TEST_F(Transactions, FetchReachesAnObjectOpenForWriteElsewhere) {
    PwTestNote* writer = nullptr;
    ASSERT_EQ(pwdbOpenObject(writer, id, PwDb::OpenForWrite), StatusOk);
    PwDbTransaction* transaction = manager->beginTransaction();
    PwDbObject* fetched = nullptr;
    ASSERT_EQ(transaction->fetchObject(fetched, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(fetched, writer);
    EXPECT_EQ(transaction->numFetched(), 1u);
    manager->finishTransaction();
    EXPECT_TRUE(writer->isWriteEnabled()) << "the direct open is untouched";
    writer->close();
}

TEST_F(Transactions, FetchedObjectsAreGivenBackWhenTheTransactionFinishes) {
    PwDbTransaction* transaction = manager->beginTransaction();
    PwDbObject* fetched = nullptr;
    ASSERT_EQ(transaction->fetchObject(fetched, id, PwDb::OpenForWrite), StatusOk);
    EXPECT_TRUE(fetched->isWriteEnabled());
    EXPECT_TRUE(fetched->isModified());
    manager->finishTransaction();
    EXPECT_FALSE(fetched->isWriteEnabled());
    EXPECT_FALSE(fetched->isReadEnabled());
}

TEST_F(Transactions, FetchForReadDoesNotMakeTheObjectWritable) {
    PwDbTransaction* transaction = manager->beginTransaction();
    PwDbObject* fetched = nullptr;
    ASSERT_EQ(transaction->fetchObject(fetched, id, PwDb::OpenForRead), StatusOk);
    EXPECT_TRUE(fetched->isReadEnabled());
    EXPECT_FALSE(fetched->isWriteEnabled());
    EXPECT_EQ(fetched->erase(), Plotwright::StatusNotOpenForWrite);
    manager->finishTransaction();
}

TEST_F(Transactions, FetchFailures) {
    PwDbTransaction* transaction = manager->beginTransaction();
    PwDbObject* fetched = reinterpret_cast<PwDbObject*>(0x1);
    EXPECT_EQ(transaction->fetchObject(fetched, PwDbObjectId(), PwDb::OpenForRead),
              Plotwright::StatusNullObjectId);
    EXPECT_EQ(fetched, nullptr);
    PwDbDatabase other;
    EXPECT_EQ(transaction->fetchObject(fetched, other.layerZeroId(), PwDb::OpenForRead),
              Plotwright::StatusWrongDatabase);
    PwTestNote* note = nullptr;
    pwdbOpenObject(note, id, PwDb::OpenForWrite);
    note->erase();
    note->close();
    EXPECT_EQ(transaction->fetchObject(fetched, id, PwDb::OpenForRead),
              Plotwright::StatusWasErased);
    EXPECT_EQ(transaction->fetchObject(fetched, id, PwDb::OpenForRead, true), StatusOk);
    manager->finishTransaction();
}

TEST(TransactionsAtDestruction, UnfinishedTransactionsEndWithTheDatabase) {
    auto database = std::make_unique<PwDbDatabase>();
    PwDbTransaction* transaction = database->transactionManager()->beginTransaction();
    PwDbObject* fetched = nullptr;
    ASSERT_EQ(transaction->fetchObject(fetched, database->modelSpaceId(), PwDb::OpenForRead),
              StatusOk);
    database.reset();  // must neither leak nor touch freed objects
    SUCCEED();
}

}  // namespace
