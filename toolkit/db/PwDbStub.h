// PwDbStub: a database's record of one object, the thing an object id points at, and the
// records of a database, some of which may still wait in the file it reads.
// Internal to the toolkit: clients reach objects only through ids and pwdbOpenObject.
#pragma once

#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbDatabase;
class PwDbObject;
class PwRxClass;

struct PwDbStub {
    /// The database that holds the record; fixed for the record's life.
    PwDbDatabase* database = nullptr;
    /// The handle, unique within the database.
    PwDbHandle handle = 0;
    /// The object, owned by the database; null while a file being read names the handle
    /// before the object itself is read, and while the record is pending. Read it through
    /// pwdbStubObject, which decodes a pending record first.
    PwDbObject* object = nullptr;
    /// For a record of the file read lazily, its page there (Records::filePages).
    uint32_t filePage = 0;
    /// The record is in the file the database reads and hasn't been decoded yet.
    bool pending = false;
    /// The erased flag the file holds for a pending record.
    bool storedErased = false;
    /// The handle lies among the records of a page of the file whose part of the index
    /// couldn't be read: the record is there but can't be had.
    bool unreadable = false;
    /// The pending record is being decoded now.
    bool decodingNow = false;
};

/// The deepest that decoding one record may decode others inside it.
inline constexpr size_t kPwDbMostNestedDecodes = 32;

#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>

/// Where the records of a drawing read lazily come from: the file layer implements it over
/// the file being read. The file's records lie in pages; the database asks for a page's
/// handles when one of them is first looked up, for one record when it is first needed, and
/// for all of them when the file is let go. `slot` is a record's place among its page's.
class PwDbRecordSource {
  public:
    virtual ~PwDbRecordSource();
    /// The number of pages, and of records in all of them.
    virtual size_t pageCount() const = 0;
    virtual size_t recordCount() const = 0;
    /// The first handle of page `page` and its number of records.
    virtual PwDbHandle pageFirstHandle(size_t page) const = 0;
    virtual uint32_t pageRecordCount(size_t page) const = 0;
    /// The handles and erased flags of the records of page `page`; false when the index
    /// doesn't describe them soundly.
    virtual bool pageRecords(size_t page, std::vector<PwDbHandle>& handles,
                             std::vector<uint8_t>& erased) = 0;
    /// Decodes a record into a new object, in no database yet, whose ids are ids of
    /// `database`. StatusBadFileFormat when the record fails its check, doesn't decode, or
    /// the file is no longer the one that was read.
    virtual Plotwright::ErrorStatus decode(PwDbDatabase& database, size_t page, size_t slot,
                                           PwDbObject*& object) = 0;
    /// Whether the class chain of a record names the class `className`.
    virtual bool namesClass(size_t page, size_t slot, const char16_t* className) = 0;
    /// The handles of every record whose class chain names `className`, in rising order.
    virtual void handlesNaming(const char16_t* className, std::vector<PwDbHandle>& handles) = 0;
    /// The file read, for a save over it that must first take everything still pending.
    virtual const wstring& path() const = 0;
    /// Reads into memory every record still wanted, so that nothing is read from the file
    /// afterwards: before a save replaces it. StatusBadFileFormat when the file changed.
    virtual Plotwright::ErrorStatus keepEverything() = 0;
};

/// The records of one page of the file read lazily, made when one of them is first looked
/// up: an array made once, so that an id (a pointer to its record) stays valid.
struct PwDbFilePage {
    PwDbHandle firstHandle = 0;
    uint32_t count = 0;
    std::unique_ptr<PwDbStub[]> stubs;
    /// Its part of the index couldn't be read: its records are missing (count is then 0).
    bool broken = false;
};

/// A database's records. Those of the file read lazily sit in `filePages`, in handle order;
/// every record made later sits in the deque, found through `byHandle`.
struct PwDbDatabase::Records {
    explicit Records(PwDbDatabase* database) : owner(database) {}

    /// The database whose records these are; changes only when contents are swapped.
    PwDbDatabase* owner = nullptr;
    std::vector<PwDbFilePage> filePages;
    std::unique_ptr<PwDbRecordSource> source;
    /// Records of the file not decoded yet, whether their page's records are made or not.
    size_t pendingCount = 0;
    /// A page's part of the index didn't read: its records are missing from the drawing.
    bool brokenIndex = false;
    /// The page of the last handle found: records decoded one after another name handles
    /// near each other.
    size_t lastPage = 0;
    /// How many records are being decoded, one inside another (a table decodes its records
    /// to know their names). Past kPwDbMostNestedDecodes, and for a record already being
    /// decoded (a table that names itself), a record stays in the file until the decode
    /// that needs it is done, as it would be in a file read whole: decoding never recurses
    /// without bound.
    size_t decodingDepth = 0;
    std::deque<PwDbStub> stubs;
    std::unordered_map<PwDbHandle, PwDbStub*> byHandle;

    /// The record of `handle` among the file's, its page's records made when needed; null
    /// when there is none.
    PwDbStub* findFileStub(PwDbHandle handle);
    /// Makes the records of page `page` when they aren't yet; false when its index is broken.
    bool makePage(size_t page);
    /// Makes the records of every page.
    void makeAllPages();
    /// The page whose handles `handle` would be among; SIZE_MAX before the first page.
    size_t pageOf(PwDbHandle handle);
    /// Visits the file's records made so far, in handle order.
    template <class Visit>
    void forEachFileStub(Visit visit) {
        for (PwDbFilePage& page : filePages) {
            if (!page.stubs) continue;
            for (uint32_t i = 0; i < page.count; ++i) visit(page.stubs[i]);
        }
    }
};

/// The object of `stub`, decoding a pending record first; null when there is none, or when
/// the pending record couldn't be decoded or can't be had (`why`, when given, then says why:
/// StatusBadFileFormat).
PwDbObject* pwdbStubObject(const PwDbStub& stub, Plotwright::ErrorStatus* why = nullptr);

/// Whether the record `stub` holds (or, pending, will hold) an object of class `cls` or of a
/// class derived from it, as far as can be told without decoding: a pending record
/// answers from its class chain.
bool pwdbStubMayBe(const PwDbStub& stub, const PwRxClass* cls);

/// The number of records of `database` still pending in the file it reads.
size_t pwdbPendingRecordCount(const PwDbDatabase& database);

/// Visits every object record of `database`: the file's in handle order, then those made
/// later in the order they were made; erased objects and records without an object
/// included. Pending records are decoded first.
void pwdbForEachStub(const PwDbDatabase& database,
                     const std::function<void(const PwDbStub&)>& visit);
