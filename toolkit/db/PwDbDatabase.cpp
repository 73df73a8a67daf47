// The database as an object store: handles, records, adding objects, destruction.
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

#include <algorithm>
#include <atomic>
#include <unordered_set>

#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>
#include <lodeqdb/toolkit/db/PwDbTransactionManager.h>
#include "toolkit/db/PwDbStub.h"

// Which layers entities use, worked out at most once per state of the drawing.
struct PwDbDatabase::LayerUsage {
    uint64_t changeCount = 0;
    std::unordered_set<PwDbObjectId> used;
};

PwDbDatabase::PwDbDatabase(bool makeWorkingDatabase, bool noDocument)
    : m_records(std::make_unique<Records>(this)),
      m_noDocument(noDocument),
      m_transactions(std::make_unique<PwDbTransactionManager>(this)) {
    buildDefaultDrawing();
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    if (makeWorkingDatabase && services != nullptr && services->workingDatabase() == nullptr) {
        services->setWorkingDatabase(this);
    }
}

PwDbDatabase::PwDbDatabase(EmptyTag)
    : m_records(std::make_unique<Records>(this)),
      m_transactions(std::make_unique<PwDbTransactionManager>(this)) {}

namespace {

std::atomic<uint64_t> g_changeEpoch{1};

}  // namespace

uint64_t pwdbChangeEpoch() {
    return g_changeEpoch.load(std::memory_order_acquire);
}

void PwDbDatabase::noteChange() {
    ++m_changeCount;
    g_changeEpoch.fetch_add(1, std::memory_order_acq_rel);
}

PwDbDatabase::~PwDbDatabase() {
    // Pointers to this drawing kept in caches must not match a drawing made later here.
    g_changeEpoch.fetch_add(1, std::memory_order_acq_rel);
    // Transactions still running end first: they hold objects about to be deleted.
    m_transactions.reset();
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    if (services != nullptr && services->workingDatabase() == this) {
        services->setWorkingDatabase(nullptr);
    }
    m_records->forEachFileStub([](PwDbStub& stub) {
        delete stub.object;
        stub.object = nullptr;
    });
    for (PwDbStub& stub : m_records->stubs) {
        delete stub.object;
        stub.object = nullptr;
    }
}

PwDbStub& PwDbDatabase::newStub(PwDbHandle handle) {
    PwDbStub& stub = m_records->stubs.emplace_back();
    stub.database = this;
    stub.handle = handle;
    m_records->byHandle.emplace(handle, &stub);
    if (handle >= m_nextHandle) m_nextHandle = handle + 1;
    return stub;
}

Plotwright::ErrorStatus PwDbDatabase::addPwDbObject(PwDbObjectId& id, PwDbObject* object) {
    id = PwDbObjectId();
    if (auto status = addPwDbObjectWithHandle(object, m_nextHandle)) return status;
    id = object->objectId();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbDatabase::addPwDbObject(PwDbObject* object) {
    PwDbObjectId ignored;
    return addPwDbObject(ignored, object);
}

Plotwright::ErrorStatus PwDbDatabase::addPwDbObjectWithHandle(PwDbObject* object,
                                                              PwDbHandle handle) {
    if (object == nullptr) return Plotwright::StatusNullDatabase;
    if (object->m_stub != nullptr) return Plotwright::StatusAlreadyInDatabase;
    if (handle == 0 || handle == kPwDbNoHandleAfter) return Plotwright::StatusInvalidInput;
    PwDbStub* stub = m_records->findFileStub(handle);
    if (stub != nullptr) {
        if (stub->object != nullptr || stub->pending) return Plotwright::StatusDuplicateKey;
    } else if (const auto found = m_records->byHandle.find(handle);
               found != m_records->byHandle.end()) {
        stub = found->second;
        if (stub->object != nullptr) return Plotwright::StatusDuplicateKey;
    } else {
        stub = &newStub(handle);
    }
    stub->object = object;
    object->m_stub = stub;
    object->m_writer = true;
    object->m_readers = 0;
    object->m_modified = false;
    ++m_objectCount;
    if (const PwDbBlockReference* reference = PwDbBlockReference::cast(object)) {
        noteBlockReference(reference->objectId(), PwDbObjectId(), reference->blockTableRecord());
    }
    noteChange();
    return Plotwright::StatusOk;
}

namespace {

bool ByHandle(PwDbObjectId a, PwDbObjectId b) {
    return a.handle() < b.handle();
}

}  // namespace

void PwDbDatabase::noteBlockReference(PwDbObjectId reference, PwDbObjectId before,
                                      PwDbObjectId after) {
    if (reference.isNull() || before == after) return;
    if (!before.isNull()) {
        const auto found = m_blockReferences.find(before);
        if (found != m_blockReferences.end()) {
            std::vector<PwDbObjectId>& list = found->second;
            const auto at = std::lower_bound(list.begin(), list.end(), reference, ByHandle);
            if (at != list.end() && *at == reference) list.erase(at);
            if (list.empty()) m_blockReferences.erase(found);
        }
    }
    if (!after.isNull()) {
        std::vector<PwDbObjectId>& list = m_blockReferences[after];
        // New references have the highest handle so far: the insertion is an append.
        const auto at = std::lower_bound(list.begin(), list.end(), reference, ByHandle);
        if (at == list.end() || *at != reference) list.insert(at, reference);
    }
}

Plotwright::ErrorStatus PwDbDatabase::getBlockReferenceIds(PwDbObjectId block,
                                                           PwArray<PwDbObjectId>& ids) const {
    ids.setLogicalLength(0);
    // The references are noted as their records are decoded, so all of them must be.
    if (auto status = decodeAllPending()) return status;
    const auto found = m_blockReferences.find(block);
    if (found == m_blockReferences.end()) return Plotwright::StatusOk;
    for (const PwDbObjectId reference : found->second) {
        const PwDbObject* object = reference.stub()->object;
        if (object == nullptr || object->isErased()) continue;
        if (ids.append(reference) == PwArray<PwDbObjectId>::kNoIndex) {
            ids.setLogicalLength(0);
            return Plotwright::StatusOutOfMemory;
        }
    }
    return Plotwright::StatusOk;
}

void PwDbDatabase::discardObjectsFrom(PwDbHandle firstHandle, size_t stubCount) {
    while (m_records->stubs.size() > stubCount) {
        PwDbStub& stub = m_records->stubs.back();
        if (const PwDbBlockReference* reference = PwDbBlockReference::cast(stub.object)) {
            noteBlockReference(PwDbObjectId(&stub), reference->blockTableRecord(),
                               PwDbObjectId());
        }
        if (stub.object != nullptr) --m_objectCount;
        delete stub.object;
        m_records->byHandle.erase(stub.handle);
        m_records->stubs.pop_back();
    }
    m_nextHandle = firstHandle;
    m_layerUsage.reset();
    noteChange();
}

PwDbObjectId PwDbDatabase::getPwDbObjectId(PwDbHandle handle, bool createIfMissing) {
    // The largest handle would leave no handle for the next object: it names nothing.
    if (handle == 0 || handle == kPwDbNoHandleAfter) return PwDbObjectId();
    if (PwDbStub* stub = m_records->findFileStub(handle)) return PwDbObjectId(stub);
    if (const auto found = m_records->byHandle.find(handle); found != m_records->byHandle.end()) {
        return PwDbObjectId(found->second);
    }
    // A handle among those of a page of the file whose index can't be read may name a record
    // of it: it gets an id whose object can't be had, and opening it says so.
    const size_t page = m_records->pageOf(handle);
    const bool unreadable = page != SIZE_MAX && m_records->filePages[page].broken;
    if (!createIfMissing && !unreadable) return PwDbObjectId();
    PwDbStub& made = newStub(handle);
    made.unreadable = unreadable;
    return PwDbObjectId(&made);
}

Plotwright::ErrorStatus PwDbDatabase::getFilename(const char16_t*& name) const {
    name = m_hasFilename ? m_filename.c_str() : nullptr;
    return Plotwright::StatusOk;
}

void PwDbDatabase::setFilename(const wstring& path) {
    m_filename = path;
    m_hasFilename = true;
    noteChange();
}

PwDbTransactionManager* PwDbDatabase::transactionManager() const {
    return m_transactions.get();
}

Plotwright::ErrorStatus PwDbDatabase::setClayer(PwDbObjectId layer) {
    if (layer.isNull()) return Plotwright::StatusNullObjectId;
    if (layer.database() != this) return Plotwright::StatusWrongDatabase;
    m_currentLayer = layer;
    return Plotwright::StatusOk;
}

bool PwDbDatabase::isLayerUsedByEntities(PwDbObjectId layer) const {
    if (!m_layerUsage || m_layerUsage->changeCount != m_changeCount) {
        auto usage = std::make_unique<LayerUsage>();
        usage->changeCount = m_changeCount;
        pwdbForEachStub(*this, [&usage](const PwDbStub& stub) {
            const PwDbEntity* entity = PwDbEntity::cast(stub.object);
            if (entity != nullptr && !entity->isErased()) usage->used.insert(entity->layerId());
        });
        m_layerUsage = std::move(usage);
    }
    return m_layerUsage->used.count(layer) > 0;
}

void PwDbDatabase::swapContents(PwDbDatabase& other) {
    std::swap(m_records, other.m_records);
    std::swap(m_nextHandle, other.m_nextHandle);
    std::swap(m_objectCount, other.m_objectCount);
    std::swap(m_blockTable, other.m_blockTable);
    std::swap(m_layerTable, other.m_layerTable);
    std::swap(m_textStyleTable, other.m_textStyleTable);
    std::swap(m_currentLayoutBlock, other.m_currentLayoutBlock);
    std::swap(m_blockReferences, other.m_blockReferences);
    std::swap(m_namedObjects, other.m_namedObjects);
    std::swap(m_layoutDictionary, other.m_layoutDictionary);
    std::swap(m_plotSettingsDictionary, other.m_plotSettingsDictionary);
    std::swap(m_modelSpace, other.m_modelSpace);
    std::swap(m_paperSpace, other.m_paperSpace);
    std::swap(m_layerZero, other.m_layerZero);
    std::swap(m_currentLayer, other.m_currentLayer);
    std::swap(m_measurement, other.m_measurement);
    // The layers' state that belongs to the contents goes with them; the rest stays.
    std::vector<const PwDbExtensionSlot*> following;
    for (const auto* list : {&m_extensions, &other.m_extensions}) {
        for (const auto& entry : *list) {
            if (entry.first->followsContents) following.push_back(entry.first);
        }
    }
    std::sort(following.begin(), following.end());
    following.erase(std::unique(following.begin(), following.end()), following.end());
    for (const PwDbExtensionSlot* slot : following) {
        takeExtensionSlot(*slot).swap(other.takeExtensionSlot(*slot));
    }
    // The records move as a whole, so ids stay valid; only the records' owner changes.
    m_records->owner = this;
    other.m_records->owner = &other;
    m_records->forEachFileStub([this](PwDbStub& stub) { stub.database = this; });
    for (PwDbStub& stub : m_records->stubs) stub.database = this;
    other.m_records->forEachFileStub([&other](PwDbStub& stub) { stub.database = &other; });
    for (PwDbStub& stub : other.m_records->stubs) stub.database = &other;
    m_layerUsage.reset();
    other.m_layerUsage.reset();
    noteChange();
    other.noteChange();
}

PwDbDatabaseExtension* PwDbDatabase::extension(const PwDbExtensionSlot& slot) const {
    for (const auto& [owner, state] : m_extensions) {
        if (owner == &slot) return state.get();
    }
    return nullptr;
}

void PwDbDatabase::setExtension(const PwDbExtensionSlot& slot,
                                std::unique_ptr<PwDbDatabaseExtension> state) {
    takeExtensionSlot(slot) = std::move(state);
}

std::unique_ptr<PwDbDatabaseExtension>& PwDbDatabase::takeExtensionSlot(
    const PwDbExtensionSlot& slot) {
    for (auto& [owner, state] : m_extensions) {
        if (owner == &slot) return state;
    }
    return m_extensions.emplace_back(&slot, nullptr).second;
}

void pwdbForEachStub(const PwDbDatabase& database,
                     const std::function<void(const PwDbStub&)>& visit) {
    // A record that doesn't decode is visited without its object, as one named but not read.
    (void)database.decodeAllPending();
    database.m_records->forEachFileStub([&visit](const PwDbStub& stub) { visit(stub); });
    for (const PwDbStub& stub : database.m_records->stubs) visit(stub);
}

// ---- records still in the file ----

PwDbRecordSource::~PwDbRecordSource() = default;

size_t PwDbDatabase::Records::pageOf(PwDbHandle handle) {
    if (filePages.empty() || handle < filePages.front().firstHandle) return SIZE_MAX;
    // The last page whose first handle isn't past `handle`: the page of the last look-up
    // when it is that one, else found by bisection.
    size_t index = lastPage;
    if (index >= filePages.size() || handle < filePages[index].firstHandle ||
        (index + 1 < filePages.size() && handle >= filePages[index + 1].firstHandle)) {
        const auto after = std::upper_bound(
            filePages.begin(), filePages.end(), handle,
            [](PwDbHandle wanted, const PwDbFilePage& page) { return wanted < page.firstHandle; });
        index = static_cast<size_t>(after - filePages.begin()) - 1;
        lastPage = index;
    }
    return index;
}

PwDbStub* PwDbDatabase::Records::findFileStub(PwDbHandle handle) {
    const size_t index = pageOf(handle);
    if (index == SIZE_MAX || !makePage(index)) return nullptr;
    PwDbFilePage& page = filePages[index];
    // Handles in a page are mostly dense from its first one: try that place before bisecting.
    const PwDbHandle offset = handle - page.firstHandle;
    if (offset < page.count && page.stubs[offset].handle == handle) return &page.stubs[offset];
    PwDbStub* begin = page.stubs.get();
    PwDbStub* end = begin + page.count;
    PwDbStub* at = std::lower_bound(
        begin, end, handle, [](const PwDbStub& stub, PwDbHandle wanted) { return stub.handle < wanted; });
    return at != end && at->handle == handle ? at : nullptr;
}

bool PwDbDatabase::Records::makePage(size_t index) {
    PwDbFilePage& page = filePages[index];
    if (page.stubs) return true;
    if (page.broken) return false;
    std::vector<PwDbHandle> handles;
    std::vector<uint8_t> erased;
    if (!source->pageRecords(index, handles, erased)) {
        // The page's records can't be known: they are missing, and the drawing says so when
        // it is let go.
        brokenIndex = true;
        page.broken = true;
        pendingCount -= page.count;
        page.count = 0;
        return false;
    }
    page.stubs = std::make_unique<PwDbStub[]>(page.count);
    for (uint32_t i = 0; i < page.count; ++i) {
        PwDbStub& stub = page.stubs[i];
        stub.database = owner;
        stub.handle = handles[i];
        stub.filePage = static_cast<uint32_t>(index);
        stub.pending = true;
        stub.storedErased = erased[i] != 0;
    }
    return true;
}

void PwDbDatabase::Records::makeAllPages() {
    for (size_t page = 0; page < filePages.size(); ++page) makePage(page);
}

PwDbObject* PwDbDatabase::decodePending(PwDbStub& stub, Plotwright::ErrorStatus* why) {
    if (stub.decodingNow || m_records->decodingDepth >= kPwDbMostNestedDecodes) return nullptr;
    const PwDbFilePage& page = m_records->filePages[stub.filePage];
    PwDbObject* made = nullptr;
    stub.decodingNow = true;
    ++m_records->decodingDepth;
    const Plotwright::ErrorStatus status = m_records->source->decode(
        *this, stub.filePage, static_cast<size_t>(&stub - page.stubs.get()), made);
    --m_records->decodingDepth;
    stub.decodingNow = false;
    if (status != Plotwright::StatusOk) {
        if (why != nullptr) *why = status;
        return nullptr;
    }
    // Decoding is no change to the drawing: the object is as the file held it, closed and
    // unmodified, and the change count stays, so that caches over the drawing stay good.
    stub.object = made;
    stub.pending = false;
    --m_records->pendingCount;
    made->m_stub = &stub;
    made->m_writer = false;
    made->m_readers = 0;
    made->m_modified = false;
    made->m_erased = stub.storedErased;
    if (const PwDbBlockReference* reference = PwDbBlockReference::cast(made)) {
        noteBlockReference(reference->objectId(), PwDbObjectId(), reference->blockTableRecord());
    }
    return made;
}

Plotwright::ErrorStatus PwDbDatabase::decodeAllPending() const {
    auto& self = const_cast<PwDbDatabase&>(*this);
    Plotwright::ErrorStatus first = Plotwright::StatusOk;
    if (m_records->brokenIndex) first = Plotwright::StatusBadFileFormat;
    if (m_records->pendingCount == 0) return first;
    // Everything is about to be read: the file's records in one read, not a read (and an open)
    // a page. When that read fails, reading page by page finds and reports what can't be had.
    (void)self.m_records->source->keepEverything();
    self.m_records->makeAllPages();
    if (m_records->brokenIndex) first = Plotwright::StatusBadFileFormat;
    self.m_records->forEachFileStub([&self, &first](PwDbStub& stub) {
        if (!stub.pending) return;
        Plotwright::ErrorStatus why = Plotwright::StatusOk;
        if (self.decodePending(stub, &why) == nullptr && first == Plotwright::StatusOk) {
            first = why;
        }
    });
    return first;
}

size_t pwdbPendingRecordCount(const PwDbDatabase& database) {
    return database.m_records->pendingCount;
}

PwDbObject* pwdbStubObject(const PwDbStub& stub, Plotwright::ErrorStatus* why) {
    if (stub.unreadable && why != nullptr) *why = Plotwright::StatusBadFileFormat;
    if (!stub.pending) return stub.object;
    return stub.database->decodePending(const_cast<PwDbStub&>(stub), why);
}

bool pwdbStubMayBe(const PwDbStub& stub, const PwRxClass* cls) {
    if (!stub.pending) return stub.object != nullptr && stub.object->isKindOf(cls);
    const auto& records = *stub.database->m_records;
    const PwDbFilePage& page = records.filePages[stub.filePage];
    return records.source->namesClass(stub.filePage, static_cast<size_t>(&stub - page.stubs.get()),
                                      cls->name());
}
