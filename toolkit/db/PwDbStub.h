// PwDbStub: a database's record of one object, the thing an object id points at.
// Internal to the toolkit: clients reach objects only through ids and pwdbOpenObject.
#pragma once

#include <lodeqdb/toolkit/db/PwDb.h>

class PwDbDatabase;
class PwDbObject;

struct PwDbStub {
    /// The database that holds the record; fixed for the record's life.
    PwDbDatabase* database = nullptr;
    /// The handle, unique within the database.
    PwDbHandle handle = 0;
    /// The object, owned by the database; null while a file being read names the handle
    /// before the object itself is read.
    PwDbObject* object = nullptr;
};

#include <deque>
#include <functional>
#include <unordered_map>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>

/// A database's records: a deque, so that a record stays where it is while others are added
/// and an id (a pointer to its record) stays valid for the database's life.
struct PwDbDatabase::Records {
    std::deque<PwDbStub> stubs;
    std::unordered_map<PwDbHandle, PwDbStub*> byHandle;
};

/// Visits every object record of `database` in the order the records were made, erased
/// objects and records without an object included.
void pwdbForEachStub(const PwDbDatabase& database,
                     const std::function<void(const PwDbStub&)>& visit);
