// Symbol tables: named records (layers, blocks) kept in the order they were added.
//
// Defines PwDbSymbolTableRecord, PwDbSymbolTable, PwDbSymbolTableIterator and
// PwDbObjectIdCursor.
//
//   PwDbLayerTable* layers = nullptr;
//   if (drawing.getSymbolTable(layers, PwDb::OpenForWrite) == Plotwright::StatusOk) {
//       auto* walls = new PwDbLayerTableRecord;
//       walls->setName(u"Walls");
//       PwDbObjectId wallsId;
//       if (layers->add(wallsId, walls) == Plotwright::StatusOk) walls->close();
//       else delete walls;
//       layers->close();
//   }
//
// Names are unique among a table's live records, compared without regard to case; an erased
// record keeps its name and can still be found when erased records are asked for. Renaming a
// record moves it in its table's look-up at once.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

class PwString;
class PwDbSymbolTable;

/// A position in a fixed sequence of object ids: the common part of the iterators over table
/// records and block entities. Moving never allocates.
class PwDbObjectIdCursor {
  public:
    /// A cursor over `ids`, standing before the first.
    explicit PwDbObjectIdCursor(std::vector<PwDbObjectId> ids = {});

    /// Goes to the first id (or the last one, without `atBeginning`), passing over erased
    /// objects and ids without an object when `skipErased`.
    void start(bool atBeginning, bool skipErased);
    /// True when the cursor stands outside the sequence, past either end.
    bool done() const;
    /// Moves one id forward or back, passing over erased objects when `skipErased`. From past
    /// one end, a step back into the sequence takes the id at that end.
    void step(bool forward, bool skipErased);
    /// The id at the cursor; null when done.
    PwDbObjectId current() const;
    /// Goes to `id`; false (the cursor unmoved) when the sequence doesn't hold it.
    bool seek(PwDbObjectId id);
    size_t size() const { return m_ids.size(); }

  private:
    void pass(bool forward);

    std::vector<PwDbObjectId> m_ids;
    std::ptrdiff_t m_position = -1;
};

/// A named record of a symbol table. The concrete kinds are the block and layer records.
class PwDbSymbolTableRecord : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbSymbolTableRecord);

  public:
    ~PwDbSymbolTableRecord() override;

    /// The name; owned by the record, valid while it stays open and unchanged. Never null.
    Plotwright::ErrorStatus getName(const char16_t*& name) const;
    /// Copies the name into `name`; a failed copy gives its status.
    Plotwright::ErrorStatus getName(PwString& name) const;
    /// Renames the record. StatusInvalidKey for null or a name the rule refuses (see
    /// PwDbSymbolUtilities.h), StatusNotOpenForWrite, StatusDuplicateKey when another live
    /// record of the owning table has the name in any case. The record itself may change the
    /// case of its own name.
    Plotwright::ErrorStatus setName(const char16_t* name);

    /// Name (after the owner).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  protected:
    PwDbSymbolTableRecord();
    /// True when `name` is acceptable for this kind of record.
    virtual bool acceptsName(const wstring& name) const;
    /// The name after full case folding, as the table looks it up.
    const wstring& foldedName() const { return m_folded; }

  private:
    friend class PwDbSymbolTable;

    /// The table that owns this record and lists it; null when there is none.
    PwDbSymbolTable* owningTable() const;
    void takeName(wstring name, wstring folded);

    wstring m_name;
    // The case-folded name, the key of the owning table's look-up.
    wstring m_folded;
};

/// Walks a snapshot of a table's record ids taken when the iterator was made: records added
/// later are not seen, and the iterator outlives changes to the table.
class PwDbSymbolTableIterator {
  public:
    virtual ~PwDbSymbolTableIterator();

    /// Goes to the first record (the last without `atBeginning`).
    void start(bool atBeginning = true, bool skipErased = true);
    /// True when the iterator stands past either end.
    bool done() const;
    /// Moves to the next record (the previous without `forward`).
    void step(bool forward = true, bool skipErased = true);
    /// The record's id; StatusIteratorDone (and a null id) when done.
    Plotwright::ErrorStatus getRecordId(PwDbObjectId& id) const;
    /// Opens the record; StatusIteratorDone when done, else the status of the open.
    Plotwright::ErrorStatus getRecord(PwDbSymbolTableRecord*& record, PwDb::OpenMode mode,
                                      bool openErased = false) const;
    /// Goes to the record `id`. StatusNullObjectId for null, StatusKeyNotFound when the
    /// iterator's snapshot doesn't hold it (the position is then unchanged).
    Plotwright::ErrorStatus seek(PwDbObjectId id);

  protected:
    explicit PwDbSymbolTableIterator(std::vector<PwDbObjectId> ids);

    /// Opens the record as a T, for the typed iterators' getRecord: StatusIteratorDone (and
    /// null) when done, else the status of the open.
    template <class T>
    Plotwright::ErrorStatus getTypedRecord(T*& record, PwDb::OpenMode mode, bool openErased) const {
        record = nullptr;
        PwDbObjectId id;
        if (auto status = getRecordId(id)) return status;
        return pwdbOpenObject(record, id, mode, openErased);
    }

  private:
    friend class PwDbSymbolTable;
    PwDbObjectIdCursor m_cursor;
};

/// The base of the symbol tables: an ordered list of records with a case-insensitive look-up.
class PwDbSymbolTable : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbSymbolTable);

  public:
    ~PwDbSymbolTable() override;

    /// The class of the records this table holds.
    virtual PwRxClass* recordClass() const = 0;

    /// The live record named `name` (any case). With `getErasedRecord`, an erased record of
    /// that name (the first added) is given when no live one has it. StatusInvalidKey for null
    /// or empty, StatusKeyNotFound when there is none (the id is then null).
    Plotwright::ErrorStatus getIdAt(const char16_t* name, PwDbObjectId& id,
                                    bool getErasedRecord = false) const;
    /// Opens the record `name` (looked up as getIdAt, erased ones only with `openErased`).
    Plotwright::ErrorStatus getAt(const char16_t* name, PwDbSymbolTableRecord*& record,
                                  PwDb::OpenMode mode, bool openErased = false) const;
    /// True when a live record has the name.
    bool has(const char16_t* name) const;
    /// True when `id` is a live record of this table.
    bool has(PwDbObjectId id) const;
    /// Number of records, erased ones included.
    size_t numRecords() const { return m_records.size(); }

    /// Adds `record` to the table and to the table's database; it comes back open for write
    /// and the caller closes it. The table must be open for write and in a database.
    /// StatusNullDatabase for a null record, StatusNotOpenForWrite, StatusNotInDatabase,
    /// StatusNotThatKindOfClass when the record is not of recordClass(), StatusInvalidKey for
    /// a missing or refused name, StatusDuplicateKey when a live record has the name. A record
    /// already in the table's database may be added when nothing owns it and it is open for
    /// write (StatusAlreadyInDatabase when owned, StatusWrongDatabase for another database).
    Plotwright::ErrorStatus add(PwDbObjectId& id, PwDbSymbolTableRecord* record);
    Plotwright::ErrorStatus add(PwDbSymbolTableRecord* record);

    /// A new iterator over a snapshot of the records, owned by the caller (delete it). Its
    /// class is the typed iterator of the table's kind.
    Plotwright::ErrorStatus newIterator(PwDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                        bool skipErased = true) const;

    /// The ordered list of record ids (after the owner).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  protected:
    PwDbSymbolTable();
    /// A new iterator of the table's kind over `ids`.
    virtual PwDbSymbolTableIterator* makeIterator(std::vector<PwDbObjectId> ids) const;
    /// The record ids in table order.
    const std::vector<PwDbObjectId>& recordIds() const { return m_records; }

    /// Opens the record `name` as a T, looked up as getIdAt (erased ones only with
    /// `openErased`); on failure `record` is null.
    template <class T>
    Plotwright::ErrorStatus getTypedAt(const char16_t* name, T*& record, PwDb::OpenMode mode,
                                       bool openErased) const {
        record = nullptr;
        PwDbObjectId id;
        if (auto status = getIdAt(name, id, openErased)) return status;
        return pwdbOpenObject(record, id, mode, openErased);
    }
    /// A new iterator over a snapshot of the records, started, as an `Iterator`: the typed
    /// tables' newIterator. makeIterator gives the typed iterator of the table's kind.
    template <class Iterator>
    Plotwright::ErrorStatus newTypedIterator(Iterator*& iterator, bool atBeginning,
                                             bool skipErased) const {
        PwDbSymbolTableIterator* made = nullptr;
        const Plotwright::ErrorStatus status =
            PwDbSymbolTable::newIterator(made, atBeginning, skipErased);
        iterator = static_cast<Iterator*>(made);
        return status;
    }

  private:
    friend class PwDbSymbolTableRecord;

    /// The first record named `folded` other than `except`: a live one, or with `erased` an
    /// erased one when no live one exists; null when there is none.
    PwDbObjectId find(const wstring& folded, PwDbObjectId except, bool erased) const;
    Plotwright::ErrorStatus checkAddable(const PwDbSymbolTableRecord* record) const;
    void noteRename(PwDbObjectId record, const wstring& oldFolded, const wstring& newFolded);
    size_t positionOf(PwDbObjectId record) const;
    void rebuildIndex() const;
    void ensureIndex() const;

    std::vector<PwDbObjectId> m_records;
    // Each record's place in m_records.
    std::unordered_map<PwDbObjectId, size_t> m_positions;
    // Folded name to the records of that name in table order. Built from the records; after
    // a read it is rebuilt on use until every listed record is present.
    mutable std::unordered_map<wstring, std::vector<PwDbObjectId>> m_byName;
    mutable bool m_indexComplete = true;
};
