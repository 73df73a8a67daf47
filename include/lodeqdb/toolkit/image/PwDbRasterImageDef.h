// Raster images: a definition per image file a drawing uses, kept in the drawing's image
// dictionary, and placements that show it (PwDbRasterImage).
//
//   PwDbObjectId dictionaryId = PwDbRasterImageDef::imageDictionary(&drawing);
//   PwDbRasterImageDef* definition = nullptr;
//   if (pwdbOpenObject(definition, id, PwDb::OpenForWrite) == Plotwright::StatusOk) {
//       if (definition->load() == Plotwright::StatusOk) use(definition->activeFileName());
//       definition->close();
//   }
//
// A definition has two names: the source file name, the path as the drawing records it, and
// the active file name, the full path where load() last found the file. Only the source name
// is saved with the drawing; the active name and the loaded state belong to the session, so a
// definition read from a file is unloaded and has an empty active name.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>
#include <lodeqdb/toolkit/image/PwDbImageFileHeader.h>

class PwDbDatabase;

class PwDbRasterImageDef : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbRasterImageDef);

  public:
    /// The key of the image dictionary in the drawing's named objects dictionary.
    static constexpr char16_t kImageDictionaryKey[] = u"PLOTWRIGHT_IMAGE_DICT";

    PwDbRasterImageDef();
    ~PwDbRasterImageDef() override;

    // The first virtual operations of the class, in this order.

    /// Records the image file as the drawing names it (relative to the drawing's folder with
    /// '\' or '/', rooted, or a URL); null is the empty name. A change unloads the definition
    /// and clears the active name. StatusNotOpenForWrite.
    virtual Plotwright::ErrorStatus setSourceFileName(const char16_t* path);
    /// Sets the path in use; null is the empty name. StatusNotOpenForWrite.
    virtual Plotwright::ErrorStatus setActiveFileName(const char16_t* path);
    /// Owned by the definition; never null.
    virtual const char16_t* sourceFileName() const;
    virtual const char16_t* activeFileName() const;
    /// True when the definition is no dependency of its drawing: no placed image uses it (no
    /// persistent reactor of the definition is a PwDbRasterImage that isn't erased, with its
    /// definition id pointing back here).
    virtual bool skipAsChild() const;
    /// Finds the file of the source name as every dependent file is found
    /// (pwdbFindDependentFile: beside the drawing, its bare name there, the host's hook), checks
    /// by its header that it is an image of a supported format, and then is loaded with the
    /// found path as its active name. StatusNotOpenForWrite; StatusFileNotFound (also for an
    /// empty source name); StatusBadFileFormat for a file that is no image; the definition is
    /// then unloaded. Loading a loaded definition loads it again.
    virtual Plotwright::ErrorStatus load();
    /// No longer loaded; the active name stays (where the file was last found). With
    /// `modifyDatabase` the definition is recorded as changed and must be open for write;
    /// without, any open will do.
    virtual Plotwright::ErrorStatus unload(bool modifyDatabase = true);
    virtual bool isLoaded() const;

    /// The format and size in pixels found by the last load; Unknown and 0 by 0 until then.
    const PwDbImageFileInfo& imageInfo() const { return m_info; }

    /// The id of `database`'s image dictionary; null for a null database or when it has none.
    static PwDbObjectId imageDictionary(const PwDbDatabase* database);
    /// The image dictionary of `database`, made and filed when there is none.
    /// StatusNullDatabase for null, or the status of filing it.
    static Plotwright::ErrorStatus createImageDictionary(PwDbDatabase* database, PwDbObjectId& id);

    /// The source file name.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_sourceFileName;
    wstring m_activeFileName;
    bool m_loaded = false;
    PwDbImageFileInfo m_info;
};
