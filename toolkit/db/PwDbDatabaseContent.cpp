// The contents every drawing starts with, and the ways to its tables and dictionaries.
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/db/PwDbStub.h"

#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>

namespace {

// The A4 sheet, landscape, in millimetres: the paper of the first paper space layout.
constexpr double kA4LongSide = 297.0;
constexpr double kA4ShortSide = 210.0;

struct LayoutSetup {
    const char16_t* name;
    int tabOrder;
    bool modelType;
    double paperWidth;
    double paperHeight;
};

PwDbObjectId addBlock(PwDbBlockTable* blocks, const char16_t* name) {
    auto* block = new PwDbBlockTableRecord;
    PwDbObjectId id;
    if (block->setName(name) != Plotwright::StatusOk ||
        blocks->add(id, block) != Plotwright::StatusOk) {
        delete block;
        return PwDbObjectId();
    }
    block->close();
    return id;
}

PwDbObjectId addLayerZero(PwDbLayerTable* layers) {
    auto* layer = new PwDbLayerTableRecord;
    PwDbObjectId id;
    if (layer->setName(u"0") != Plotwright::StatusOk ||
        layer->setColorIndex(PwDbLayerTableRecord::kDefaultColorIndex) != Plotwright::StatusOk ||
        layers->add(id, layer) != Plotwright::StatusOk) {
        delete layer;
        return PwDbObjectId();
    }
    layer->close();
    return id;
}

// Files the layout in `layouts` and ties it and `block` to each other.
void addLayout(PwDbDictionary* layouts, const LayoutSetup& setup, PwDbObjectId block) {
    auto* layout = new PwDbLayout;
    layout->setLayoutName(setup.name);
    layout->setBlockTableRecordId(block);
    layout->setTabOrder(setup.tabOrder);
    layout->setModelType(setup.modelType);
    layout->setPlotPaperSize(setup.paperWidth, setup.paperHeight);
    PwDbObjectId id;
    if (layouts->setAt(setup.name, layout, id) != Plotwright::StatusOk) {
        delete layout;
        return;
    }
    layout->close();
    PwDbBlockTableRecord* record = nullptr;
    if (pwdbOpenObject(record, block, PwDb::OpenForWrite) == Plotwright::StatusOk) {
        record->setLayoutId(id);
        record->close();
    }
}

}  // namespace

void PwDbDatabase::buildDefaultDrawing() {
    auto* blocks = new PwDbBlockTable;
    auto* layers = new PwDbLayerTable;
    auto* named = new PwDbDictionary;
    // New objects always go in; the tables and the named objects dictionary are roots.
    addPwDbObject(m_blockTable, blocks);
    addPwDbObject(m_layerTable, layers);
    addPwDbObject(m_namedObjects, named);

    m_layerZero = addLayerZero(layers);
    m_currentLayer = m_layerZero;
    m_modelSpace = addBlock(blocks, u"*Model_Space");
    m_paperSpace = addBlock(blocks, u"*Paper_Space");

    auto* layouts = new PwDbDictionary;
    if (named->setAt(u"PLOTWRIGHT_LAYOUT", layouts, m_layoutDictionary) != Plotwright::StatusOk) {
        delete layouts;
        layouts = nullptr;
    }
    auto* plotSettings = new PwDbDictionary;
    if (named->setAt(u"PLOTWRIGHT_PLOTSETTINGS", plotSettings, m_plotSettingsDictionary) !=
        Plotwright::StatusOk) {
        delete plotSettings;
        plotSettings = nullptr;
    }
    if (layouts != nullptr) {
        addLayout(layouts, {u"Model", 0, true, 0.0, 0.0}, m_modelSpace);
        addLayout(layouts, {u"Layout1", 1, false, kA4LongSide, kA4ShortSide}, m_paperSpace);
        layouts->close();
    }
    if (plotSettings != nullptr) plotSettings->close();
    named->close();
    layers->close();
    blocks->close();
    // Last, so that the objects made before it keep the handles they had before drawings
    // had text styles.
    ensureTextStyleTable();
}

void PwDbDatabase::ensureTextStyleTable() {
    if (!m_textStyleTable.isNull()) return;
    // A file holds the table as an object owned by nothing; the first such one (by handle)
    // is the drawing's.
    // Only records whose class says so are decoded to be asked.
    const auto consider = [this](PwDbStub& stub) {
        if (!pwdbStubMayBe(stub, PwDbTextStyleTable::desc())) return;
        const PwDbTextStyleTable* table = PwDbTextStyleTable::cast(pwdbStubObject(stub));
        if (table == nullptr || table->isErased() || !table->ownerId().isNull()) return;
        if (m_textStyleTable.isNull() || stub.handle < m_textStyleTable.handle()) {
            m_textStyleTable = PwDbObjectId(&stub);
        }
    };
    // Of the file's records, the source names the few whose class is the table's.
    if (m_records->source) {
        std::vector<PwDbHandle> handles;
        m_records->source->handlesNaming(PwDbTextStyleTable::desc()->name(), handles);
        for (const PwDbHandle handle : handles) {
            if (PwDbStub* stub = m_records->findFileStub(handle)) consider(*stub);
        }
    }
    for (PwDbStub& stub : m_records->stubs) consider(stub);
    if (!m_textStyleTable.isNull()) return;
    auto* styles = new PwDbTextStyleTable;
    if (addPwDbObject(m_textStyleTable, styles) != Plotwright::StatusOk) {
        delete styles;
        return;
    }
    auto* standard = new PwDbTextStyleTableRecord;
    if (standard->setName(PwDbTextStyleTable::kStandardStyleName) != Plotwright::StatusOk ||
        styles->add(standard) != Plotwright::StatusOk) {
        delete standard;
    } else {
        standard->close();
    }
    styles->close();
}

PwDbObjectId PwDbDatabase::currentLayoutBlockId() const {
    if (m_currentLayoutBlock.isNull() || !m_currentLayoutBlock.isValid() ||
        m_currentLayoutBlock.isErased()) {
        return m_modelSpace;
    }
    return m_currentLayoutBlock;
}

Plotwright::ErrorStatus PwDbDatabase::setCurrentLayoutBlockId(PwDbObjectId block) {
    if (block.isNull()) {
        m_currentLayoutBlock = PwDbObjectId();
        return Plotwright::StatusOk;
    }
    if (block.database() != this) return Plotwright::StatusWrongDatabase;
    PwDbBlockTableRecord* record = nullptr;
    if (auto status = pwdbOpenObject(record, block, PwDb::OpenForRead)) return status;
    const bool isLayout = record->isLayout();
    record->close();
    if (!isLayout) return Plotwright::StatusNotApplicable;
    m_currentLayoutBlock = block;
    return Plotwright::StatusOk;
}

PwDbObjectId PwDbDatabase::standardTextStyleId() const {
    PwDbTextStyleTable* styles = nullptr;
    if (getSymbolTable(styles, PwDb::OpenForRead) != Plotwright::StatusOk) return PwDbObjectId();
    PwDbObjectId id;
    styles->getIdAt(PwDbTextStyleTable::kStandardStyleName, id);
    styles->close();
    return id;
}

Plotwright::ErrorStatus PwDbDatabase::getSymbolTable(PwDbBlockTable*& table,
                                                     PwDb::OpenMode mode) const {
    return pwdbOpenObject(table, m_blockTable, mode);
}

Plotwright::ErrorStatus PwDbDatabase::getSymbolTable(PwDbLayerTable*& table,
                                                     PwDb::OpenMode mode) const {
    return pwdbOpenObject(table, m_layerTable, mode);
}

Plotwright::ErrorStatus PwDbDatabase::getSymbolTable(PwDbTextStyleTable*& table,
                                                     PwDb::OpenMode mode) const {
    return pwdbOpenObject(table, m_textStyleTable, mode);
}

Plotwright::ErrorStatus PwDbDatabase::getNamedObjectsDictionary(PwDbDictionary*& dictionary,
                                                                PwDb::OpenMode mode) const {
    return pwdbOpenObject(dictionary, m_namedObjects, mode);
}

Plotwright::ErrorStatus PwDbDatabase::getLayoutDictionary(PwDbDictionary*& dictionary,
                                                          PwDb::OpenMode mode) const {
    return pwdbOpenObject(dictionary, m_layoutDictionary, mode);
}

Plotwright::ErrorStatus PwDbDatabase::getPlotSettingsDictionary(PwDbDictionary*& dictionary,
                                                                PwDb::OpenMode mode) const {
    return pwdbOpenObject(dictionary, m_plotSettingsDictionary, mode);
}
