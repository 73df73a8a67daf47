// PwDbPlwLazyRecords: the records of a drawing read from an indexed native file, decoded one
// at a time when the database first needs them. Internal to the file layer.
//
// The records come from the whole file kept in memory (a small file, read whole anyway), from
// the file the database holds open, or from the file reopened by its path for each read when
// the open mode holds nothing. A read from disk takes a window of at least 64 KiB (ending at
// the file's end when it comes near it, where the record index stands), and the last few
// windows are kept, so that neighbouring pages and parts of the index cost no further read. A page
// is checked against its CRC-32 when it is taken from a window newly read, and the file against its
// identity (device, inode, size, time of last write) as it was when the drawing was read: a file
// changed, truncated or replaced since gives StatusBadFileFormat for the record asked for, never a
// wrong object. The index is read a page at a time too, when a handle of that page is first looked
// up.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <lodeqdb/toolkit/pal/PwFileIO.h>
#include "toolkit/db/PwDbObjectMaking.h"
#include "toolkit/db/PwDbStub.h"
#include "toolkit/file/PwDbPlwIndexed.h"

class PwDbPlwLazyRecords final : public PwDbRecordSource {
  public:
    using File = Morvane::Plotwright::PAL::FileIO::File;

    /// Records of `front` whose file is `wholeFile`, kept.
    PwDbPlwLazyRecords(PwDbPlwIndexedFront&& front, std::string&& wholeFile, wstring path);
    /// Records of `front` read from disk: from `held` when it is open, else from `path`
    /// reopened; `identity` is the file's as the front was read, and `firstBytes` the bytes
    /// read from its start so far, kept as the first window.
    PwDbPlwLazyRecords(PwDbPlwIndexedFront&& front, File held, wstring path,
                       File::Identity identity, std::string&& firstBytes);

    size_t pageCount() const override { return m_front.pages.size(); }
    size_t recordCount() const override { return static_cast<size_t>(m_front.records); }
    PwDbHandle pageFirstHandle(size_t page) const override {
        return m_front.pages[page].firstHandle;
    }
    uint32_t pageRecordCount(size_t page) const override { return m_front.pages[page].records; }
    bool pageRecords(size_t page, std::vector<PwDbHandle>& handles,
                     std::vector<uint8_t>& erased) override;
    Plotwright::ErrorStatus decode(PwDbDatabase& database, size_t page, size_t slot,
                                   PwDbObject*& object) override;
    bool namesClass(size_t page, size_t slot, const char16_t* className) override;
    void handlesNaming(const char16_t* className, std::vector<PwDbHandle>& handles) override;
    const wstring& path() const override { return m_path; }
    Plotwright::ErrorStatus keepEverything() override;

    /// A record as stored, for a save that copies it without decoding: its class chain, the
    /// tags of its items and its packed values (valid until the next call).
    /// StatusBadFileFormat as for decode.
    Plotwright::ErrorStatus stored(size_t page, size_t slot, const std::vector<wstring>*& chain,
                                   std::string_view& tags, std::string_view& values);

    /// A page as stored, for a save that copies it whole: its bytes followed by their check,
    /// its part of the record index, and what that part says (valid until the next call).
    /// StatusBadFileFormat when the page or its part of the index can't be had.
    Plotwright::ErrorStatus storedPage(size_t page, std::string_view& pageAndCheck,
                                       std::string_view& run, const PwDbPlwPageRecords*& records);
    const std::vector<std::vector<wstring>>& classes() const { return m_front.classes; }
    const std::vector<PwDbPlwShape>& shapes() const { return m_front.shapes; }

  private:
    /// Reads the run of page `page` (from memory or disk) into `records`; false when it can't
    /// be had or isn't sound.
    bool readPageRecords(size_t page, PwDbPlwPageRecords& records);
    /// The index's description of page `page`, read once; null when it isn't sound.
    const PwDbPlwPageRecords* described(size_t page);
    /// The bytes of page `page` without its check, read and checked; false when they can't
    /// be had.
    bool pageBytes(size_t page, std::string_view& bytes);
    bool readFromDisk(uint64_t offset, size_t count, char* into);
    /// The `count` bytes of the file at `offset`, from a window or read from disk into the
    /// window used longest ago (valid until a window is next read); null when the file can't
    /// give them.
    const char* fileBytes(uint64_t offset, size_t count);
    /// Whether the chain of class `classIndex` names `className`.
    bool classNames(uint32_t classIndex, const char16_t* className);

    PwDbPlwIndexedFront m_front;
    std::vector<std::unique_ptr<PwDbPlwPageRecords>> m_described;
    std::vector<PwDbChainClass> m_classes;
    wstring m_path;
    std::string m_whole;
    bool m_inMemory = false;
    File m_held;
    File::Identity m_identity;
    std::vector<uint8_t> m_pageChecked;
    wstring m_namesAskedFor;
    std::vector<uint8_t> m_namesAnswer;
    struct Window {
        uint64_t offset = 0;
        // A window read from disk is never initialised before the read; the first one is the
        // bytes the reading of the drawing took.
        std::unique_ptr<char[]> read;
        std::string first;
        const char* bytes = nullptr;
        size_t size = 0;
        uint64_t lastUse = 0;
    };
    std::array<Window, 4> m_windows;
    /// Windows given up while a record is being decoded, kept until the outermost decode ends:
    /// a decode reads its record where it stands, and may decode others meanwhile.
    std::vector<Window> m_retired;
    int m_decoding = 0;
    uint64_t m_uses = 0;
    /// The page last checked since a window was last read: taken again without a check.
    size_t m_checkedPage = SIZE_MAX;
    std::string m_run;
    PwDbPlwPageRecords m_copied;
};
