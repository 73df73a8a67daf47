// The block table: the drawing's block definitions, each a named list of entities.
//
// Defines PwDbBlockTableRecord, PwDbBlockTableRecordIterator, PwDbBlockTable and
// PwDbBlockTableIterator.
//
//   PwDbBlockTableRecord* modelSpace = nullptr;
//   if (pwdbOpenObject(modelSpace, drawing.modelSpaceId(), PwDb::OpenForWrite) ==
//       Plotwright::StatusOk) {
//       auto* insert = new PwDbBlockReference;
//       if (modelSpace->appendPwDbEntity(insert) == Plotwright::StatusOk) insert->close();
//       else delete insert;
//       modelSpace->close();
//   }
//
// The drawing's own blocks have names that start with '*': "*Model_Space" for the model
// space and "*Paper_Space" (or "*Paper_Space" followed by digits) for the paper spaces.
//
// A block with a path name stands for another drawing, an external reference. Its path is
// kept as the user gave it and saved with the drawing; whether the referenced drawing is
// loaded, and which database holds it, is state of the session that pwdbResolveCurrentXRefs
// (toolkit/xref) sets:
//
//   xrefStatus()                 when
//   XrefNotAnXref               the block has no path name
//   XrefUnloaded                the reference is marked unloaded (saved with the drawing)
//   XrefFilePresentUnresolved   not resolved yet; or the file was found but couldn't be read,
//                               or loading it would close a cycle of references
//   XrefFileMissing             resolution found no file
//   XrefResolved                xrefDatabase() holds the referenced drawing
#pragma once

#include <string>
#include <vector>

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDbSymbolTable.h>

class PwDbEntity;
class PwString;
class PwDbXrefResolver;

/// Walks a snapshot of a block's entity ids taken when the iterator was made; steps never
/// allocate, so that blocks of millions of entities are walked quickly.
class PwDbBlockTableRecordIterator {
  public:
    virtual ~PwDbBlockTableRecordIterator();

    /// Goes to the first entity (the last without `atBeginning`).
    void start(bool atBeginning = true, bool skipErased = true);
    /// True when the iterator stands past either end.
    bool done() const;
    /// Moves to the next entity (the previous without `forward`).
    void step(bool forward = true, bool skipErased = true);
    /// The entity's id; StatusIteratorDone (and a null id) when done.
    Plotwright::ErrorStatus getEntityId(PwDbObjectId& id) const;
    /// Opens the entity; StatusIteratorDone when done, else the status of the open.
    Plotwright::ErrorStatus getEntity(PwDbEntity*& entity, PwDb::OpenMode mode,
                                      bool openErased = false) const;
    /// Goes to the entity `id`. StatusNullObjectId for null, StatusKeyNotFound when the
    /// snapshot doesn't hold it (the position is then unchanged).
    Plotwright::ErrorStatus seek(PwDbObjectId id);

  private:
    friend class PwDbBlockTableRecord;
    explicit PwDbBlockTableRecordIterator(std::vector<PwDbObjectId> ids);

    PwDbObjectIdCursor m_cursor;
};

/// A block definition: its entities in the order they were appended, and for the model and
/// paper spaces the layout that shows them.
class PwDbBlockTableRecord : public PwDbSymbolTableRecord {
    PWRX_DECLARE_MEMBERS(PwDbBlockTableRecord);

  public:
    PwDbBlockTableRecord();
    ~PwDbBlockTableRecord() override;

    /// Appends `entity` to the block. The block must be open for write and in a database. An
    /// entity in no database is added to the block's database and comes back open for write
    /// (the caller closes it); one already in it must be open for write. An entity without a
    /// layer is put on the database's current layer. StatusNullDatabase for null,
    /// StatusNotOpenForWrite, StatusNotInDatabase, StatusWrongDatabase for an entity of
    /// another database, StatusAlreadyInDatabase for an entity a block holds already.
    Plotwright::ErrorStatus appendPwDbEntity(PwDbObjectId& id, PwDbEntity* entity);
    Plotwright::ErrorStatus appendPwDbEntity(PwDbEntity* entity);
    /// Number of entities, erased ones included.
    size_t numEntities() const {
        return m_entitiesAsHandles ? m_namedEntities : m_entities.size();
    }

    /// A new iterator over a snapshot of the entities, owned by the caller (delete it).
    Plotwright::ErrorStatus newIterator(PwDbBlockTableRecordIterator*& iterator,
                                        bool atBeginning = true, bool skipErased = true) const;

    /// True when the block belongs to a layout (the model and paper spaces).
    bool isLayout() const { return !m_layout.isNull(); }
    /// The layout showing the block; null for an ordinary block.
    PwDbObjectId getLayoutId() const { return m_layout; }
    /// Ties the block to `layout` (null unties it). StatusNotOpenForWrite, StatusWrongDatabase
    /// for an id of another database.
    Plotwright::ErrorStatus setLayoutId(PwDbObjectId layout);
    /// True when the block is named "*Model_Space" (in any case).
    bool isModelSpace() const;
    /// True when the block is named "*Paper_Space", with or without a number after it (in any
    /// case).
    bool isPaperSpace() const;

    /// Replaces `ids` by the ids of the drawing's non-erased block references that place this
    /// block, in the order the references were made. The drawing holds only direct references
    /// (a block placed inside another block is found as a reference to that other block, not
    /// to this one), and the drawing's index of references is always up to date, so
    /// `directOnly` and `forceValidity` change nothing. The cost is that of the references
    /// found, not of the drawing's size. StatusNotInDatabase when the block is in none,
    /// StatusOutOfMemory when `ids` can't grow (it is then empty).
    Plotwright::ErrorStatus getBlockReferenceIds(PwArray<PwDbObjectId>& ids, bool directOnly = true,
                                                 bool forceValidity = false) const;

    // --- External references ------------------------------------------------------------

    /// True when the block stands for another drawing: its path name isn't empty.
    bool isFromExternalReference() const { return !m_pathName.empty(); }
    /// Makes the block a reference to the drawing stored as `path`, kept exactly as given
    /// (relative to the drawing's folder with '\' or '/', rooted, rooted at one separator,
    /// or a URL); null or empty makes it an ordinary block again. A loaded drawing is let go
    /// and the reference is unresolved. StatusNotOpenForWrite.
    Plotwright::ErrorStatus setPathName(const char16_t* path);
    /// Copies the stored path into `path` (empty for an ordinary block).
    Plotwright::ErrorStatus pathName(PwString& path) const;
    /// The stored path; owned by the block, never null.
    const char16_t* pathName() const { return m_pathName.c_str(); }
    /// The drawing loaded for the reference; null unless xrefStatus() is XrefResolved. A
    /// database of an unresolved reference is never kept, so `includeUnresolved` changes
    /// nothing.
    PwDbDatabase* xrefDatabase(bool includeUnresolved = false) const;
    /// The state of the reference; see the table at the top of this header.
    PwDb::XrefStatus xrefStatus() const;
    /// True when the reference is marked unloaded: resolution passes it over.
    bool isUnloaded() const { return m_unloaded; }
    /// Marks the reference unloaded (letting its drawing go) or not. StatusNotOpenForWrite.
    Plotwright::ErrorStatus setIsUnloaded(bool unloaded);

    /// Name (in the base), entity ids, layout id, path name, unloaded mark.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  protected:
    /// Block names may start with one '*'.
    bool acceptsName(const wstring& name) const override;

  private:
    Plotwright::ErrorStatus checkAppendable(const PwDbEntity* entity) const;
    /// The entities as ids, resolved from the handles a lazy read kept when first asked for.
    const std::vector<PwDbObjectId>& entityIds() const;

    mutable std::vector<PwDbObjectId> m_entities;
    // A drawing read lazily keeps its blocks' entities as handles until they are used: a
    // block of a million entities is read without making a record for each.
    mutable std::string m_entityHandles;
    mutable size_t m_namedEntities = 0;
    mutable bool m_entitiesAsHandles = false;
    PwDbObjectId m_layout;
    wstring m_pathName;
    bool m_unloaded = false;

    // The session's state of the reference, set by resolution only.
    friend class PwDbXrefResolver;
    PwDbDatabase* m_xrefDatabase = nullptr;
    PwDb::XrefStatus m_resolution = PwDb::XrefFilePresentUnresolved;
};

/// The typed iterator of the block table.
class PwDbBlockTableIterator : public PwDbSymbolTableIterator {
  public:
    ~PwDbBlockTableIterator() override;

    using PwDbSymbolTableIterator::getRecord;
    /// Opens the block; StatusIteratorDone when done, else the status of the open.
    Plotwright::ErrorStatus getRecord(PwDbBlockTableRecord*& record, PwDb::OpenMode mode,
                                      bool openErased = false) const;

  private:
    friend class PwDbBlockTable;
    explicit PwDbBlockTableIterator(std::vector<PwDbObjectId> ids);
};

/// The drawing's block table; holds PwDbBlockTableRecord objects.
class PwDbBlockTable : public PwDbSymbolTable {
    PWRX_DECLARE_MEMBERS(PwDbBlockTable);

  public:
    PwDbBlockTable();
    ~PwDbBlockTable() override;

    PwRxClass* recordClass() const override;

    using PwDbSymbolTable::getAt;
    /// Opens the block `name` (see PwDbSymbolTable::getAt).
    Plotwright::ErrorStatus getAt(const char16_t* name, PwDbBlockTableRecord*& record,
                                  PwDb::OpenMode mode, bool openErased = false) const;

    using PwDbSymbolTable::newIterator;
    /// A new typed iterator over a snapshot of the blocks, owned by the caller (delete it).
    Plotwright::ErrorStatus newIterator(PwDbBlockTableIterator*& iterator, bool atBeginning = true,
                                        bool skipErased = true) const;

  protected:
    PwDbSymbolTableIterator* makeIterator(std::vector<PwDbObjectId> ids) const override;
};
