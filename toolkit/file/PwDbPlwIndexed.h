// PwDbPlwIndexed: layout revision 2 of the native file, whose records can be read one at a
// time. A class table names every class chain once; an index gives each record's handle,
// erased flag, shape (its class and the tags of its items) and length, so that any record is
// found without reading those before it; the records themselves are packed values
// (PwDbPlwPacking.h) in pages of about 4 KiB, each page followed by its CRC-32.
//
//   PwDbPlwIndexedWriter writer;
//   uint32_t shape = writer.shapeFor(writer.classFor(chain), tags);
//   writer.add(handle, erased, shape, values);       // in rising handle order
//   writer.finish(head, bytes);
//
//   PwDbPlwIndexedFront front;                        // reading: all but the records
//   pwdbPlwReadIndexedFront(bytes.substr(0, end), fileSize, front);
//
// The bytes are in docs/native-file-format.md ("Layout revision 2").
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include "toolkit/file/PwDbDrawingImage.h"

/// A record's shape: its class (an index into the class table) and the tags of its items.
struct PwDbPlwShape {
    uint32_t classIndex = 0;
    std::string tags;
};

/// Where a record lies: its offset in its page, its length; and its shape.
struct PwDbPlwRecordPlace {
    uint32_t offset = 0;
    uint32_t length = 0;
    uint32_t shape = 0;
};

/// A page of records: where its first byte is in the file and how long it is (its CRC-32
/// follows it), how many records it holds and the handle of the first, and where its records'
/// part of the record index (its run) lies in the file, with that part's CRC-32.
struct PwDbPlwPage {
    uint64_t offset = 0;
    uint32_t length = 0;
    uint32_t records = 0;
    PwDbHandle firstHandle = 0;
    uint64_t runOffset = 0;
    uint32_t runLength = 0;
    uint32_t runCrc = 0;
};

/// The records of one page as the index describes them, in rising handle order.
struct PwDbPlwPageRecords {
    std::vector<PwDbHandle> handles;
    std::vector<uint8_t> erased;
    std::vector<PwDbPlwRecordPlace> places;
};

/// Everything an indexed file holds before its records.
struct PwDbPlwIndexedFront {
    /// Version, handseed, measurement, roots, application information and preview; no objects.
    PwDbDrawingImage head;
    std::vector<std::vector<wstring>> classes;
    std::vector<PwDbPlwShape> shapes;
    /// The number of records of each class.
    std::vector<uint64_t> classRecords;
    uint64_t records = 0;
    std::vector<PwDbPlwPage> pages;
    /// Where the record index (RUNS) starts in the file and how long it is; read a page's
    /// run at a time by pwdbPlwReadPageRecords.
    uint64_t runsOffset = 0;
    uint64_t runsLength = 0;
};

/// The records of page `page` of `front`, from its run (`run`, the bytes the page's entry
/// points at); false when the run isn't sound (its CRC-32, handles not rising within the page
/// or reaching the next page's first, a shape the file doesn't have, lengths that don't fill
/// the page).
bool pwdbPlwReadPageRecords(const PwDbPlwIndexedFront& front, size_t page, std::string_view run,
                            PwDbPlwPageRecords& records);

/// How far the front of an indexed file runs, judged from its first bytes `prefix` (of a file
/// of `fileSize` bytes). Unsound: not an indexed file. Otherwise `end` is the offset where the
/// records' pages start when `prefix` reached that far (`complete`), else how many bytes to
/// read before asking again.
struct PwDbPlwFrontExtent {
    bool sound = false;
    bool complete = false;
    uint64_t end = 0;
};
PwDbPlwFrontExtent pwdbPlwIndexedFrontExtent(std::string_view prefix, uint64_t fileSize);

/// Reads the front of an indexed file: `front` holds its bytes from offset 0 to the extent's
/// end at least. Checks the header, the application information, the settings, the class
/// table, the index (its checksum and its table of pages), the preview, and that the pages,
/// the record index and the end section fill the file exactly; each page and each run is
/// checked when it is read. False for anything unsound; `out` may then hold part.
bool pwdbPlwReadIndexedFront(std::string_view front, uint64_t fileSize, PwDbPlwIndexedFront& out);

/// Whether `page` followed by its 4-byte CRC-32 (`pageAndCheck`) is sound.
bool pwdbPlwPageSound(std::string_view pageAndCheck);

/// Whether the records of a whole indexed file `file`, whose front `front` was read and whose
/// pages start at `pagesStart`, are sound: the objects section's check, every page's check,
/// the record index's section and every run's check, and the end section.
bool pwdbPlwIndexedRecordsSound(std::string_view file, uint64_t pagesStart,
                                const PwDbPlwIndexedFront& front);

/// Reads a whole indexed file into `image`: the front, every page's check, the objects
/// section's own check, every record unpacked. StatusBadFileFormat for anything unsound.
Plotwright::ErrorStatus pwdbPlwDecodeIndexed(std::string_view file, PwDbDrawingImage& image);

/// Writes an indexed file. Records come in rising handle order; the file is made by finish.
class PwDbPlwIndexedWriter {
  public:
    /// The index of `chain` in the class table, added when new; UINT32_MAX for a chain the
    /// file can't hold (no names, an empty name, no "PwDbObject").
    uint32_t classFor(const std::vector<wstring>& chain);
    /// The index of the shape of class `classIndex` with item tags `tags`, added when new.
    uint32_t shapeFor(uint32_t classIndex, std::string_view tags);
    /// Starts the class table with `classes` and `shapes`, those of a file read, so that its
    /// pages can be copied with addPage. Only before anything else is added.
    void adoptTables(const std::vector<std::vector<wstring>>& classes,
                     const std::vector<PwDbPlwShape>& shapes);
    /// Adds a page of a file read, as it was: its bytes followed by their CRC-32
    /// (`pageAndCheck`), its part of the record index (`run`) and what that part says
    /// (`records`). The tables must be that file's (adoptTables). False (nothing added) when
    /// its first handle isn't above the last one added.
    bool addPage(std::string_view pageAndCheck, std::string_view run,
                 const PwDbPlwPageRecords& records);
    /// Adds a record; false (and nothing added) when `handle` isn't above the last one added.
    bool add(PwDbHandle handle, bool erased, uint32_t shape, std::string_view values);
    /// Writes the file of `head` (its objects ignored) and the records added into `bytes`.
    /// StatusInvalidInput for what the file can't hold (as pwdbEncodePlw says).
    Plotwright::ErrorStatus finish(const PwDbDrawingImage& head, std::string& bytes);

  private:
    void closePage();

    std::vector<std::vector<wstring>> m_classes;
    std::unordered_map<std::u16string, uint32_t> m_classByKey;
    std::vector<PwDbPlwShape> m_shapes;
    std::unordered_map<std::string, uint32_t> m_shapeByKey;
    std::string m_pages;
    std::string m_runs;
    std::string m_pageTable;
    std::vector<uint64_t> m_classRecords;
    PwDbHandle m_pageFirstHandle = 0;
    PwDbHandle m_previousPageFirst = 0;
    size_t m_runStart = 0;
    uint64_t m_recordCount = 0;
    uint64_t m_pageCount = 0;
    size_t m_pageStart = 0;
    uint64_t m_pageRecords = 0;
    PwDbHandle m_lastHandle = 0;
    /// The CRC-32 of the pages so far, their checks included: the objects section's checksum,
    /// made of the pages' own.
    uint32_t m_pagesCrc = 0;

    void notePage(uint32_t pageCrc, size_t pageLength);
};

/// Encodes `image` in layout revision 2, as pwdbEncodePlw does in revision 1.
Plotwright::ErrorStatus pwdbEncodePlwIndexed(const PwDbDrawingImage& image, std::string& bytes);
