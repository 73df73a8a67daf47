// PwDbObject: everything stored in a drawing, and the protocol by which it is opened and
// closed.
//
//   PwDbLayerTableRecord* layer = nullptr;
//   if (pwdbOpenObject(layer, id, PwDb::OpenForRead) == Plotwright::StatusOk) {
//       bool frozen = layer->isFrozen();
//       layer->close();
//   }
//
// The open protocol. For an object in a database, with R holders that opened it for read
// and W (0 or 1) that opened it for write:
//   1. W == 1 implies R == 0: one writer and no reader, or any number of readers.
//   2. An open for read succeeds when W == 0, and adds one to R; the same object may be opened
//      for read while it is open for read already, and every open gives the same pointer.
//   3. An open for write succeeds when W == 0 and R == 0; otherwise it is refused with
//      StatusWasOpenForRead or StatusWasOpenForWrite and the out pointer stays null.
//   4. upgradeOpen succeeds only for the sole reader (R == 1, W == 0), making it the writer.
//   5. downgradeOpen turns the writer (W == 1) into the sole reader.
//   6. close ends one open: the write open if there is one, else one read open.
//   7. An object just added to a database comes back open for write; its adder closes it.
//   8. An erased object opens only when erased objects are asked for (StatusWasErased).
//   9. An object that was never added to a database has a null id and is not open in this
//      sense: its holder uses it freely and deletes it, never closes it.
// Objects fetched through a transaction are not counted in R or W; the transaction holds
// them until it finishes.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/rx/PwRxObject.h>

class PwDbPlwFiler;

class PwDbObject : public PwRxObject {
    PWRX_DECLARE_MEMBERS(PwDbObject);

  public:
    PwDbObject();
    ~PwDbObject() override;
    PwDbObject(const PwDbObject&) = delete;
    PwDbObject& operator=(const PwDbObject&) = delete;

    /// The object's id; null while it is not in a database.
    PwDbObjectId objectId() const;
    /// The object that owns this one (a table, a dictionary, a block); null for the root
    /// objects of a database and for objects not in one.
    PwDbObjectId ownerId() const { return m_owner; }
    /// Sets the owner. The object must be open for write when it is in a database.
    Plotwright::ErrorStatus setOwnerId(PwDbObjectId owner);
    /// The database the object is in; null when it is in none.
    PwDbDatabase* database() const;
    /// The object's handle; 0 when it is in no database.
    PwDbHandle handle() const;

    /// Ends one open (rule 6). StatusNotOpenForRead when the object isn't open,
    /// StatusNotInDatabase for an object in no database (delete it instead).
    Plotwright::ErrorStatus close();
    /// Read to write for the sole reader (rule 4); StatusWasOpenForRead when other readers
    /// hold it, StatusNotOpenForRead when it isn't open for read.
    Plotwright::ErrorStatus upgradeOpen();
    /// Write to read (rule 5); StatusNotOpenForWrite when it isn't open for write.
    Plotwright::ErrorStatus downgradeOpen();

    bool isReadEnabled() const;
    bool isWriteEnabled() const;
    /// Number of read opens now held.
    unsigned numReaders() const { return m_readers; }
    /// Checks that the object may be read: open (for read or write), fetched through a
    /// transaction, or not in a database. A breach is a programming error: it asserts.
    void assertReadEnabled() const;
    /// Checks that the object may be written, and records it as modified. Both flags are
    /// kept for callers of the interface; the toolkit has no undo to feed.
    void assertWriteEnabled(bool autoUndo = true, bool recordModified = true);

    bool isErased() const { return m_erased; }
    /// True once the object was changed through assertWriteEnabled since it was added or read.
    bool isModified() const { return m_modified; }
    /// Erases (or with false, un-erases) the object. It must be open for write, or not be in a
    /// database. An erased object stays in memory until its database goes, so that its id
    /// keeps meaning something.
    Plotwright::ErrorStatus erase(bool erasing = true);

    /// The object's reactors: the objects of its drawing that depend on it (an image placement
    /// on its definition, for one). Null when there are none. Each entry stands for one
    /// persistent reactor; pwdbPersistentReactorObjectId gives its id. Valid until the
    /// reactors change.
    const PwArray<void*>* reactors() const { return m_reactors.get(); }
    /// Adds the object `id` as a persistent reactor; adding one that is there already changes
    /// nothing. The object must be open for write. StatusNullObjectId, StatusNotOpenForWrite,
    /// StatusWrongDatabase for an id of another database, StatusOutOfMemory.
    Plotwright::ErrorStatus addPersistentReactor(PwDbObjectId id);
    /// Removes the persistent reactor `id`. StatusNullObjectId, StatusNotOpenForWrite,
    /// StatusKeyNotFound when it isn't one.
    Plotwright::ErrorStatus removePersistentReactor(PwDbObjectId id);
    /// True when `id` is one of the object's persistent reactors.
    bool hasPersistentReactor(PwDbObjectId id) const;

    /// Reads the object's persistent data from `filer`, base class first. The object must be
    /// writable. A read that fails may have changed part of the object (the base classes'
    /// data); readers discard such an object.
    virtual Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer);
    /// Writes the object's persistent data to `filer`, base class first.
    virtual Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const;

    /// A new object of the same class with the same persistent data, in no database; null
    /// when the class can't make objects or the data can't be copied. The copy's ids still
    /// name objects of this object's database.
    PwDbObject* clone() const;

  protected:
    /// The one way a setter changes a field: refused with StatusNotOpenForWrite unless the
    /// object is writable, else recorded as a change and assigned.
    template <class Field, class Value>
    Plotwright::ErrorStatus setField(Field& field, Value&& value) {
        if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
        assertWriteEnabled();
        field = std::forward<Value>(value);
        return Plotwright::StatusOk;
    }

  private:
    friend class PwDbDatabase;
    friend class PwDbObjectOpener;
    friend class PwDbTransaction;

    PwDbStub* m_stub = nullptr;
    PwDbObjectId m_owner;
    std::unique_ptr<PwArray<void*>> m_reactors;
    uint32_t m_readers = 0;
    uint32_t m_transactionFetches = 0;
    uint32_t m_transactionWriteFetches = 0;
    bool m_writer = false;
    bool m_erased = false;
    bool m_modified = false;
};

/// Opens the object `id` if it is of class `cls` or derives from it; a null `cls` means any
/// class. On failure `object` is null and the status says why: StatusNullObjectId,
/// StatusInvalidObjectId, StatusWasErased, StatusWasOpenForRead, StatusWasOpenForWrite,
/// StatusNotThatKindOfClass.
Plotwright::ErrorStatus pwdbOpenObject(PwDbObject*& object, PwDbObjectId id, PwDb::OpenMode mode,
                                       bool openErased = false, const PwRxClass* cls = nullptr);

/// The class-function form: opens `id` as a T (or a class derived from T) when `desc()` gives
/// T's class record or one of its bases.
template <class T>
Plotwright::ErrorStatus pwdbOpenObject(T*& object, PwDbObjectId id, PwRxClass* (*desc)(),
                                       PwDb::OpenMode mode, bool openErased = false) {
    object = nullptr;
    PwDbObject* opened = nullptr;
    const Plotwright::ErrorStatus status = pwdbOpenObject(opened, id, mode, openErased, desc());
    if (status == Plotwright::StatusOk) object = static_cast<T*>(opened);
    return status;
}

/// Opens `id` as a T, the class taken from the pointer's type.
template <class T>
Plotwright::ErrorStatus pwdbOpenObject(T*& object, PwDbObjectId id, PwDb::OpenMode mode,
                                       bool openErased = false) {
    return pwdbOpenObject<T>(object, id, &T::desc, mode, openErased);
}

/// The id of the persistent reactor that a reactors() entry stands for; null for null and for
/// any entry that is no persistent reactor.
PwDbObjectId pwdbPersistentReactorObjectId(const void* entry);

/// Ends a holder's use of `object` by the closing rule: close when it has an id, delete it
/// when it has none (it was never added to a database). Null does nothing.
void pwdbReleaseObject(PwDbObject* object);
