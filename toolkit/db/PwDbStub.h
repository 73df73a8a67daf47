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
    /// The record is in the file the database reads and hasn't been decoded yet.
    bool pending = false;
    /// The erased flag the file holds for a pending record.
    bool storedErased = false;
};

#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>

/// Where the records of a drawing read lazily come from: the file layer implements it over
/// the file being read. The database asks it for one record when the record is first needed
/// and for all of them when the file is let go.
class PwDbRecordSource {
  public:
    virtual ~PwDbRecordSource();
    /// Decodes the record at `index` among the file's records (the index of its stub in
    /// Records::fileStubs) into a new object, in no database yet, whose ids are ids of
    /// `database`. StatusBadFileFormat when the record fails its check, doesn't decode, or
    /// the file is no longer the one that was read.
    virtual Plotwright::ErrorStatus decode(PwDbDatabase& database, size_t index,
                                           PwDbObject*& object) = 0;
    /// Whether the class chain of the record at `index` names the class `className`.
    virtual bool namesClass(size_t index, const char16_t* className) const = 0;
    /// The file read, for a save over it that must first take everything still pending.
    virtual const wstring& path() const = 0;
    /// Reads into memory every record still wanted, so that nothing is read from the file
    /// afterwards: before a save replaces it. StatusBadFileFormat when the file changed.
    virtual Plotwright::ErrorStatus keepEverything() = 0;
};

/// A database's records. Those of the file read lazily sit in `fileStubs`, in handle order
/// and made once, so that a handle is found by bisection and an id (a pointer to its record)
/// stays valid; every record made later sits in the deque, found through `byHandle`.
struct PwDbDatabase::Records {
    std::vector<PwDbStub> fileStubs;
    std::unique_ptr<PwDbRecordSource> source;
    size_t pendingCount = 0;
    std::deque<PwDbStub> stubs;
    std::unordered_map<PwDbHandle, PwDbStub*> byHandle;

    /// The record of `handle` among fileStubs; null when there is none.
    PwDbStub* findFileStub(PwDbHandle handle);
};

/// The object of `stub`, decoding a pending record first; null when there is none, or when
/// the pending record couldn't be decoded (`why`, when given, then says why:
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
