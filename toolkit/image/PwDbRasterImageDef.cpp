// Raster image definitions: their file, load state, size, and the image dictionary.
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>

#include "toolkit/core/PwWideText.h"
#include "toolkit/db/PwDbStub.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>
#include <lodeqdb/toolkit/image/PwDbRasterImage.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbRasterImageDef, PwDbObject, u"PwDbRasterImageDef");

PwDbRasterImageDef::PwDbRasterImageDef() = default;

PwDbRasterImageDef::~PwDbRasterImageDef() = default;

Plotwright::ErrorStatus PwDbRasterImageDef::setSourceFileName(const char16_t* path) {
    const wstring name = pwWideTextOrEmpty(path);
    if (name == m_sourceFileName)
        return isWriteEnabled() ? Plotwright::StatusOk : Plotwright::StatusNotOpenForWrite;
    if (auto status = setField(m_sourceFileName, name)) return status;
    m_activeFileName.clear();
    m_loaded = false;
    m_info = {};
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbRasterImageDef::setActiveFileName(const char16_t* path) {
    return setField(m_activeFileName, pwWideTextOrEmpty(path));
}

const char16_t* PwDbRasterImageDef::sourceFileName() const {
    return m_sourceFileName.c_str();
}

const char16_t* PwDbRasterImageDef::activeFileName() const {
    return m_activeFileName.c_str();
}

bool PwDbRasterImageDef::skipAsChild() const {
    const PwArray<void*>* placements = reactors();
    if (placements == nullptr) return true;
    for (size_t i = 0; i < placements->length(); ++i) {
        const PwDbObjectId id = pwdbPersistentReactorObjectId(placements->at(i));
        if (id.isNull() || id.isEffectivelyErased()) continue;
        // Read without the open protocol: the placement may be open for write elsewhere, and
        // whether it exists and points here is all that is asked.
        const auto* image = PwDbRasterImage::cast(pwdbStubObject(*id.stub()));
        if (image != nullptr && image->imageDefId() == objectId()) return false;
    }
    return true;
}

Plotwright::ErrorStatus PwDbRasterImageDef::load() {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    assertWriteEnabled();
    m_loaded = false;
    m_info = {};
    wstring found;
    if (m_sourceFileName.empty()) return Plotwright::StatusFileNotFound;
    if (auto status = pwdbFindDependentFile(found, m_sourceFileName, database(),
                                            PwDbHostApplicationServices::kRasterImage))
        return status;
    PwDbImageFileInfo info;
    if (auto status = pwdbReadImageFileHeader(found, info)) return status;
    m_activeFileName = found;
    m_info = info;
    m_loaded = true;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbRasterImageDef::unload(bool modifyDatabase) {
    if (modifyDatabase) {
        if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
        assertWriteEnabled();
    } else if (!isReadEnabled()) {
        return Plotwright::StatusNotOpenForRead;
    }
    m_loaded = false;
    return Plotwright::StatusOk;
}

bool PwDbRasterImageDef::isLoaded() const {
    return m_loaded;
}

PwDbObjectId PwDbRasterImageDef::imageDictionary(const PwDbDatabase* database) {
    if (database == nullptr) return PwDbObjectId();
    PwDbObjectPointer<PwDbDictionary> root(database->namedObjectsDictionaryId(), PwDb::OpenForRead);
    if (root.openStatus() != Plotwright::StatusOk) return PwDbObjectId();
    PwDbObjectId id;
    if (root->getAt(kImageDictionaryKey, id) != Plotwright::StatusOk) return PwDbObjectId();
    return id;
}

Plotwright::ErrorStatus PwDbRasterImageDef::createImageDictionary(PwDbDatabase* database,
                                                                  PwDbObjectId& id) {
    id = PwDbObjectId();
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    id = imageDictionary(database);
    if (!id.isNull()) return Plotwright::StatusOk;
    PwDbObjectPointer<PwDbDictionary> root(database->namedObjectsDictionaryId(),
                                           PwDb::OpenForWrite);
    if (root.openStatus() != Plotwright::StatusOk) return root.openStatus();
    auto* dictionary = new PwDbDictionary;
    if (auto status = root->setAt(kImageDictionaryKey, dictionary, id)) {
        delete dictionary;
        return status;
    }
    dictionary->close();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbRasterImageDef::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    wstring source;
    if (auto status = filer->readString(source)) return status;
    m_sourceFileName = std::move(source);
    m_activeFileName.clear();
    m_loaded = false;
    m_info = {};
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbRasterImageDef::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    return filer->writeString(m_sourceFileName);
}
