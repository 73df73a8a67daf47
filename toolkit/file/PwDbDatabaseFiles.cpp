// Reading and saving drawings: between the database, its image and the two file
// formats.
#include <algorithm>
#include <string>

#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include "toolkit/db/PwDbStub.h"
#include "toolkit/file/PwDbDatabaseFileState.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlxCodec.h"

namespace FileIO = Morvane::Plotwright::PAL::FileIO;
using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

namespace {

bool IsWritableVersion(int32_t version) {
    return version >= kPwDbOldestVersion && version <= kPwDbNewestVersion;
}

bool IsOwnEntry(const PwDbAppInfoEntry& entry) {
    return entry.key == kPwDbOwnerGuidKey || entry.key == kPwDbSummaryFormatId;
}

// The id of `handle` in `database` when it names an object of class `cls`; else
// null.
PwDbObjectId RootOf(PwDbDatabase& database, PwDbHandle handle, PwRxClass* cls) {
    const PwDbObjectId id = database.getPwDbObjectId(handle);
    if (!id.isValid() || !id.stub()->object->isKindOf(cls)) return PwDbObjectId();
    return id;
}

}  // namespace

ErrorStatus PwDbDatabase::captureImage(PwDbDrawingImage& image, int32_t version) const {
    if (!IsWritableVersion(version)) return Plotwright::StatusNoSuchVersion;
    PwDbDrawingImage made;
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
    made.objects.reserve(m_objectCount);
    for (const PwDbStub& stub : m_records->stubs) {
        if (stub.object == nullptr) continue;
        PwDbObjectRecord record;
        if (auto status = pwdbRecordObject(*stub.object, record)) return status;
        made.objects.push_back(std::move(record));
    }
    // Records are made while a file is read, in the order references meet them; handle
    // order makes the same drawing give the same file however it came about.
    std::sort(
        made.objects.begin(), made.objects.end(),
        [](const PwDbObjectRecord& a, const PwDbObjectRecord& b) { return a.handle < b.handle; });
    image = std::move(made);
    return StatusOk;
}

ErrorStatus PwDbDatabase::loadImage(const PwDbDrawingImage& image) {
    PwDbDatabase scratch{EmptyTag{}};
    for (const PwDbObjectRecord& record : image.objects) {
        PwDbObject* object = nullptr;
        if (pwdbObjectFromRecord(record, &scratch, object) != StatusOk) {
            return Plotwright::StatusBadFileFormat;
        }
        object->close();
    }
    const PwDbDrawingRoots& roots = image.roots;
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
    scratch.m_nextHandle = std::max(scratch.m_nextHandle, image.handseed);
    scratch.m_measurement = image.measurement;
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
    m_originalVersion = static_cast<PwDb::PwDbPlwVersion>(version);
    m_lastSavedVersion = PwDb::PwDbPlwVersionNone;
    setFilename(path);
    setPreviewImage(image.preview ? &*image.preview : nullptr);
    std::vector<PwDbAppInfoEntry> kept;
    for (const PwDbAppInfoEntry& entry : image.appInfo) {
        if (!IsOwnEntry(entry)) kept.push_back(entry);
    }
    pwdbExtension<PwDbDatabaseFileState>(*this).appInfoKept = std::move(kept);
    return StatusOk;
}

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
    std::string bytes;
    FileIO::File file;
    if (auto status = FileIO::ReadWholeFileIfItStartsWell(
            path, share, kPwDbPlwStartBytes, pwdbPlwStartFits, bytes, holds ? &file : nullptr)) {
        return status;
    }
    PwDbDrawingImage image;
    if (pwdbDecodePlw(bytes, image) != StatusOk) return Plotwright::StatusBadFileFormat;
    if (auto status = readImage(image, path, image.version)) return status;
    auto input = std::make_unique<PwDbDatabaseFileState::Input>();
    input->file = file;
    input->path = path;
    input->mode = mode;
    pwdbExtension<PwDbDatabaseFileState>(*this).input = std::move(input);
    return StatusOk;
}

ErrorStatus PwDbDatabase::plxIn(const char16_t* path, const char16_t* /*logFile*/) {
    if (path == nullptr) return Plotwright::StatusInvalidInput;
    std::string text;
    if (auto status = FileIO::ReadWholeFileIfItStartsWell(
            path, FileIO::kShareRead, kPwDbPlxStartBytes, pwdbPlxStartFits, text)) {
        return status;
    }
    PwDbDrawingImage image;
    if (pwdbDecodePlx(text, image) != StatusOk) return Plotwright::StatusBadFileFormat;
    if (auto status = readImage(image, path, image.version)) return status;
    if (auto* state = pwdbFindExtension<PwDbDatabaseFileState>(*this)) state->input.reset();
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
    if (!IsWritableVersion(version)) return Plotwright::StatusNoSuchVersion;
    if (inputForbidsSaving(path)) return Plotwright::StatusFileInUse;
    PwDbDrawingImage image;
    if (auto status = captureImage(image, version)) return status;
    std::string bytes;
    if (auto status = pwdbEncodePlw(image, bytes)) return status;
    if (auto status = FileIO::ReplaceFileAtomically(path, bytes)) return status;
    m_lastSavedVersion = version;
    if (becomesDrawingFile) setFilename(path);
    return StatusOk;
}

ErrorStatus PwDbDatabase::plxOut(const char16_t* path, int precision, PwDb::PwDbPlwVersion version,
                                 bool withPreview) {
    if (path == nullptr) return Plotwright::StatusInvalidInput;
    if (!IsWritableVersion(version)) return Plotwright::StatusNoSuchVersion;
    if (inputForbidsSaving(path)) return Plotwright::StatusFileInUse;
    PwDbDrawingImage image;
    if (auto status = captureImage(image, version)) return status;
    if (!withPreview) image.preview.reset();
    std::string text;
    if (auto status = pwdbEncodePlx(image, precision, text)) return status;
    return FileIO::ReplaceFileAtomically(path, text);
}

ErrorStatus PwDbDatabase::closeInput(bool /*closeFile*/) {
    if (auto* state = pwdbFindExtension<PwDbDatabaseFileState>(*this)) state->input.reset();
    return StatusOk;
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
