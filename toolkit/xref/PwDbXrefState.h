// What the reference layer keeps per drawing, in the database's extension slots: where a
// drawing loaded for a reference came from, the drawings a host loaded for its references, and
// the host's last reference graphs. Internal to the toolkit.
#pragma once

#include <map>
#include <memory>
#include <string>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>

/// A drawing loaded for a reference knows the host that owns it and where it was loaded from;
/// that stays when it is read again.
struct PwDbXrefOrigin : PwDbDatabaseExtension {
    static const PwDbExtensionSlot slot;
    PwDbDatabase* host = nullptr;
    wstring path;
    std::string fileIdentity;
};

/// A host owns the drawings loaded for its references at every depth, by the identity of their
/// files, so that a file reached along several ways is loaded once. They belong to the host's
/// contents: they go when it is read again.
struct PwDbLoadedXrefs : PwDbDatabaseExtension {
    static const PwDbExtensionSlot slot;
    std::map<std::string, std::unique_ptr<PwDbDatabase>> byFile;
};

/// The reference graphs last built with a drawing as host (with and without the references
/// that aren't resolved), kept for the toolkit's graph calls while no drawing of the process
/// changes.
struct PwDbXrefGraphCache : PwDbDatabaseExtension {
    static const PwDbExtensionSlot slot;
    std::shared_ptr<const PwDbXrefGraphStore> graphs[2];
};
