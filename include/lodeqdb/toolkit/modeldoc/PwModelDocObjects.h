// Model document objects: what a drawing keeps of the mechanical design products whose
// model documents it shows.
//
// Defines PwDbModelDocView, PwDbModelDocPackage and PwDbModelDocRedirections.
//
// A drawing keeps them in its root dictionary:
//   "PLOTWRIGHT_MODELDOC_VIEWS"         a dictionary of PwDbModelDocView, one per view, keyed
//                                       by the view's name
//   "PLOTWRIGHT_MODELDOC_PACKAGE"       one PwDbModelDocPackage: a product drawing file
//                                       carried inside the drawing, bytes and file name
//   "PLOTWRIGHT_MODELDOC_REDIRECTIONS"  one PwDbModelDocRedirections: where the model
//                                       documents that the views show are to be looked for
//
// All three are ordinary objects with filing functions, so both drawing formats keep them.
// See docs/model-document-references.md for what each means.
#pragma once

#include <cstddef>
#include <string>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

namespace PwModelDocKeys {

inline constexpr const char16_t* kViews = u"PLOTWRIGHT_MODELDOC_VIEWS";
inline constexpr const char16_t* kPackage = u"PLOTWRIGHT_MODELDOC_PACKAGE";
inline constexpr const char16_t* kRedirections = u"PLOTWRIGHT_MODELDOC_REDIRECTIONS";
/// The product name that a view of the mechanical design product Gearmark carries.
inline constexpr const char16_t* kGearmarkProduct = u"Gearmark";

}  // namespace PwModelDocKeys

/// One view of a model document: the product that made the document, the document's path as
/// the drawing records it, and the name of the view shown.
class PwDbModelDocView : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbModelDocView);

  public:
    PwDbModelDocView();
    ~PwDbModelDocView() override;

    /// The setters give StatusNotOpenForWrite unless the view is writable; null sets the
    /// empty text.
    const wstring& product() const { return m_product; }
    Plotwright::ErrorStatus setProduct(const char16_t* product);
    const wstring& documentPath() const { return m_documentPath; }
    Plotwright::ErrorStatus setDocumentPath(const char16_t* path);
    const wstring& viewName() const { return m_viewName; }
    Plotwright::ErrorStatus setViewName(const char16_t* name);

    /// True when the view comes from Gearmark (the product name is exactly "Gearmark").
    bool isFromGearmark() const;

    /// Product, document path, view name (after the owner).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_product;
    wstring m_documentPath;
    wstring m_viewName;
};

/// A product drawing file carried inside the drawing: its plain file name and its bytes.
class PwDbModelDocPackage : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbModelDocPackage);

  public:
    /// The largest file a package takes; a stored size above it marks a damaged drawing.
    static constexpr size_t kMaxBytes = size_t{1} << 30;
    /// The bytes are filed in pieces of this size (the last one shorter), so that a reader
    /// of a damaged count runs out of pieces before it has spent memory on the promise.
    static constexpr size_t kPieceBytes = size_t{1} << 16;

    PwDbModelDocPackage();
    ~PwDbModelDocPackage() override;

    /// True when `name` may name the unpacked file: not empty, not "." or "..", no '/', '\\'
    /// or ':' and no control character, so that it always names a file inside the folder it
    /// is unpacked into.
    static bool isPlainFileName(const wstring& name);

    const wstring& fileName() const { return m_fileName; }
    /// StatusInvalidInput for a name that isPlainFileName refuses (null included),
    /// StatusNotOpenForWrite.
    Plotwright::ErrorStatus setFileName(const char16_t* name);

    const std::string& bytes() const { return m_bytes; }
    /// StatusInvalidInput above kMaxBytes, StatusNotOpenForWrite.
    Plotwright::ErrorStatus setBytes(std::string bytes);

    /// File name, byte count, then the bytes in pieces of at most kPieceBytes (after the
    /// owner). A stored name that isPlainFileName refuses, a count above kMaxBytes or pieces
    /// that don't add up to the count give StatusFilerError.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_fileName;
    std::string m_bytes;
};

/// The redirection information of a drawing's model documents: text that the producing
/// product writes and reads; the toolkit keeps it as it is given.
class PwDbModelDocRedirections : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbModelDocRedirections);

  public:
    PwDbModelDocRedirections();
    ~PwDbModelDocRedirections() override;

    const wstring& info() const { return m_info; }
    /// Null sets the empty text. StatusNotOpenForWrite.
    Plotwright::ErrorStatus setInfo(const char16_t* info);

    /// The text (after the owner).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_info;
};
