// PwDbDictionary: objects filed under text keys, in the order they were put in.
//
// Defines PwDbDictionary and PwDbDictionaryIterator.
//
//   PwDbDictionary* layouts = nullptr;
//   if (drawing.getLayoutDictionary(layouts, PwDb::OpenForRead) == Plotwright::StatusOk) {
//       PwDbDictionaryIterator* it = layouts->newIterator();
//       for (; !it->atEnd(); it->advance()) use(it->name(), it->entryId());
//       delete it;
//       layouts->close();
//   }
//
// Keys are compared without regard to case and kept as they were given; any non-empty text is
// a key. The dictionary owns the objects filed in it. An entry stays until it is removed or
// replaced, also when its object is erased: look-ups by key and id still see it (opening
// the object then gives StatusWasErased), only the iterator passes over it.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

class PwString;

/// Walks a snapshot of a dictionary's entries taken when the iterator was made, passing over
/// entries whose objects are erased. The destructor is the first virtual operation, then
/// name, getObject, entryId, atEnd and advance, in this order.
class PwDbDictionaryIterator {
  public:
    virtual ~PwDbDictionaryIterator();

    /// The entry's key as it was given; owned by the iterator, valid until it moves. Null at
    /// the end.
    virtual const char16_t* name() const;
    /// Opens the entry's object; StatusIteratorDone (and null) at the end.
    virtual Plotwright::ErrorStatus getObject(PwDbObject*& object, PwDb::OpenMode mode);
    /// The entry's object id; StatusIteratorDone (and a null id) at the end.
    virtual Plotwright::ErrorStatus entryId(PwDbObjectId& id) const;
    /// True past the last entry.
    virtual bool atEnd() const;
    /// Moves to the next entry whose object isn't erased; nothing at the end.
    virtual void advance();

    /// The entry's object id; null at the end.
    PwDbObjectId entryId() const;

  private:
    friend class PwDbDictionary;
    struct Item {
        wstring key;
        PwDbObjectId id;
    };
    explicit PwDbDictionaryIterator(std::vector<Item> items);
    void passErased();

    std::vector<Item> m_items;
    size_t m_position = 0;
};

class PwDbDictionary : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbDictionary);

  public:
    PwDbDictionary();
    ~PwDbDictionary() override;

    /// The id filed under `key`. StatusInvalidKey for a null or empty key, StatusKeyNotFound
    /// (and a null id) when there is no such entry.
    Plotwright::ErrorStatus getAt(const char16_t* key, PwDbObjectId& id) const;
    /// Opens the object filed under `key`; the look-up's status, else the open's.
    Plotwright::ErrorStatus getAt(const char16_t* key, PwDbObject*& object,
                                  PwDb::OpenMode mode) const;

    /// Files `object` under `key`, and the dictionary becomes its owner. The dictionary must
    /// be open for write and in a database. An object in no database is added to the
    /// dictionary's database and comes back open for write (the caller closes it); one in it
    /// already must be open for write and owned by nothing. An entry of the same key is
    /// replaced in its place, taking the new spelling of the key; its object is erased when
    /// the dictionary owned it (StatusWasOpenForRead or StatusWasOpenForWrite when it can't be
    /// opened to be erased, changing nothing). Refusals: StatusInvalidKey, StatusNullDatabase
    /// for a null object, StatusNotOpenForWrite, StatusNotInDatabase, StatusWrongDatabase,
    /// StatusAlreadyInDatabase for an object owned by something (this dictionary under another
    /// key included), StatusInvalidInput for the dictionary itself or one that owns it.
    /// Filing an object again under its own key changes only the key's spelling.
    Plotwright::ErrorStatus setAt(const char16_t* key, PwDbObject* object, PwDbObjectId& id);

    /// Drops the entry `key`; its object stays, not erased, and owned by nothing.
    /// StatusInvalidKey, StatusNotOpenForWrite, StatusKeyNotFound, or the status of opening
    /// the object to clear its owner (nothing changes then).
    Plotwright::ErrorStatus remove(const char16_t* key);
    /// As remove(key), also giving the id the entry held.
    Plotwright::ErrorStatus remove(const char16_t* key, PwDbObjectId& removedId);

    /// The key of the entry holding `id`, as it was given. StatusNullObjectId for null,
    /// StatusKeyNotFound when no entry holds it.
    Plotwright::ErrorStatus nameAt(PwDbObjectId id, PwString& name) const;
    /// Changes an entry's key, keeping its place. False when the dictionary isn't writable,
    /// either key is null or empty, `oldName` is not there or `newName` is another entry's.
    bool setName(const char16_t* oldName, const char16_t* newName);

    /// True when an entry has the key.
    bool has(const char16_t* key) const;
    /// True when an entry holds `id`.
    bool has(PwDbObjectId id) const;
    /// Number of entries, those whose objects are erased included.
    size_t numEntries() const { return m_entries.size(); }

    /// A new iterator at the first entry whose object isn't erased; owned by the caller
    /// (delete it); never null.
    PwDbDictionaryIterator* newIterator() const;

    /// The entries in order, each its key and id (after the owner).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    struct Entry {
        wstring key;
        wstring folded;
        PwDbObjectId id;
    };

    /// The index of the entry with the folded key; numEntries() when there is none.
    size_t indexOf(const wstring& folded) const;
    size_t indexOf(PwDbObjectId id) const;
    void reindex();
    Plotwright::ErrorStatus checkFileable(const PwDbObject* object) const;
    /// True when `id` owns this dictionary, directly or through its owners.
    bool isOwnedBy(PwDbObjectId id) const;

    std::vector<Entry> m_entries;
    // Folded key to the entry's index.
    std::unordered_map<wstring, size_t> m_index;
};
