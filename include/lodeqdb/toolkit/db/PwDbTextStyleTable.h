// The text style table: named text styles (font, height, width factor) that texts and table
// cells refer to.
//
// Defines PwDbTextStyleTableRecord, PwDbTextStyleTable and PwDbTextStyleTableIterator.
//
//   PwDbTextStyleTable* styles = nullptr;
//   if (drawing.getSymbolTable(styles, PwDb::OpenForWrite) == Plotwright::StatusOk) {
//       auto* titles = new PwDbTextStyleTableRecord;
//       titles->setName(u"Titles");
//       titles->setFontName(u"serif");
//       titles->setTextHeight(5.0);
//       if (styles->add(titles) == Plotwright::StatusOk) titles->close();
//       else delete titles;
//       styles->close();
//   }
//
// Every drawing has a text style table with the style "Standard". A drawing read from a file
// written before the table existed gets one, with "Standard", as it is read.
#pragma once

#include <vector>

#include <lodeqdb/toolkit/db/PwDbSymbolTable.h>

/// A named text style.
class PwDbTextStyleTableRecord : public PwDbSymbolTableRecord {
    PWRX_DECLARE_MEMBERS(PwDbTextStyleTableRecord);

  public:
    /// The font a new style names.
    static constexpr const char16_t* kDefaultFontName = u"sans-serif";

    PwDbTextStyleTableRecord();
    ~PwDbTextStyleTableRecord() override;

    /// Copies the font name into `name`.
    Plotwright::ErrorStatus fontName(PwString& name) const;
    /// The font name, owned by the style; never null, valid while the style stays open and
    /// unchanged.
    const char16_t* fontName() const { return m_fontName.c_str(); }
    /// StatusInvalidInput for null or the empty name, StatusNotOpenForWrite.
    Plotwright::ErrorStatus setFontName(const char16_t* name);

    /// The fixed text height in drawing units; 0 means that each text chooses its own.
    double textHeight() const { return m_textHeight; }
    /// StatusInvalidInput unless finite and not negative, StatusNotOpenForWrite.
    Plotwright::ErrorStatus setTextHeight(double height);

    /// How much wider (above 1) or narrower than the font's own the characters are drawn.
    double widthFactor() const { return m_widthFactor; }
    /// StatusInvalidInput unless finite and above 0, StatusNotOpenForWrite.
    Plotwright::ErrorStatus setWidthFactor(double factor);

    /// Name (in the base), font name, text height, width factor.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_fontName = kDefaultFontName;
    double m_textHeight = 0.0;
    double m_widthFactor = 1.0;
};

/// The typed iterator of the text style table.
class PwDbTextStyleTableIterator : public PwDbSymbolTableIterator {
  public:
    ~PwDbTextStyleTableIterator() override;

    using PwDbSymbolTableIterator::getRecord;
    /// Opens the style; StatusIteratorDone when done, else the status of the open.
    Plotwright::ErrorStatus getRecord(PwDbTextStyleTableRecord*& record, PwDb::OpenMode mode,
                                      bool openErased = false) const;

  private:
    friend class PwDbTextStyleTable;
    explicit PwDbTextStyleTableIterator(std::vector<PwDbObjectId> ids);
};

/// The drawing's text style table; holds PwDbTextStyleTableRecord objects.
class PwDbTextStyleTable : public PwDbSymbolTable {
    PWRX_DECLARE_MEMBERS(PwDbTextStyleTable);

  public:
    /// The style every drawing has.
    static constexpr const char16_t* kStandardStyleName = u"Standard";

    PwDbTextStyleTable();
    ~PwDbTextStyleTable() override;

    PwRxClass* recordClass() const override;

    using PwDbSymbolTable::getAt;
    /// Opens the style `name` (see PwDbSymbolTable::getAt).
    Plotwright::ErrorStatus getAt(const char16_t* name, PwDbTextStyleTableRecord*& record,
                                  PwDb::OpenMode mode, bool openErased = false) const;

    using PwDbSymbolTable::newIterator;
    /// A new typed iterator over a snapshot of the styles, owned by the caller (delete it).
    Plotwright::ErrorStatus newIterator(PwDbTextStyleTableIterator*& iterator,
                                        bool atBeginning = true, bool skipErased = true) const;

  protected:
    PwDbSymbolTableIterator* makeIterator(std::vector<PwDbObjectId> ids) const override;
};
