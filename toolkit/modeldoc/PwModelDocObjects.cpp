// The model document objects: their persistent data and run-time classes.
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjects.h>

#include <algorithm>

#include "toolkit/core/PwWideText.h"
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbModelDocView, PwDbObject, u"PwDbModelDocView");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbModelDocPackage, PwDbObject, u"PwDbModelDocPackage");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbModelDocRedirections, PwDbObject, u"PwDbModelDocRedirections");

PwDbModelDocView::PwDbModelDocView() = default;
PwDbModelDocView::~PwDbModelDocView() = default;

Plotwright::ErrorStatus PwDbModelDocView::setProduct(const char16_t* product) {
    return setField(m_product, pwWideTextOrEmpty(product));
}

Plotwright::ErrorStatus PwDbModelDocView::setDocumentPath(const char16_t* path) {
    return setField(m_documentPath, pwWideTextOrEmpty(path));
}

Plotwright::ErrorStatus PwDbModelDocView::setViewName(const char16_t* name) {
    return setField(m_viewName, pwWideTextOrEmpty(name));
}

bool PwDbModelDocView::isFromGearmark() const {
    return m_product == PwModelDocKeys::kGearmarkProduct;
}

Plotwright::ErrorStatus PwDbModelDocView::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    wstring product;
    wstring path;
    wstring name;
    if (auto status = filer->readString(product)) return status;
    if (auto status = filer->readString(path)) return status;
    if (auto status = filer->readString(name)) return status;
    m_product = std::move(product);
    m_documentPath = std::move(path);
    m_viewName = std::move(name);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbModelDocView::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    if (auto status = filer->writeString(m_product)) return status;
    if (auto status = filer->writeString(m_documentPath)) return status;
    return filer->writeString(m_viewName);
}

PwDbModelDocPackage::PwDbModelDocPackage() = default;
PwDbModelDocPackage::~PwDbModelDocPackage() = default;

bool PwDbModelDocPackage::isPlainFileName(const wstring& name) {
    if (name.empty() || name == u"." || name == u"..") return false;
    return std::none_of(name.begin(), name.end(), [](char16_t c) {
        return c == u'/' || c == u'\\' || c == u':' || c < 0x20 || (c >= 0x7F && c <= 0x9F);
    });
}

Plotwright::ErrorStatus PwDbModelDocPackage::setFileName(const char16_t* name) {
    if (name == nullptr || !isPlainFileName(name)) return Plotwright::StatusInvalidInput;
    return setField(m_fileName, wstring(name));
}

Plotwright::ErrorStatus PwDbModelDocPackage::setBytes(std::string bytes) {
    if (bytes.size() > kMaxBytes) return Plotwright::StatusInvalidInput;
    return setField(m_bytes, std::move(bytes));
}

Plotwright::ErrorStatus PwDbModelDocPackage::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    wstring name;
    int64_t count = 0;
    if (auto status = filer->readString(name)) return status;
    if (!isPlainFileName(name)) return Plotwright::StatusFilerError;
    if (auto status = filer->readInt64(count)) return status;
    if (count < 0 || static_cast<uint64_t>(count) > kMaxBytes) return Plotwright::StatusFilerError;
    std::string bytes;
    const auto total = static_cast<size_t>(count);
    while (bytes.size() < total) {
        const size_t piece = std::min(kPieceBytes, total - bytes.size());
        const size_t start = bytes.size();
        bytes.resize(start + piece);
        if (filer->readBytes(bytes.data() + start, piece) != Plotwright::StatusOk)
            return Plotwright::StatusFilerError;
    }
    m_fileName = std::move(name);
    m_bytes = std::move(bytes);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbModelDocPackage::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    if (auto status = filer->writeString(m_fileName)) return status;
    if (auto status = filer->writeInt64(static_cast<int64_t>(m_bytes.size()))) return status;
    for (size_t start = 0; start < m_bytes.size(); start += kPieceBytes) {
        const size_t piece = std::min(kPieceBytes, m_bytes.size() - start);
        if (auto status = filer->writeBytes(m_bytes.data() + start, piece)) return status;
    }
    return Plotwright::StatusOk;
}

PwDbModelDocRedirections::PwDbModelDocRedirections() = default;
PwDbModelDocRedirections::~PwDbModelDocRedirections() = default;

Plotwright::ErrorStatus PwDbModelDocRedirections::setInfo(const char16_t* info) {
    return setField(m_info, pwWideTextOrEmpty(info));
}

Plotwright::ErrorStatus PwDbModelDocRedirections::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    wstring info;
    if (auto status = filer->readString(info)) return status;
    m_info = std::move(info);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbModelDocRedirections::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    return filer->writeString(m_info);
}
