// PwDbStub: a database's record of one object, the thing an object id points at.
// Internal to the toolkit: clients reach objects only through ids and pwdbOpenObject.
#pragma once

#include "toolkit/db/PwDb.h"

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
