// An open of an object that falls back on a transaction: when the object can't be opened
// directly (open for write elsewhere, say), a transaction fetches it.
//
//   LodeQDBUtil::ObjectPointer<PwDbRasterImageDef> image(id, PwDb::OpenForRead, false);
//   if (image.isUsable()) use(image.object()->sourceFileName());
//
// status() stays the direct open's status, so it is non-zero for an object reached through
// the transaction. A transaction this pointer began is finished at its end; one found in
// progress stays. An object fetched through a transaction belongs to it and isn't closed here.
#pragma once

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbTransactionManager.h>

namespace LodeQDBUtil {

template <class T>
class ObjectPointer {
  public:
    /// Opens `id` as a T directly, else fetches it through the current transaction or one
    /// begun here.
    ObjectPointer(const PwDbObjectId& id, PwDb::OpenMode mode, bool openErased) {
        direct_.open(id, mode, openErased);
        if (direct_.openStatus() == Plotwright::StatusOk) return;
        PwDbDatabase* database = id.database();
        if (database == nullptr) return;
        manager_ = database->transactionManager();
        if (manager_ == nullptr) return;
        transaction_ = manager_->currentTransaction();
        if (transaction_ == nullptr) {
            transaction_ = manager_->beginTransaction();
            startedTransaction_ = true;
            if (transaction_ == nullptr) return;
        }
        PwDbObject* fetched = nullptr;
        transaction_->fetchObject(fetched, id, mode, openErased);
        if (fetched != nullptr && fetched->isKindOf(T::desc())) {
            transactionObject_ = static_cast<T*>(fetched);
        } else if (startedTransaction_) {
            manager_->finishTransaction();
            startedTransaction_ = false;
        }
    }
    /// Takes over an object the caller opened: status 0; a null object leaves status 15 and
    /// nothing else.
    explicit ObjectPointer(T* opened) : direct_(opened) {}
    ~ObjectPointer() {
        if (startedTransaction_) manager_->finishTransaction();
    }
    ObjectPointer(const ObjectPointer&) = delete;
    ObjectPointer& operator=(const ObjectPointer&) = delete;

    /// The object to use: the directly opened one, else the fetched one; null when neither.
    T* object() const {
        return direct_.openStatus() == Plotwright::StatusOk ? direct_.object() : transactionObject_;
    }
    T* operator->() const { return object(); }
    /// The status of the direct open.
    Plotwright::ErrorStatus status() const { return direct_.openStatus(); }
    /// True when there is an object to use.
    bool isUsable() const {
        return direct_.openStatus() == Plotwright::StatusOk || transactionObject_ != nullptr;
    }
    bool startedTransaction() const { return startedTransaction_; }

  private:
    bool startedTransaction_ = false;
    PwDbTransaction* transaction_ = nullptr;
    PwDbTransactionManager* manager_ = nullptr;
    T* transactionObject_ = nullptr;
    PwDbObjectPointer<T> direct_;
};

}  // namespace LodeQDBUtil
