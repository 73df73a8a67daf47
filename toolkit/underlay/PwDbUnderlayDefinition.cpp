// Underlay definitions of each kind: their file, load state and dictionaries.
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>

#include "toolkit/core/PwWideText.h"
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_MEMBERS(PwDbUnderlayDefinition, PwDbObject, u"PwDbUnderlayDefinition");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbPdfDefinition, PwDbUnderlayDefinition, u"PwDbPdfDefinition");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbDgnDefinition, PwDbUnderlayDefinition, u"PwDbDgnDefinition");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbPlfDefinition, PwDbUnderlayDefinition, u"PwDbPlfDefinition");

PwDbUnderlayDefinition::PwDbUnderlayDefinition() = default;

PwDbUnderlayDefinition::~PwDbUnderlayDefinition() = default;

PwString PwDbUnderlayDefinition::dictionaryKey(const PwRxClass* kind) {
    if (kind == nullptr) return PwString();
    if (PwRxClass::isDerivedFrom(kind, PwDbPdfDefinition::desc()))
        return PwString(u"PLOTWRIGHT_PDF_DEFINITIONS");
    if (PwRxClass::isDerivedFrom(kind, PwDbDgnDefinition::desc()))
        return PwString(u"PLOTWRIGHT_DGN_DEFINITIONS");
    if (PwRxClass::isDerivedFrom(kind, PwDbPlfDefinition::desc()))
        return PwString(u"PLOTWRIGHT_PLF_DEFINITIONS");
    return PwString();
}

Plotwright::ErrorStatus PwDbUnderlayDefinition::setSourceFileName(const char16_t* path) {
    const wstring name = pwWideTextOrEmpty(path);
    if (name == m_sourceFileName)
        return isWriteEnabled() ? Plotwright::StatusOk : Plotwright::StatusNotOpenForWrite;
    if (auto status = setField(m_sourceFileName, name)) return status;
    unload();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbUnderlayDefinition::getActiveFileName(PwString& name) const {
    if (m_loaded) return name.assign(m_activeFileName.c_str(), m_activeFileName.size());
    wstring found;
    if (pwdbFindDependentFile(found, m_sourceFileName, database(),
                              PwDbHostApplicationServices::kUnderlay) != Plotwright::StatusOk) {
        name = u"";
        return Plotwright::StatusFileNotFound;
    }
    return name.assign(found.c_str(), found.size());
}

Plotwright::ErrorStatus PwDbUnderlayDefinition::setItemName(const char16_t* name) {
    return setField(m_itemName, pwWideTextOrEmpty(name));
}

Plotwright::ErrorStatus PwDbUnderlayDefinition::load(const char16_t* /*password*/) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    assertWriteEnabled();
    unload();
    wstring found;
    if (m_sourceFileName.empty()) return Plotwright::StatusFileNotFound;
    if (auto status = pwdbFindDependentFile(found, m_sourceFileName, database(),
                                            PwDbHostApplicationServices::kUnderlay))
        return status;
    PwDbUnderlayFileKind kind = PwDbUnderlayFileKind::Unknown;
    if (auto status = pwdbUnderlayFileKind(found, kind)) return status;
    if (kind != fileKind()) return Plotwright::StatusBadFileFormat;
    m_activeFileName = std::move(found);
    m_loaded = true;
    return Plotwright::StatusOk;
}

void PwDbUnderlayDefinition::unload() {
    m_loaded = false;
    m_activeFileName.clear();
}

Plotwright::ErrorStatus PwDbUnderlayDefinition::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    wstring source;
    wstring item;
    if (auto status = filer->readString(source)) return status;
    if (auto status = filer->readString(item)) return status;
    m_sourceFileName = std::move(source);
    m_itemName = std::move(item);
    unload();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbUnderlayDefinition::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    if (auto status = filer->writeString(m_sourceFileName)) return status;
    return filer->writeString(m_itemName);
}
