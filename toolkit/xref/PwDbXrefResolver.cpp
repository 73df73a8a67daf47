// Resolving references: a depth-first walk over the files a host refers to, which loads each
// file once and never follows a reference back up its own way.
#include "toolkit/xref/PwDbXrefResolver.h"

#include <algorithm>
#include <memory>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>
#include "toolkit/db/PwDbStub.h"
#include <lodeqdb/toolkit/pal/PwFileIO.h>
#include "toolkit/xref/PwDbXrefState.h"
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace FileIO = Morvane::Plotwright::PAL::FileIO;
using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

namespace {

PwDbBlockTableRecord* BlockOf(PwDbObjectId id) {
    if (id.isNull()) return nullptr;
    return PwDbBlockTableRecord::cast(pwdbStubObject(*id.stub()));
}

bool IsExchangeFile(const wstring& path) {
    return LodeUtil::Order(LodeUtil::Path::GetExtension(path), u".plx",
                           LodeUtil::StringOrder::CodeUnit, LodeUtil::StringCase::Ignore) == 0;
}

ErrorStatus ReadDrawing(PwDbDatabase& database, const wstring& path) {
    if (IsExchangeFile(path)) return database.plxIn(path.c_str());
    return database.readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate);
}

// Where `database` was loaded from; an empty origin for a drawing not loaded for a reference.
const PwDbXrefOrigin& OriginOf(const PwDbDatabase& database) {
    static const PwDbXrefOrigin none;
    const PwDbXrefOrigin* origin = pwdbFindExtension<PwDbXrefOrigin>(database);
    return origin != nullptr ? *origin : none;
}

}  // namespace

const PwDbExtensionSlot PwDbXrefOrigin::slot{};
const PwDbExtensionSlot PwDbLoadedXrefs::slot{.followsContents = true};
const PwDbExtensionSlot PwDbXrefGraphCache::slot{};

PwDbXrefResolver::PwDbXrefResolver(PwDbDatabase& host, bool rereadResolved)
    : m_host(host), m_rereadResolved(rereadResolved) {}

PwDbDatabase& PwDbXrefResolver::hostOf(PwDbDatabase& database) {
    PwDbDatabase* host = OriginOf(database).host;
    return host != nullptr ? *host : database;
}

const wstring& PwDbXrefResolver::originalPath(const PwDbDatabase& database) {
    return OriginOf(database).path;
}

PwDbDatabase* PwDbXrefResolver::loadedFor(const PwDbDatabase& database) {
    return OriginOf(database).host;
}

std::vector<PwDbBlockTableRecord*> PwDbXrefResolver::referenceBlocks(const PwDbDatabase& database) {
    std::vector<PwDbBlockTableRecord*> blocks;
    const PwDbObjectId tableId = database.blockTableId();
    if (tableId.isNull()) return blocks;
    const auto* table = PwDbBlockTable::cast(pwdbStubObject(*tableId.stub()));
    if (table == nullptr) return blocks;
    PwDbSymbolTableIterator* iterator = nullptr;
    table->newIterator(iterator, true, true);
    for (; !iterator->done(); iterator->step(true, true)) {
        PwDbObjectId id;
        iterator->getRecordId(id);
        PwDbBlockTableRecord* block = BlockOf(id);
        if (block != nullptr && block->isFromExternalReference()) blocks.push_back(block);
    }
    delete iterator;
    return blocks;
}

void PwDbXrefResolver::setResolution(PwDbBlockTableRecord& block, PwDbDatabase* loaded,
                                     PwDb::XrefStatus status) {
    block.m_xrefDatabase = loaded;
    block.m_resolution = status;
    if (PwDbDatabase* holder = block.database()) holder->noteChange();
}

void PwDbXrefResolver::resolveTree(PwDbDatabase& database, bool rereadResolved) {
    PwDbDatabase& host = hostOf(database);
    PwDbXrefResolver run(host, rereadResolved);
    const char16_t* name = nullptr;
    host.getFilename(name);
    run.resolveReferencesOf(host, FileIO::FileIdentity(name));
    run.dropUnused();
}

void PwDbXrefResolver::resolveReferencesOf(PwDbDatabase& holder,
                                           const std::string& holderIdentity) {
    struct Level {
        PwDbDatabase* holder;
        std::string identity;
        std::vector<PwDbBlockTableRecord*> blocks;
        size_t next = 0;
    };
    std::vector<Level> way;
    const auto enter = [&](PwDbDatabase& database, const std::string& identity) {
        if (!identity.empty()) m_inProgress.insert(identity);
        way.push_back(Level{&database, identity, referenceBlocks(database), 0});
    };
    enter(holder, holderIdentity);
    while (!way.empty()) {
        Level& level = way.back();
        if (level.next == level.blocks.size()) {
            if (!level.identity.empty()) {
                m_inProgress.erase(level.identity);
                m_finished.insert(level.identity);
            }
            way.pop_back();
            continue;
        }
        PwDbBlockTableRecord* block = level.blocks[level.next++];
        if (block->isUnloaded()) continue;
        PwDbDatabase* loaded = block->xrefDatabase();
        if (loaded == nullptr) {
            loaded = resolve(*level.holder, *block);
        } else if (m_rereadResolved) {
            reread(*loaded);
        }
        if (loaded == nullptr) continue;
        const std::string identity = OriginOf(*loaded).fileIdentity;
        if (m_finished.count(identity) != 0 || inProgress(identity)) continue;
        enter(*loaded, identity);
    }
}

PwDbDatabase* PwDbXrefResolver::resolve(PwDbDatabase& holder, PwDbBlockTableRecord& block) {
    wstring found;
    if (pwdbFindDependentFile(found, block.pathName(), &holder,
                              PwDbHostApplicationServices::kXrefDrawing) != StatusOk) {
        setResolution(block, nullptr, PwDb::XrefFileMissing);
        return nullptr;
    }
    const std::string identity = FileIO::FileIdentity(found.c_str());
    if (identity.empty()) {
        setResolution(block, nullptr, PwDb::XrefFileMissing);
        return nullptr;
    }
    const bool closesCycle = inProgress(identity);
    if (closesCycle || m_unreadable.count(identity) != 0) {
        setResolution(block, nullptr, PwDb::XrefFilePresentUnresolved);
        return nullptr;
    }
    PwDb::XrefStatus status = PwDb::XrefResolved;
    PwDbDatabase* loaded = load(found, identity, status);
    setResolution(block, loaded, status);
    return loaded;
}

PwDbDatabase* PwDbXrefResolver::load(const wstring& path, const std::string& identity,
                                     PwDb::XrefStatus& status) {
    auto& byFile = pwdbExtension<PwDbLoadedXrefs>(m_host).byFile;
    if (auto existing = byFile.find(identity); existing != byFile.end()) {
        status = PwDb::XrefResolved;
        return existing->second.get();
    }
    auto database = std::make_unique<PwDbDatabase>(false, true);
    if (ReadDrawing(*database, path) != StatusOk) {
        m_unreadable.insert(identity);
        status = PwDb::XrefFilePresentUnresolved;
        return nullptr;
    }
    PwDbXrefOrigin& origin = pwdbExtension<PwDbXrefOrigin>(*database);
    origin.host = &m_host;
    origin.path = path;
    origin.fileIdentity = identity;
    PwDbDatabase* loaded = database.get();
    byFile.emplace(identity, std::move(database));
    status = PwDb::XrefResolved;
    return loaded;
}

void PwDbXrefResolver::reread(PwDbDatabase& loaded) {
    const std::string& identity = OriginOf(loaded).fileIdentity;
    if (m_finished.count(identity) != 0) return;
    if (inProgress(identity)) return;
    // A failed read keeps the drawing as it was: the reference stays usable.
    ReadDrawing(loaded, OriginOf(loaded).path);
}

ErrorStatus PwDbXrefResolver::prepareReload(PwDbObjectId id) {
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    if (!id.isValid()) return Plotwright::StatusInvalidObjectId;
    PwDbBlockTableRecord* block = BlockOf(id);
    if (block == nullptr || !block->isFromExternalReference())
        return Plotwright::StatusNotThatKindOfClass;
    PwDbDatabase* holder = id.database();
    if (block->m_unloaded) {
        block->m_unloaded = false;
        holder->noteChange();
    }
    PwDbDatabase* loaded = block->xrefDatabase();
    if (loaded == nullptr) {
        setResolution(*block, nullptr, PwDb::XrefFilePresentUnresolved);
        return StatusOk;
    }
    wstring found;
    if (pwdbFindDependentFile(found, block->pathName(), holder,
                              PwDbHostApplicationServices::kXrefDrawing) != StatusOk) {
        setResolution(*block, nullptr, PwDb::XrefFileMissing);
        return Plotwright::StatusFileNotFound;
    }
    if (FileIO::FileIdentity(found.c_str()) != OriginOf(*loaded).fileIdentity) {
        // The reference now leads to another file: resolution finds it afresh.
        setResolution(*block, nullptr, PwDb::XrefFilePresentUnresolved);
        return StatusOk;
    }
    return ReadDrawing(*loaded, OriginOf(*loaded).path);
}

void PwDbXrefResolver::dropUnused() {
    auto* loadedXrefs = pwdbFindExtension<PwDbLoadedXrefs>(m_host);
    if (loadedXrefs == nullptr) return;
    auto& byFile = loadedXrefs->byFile;
    std::set<const PwDbDatabase*> used;
    std::vector<const PwDbDatabase*> pending{&m_host};
    while (!pending.empty()) {
        const PwDbDatabase* database = pending.back();
        pending.pop_back();
        for (PwDbBlockTableRecord* block : referenceBlocks(*database)) {
            const PwDbDatabase* loaded = block->xrefDatabase();
            if (loaded != nullptr && used.insert(loaded).second) pending.push_back(loaded);
        }
    }
    std::erase_if(byFile,
                  [&used](const auto& entry) { return used.count(entry.second.get()) == 0; });
}
