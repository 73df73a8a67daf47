// Owning pointers to open objects: the object and the status of its open, released by the
// closing rule when they go.
//
//   PwDbObjectPointer<PwDbLayerTableRecord> layer(id, PwDb::OpenForRead);
//   if (layer.openStatus() == Plotwright::StatusOk) use(layer->isFrozen());
//
//   PwDbSymbolTablePointer<PwDbLayerTable> layers(database, PwDb::OpenForRead);   // a table
//   PwDbSymbolTableRecordPointer<PwDbLayerTableRecord> zero(u"0", layers.object(),
//                                                            PwDb::OpenForRead);
//
// Fields, in this order: the object (null when empty) and the status, which is
// StatusNullDatabase (15) whenever the pointer is empty without another reason.
#pragma once

#include <utility>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

class PwDbDatabase;

template <class T>
class PwDbObjectPointer {
  public:
    /// Empty, status StatusNullDatabase.
    PwDbObjectPointer() = default;
    /// Opens `id` as a T; holds the object only on success and keeps the status either way.
    PwDbObjectPointer(PwDbObjectId id, PwDb::OpenMode mode, bool openErased = false) {
        open(id, mode, openErased);
    }
    /// Takes over an object the caller opened (status 0); a null object leaves it empty.
    explicit PwDbObjectPointer(T* opened) { acquire(opened); }
    /// Opens the symbol table T of `database` (for the table classes); a null database gives
    /// StatusNullDatabase and opens nothing.
    PwDbObjectPointer(PwDbDatabase* database, PwDb::OpenMode mode) requires
        requires(PwDbDatabase* db, T*& table) {
        db->getSymbolTable(table, PwDb::OpenForRead);
    }
    {
        if (database == nullptr) return;
        T* table = nullptr;
        m_status = database->getSymbolTable(table, mode);
        if (m_status == Plotwright::StatusOk) m_object = table;
    }
    PwDbObjectPointer(const PwDbObjectPointer&) = delete;
    PwDbObjectPointer& operator=(const PwDbObjectPointer&) = delete;
    PwDbObjectPointer(PwDbObjectPointer&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr)),
          m_status(std::exchange(other.m_status, Plotwright::StatusNullDatabase)) {}
    PwDbObjectPointer& operator=(PwDbObjectPointer&& other) noexcept {
        if (this != &other) {
            release();
            m_object = std::exchange(other.m_object, nullptr);
            m_status = std::exchange(other.m_status, Plotwright::StatusNullDatabase);
        }
        return *this;
    }
    ~PwDbObjectPointer() { release(); }

    /// Releases what is held, then opens `id`.
    Plotwright::ErrorStatus open(PwDbObjectId id, PwDb::OpenMode mode, bool openErased = false) {
        release();
        T* opened = nullptr;
        m_status = pwdbOpenObject<T>(opened, id, &T::desc, mode, openErased);
        if (m_status == Plotwright::StatusOk) m_object = opened;
        return m_status;
    }
    /// Releases what is held, then takes over `opened` (status 0), or stays empty for null.
    Plotwright::ErrorStatus acquire(T* opened) {
        release();
        if (opened == nullptr) return m_status;
        m_object = opened;
        m_status = Plotwright::StatusOk;
        return m_status;
    }
    /// Ends the holder's use by the closing rule (close with an id, delete without) and
    /// leaves the pointer empty with status StatusNullDatabase. Nothing happens when empty.
    void release() {
        if (m_object != nullptr) pwdbReleaseObject(m_object);
        m_object = nullptr;
        m_status = Plotwright::StatusNullDatabase;
    }
    /// Gives up ownership without closing; the pointer is left empty.
    T* detach() {
        m_status = Plotwright::StatusNullDatabase;
        return std::exchange(m_object, nullptr);
    }

    Plotwright::ErrorStatus openStatus() const { return m_status; }
    T* object() const { return m_object; }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

  protected:
    /// Leaves the pointer empty with `status`, for a failure found before any open.
    void setFailure(Plotwright::ErrorStatus status) {
        release();
        m_status = status;
    }

  private:
    T* m_object = nullptr;
    Plotwright::ErrorStatus m_status = Plotwright::StatusNullDatabase;
};

/// A pointer to an open symbol table, made from a database.
template <class T>
using PwDbSymbolTablePointer = PwDbObjectPointer<T>;

/// A pointer to an open symbol table record, by id or by name in an open table.
template <class T>
class PwDbSymbolTableRecordPointer : public PwDbObjectPointer<T> {
  public:
    using PwDbObjectPointer<T>::PwDbObjectPointer;
    /// Opens the record `name` of `table` (an open symbol table); StatusNullDatabase for a
    /// null table, the table's status for a name it doesn't hold.
    template <class Table>
    PwDbSymbolTableRecordPointer(const char16_t* name, const Table* table, PwDb::OpenMode mode,
                                 bool openErased = false) {
        if (table == nullptr) return;
        PwDbObjectId id;
        const Plotwright::ErrorStatus status = table->getIdAt(name, id, openErased);
        if (status != Plotwright::StatusOk) {
            this->setFailure(status);
            return;
        }
        this->open(id, mode, openErased);
    }
};
