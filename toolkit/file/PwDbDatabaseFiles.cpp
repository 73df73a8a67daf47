// Reading and saving drawings: between the database, its image and the two file
// formats.
#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>

#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>
#include "toolkit/db/PwDbObjectMaking.h"
#include "toolkit/db/PwDbStub.h"
#include "toolkit/file/PwDbDatabaseFileState.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlwFrame.h"
#include "toolkit/file/PwDbPlwIndexed.h"
#include "toolkit/file/PwDbPlwLazyRecords.h"
#include "toolkit/file/PwDbPlwPacking.h"

namespace FileIO = Morvane::Plotwright::PAL::FileIO;
using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

namespace {

// Files are read whole up to this size at most, as every file of the toolkit.
constexpr uint64_t kMostFileBytes = uint64_t{1} << 34;
// The first read of a native file: the front of a drawing of a million lines takes a few
// KiB (the record index stands behind the records), and the first pages, where the tables
// stand, follow it; a file this small is kept whole.
constexpr uint64_t kFirstRead = 64 * 1024;

// Appends the `count` bytes of `file` at `offset` to `bytes`.
ErrorStatus ReadRange(const FileIO::File& file, uint64_t offset, uint64_t count,
                      std::string& bytes) {
    const size_t had = bytes.size();
    bytes.resize(had + static_cast<size_t>(count));
    if (!file.readAt(offset, bytes.data() + had, static_cast<size_t>(count))) {
        bytes.resize(had);
        return Plotwright::StatusFileIOError;
    }
    return StatusOk;
}

bool IsOwnEntry(const PwDbAppInfoEntry& entry) {
    return entry.key == kPwDbOwnerGuidKey || entry.key == kPwDbSummaryFormatId;
}

// The id of `handle` in `database` when it names an object of class `cls`; else
// null.
PwDbObjectId RootOf(PwDbDatabase& database, PwDbHandle handle, PwRxClass* cls) {
    const PwDbObjectId id = database.getPwDbObjectId(handle);
    const PwDbObject* object = id.isNull() ? nullptr : pwdbStubObject(*id.stub());
    if (object == nullptr || !object->isKindOf(cls)) return PwDbObjectId();
    return id;
}

}  // namespace

void PwDbDatabase::captureHead(PwDbDrawingImage& made, int32_t version) const {
    made.version = version;
    made.handseed = m_nextHandle;
    made.measurement = m_measurement;
    made.roots = {m_blockTable.handle(),
                  m_layerTable.handle(),
                  m_namedObjects.handle(),
                  m_layoutDictionary.handle(),
                  m_plotSettingsDictionary.handle(),
                  m_modelSpace.handle(),
                  m_paperSpace.handle(),
                  m_layerZero.handle(),
                  m_currentLayer.handle()};
    const PwDbHostApplicationServices defaults;
    const PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    if (services == nullptr) services = &defaults;
    made.appInfo.push_back({kPwDbOwnerGuidKey, services->ownerGuid()});
    made.appInfo.push_back({kPwDbSummaryFormatId, pwdbCreatorPropertySet(services->creatorName())});
    if (const auto* kept = pwdbFindExtension<PwDbDatabaseFileState>(*this)) {
        for (const PwDbAppInfoEntry& entry : kept->appInfoKept) made.appInfo.push_back(entry);
        if (kept->preview) made.preview = *kept->preview;
    }
}

std::vector<const PwDbObject*> PwDbDatabase::objectsByHandle() const {
    // Sorted by the handles their records hold, which the objects needn't be visited for.
    std::vector<std::pair<PwDbHandle, const PwDbObject*>> byHandle;
    byHandle.reserve(m_objectCount);
    m_records->forEachFileStub([&byHandle](const PwDbStub& stub) {
        if (stub.object != nullptr) byHandle.emplace_back(stub.handle, stub.object);
    });
    for (const PwDbStub& stub : m_records->stubs) {
        if (stub.object != nullptr) byHandle.emplace_back(stub.handle, stub.object);
    }
    // Records are made while a file is read, in the order references meet them; handle
    // order makes the same drawing give the same file however it came about.
    std::sort(byHandle.begin(), byHandle.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<const PwDbObject*> objects;
    objects.reserve(byHandle.size());
    for (const auto& [handle, object] : byHandle) objects.push_back(object);
    return objects;
}

ErrorStatus PwDbDatabase::captureImage(PwDbDrawingImage& image, int32_t version) const {
    if (!pwdbIsWritableVersion(version)) return Plotwright::StatusNoSuchVersion;
    if (auto status = decodeAllPending()) return status;
    PwDbDrawingImage made;
    captureHead(made, version);
    const std::vector<const PwDbObject*> objects = objectsByHandle();
    made.objects.resize(objects.size());
    for (size_t i = 0; i < objects.size(); ++i) {
        if (auto status = pwdbRecordObject(*objects[i], made.objects[i])) return status;
    }
    image = std::move(made);
    return StatusOk;
}

namespace {

// Writes a drawing's records into an indexed file: a live object packed from its fields, a
// record never decoded from its stored bytes, and a page of the file read whose records were
// all left alone copied whole, check and index included.
class IndexedSaver {
  public:
    IndexedSaver(PwDbDatabase& database, PwDbPlwLazyRecords* source)
        : m_source(source), m_filer(&database) {
        // The file's own tables first, so that the indexes of its pages stay good.
        if (source != nullptr) m_writer.adoptTables(source->classes(), source->shapes());
    }

    ErrorStatus addRecord(const PwDbStub& stub, const PwDbFilePage* page) {
        const void* classKey = nullptr;
        std::string_view tags;
        std::string_view values;
        const std::vector<wstring>* storedChain = nullptr;
        bool erased = false;
        if (stub.pending) {
            // Never decoded, so never changed: its stored bytes are written again as they are.
            if (auto status =
                    m_source->stored(stub.filePage, static_cast<size_t>(&stub - page->stubs.get()),
                                     storedChain, tags, values)) {
                return status;
            }
            classKey = storedChain;
            erased = stub.storedErased;
        } else {
            const PwDbObject& object = *stub.object;
            m_filer.clear();
            if (auto status = object.plwOutFields(&m_filer)) return status;
            tags = m_filer.tags();
            values = m_filer.values();
            // A proxy's class is its chain, not the proxy class: no key, asked every time.
            const bool proxy = PwDbProxyObject::cast(&object) != nullptr ||
                               PwDbProxyEntity::cast(&object) != nullptr;
            if (!proxy) classKey = object.runtimeClass();
            erased = object.isErased();
        }
        uint32_t cls = UINT32_MAX;
        const auto found = classKey != nullptr ? m_classIndex.find(classKey) : m_classIndex.end();
        if (found != m_classIndex.end()) {
            cls = found->second;
        } else {
            cls = m_writer.classFor(storedChain ? *storedChain : pwdbClassChainOf(*stub.object));
            if (classKey != nullptr) m_classIndex.emplace(classKey, cls);
        }
        if (cls == UINT32_MAX ||
            !m_writer.add(stub.handle, erased, m_writer.shapeFor(cls, tags), values)) {
            return Plotwright::StatusInvalidInput;
        }
        return StatusOk;
    }

    ErrorStatus addStoredPage(size_t page) {
        std::string_view pageAndCheck;
        std::string_view run;
        const PwDbPlwPageRecords* records = nullptr;
        if (auto status = m_source->storedPage(page, pageAndCheck, run, records)) return status;
        if (!m_writer.addPage(pageAndCheck, run, *records)) return Plotwright::StatusInvalidInput;
        return StatusOk;
    }

    ErrorStatus finish(const PwDbDrawingImage& head, std::string& bytes) {
        return m_writer.finish(head, bytes);
    }

  private:
    PwDbPlwLazyRecords* m_source;
    PwDbPlwIndexedWriter m_writer;
    // Classes are named once per class: live objects by their class, stored records by their
    // chain in the file read.
    std::unordered_map<const void*, uint32_t> m_classIndex;
    PwDbPlwPackingFiler m_filer;
};

bool AllPending(const PwDbFilePage& page) {
    if (!page.stubs) return true;
    for (uint32_t i = 0; i < page.count; ++i) {
        if (!page.stubs[i].pending) return false;
    }
    return true;
}

}  // namespace

ErrorStatus PwDbDatabase::encodeIndexed(int32_t version, std::string& bytes) const {
    auto* source = static_cast<PwDbPlwLazyRecords*>(m_records->source.get());
    if (m_records->brokenIndex) return Plotwright::StatusBadFileFormat;
    IndexedSaver saver(const_cast<PwDbDatabase&>(*this), source);
    // Records made since the file was read, in handle order, go between the file's pages.
    std::vector<const PwDbStub*> made;
    for (const PwDbStub& stub : m_records->stubs) {
        if (stub.object != nullptr) made.push_back(&stub);
    }
    std::sort(made.begin(), made.end(),
              [](const PwDbStub* a, const PwDbStub* b) { return a->handle < b->handle; });
    size_t next = 0;
    auto& pages = m_records->filePages;
    for (size_t index = 0; index < pages.size(); ++index) {
        const PwDbFilePage& page = pages[index];
        const PwDbHandle end = index + 1 < pages.size() ? pages[index + 1].firstHandle
                                                        : std::numeric_limits<PwDbHandle>::max();
        while (next < made.size() && made[next]->handle < page.firstHandle) {
            if (auto status = saver.addRecord(*made[next++], nullptr)) return status;
        }
        // A page none of whose records was decoded, and among whose handles nothing new
        // stands, goes out as it came in.
        if (AllPending(page) && (next == made.size() || made[next]->handle >= end)) {
            if (auto status = saver.addStoredPage(index)) return status;
            continue;
        }
        if (!m_records->makePage(index)) return Plotwright::StatusBadFileFormat;
        for (uint32_t i = 0; i < page.count; ++i) {
            const PwDbStub& stub = page.stubs[i];
            while (next < made.size() && made[next]->handle < stub.handle) {
                if (auto status = saver.addRecord(*made[next++], nullptr)) return status;
            }
            if (stub.object == nullptr && !stub.pending) continue;
            if (auto status = saver.addRecord(stub, &page)) return status;
        }
    }
    while (next < made.size()) {
        if (auto status = saver.addRecord(*made[next++], nullptr)) return status;
    }
    PwDbDrawingImage head;
    captureHead(head, version);
    return saver.finish(head, bytes);
}

ErrorStatus PwDbDatabase::loadImage(const PwDbDrawingImage& image) {
    PwDbDatabase scratch{EmptyTag{}};
    // Each chain's class is looked up once, however many records name it.
    std::map<std::vector<wstring>, PwDbChainClass> chains;
    for (const PwDbObjectRecord& record : image.objects) {
        PwDbObject* object = nullptr;
        if (pwdbObjectFromRecordLearning(record, &scratch, chains[record.classChain], object) !=
            StatusOk) {
            return Plotwright::StatusBadFileFormat;
        }
        object->close();
    }
    return takeLoaded(scratch, image);
}

ErrorStatus PwDbDatabase::takeLoaded(PwDbDatabase& scratch, const PwDbDrawingImage& head) {
    const PwDbDrawingRoots& roots = head.roots;
    scratch.m_blockTable = RootOf(scratch, roots.blockTable, PwDbBlockTable::desc());
    scratch.m_layerTable = RootOf(scratch, roots.layerTable, PwDbLayerTable::desc());
    scratch.m_namedObjects = RootOf(scratch, roots.namedObjects, PwDbDictionary::desc());
    scratch.m_layoutDictionary = RootOf(scratch, roots.layoutDictionary, PwDbDictionary::desc());
    scratch.m_plotSettingsDictionary =
        RootOf(scratch, roots.plotSettingsDictionary, PwDbDictionary::desc());
    scratch.m_modelSpace = RootOf(scratch, roots.modelSpace, PwDbBlockTableRecord::desc());
    scratch.m_paperSpace = RootOf(scratch, roots.paperSpace, PwDbBlockTableRecord::desc());
    scratch.m_layerZero = RootOf(scratch, roots.layerZero, PwDbLayerTableRecord::desc());
    scratch.m_currentLayer = RootOf(scratch, roots.currentLayer, PwDbLayerTableRecord::desc());
    for (const PwDbObjectId root :
         {scratch.m_blockTable, scratch.m_layerTable, scratch.m_namedObjects,
          scratch.m_layoutDictionary, scratch.m_plotSettingsDictionary, scratch.m_modelSpace,
          scratch.m_paperSpace, scratch.m_layerZero, scratch.m_currentLayer}) {
        if (root.isNull()) return Plotwright::StatusBadFileFormat;
    }
    scratch.m_nextHandle = std::max(scratch.m_nextHandle, head.handseed);
    scratch.m_measurement = head.measurement;
    // The text style table is found by its class, so the roots of the file formats stay as
    // they were; files written before drawings had one get it here.
    scratch.ensureTextStyleTable();
    if (scratch.m_textStyleTable.isNull()) return Plotwright::StatusBadFileFormat;
    swapContents(scratch);
    return StatusOk;
}

ErrorStatus PwDbDatabase::readImage(const PwDbDrawingImage& image, const char16_t* path,
                                    int32_t version) {
    if (auto status = loadImage(image)) return status;
    noteRead(image, path, version);
    return StatusOk;
}

void PwDbDatabase::noteRead(const PwDbDrawingImage& head, const char16_t* path, int32_t version) {
    m_originalVersion = static_cast<PwDb::PwDbPlwVersion>(version);
    m_lastSavedVersion = PwDb::PwDbPlwVersionNone;
    setFilename(path);
    setPreviewImage(head.preview ? &*head.preview : nullptr);
    std::vector<PwDbAppInfoEntry> kept;
    for (const PwDbAppInfoEntry& entry : head.appInfo) {
        if (!IsOwnEntry(entry)) kept.push_back(entry);
    }
    pwdbExtension<PwDbDatabaseFileState>(*this).appInfoKept = std::move(kept);
}

// A read of an indexed file under way: the open file, whether the database keeps it, its
// identity as it was opened, and the bytes read from its start so far.
struct PwDbDatabase::IndexedRead {
    const FileIO::File& file;
    bool holds;
    FileIO::File::Identity identity;
    std::string& bytes;
};

ErrorStatus PwDbDatabase::readPlwFile(const char16_t* path, OpenMode mode,
                                      bool /*allowCodePageConversion*/,
                                      const char16_t* /*password*/) {
    if (path == nullptr || mode < OpenModeShareRead || mode > OpenModeAlternate) {
        return Plotwright::StatusInvalidInput;
    }
    // Every mode reads under at least a shared lock, so that an exclusive holder
    // keeps everybody out; only the first two keep their lock afterwards.
    const FileIO::FileShareMode share =
        mode == OpenModeExclusive ? FileIO::kShareExclusive : FileIO::kShareRead;
    const bool holds = mode == OpenModeShareRead || mode == OpenModeExclusive;
    FileIO::File file = FileIO::File::openFile(path, FileIO::kWideChars, FileIO::kOpenForRead,
                                               share, FileIO::kOpenExisting);
    if (file.openStatus() != StatusOk) return file.openStatus();
    FileIO::File::Identity identity;
    if (!file.identity(identity)) return Plotwright::StatusFileIOError;
    const auto size = static_cast<uint64_t>(identity.size);
    if (size > kMostFileBytes) return Plotwright::StatusBadFileFormat;
    // One read takes the front of most drawings, and the whole of a small one; a file that
    // isn't a drawing costs no more than that.
    std::string bytes;
    if (auto status = ReadRange(file, 0, std::min<uint64_t>(size, kFirstRead), bytes)) {
        return status;
    }
    PwDbPlwHeader header;
    if (!pwdbPlwReadHeader(bytes, size, header)) return Plotwright::StatusBadFileFormat;
    if (header.revision == kPwDbPlwIndexedRevision) {
        IndexedRead read{file, holds, identity, bytes};
        if (auto status = readIndexed(path, read)) return status;
    } else {
        if (auto status = ReadRange(file, bytes.size(), size - bytes.size(), bytes)) {
            return status;
        }
        PwDbDrawingImage image;
        if (pwdbDecodePlw(bytes, image) != StatusOk) return Plotwright::StatusBadFileFormat;
        if (auto status = readImage(image, path, image.version)) return status;
    }
    pwdbExtension<PwDbDatabaseFileState>(*this).wholeRecordsLayout =
        header.revision == kPwDbPlwWholeRecordsRevision;
    auto input = std::make_unique<PwDbDatabaseFileState::Input>();
    if (holds) input->file = file;
    input->path = path;
    input->mode = mode;
    pwdbExtension<PwDbDatabaseFileState>(*this).input = std::move(input);
    return StatusOk;
}

ErrorStatus PwDbDatabase::readIndexed(const char16_t* path, IndexedRead& read) {
    std::string& bytes = read.bytes;
    const auto size = static_cast<uint64_t>(read.identity.size);
    PwDbPlwFrontExtent extent;
    while (true) {
        extent = pwdbPlwIndexedFrontExtent(bytes, size);
        if (!extent.sound) return Plotwright::StatusBadFileFormat;
        if (extent.complete) break;
        // Each round reads up to the next section head it needs, so it ends.
        if (extent.end <= bytes.size() || extent.end > size) return Plotwright::StatusBadFileFormat;
        if (auto status = ReadRange(read.file, bytes.size(), extent.end - bytes.size(), bytes)) {
            return status;
        }
    }
    PwDbPlwIndexedFront front;
    if (!pwdbPlwReadIndexedFront(std::string_view(bytes).substr(0, extent.end), size, front)) {
        return Plotwright::StatusBadFileFormat;
    }
    PwDbDatabase scratch{EmptyTag{}};
    Records& records = *scratch.m_records;
    records.filePages.resize(front.pages.size());
    for (size_t page = 0; page < front.pages.size(); ++page) {
        records.filePages[page].firstHandle = front.pages[page].firstHandle;
        records.filePages[page].count = front.pages[page].records;
    }
    records.pendingCount = static_cast<size_t>(front.records);
    scratch.m_objectCount = static_cast<size_t>(front.records);
    PwDbDrawingImage head = std::move(front.head);
    if (bytes.size() == size) {
        // A file read whole is checked whole, as a file of whole records is.
        if (!pwdbPlwIndexedRecordsSound(bytes, extent.end, front)) {
            return Plotwright::StatusBadFileFormat;
        }
        records.source =
            std::make_unique<PwDbPlwLazyRecords>(std::move(front), std::move(bytes), path);
    } else {
        records.source = std::make_unique<PwDbPlwLazyRecords>(
            std::move(front), read.holds ? read.file : FileIO::File(), path, read.identity,
            std::move(bytes));
    }
    // New objects get handles past every record of the file, whatever the handseed says.
    if (!records.filePages.empty() && records.makePage(records.filePages.size() - 1)) {
        const PwDbFilePage& last = records.filePages.back();
        const PwDbHandle lastHandle = last.stubs[last.count - 1].handle;
        if (lastHandle == kPwDbNoHandleAfter) return Plotwright::StatusBadFileFormat;
        scratch.m_nextHandle = lastHandle + 1;
    }
    if (auto status = takeLoaded(scratch, head)) return status;
    noteRead(head, path, head.version);
    return StatusOk;
}

// A save over the file the database was read from waits for closeInput, except
// after a read that holds nothing.
bool PwDbDatabase::inputForbidsSaving(const char16_t* path) const {
    const auto* state = pwdbFindExtension<PwDbDatabaseFileState>(*this);
    if (state == nullptr || state->input == nullptr) return false;
    return state->input->mode != OpenModeAlternate &&
           FileIO::SameFile(path, state->input->path.c_str());
}

ErrorStatus PwDbDatabase::saveAs(const char16_t* path, bool becomesDrawingFile,
                                 PwDb::PwDbPlwVersion version, const void* /*securityParams*/) {
    if (path == nullptr) return Plotwright::StatusInvalidInput;
    if (!pwdbIsWritableVersion(version)) return Plotwright::StatusNoSuchVersion;
    if (inputForbidsSaving(path)) return Plotwright::StatusFileInUse;
    if (auto status = keepPendingBeforeReplacing(path)) return status;
    std::string bytes;
    const auto* state = pwdbFindExtension<PwDbDatabaseFileState>(*this);
    if (state != nullptr && state->wholeRecordsLayout) {
        PwDbDrawingImage image;
        if (auto status = captureImage(image, version)) return status;
        if (auto status = pwdbEncodePlw(image, bytes)) return status;
    } else if (auto status = encodeIndexed(version, bytes)) {
        return status;
    }
    if (auto status = FileIO::ReplaceFileAtomically(path, bytes)) return status;
    m_lastSavedVersion = version;
    if (becomesDrawingFile) setFilename(path);
    return StatusOk;
}

// A save that replaces the file still being read first takes what it still needs of it.
ErrorStatus PwDbDatabase::keepPendingBeforeReplacing(const char16_t* path) {
    if (m_records->pendingCount == 0) return StatusOk;
    if (!FileIO::SameFile(path, m_records->source->path().c_str())) return StatusOk;
    return m_records->source->keepEverything();
}

ErrorStatus PwDbDatabase::closeInput(bool /*closeFile*/) {
    // Everything still in the file is decoded; a record that doesn't decode is lost to the
    // drawing (its id names no object from now on) and the call says so.
    const ErrorStatus status = decodeAllPending();
    m_records->forEachFileStub([](PwDbStub& stub) { stub.pending = false; });
    m_records->pendingCount = 0;
    m_records->source.reset();
    if (auto* state = pwdbFindExtension<PwDbDatabaseFileState>(*this)) state->input.reset();
    return status;
}

const PwDbExtensionSlot PwDbDatabaseFileState::slot{};

const PwDbPreviewImage* PwDbDatabase::previewImage() const {
    const auto* state = pwdbFindExtension<PwDbDatabaseFileState>(*this);
    return state != nullptr ? state->preview.get() : nullptr;
}

void PwDbDatabase::setPreviewImage(const PwDbPreviewImage* image) {
    pwdbExtension<PwDbDatabaseFileState>(*this).preview =
        image ? std::make_unique<PwDbPreviewImage>(*image) : nullptr;
}
