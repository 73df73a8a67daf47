// PwDbObjectRecord: one object as a stored drawing keeps it (its class, its handle, its
// data items), and the two conversions between objects and records. Every reader and writer
// of drawings goes through these, so that unknown classes become proxies in one place.
//
//   PwDbObjectRecord record;
//   pwdbRecordObject(*object, record);              // writing
//   PwDbObject* read = nullptr;
//   pwdbObjectFromRecord(record, &database, read);  // reading: the object is in `database`
//   read->close();
#pragma once

#include <vector>

#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

struct PwDbObjectRecord {
    /// The object's class and its bases, most derived first, ending with "PwDbObject".
    std::vector<wstring> classChain;
    PwDbHandle handle = 0;
    /// The object is erased. Erased objects are kept in files so that every id a drawing
    /// holds names an object after reading, and handles stay what they were.
    bool erased = false;
    /// What the object's plwOutFields wrote.
    std::vector<PwDbMemoryFiler::Item> data;
};

/// Records `object`: its class chain (for a proxy, the chain of the class it stands for), its
/// handle and its persistent data.
Plotwright::ErrorStatus pwdbRecordObject(const PwDbObject& object, PwDbObjectRecord& record);

/// Makes the object of `record` and adds it to `database` under the record's handle (erased
/// when the record says so); it comes back open for write, and the caller closes it. A class this
/// process lacks (or can't make by name) gives a PwDbProxyEntity when the chain names PwDbEntity,
/// else a PwDbProxyObject. StatusFilerError for a chain without "PwDbObject" or data that doesn't
/// read; nothing is added to the database then.
Plotwright::ErrorStatus pwdbObjectFromRecord(const PwDbObjectRecord& record, PwDbDatabase* database,
                                             PwDbObject*& object);
