// PwDbDatabase: one drawing in memory. It owns every object of the drawing and the record
// behind every object id.
//
//   PwDbDatabase drawing;                       // an empty drawing, ready to use or to read
//   PwDbBlockTable* blocks = nullptr;
//   if (drawing.getSymbolTable(blocks, PwDb::OpenForRead) == Plotwright::StatusOk) {
//       ...
//       blocks->close();
//   }
//
// A new database holds an empty drawing: the block table with the model space
// ("*Model_Space") and one paper space ("*Paper_Space") block, the layer table with layer
// "0", the named objects dictionary, in it the layout dictionary ("PLOTWRIGHT_LAYOUT", with
// the layouts "Model" and "Layout1") and the plot settings dictionary
// ("PLOTWRIGHT_PLOTSETTINGS", empty), and the text style table with the style "Standard".
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/db/PwDbDatabaseExtension.h>

class PwDbObject;
class PwDbBlockTable;
class PwDbLayerTable;
class PwDbTextStyleTable;
class PwDbDictionary;
class PwDbIdMapping;
class PwDbTransactionManager;
struct PwDbDrawingImage;
struct PwDbPreviewImage;
struct PwDbStub;
class PwRxClass;

/// A number that changes whenever any drawing of the process changes, is made or is destroyed:
/// caches that span several drawings (the reference graph of a host) are sound while it stays.
uint64_t pwdbChangeEpoch();

class PwDbDatabase {
  public:
    /// How a file is held while and after the database reads it. Locks are advisory and
    /// honoured by every reader and writer of the toolkit, in every process.
    enum OpenMode : int {
        /// Others may read the file but not replace it, until closeInput.
        OpenModeShareRead = 1,
        /// Others may neither read (under a lock) nor replace the file, until closeInput.
        OpenModeExclusive = 2,
        /// The file is read under a shared lock that ends with the read; afterwards others
        /// may do anything, but the database still counts the file as its input.
        OpenModeShareAll = 3,
        /// Read everything now (under a shared lock) and hold nothing afterwards.
        OpenModeAlternate = 4,
    };

    /// An empty drawing. With `makeWorkingDatabase` the drawing becomes the host's working
    /// database when there is none. `noDocument` says that no document of a host application
    /// stands behind the drawing (the usual case for a service). The library passes false and
    /// true.
    explicit PwDbDatabase(bool makeWorkingDatabase = false, bool noDocument = true);
    /// Deletes every object of the drawing, open or not. A drawing that is the host's working
    /// database stops being it.
    ~PwDbDatabase();
    PwDbDatabase(const PwDbDatabase&) = delete;
    PwDbDatabase& operator=(const PwDbDatabase&) = delete;

    // --- Objects -------------------------------------------------------------------------

    /// Adds `object` to the drawing with a new handle; it comes back open for write and the
    /// caller closes it. StatusNullDatabase for a null object, StatusAlreadyInDatabase when it
    /// is in a database already.
    Plotwright::ErrorStatus addPwDbObject(PwDbObjectId& id, PwDbObject* object);
    Plotwright::ErrorStatus addPwDbObject(PwDbObject* object);
    /// Adds `object` under the given handle, as a reader of a stored drawing does. The handle
    /// must be non-zero and not yet taken by an object; later new handles come after it.
    Plotwright::ErrorStatus addPwDbObjectWithHandle(PwDbObject* object, PwDbHandle handle);
    /// The id of the object with `handle`; the null id when there is none. With
    /// `createIfMissing` a record without an object is made for it, for a reader that meets
    /// a reference to an object it hasn't read yet.
    PwDbObjectId getPwDbObjectId(PwDbHandle handle, bool createIfMissing = false);
    /// The handle the next new object gets.
    PwDbHandle handseed() const { return m_nextHandle; }
    /// Number of objects the drawing holds, erased ones included.
    size_t numObjects() const { return m_objectCount; }

    // --- Tables and dictionaries ----------------------------------------------------------

    Plotwright::ErrorStatus getSymbolTable(PwDbBlockTable*& table, PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getSymbolTable(PwDbLayerTable*& table, PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getSymbolTable(PwDbTextStyleTable*& table, PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getNamedObjectsDictionary(PwDbDictionary*& dictionary,
                                                      PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getLayoutDictionary(PwDbDictionary*& dictionary,
                                                PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getPlotSettingsDictionary(PwDbDictionary*& dictionary,
                                                      PwDb::OpenMode mode) const;
    PwDbObjectId blockTableId() const { return m_blockTable; }
    PwDbObjectId layerTableId() const { return m_layerTable; }
    PwDbObjectId textStyleTableId() const { return m_textStyleTable; }
    /// The live text style "Standard"; null when the drawing has none (it was erased).
    PwDbObjectId standardTextStyleId() const;
    PwDbObjectId namedObjectsDictionaryId() const { return m_namedObjects; }
    PwDbObjectId layoutDictionaryId() const { return m_layoutDictionary; }
    PwDbObjectId plotSettingsDictionaryId() const { return m_plotSettingsDictionary; }
    PwDbObjectId modelSpaceId() const { return m_modelSpace; }
    PwDbObjectId paperSpaceId() const { return m_paperSpace; }
    PwDbObjectId layerZeroId() const { return m_layerZero; }
    /// The block of the layout that is current in the drawing, where the host's layout service
    /// places new things by default: the model space unless setCurrentLayoutBlockId chose
    /// another layout's block (still live). A choice of the session: it isn't saved, and a
    /// drawing read from a file starts with the model space.
    PwDbObjectId currentLayoutBlockId() const;
    /// Chooses the current layout by its block; null goes back to the model space.
    /// StatusWrongDatabase for a block of another drawing, StatusNotApplicable for a block
    /// that belongs to no layout, the open's status when it can't be read.
    Plotwright::ErrorStatus setCurrentLayoutBlockId(PwDbObjectId block);
    /// The current layer, on which new entities land; layer "0" at first.
    PwDbObjectId clayer() const { return m_currentLayer; }
    Plotwright::ErrorStatus setClayer(PwDbObjectId layer);

    /// True when a non-erased entity of the drawing is on `layer`.
    bool isLayerUsedByEntities(PwDbObjectId layer) const;

    /// Replaces `ids` by the drawing's non-erased block references that place `block`, in the
    /// order they were added (handle order). Answered from an index the drawing keeps as
    /// references are added and changed, so the cost is that of the references found.
    /// StatusOutOfMemory when `ids` can't grow (it is then empty).
    Plotwright::ErrorStatus getBlockReferenceIds(PwDbObjectId block,
                                                 PwArray<PwDbObjectId>& ids) const;
    /// Keeps that index true: called by a block reference of this drawing whose block changes
    /// from `before` to `after`, and by the drawing when it adds one.
    void noteBlockReference(PwDbObjectId reference, PwDbObjectId before, PwDbObjectId after);

    // --- Cloning between drawings ---------------------------------------------------------

    /// Copies the objects `ids`, all of one other drawing, into this drawing under `owner` (a
    /// block table record for entities, or the block table for block definitions), with
    /// everything they refer to that this drawing lacks: a block's entities, their layers and
    /// text styles, nested blocks. References between the copies are translated to the
    /// copies. `mapping` receives every pair of source and copy (or of source and the target
    /// record used in its place). `duplicateRecordCloning` says what happens to a named
    /// record (layer, text style, block) whose name the target already has (see
    /// PwDb::DuplicateRecordCloning). `deferTranslation` is accepted for callers that pass it:
    /// translation always completes before the call returns.
    /// Statuses: StatusNullObjectId for an empty list or a null id or owner,
    /// StatusInvalidInput for ids of this drawing (a drawing can't be cloned into itself) or
    /// of several drawings, or an unknown duplicate mode; StatusWrongDatabase for an owner of
    /// another drawing; StatusNotThatKindOfClass when the owner can't hold what is cloned;
    /// StatusDuplicateKey when the mode refuses a name that is taken; the status of an open
    /// or a copy that fails. On failure this drawing is as it was before the call.
    Plotwright::ErrorStatus wblockCloneObjects(const PwArray<PwDbObjectId>& ids,
                                               PwDbObjectId owner, PwDbIdMapping& mapping,
                                               int duplicateRecordCloning,
                                               bool deferTranslation = false);

    // --- Drawing settings ----------------------------------------------------------------

    PwDb::MeasurementValue measurement() const { return m_measurement; }
    void setMeasurement(PwDb::MeasurementValue value) { m_measurement = value; }
    /// The path the drawing was read from or last saved to; `name` is null (status Ok) until
    /// the drawing was read or saved.
    Plotwright::ErrorStatus getFilename(const char16_t*& name) const;
    /// Records the drawing's path; for the file readers and writers.
    void setFilename(const wstring& path);
    bool isDocumentless() const { return m_noDocument; }

    // --- Files ---------------------------------------------------------------------------

    /// Reads the native drawing file `path` into this database, replacing everything it held
    /// (objects, handles, settings). Statuses: StatusFileNotFound; StatusSecurityAccessDenied
    /// when permission, or another process's exclusive hold, forbids reading;
    /// StatusBadFileFormat for a file that isn't a sound drawing of a version that can be
    /// read; StatusInvalidInput for a null path or an unknown mode. On failure the database
    /// keeps what it held. `allowCodePageConversion` and `password` are accepted for callers
    /// that pass them; drawings of this toolkit need neither.
    Plotwright::ErrorStatus readPlwFile(const char16_t* path, OpenMode mode = OpenModeShareRead,
                                        bool allowCodePageConversion = false,
                                        const char16_t* password = nullptr);
    /// Reads the exchange file `path` like readPlwFile in OpenModeAlternate. `logFile` is
    /// accepted and not used.
    Plotwright::ErrorStatus plxIn(const char16_t* path, const char16_t* logFile = nullptr);
    /// Saves the drawing as a native file of `version` (16 to 33, else StatusNoSuchVersion),
    /// replacing `path` atomically; a failed save leaves the old file as it was. With
    /// `becomesDrawingFile` the saved file becomes the drawing's file (getFilename); without,
    /// it is a copy. Saving over the file the database was read from is refused with
    /// StatusFileInUse until closeInput, except in OpenModeAlternate.
    Plotwright::ErrorStatus saveAs(const char16_t* path, bool becomesDrawingFile,
                                   PwDb::PwDbPlwVersion version,
                                   const void* securityParams = nullptr);
    /// Saves the drawing as an exchange file of `version` with doubles written with
    /// `precision` decimal places (0 to 17), atomically like saveAs. `withPreview` writes the
    /// preview image too.
    Plotwright::ErrorStatus plxOut(const char16_t* path, int precision,
                                   PwDb::PwDbPlwVersion version, bool withPreview = false);
    /// Ends the hold on the file the database was read from (its lock and its handle).
    /// `closeFile` is accepted for callers that pass it; the hold always ends completely.
    Plotwright::ErrorStatus closeInput(bool closeFile = true);
    /// The version the drawing was last saved in by saveAs; PwDbPlwVersionNone until then.
    PwDb::PwDbPlwVersion lastSavedAsVersion() const { return m_lastSavedVersion; }
    /// The version of the file the drawing was read from; the current version for a drawing
    /// made from nothing.
    PwDb::PwDbPlwVersion originalFileVersion() const { return m_originalVersion; }

    /// The preview image saved with the drawing; null when there is none.
    const PwDbPreviewImage* previewImage() const;
    void setPreviewImage(const PwDbPreviewImage* image);

    /// The drawing as its files hold it, in `version`: every object that isn't erased, the
    /// settings, the roots, the host's application identity and the preview.
    Plotwright::ErrorStatus captureImage(PwDbDrawingImage& image, int32_t version) const;
    /// Replaces everything the database holds by `image`. StatusBadFileFormat when the image
    /// isn't a sound drawing (a record that can't be read, a root that is missing or of the
    /// wrong class); the database then keeps what it held.
    Plotwright::ErrorStatus loadImage(const PwDbDrawingImage& image);

    /// The manager of this drawing's transactions.
    PwDbTransactionManager* transactionManager() const;

    /// Counts every change to the drawing: additions, erasures and write enables. Caches over
    /// the drawing compare it to know when to recompute.
    uint64_t changeCount() const { return m_changeCount; }
    /// Counts a change of this drawing, and one of the process's drawings (pwdbChangeEpoch).
    void noteChange();

    /// The state of the layer whose slot is `slot`, kept for this drawing; null when there is
    /// none. Layers reach their own state through pwdbExtension and pwdbFindExtension.
    PwDbDatabaseExtension* extension(const PwDbExtensionSlot& slot) const;
    /// Gives this drawing `state` in `slot`, ending what the slot held; null empties it.
    void setExtension(const PwDbExtensionSlot& slot, std::unique_ptr<PwDbDatabaseExtension> state);

  private:
    struct EmptyTag {};
    /// A database with nothing in it, to read a file into before it replaces a drawing.
    explicit PwDbDatabase(EmptyTag);

    PwDbStub& newStub(PwDbHandle handle);
    /// Decodes the pending record `stub` of the file being read and puts its object there;
    /// the object, or null with `why` set when the record doesn't decode.
    PwDbObject* decodePending(PwDbStub& stub, Plotwright::ErrorStatus* why);
    /// Decodes every record still pending; the first failure's status, the records that
    /// decode being decoded all the same.
    Plotwright::ErrorStatus decodeAllPending() const;
    friend PwDbObject* pwdbStubObject(const PwDbStub& stub, Plotwright::ErrorStatus* why);
    friend bool pwdbStubMayBe(const PwDbStub& stub, const PwRxClass* cls);
    friend size_t pwdbPendingRecordCount(const PwDbDatabase& database);
    void buildDefaultDrawing();
    /// Takes over every object, record and setting of `other`, giving it this one's.
    void swapContents(PwDbDatabase& other);
    Plotwright::ErrorStatus readImage(const PwDbDrawingImage& image, const char16_t* path,
                                      int32_t version);
    /// Makes `scratch`, whose objects are in, a drawing with the roots and settings of `head`
    /// and takes its contents; StatusBadFileFormat when a root is missing.
    Plotwright::ErrorStatus takeLoaded(PwDbDatabase& scratch, const PwDbDrawingImage& head);
    /// What a database keeps of the file it was read from, but its objects.
    void noteRead(const PwDbDrawingImage& head, const char16_t* path, int32_t version);
    /// Reads an indexed native file: its front now, its records when first needed.
    struct IndexedRead;
    Plotwright::ErrorStatus readIndexed(const char16_t* path, IndexedRead& read);
    /// Before a save replaces `path`: when it is the file still being read, reads into memory
    /// what is still wanted of it.
    Plotwright::ErrorStatus keepPendingBeforeReplacing(const char16_t* path);
    /// The image of the drawing without its objects.
    void captureHead(PwDbDrawingImage& image, int32_t version) const;
    /// Every object of the drawing, erased ones too, in handle order; nothing may be pending.
    std::vector<const PwDbObject*> objectsByHandle() const;
    /// Reads the exchange text of the file `path`, known to be UTF-8, into this drawing, each
    /// object from its lines.
    Plotwright::ErrorStatus readExchange(std::string_view text, const char16_t* path);
    /// The drawing as exchange text, each object writing its own lines.
    Plotwright::ErrorStatus encodeExchange(int32_t version, int precision, bool withPreview,
                                           std::string& text) const;
    /// The native file of the drawing, records still in the file read copied as they are.
    Plotwright::ErrorStatus encodeIndexed(int32_t version, std::string& bytes) const;
    bool inputForbidsSaving(const char16_t* path) const;
    /// The entry of `slot`, made empty when the drawing has none.
    std::unique_ptr<PwDbDatabaseExtension>& takeExtensionSlot(const PwDbExtensionSlot& slot);

    /// Every object record in the order the records were made, and the records by handle.
    struct Records;
    std::unique_ptr<Records> m_records;
    PwDbHandle m_nextHandle = 1;
    size_t m_objectCount = 0;
    uint64_t m_changeCount = 0;

    PwDbObjectId m_blockTable;
    PwDbObjectId m_layerTable;
    PwDbObjectId m_textStyleTable;
    PwDbObjectId m_namedObjects;
    PwDbObjectId m_layoutDictionary;
    PwDbObjectId m_plotSettingsDictionary;
    PwDbObjectId m_modelSpace;
    PwDbObjectId m_paperSpace;
    PwDbObjectId m_layerZero;
    PwDbObjectId m_currentLayer;
    PwDbObjectId m_currentLayoutBlock;

    PwDb::MeasurementValue m_measurement = PwDb::Metric;
    wstring m_filename;
    bool m_hasFilename = false;
    bool m_noDocument = true;
    std::unique_ptr<PwDbTransactionManager> m_transactions;

    struct LayerUsage;
    mutable std::unique_ptr<LayerUsage> m_layerUsage;

    /// Each block's references, in handle order; erased ones stay and are passed over.
    std::unordered_map<PwDbObjectId, std::vector<PwDbObjectId>> m_blockReferences;

    /// Gives a drawing without a text style table (read from a file written before there was
    /// one) its table with "Standard"; one that has a table keeps it.
    void ensureTextStyleTable();
    /// Removes the objects with handles from `firstHandle` on, made by a failed clone, and
    /// gives their handles back; the drawing is then as it was before.
    void discardObjectsFrom(PwDbHandle firstHandle, size_t stubCount);
    friend class PwDbCloner;
    friend void pwdbForEachStub(const PwDbDatabase& database,
                                const std::function<void(const PwDbStub&)>& visit);

    PwDb::PwDbPlwVersion m_originalVersion = PwDb::PwDbPlwVersionCurrent;
    PwDb::PwDbPlwVersion m_lastSavedVersion = PwDb::PwDbPlwVersionNone;

    /// The state that the layers above keep for this drawing, one entry per slot in use.
    std::vector<std::pair<const PwDbExtensionSlot*, std::unique_ptr<PwDbDatabaseExtension>>>
        m_extensions;
};

template <class State>
State* pwdbFindExtension(const PwDbDatabase& database) {
    return static_cast<State*>(database.extension(State::slot));
}

template <class State>
State& pwdbExtension(PwDbDatabase& database) {
    if (State* found = pwdbFindExtension<State>(database)) return *found;
    auto made = std::make_unique<State>();
    State& state = *made;
    database.setExtension(State::slot, std::move(made));
    return state;
}
