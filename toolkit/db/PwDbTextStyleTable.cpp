// Text styles: font, height and width factor, kept in the drawing's text style table.
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>

#include <cmath>
#include <utility>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbTextStyleTableRecord, PwDbSymbolTableRecord,
                            u"PwDbTextStyleTableRecord");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbTextStyleTable, PwDbSymbolTable, u"PwDbTextStyleTable");

namespace {

bool isTextHeight(double height) {
    return std::isfinite(height) && height >= 0.0;
}

bool isWidthFactor(double factor) {
    return std::isfinite(factor) && factor > 0.0;
}

}  // namespace

// --- PwDbTextStyleTableRecord ----------------------------------------------------------------

PwDbTextStyleTableRecord::PwDbTextStyleTableRecord() = default;

PwDbTextStyleTableRecord::~PwDbTextStyleTableRecord() = default;

Plotwright::ErrorStatus PwDbTextStyleTableRecord::fontName(PwString& name) const {
    return name.assign(m_fontName.data(), m_fontName.size());
}

Plotwright::ErrorStatus PwDbTextStyleTableRecord::setFontName(const char16_t* name) {
    if (name == nullptr || *name == u'\0') return Plotwright::StatusInvalidInput;
    return setField(m_fontName, name);
}

Plotwright::ErrorStatus PwDbTextStyleTableRecord::setTextHeight(double height) {
    if (!isTextHeight(height)) return Plotwright::StatusInvalidInput;
    return setField(m_textHeight, height);
}

Plotwright::ErrorStatus PwDbTextStyleTableRecord::setWidthFactor(double factor) {
    if (!isWidthFactor(factor)) return Plotwright::StatusInvalidInput;
    return setField(m_widthFactor, factor);
}

Plotwright::ErrorStatus PwDbTextStyleTableRecord::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbSymbolTableRecord::plwInFields(filer)) return status;
    wstring font;
    double height = 0.0;
    double factor = 1.0;
    if (auto status = filer->readString(font)) return status;
    if (auto status = filer->readDouble(height)) return status;
    if (auto status = filer->readDouble(factor)) return status;
    if (font.empty() || !isTextHeight(height) || !isWidthFactor(factor)) {
        return Plotwright::StatusFilerError;
    }
    m_fontName = std::move(font);
    m_textHeight = height;
    m_widthFactor = factor;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbTextStyleTableRecord::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbSymbolTableRecord::plwOutFields(filer)) return status;
    if (auto status = filer->writeString(m_fontName)) return status;
    if (auto status = filer->writeDouble(m_textHeight)) return status;
    return filer->writeDouble(m_widthFactor);
}

// --- PwDbTextStyleTableIterator and PwDbTextStyleTable ---------------------------------------

PwDbTextStyleTableIterator::PwDbTextStyleTableIterator(std::vector<PwDbObjectId> ids)
    : PwDbSymbolTableIterator(std::move(ids)) {}

PwDbTextStyleTableIterator::~PwDbTextStyleTableIterator() = default;

Plotwright::ErrorStatus PwDbTextStyleTableIterator::getRecord(PwDbTextStyleTableRecord*& record,
                                                              PwDb::OpenMode mode,
                                                              bool openErased) const {
    return getTypedRecord(record, mode, openErased);
}

PwDbTextStyleTable::PwDbTextStyleTable() = default;

PwDbTextStyleTable::~PwDbTextStyleTable() = default;

PwRxClass* PwDbTextStyleTable::recordClass() const {
    return PwDbTextStyleTableRecord::desc();
}

Plotwright::ErrorStatus PwDbTextStyleTable::getAt(const char16_t* name,
                                                  PwDbTextStyleTableRecord*& record,
                                                  PwDb::OpenMode mode, bool openErased) const {
    return getTypedAt(name, record, mode, openErased);
}

Plotwright::ErrorStatus PwDbTextStyleTable::newIterator(PwDbTextStyleTableIterator*& iterator,
                                                        bool atBeginning, bool skipErased) const {
    return newTypedIterator(iterator, atBeginning, skipErased);
}

PwDbSymbolTableIterator* PwDbTextStyleTable::makeIterator(std::vector<PwDbObjectId> ids) const {
    return new PwDbTextStyleTableIterator(std::move(ids));
}
