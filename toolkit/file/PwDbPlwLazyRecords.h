// PwDbPlwLazyRecords: the records of a drawing read from an indexed native file, decoded one
// at a time when the database first needs them. Internal to the file layer.
//
// The records come from the whole file kept in memory (a small file, read whole anyway), from
// the file the database holds open, or from the file reopened by its path for each page when
// the open mode holds nothing. A page is checked against its CRC-32 every time it is read
// from disk, and the file against its identity (device, inode, size, time of last write) as
// it was when the drawing was read: a file changed, truncated or replaced since gives
// StatusBadFileFormat for the record asked for, never a wrong object.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <lodeqdb/toolkit/pal/PwFileIO.h>
#include "toolkit/db/PwDbStub.h"
#include "toolkit/file/PwDbPlwIndexed.h"

class PwDbPlwLazyRecords final : public PwDbRecordSource {
  public:
    using File = Morvane::Plotwright::PAL::FileIO::File;

    /// Records of `front` whose file is `wholeFile`, kept.
    PwDbPlwLazyRecords(PwDbPlwIndexedFront&& front, std::string&& wholeFile, wstring path);
    /// Records of `front` read from disk: from `held` when it is open, else from `path`
    /// reopened; `identity` is the file's as the front was read.
    PwDbPlwLazyRecords(PwDbPlwIndexedFront&& front, File held, wstring path,
                       File::Identity identity);

    Plotwright::ErrorStatus decode(PwDbDatabase& database, size_t index,
                                   PwDbObject*& object) override;
    bool namesClass(size_t index, const char16_t* className) const override;
    const wstring& path() const override { return m_path; }

    /// The record at `index` as stored, for a save that copies it without decoding: its class
    /// chain, the tags of its items and its packed values (valid until the next call).
    /// StatusBadFileFormat as for decode.
    Plotwright::ErrorStatus stored(size_t index, const std::vector<wstring>*& chain,
                                   std::string_view& tags, std::string_view& values);

    Plotwright::ErrorStatus keepEverything() override;

  private:
    /// The bytes of page `page` without its check, read and checked; false when they can't
    /// be had.
    bool page(uint32_t page, std::string_view& bytes);
    bool readFromDisk(uint64_t offset, size_t count, std::string& into);

    PwDbPlwIndexedFront m_front;
    std::vector<PwRxClass*> m_classes;
    std::vector<uint8_t> m_classResolved;
    wstring m_path;
    std::string m_whole;
    bool m_inMemory = false;
    File m_held;
    File::Identity m_identity;
    std::vector<uint8_t> m_pageChecked;
    mutable wstring m_namesAskedFor;
    mutable std::vector<uint8_t> m_namesAnswer;
    uint32_t m_cachedPage = UINT32_MAX;
    std::string m_cached;
};
