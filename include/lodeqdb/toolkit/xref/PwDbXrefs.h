// External references: loading the drawings that a drawing refers to, at every depth.
//
//   PwDbDatabase host;
//   if (host.readPlwFile(u"/proj/site.plw", PwDbDatabase::OpenModeAlternate) == StatusOk) {
//       pwdbResolveCurrentXRefs(&host, false, true);
//       // every reference block now has its xrefStatus(); the resolved ones their
//       // xrefDatabase(), owned by `host`
//   }
//
// Resolution walks the references depth first, in block table order. A reference's file is
// found as pwdbFindDependentFile finds it, relative to the drawing that holds the reference.
// Rules:
//   - A file reached twice anywhere below one host is loaded once; every block that refers
//     to it shares the one database. Files are told apart by their canonical paths, so two
//     spellings of one path, or a symbolic link and its target, are one file; a file that a
//     save replaced stays the same file.
//   - A reference to a drawing that is being resolved further up the same way (A to B to
//     A, or a drawing to itself) would close a cycle: it isn't loaded and its status is
//     XrefFilePresentUnresolved. The loaded references thus never form a cycle.
//   - A reference whose file isn't found gets XrefFileMissing; one whose file can't be read
//     as a drawing (native, or exchange for a ".plx" name) XrefFilePresentUnresolved. The
//     rest goes on.
//   - References marked unloaded are passed over.
//   - The host owns every database loaded below it, until it is destroyed or read again.
//     A database that no reference uses any more after a resolution is destroyed by it.
//   - Reference databases are read in OpenModeAlternate: no file stays open or locked.
#pragma once

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

/// Resolves the references of `database`: with `doNewOnly`, those that aren't resolved yet
/// (unresolved and missing ones are tried again); without, every reference, the resolved
/// ones being read again from disk. For a database that was itself loaded for a reference,
/// its host's whole tree is resolved. `useThreadEngine` is accepted; resolution runs on the
/// calling thread. StatusNullDatabase for null; otherwise StatusOk: the outcome of each
/// reference is its block's xrefStatus().
Plotwright::ErrorStatus pwdbResolveCurrentXRefs(PwDbDatabase* database,
                                                bool useThreadEngine = false,
                                                bool doNewOnly = true);

/// The full path from which `database` was loaded for a reference, as found (absolute and
/// lexically normalised); "" for a drawing that wasn't loaded for one, and for null. Owned by
/// the database.
const char16_t* pwdbOriginalXrefFullPathFor(const PwDbDatabase* database);

/// The host that owns `database` as a reference drawing; null for a drawing loaded for no
/// reference.
PwDbDatabase* pwdbXrefHostFor(const PwDbDatabase* database);

/// Loads again from disk the references whose blocks are `blockIds`, in their hosts: a
/// loaded one is read again in place (every block sharing it sees the new drawing), an
/// unloaded one loses its mark, an unresolved or missing one is tried again; then the
/// host's tree is resolved, so that references new in the reread drawings are loaded too.
/// Gives the first failure met, going on with the other ids: StatusNullObjectId,
/// StatusInvalidObjectId, StatusNotThatKindOfClass for an id that is no reference block,
/// StatusFileNotFound when a reference's file is gone (its status becomes XrefFileMissing),
/// or the status of reading a file that is there but isn't a sound drawing (the loaded
/// drawing then stays as it was).
Plotwright::ErrorStatus pwdbReloadXrefs(const PwArray<PwDbObjectId>& blockIds);
