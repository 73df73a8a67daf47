// Underlays: documents shown under a drawing. A drawing holds one definition per attached
// file, of one of three kinds (PwDbPdfDefinition, PwDbDgnDefinition, PwDbPlfDefinition), each
// kind in a dictionary of its own in the root dictionary; PwDbUnderlayReference entities show
// them.
//
//   PwString key = PwDbUnderlayDefinition::dictionaryKey(PwDbPdfDefinition::desc());
//   PwDbUnderlayDefinition* definition = nullptr;
//   if (pwdbOpenObject(definition, id, PwDb::OpenForWrite) == Plotwright::StatusOk) {
//       definition->load(nullptr);
//       definition->close();
//   }
//
// A definition saves its source file name (the path as the drawing records it) and its item
// name (the page, model or sheet shown). Whether it is loaded, and the full path it was loaded
// from, belong to the session: a definition read from a file is unloaded.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayFileFormats.h>

class PwDbUnderlayDefinition : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbUnderlayDefinition);

  public:
    ~PwDbUnderlayDefinition() override;

    /// The key under which the root dictionary holds the dictionary of the definitions of the
    /// kind `kind` (or of a class derived from it): "PLOTWRIGHT_PDF_DEFINITIONS",
    /// "PLOTWRIGHT_DGN_DEFINITIONS", "PLOTWRIGHT_PLF_DEFINITIONS". Empty for null and for any
    /// other class.
    static PwString dictionaryKey(const PwRxClass* kind);

    /// Records the file as the drawing names it (relative to the drawing's folder with '\' or
    /// '/', rooted, or a URL); null is the empty name. A change unloads the definition.
    /// StatusNotOpenForWrite.
    Plotwright::ErrorStatus setSourceFileName(const char16_t* path);
    /// Owned by the definition; never null.
    const char16_t* getSourceFileName() const { return m_sourceFileName.c_str(); }

    /// The full path of the file in use: where load() found it while loaded, otherwise the file
    /// looked for now as every dependent file is (pwdbFindDependentFile). StatusFileNotFound,
    /// and `name` empty, when it can't be found.
    Plotwright::ErrorStatus getActiveFileName(PwString& name) const;

    /// The page (PDF), model (DGN) or sheet (PLF) shown; null sets the empty name.
    /// StatusNotOpenForWrite.
    Plotwright::ErrorStatus setItemName(const char16_t* name);
    const char16_t* getItemName() const { return m_itemName.c_str(); }

    /// Finds the file (StatusFileNotFound), checks by its first bytes that it is a file of the
    /// definition's kind (StatusBadFileFormat), and is loaded with the found path as its
    /// active name; on failure it is unloaded. Loading a loaded definition loads it again.
    /// `password` is accepted for callers that pass one: no underlay file of ours is locked.
    /// StatusNotOpenForWrite.
    Plotwright::ErrorStatus load(const char16_t* password);
    /// No longer loaded; the active name is forgotten.
    void unload();
    bool isLoaded() const { return m_loaded; }

    /// The kind of file this definition shows.
    virtual PwDbUnderlayFileKind fileKind() const = 0;

    /// The source file name and the item name.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  protected:
    PwDbUnderlayDefinition();

  private:
    wstring m_sourceFileName;
    wstring m_itemName;
    wstring m_activeFileName;
    bool m_loaded = false;
};

/// A PDF document as an underlay.
class PwDbPdfDefinition : public PwDbUnderlayDefinition {
    PWRX_DECLARE_MEMBERS(PwDbPdfDefinition);

  public:
    PwDbUnderlayFileKind fileKind() const override { return PwDbUnderlayFileKind::Pdf; }
};

/// A DGN design file (V7, or V8 recognised by its container) as an underlay.
class PwDbDgnDefinition : public PwDbUnderlayDefinition {
    PWRX_DECLARE_MEMBERS(PwDbDgnDefinition);

  public:
    PwDbUnderlayFileKind fileKind() const override { return PwDbUnderlayFileKind::Dgn; }
};

/// A PLF sheet of the product family as an underlay.
class PwDbPlfDefinition : public PwDbUnderlayDefinition {
    PWRX_DECLARE_MEMBERS(PwDbPlfDefinition);

  public:
    PwDbUnderlayFileKind fileKind() const override { return PwDbUnderlayFileKind::Plf; }
};
