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
// ("PLOTWRIGHT_PLOTSETTINGS", empty).
#pragma once

#include <deque>
#include <memory>
#include <unordered_map>
#include <vector>

#include "lodeutil/WideString.h"
#include "toolkit/core/PwErrorStatus.h"
#include "toolkit/db/PwDb.h"
#include "toolkit/db/PwDbObjectId.h"
#include "toolkit/db/PwDbStub.h"

class PwDbObject;
class PwDbBlockTable;
class PwDbLayerTable;
class PwDbDictionary;
class PwDbTransactionManager;

class PwDbDatabase {
  public:
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
    /// Every object record in the order the records were made, erased objects and records
    /// without an object included.
    template <class Visit>
    void forEachStub(Visit&& visit) const {
        for (const PwDbStub& stub : m_stubs) visit(stub);
    }
    /// Number of objects the drawing holds, erased ones included.
    size_t numObjects() const { return m_objectCount; }

    // --- Tables and dictionaries ----------------------------------------------------------

    Plotwright::ErrorStatus getSymbolTable(PwDbBlockTable*& table, PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getSymbolTable(PwDbLayerTable*& table, PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getNamedObjectsDictionary(PwDbDictionary*& dictionary,
                                                      PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getLayoutDictionary(PwDbDictionary*& dictionary,
                                                PwDb::OpenMode mode) const;
    Plotwright::ErrorStatus getPlotSettingsDictionary(PwDbDictionary*& dictionary,
                                                      PwDb::OpenMode mode) const;
    PwDbObjectId blockTableId() const { return m_blockTable; }
    PwDbObjectId layerTableId() const { return m_layerTable; }
    PwDbObjectId namedObjectsDictionaryId() const { return m_namedObjects; }
    PwDbObjectId layoutDictionaryId() const { return m_layoutDictionary; }
    PwDbObjectId plotSettingsDictionaryId() const { return m_plotSettingsDictionary; }
    PwDbObjectId modelSpaceId() const { return m_modelSpace; }
    PwDbObjectId paperSpaceId() const { return m_paperSpace; }
    PwDbObjectId layerZeroId() const { return m_layerZero; }
    /// The current layer, on which new entities land; layer "0" at first.
    PwDbObjectId clayer() const { return m_currentLayer; }
    Plotwright::ErrorStatus setClayer(PwDbObjectId layer);

    /// True when a non-erased entity of the drawing is on `layer`.
    bool isLayerUsedByEntities(PwDbObjectId layer) const;

    // --- Drawing settings ----------------------------------------------------------------

    PwDb::MeasurementValue measurement() const { return m_measurement; }
    void setMeasurement(PwDb::MeasurementValue value) { m_measurement = value; }
    /// The path the drawing was read from or last saved to; `name` is null (status Ok) until
    /// the drawing was read or saved.
    Plotwright::ErrorStatus getFilename(const char16_t*& name) const;
    /// Records the drawing's path; for the file readers and writers.
    void setFilename(const wstring& path);
    bool isDocumentless() const { return m_noDocument; }

    /// The manager of this drawing's transactions.
    PwDbTransactionManager* transactionManager() const;

    /// Counts every change to the drawing: additions, erasures and write enables. Caches over
    /// the drawing compare it to know when to recompute.
    uint64_t changeCount() const { return m_changeCount; }
    void noteChange() { ++m_changeCount; }

  private:
    PwDbStub& newStub(PwDbHandle handle);
    void buildDefaultDrawing();

    std::deque<PwDbStub> m_stubs;
    std::unordered_map<PwDbHandle, PwDbStub*> m_byHandle;
    PwDbHandle m_nextHandle = 1;
    size_t m_objectCount = 0;
    uint64_t m_changeCount = 0;

    PwDbObjectId m_blockTable;
    PwDbObjectId m_layerTable;
    PwDbObjectId m_namedObjects;
    PwDbObjectId m_layoutDictionary;
    PwDbObjectId m_plotSettingsDictionary;
    PwDbObjectId m_modelSpace;
    PwDbObjectId m_paperSpace;
    PwDbObjectId m_layerZero;
    PwDbObjectId m_currentLayer;

    PwDb::MeasurementValue m_measurement = PwDb::Metric;
    wstring m_filename;
    bool m_hasFilename = false;
    bool m_noDocument = true;
    std::unique_ptr<PwDbTransactionManager> m_transactions;

    struct LayerUsage;
    mutable std::unique_ptr<LayerUsage> m_layerUsage;
};
