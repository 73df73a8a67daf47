// Recognising design files, reading their control block and holding their bytes.
#include "modules/dgn/DgnV7DesignFile.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Strings.h>
#include "modules/dgn/DgnV7Bytes.h"
#include "modules/dgn/DgnV7Reader.h"
#include <lodeqdb/toolkit/pal/PwFileIO.h>

namespace FileIO = Morvane::Plotwright::PAL::FileIO;

namespace {

// The control block: the level and type of its first word, and where its fields lie.
constexpr uint8_t kControlBlockLevel = 8;
constexpr size_t kUorPerSubunitOffset = 1112;
constexpr size_t kSubunitsPerMasterOffset = 1116;
constexpr size_t kSubunitNameOffset = 1120;
constexpr size_t kMasterNameOffset = 1122;
constexpr size_t kDimensionOffset = 1214;
constexpr uint8_t kThreeDimensionalBit = 0x40;
constexpr size_t kGlobalOriginOffset = 1240;
// The control block must reach past the global origin to be read.
constexpr size_t kControlBlockMinBytes = kGlobalOriginOffset + 24;

constexpr std::array<uint8_t, 8> kCompoundSignature = {0xD0, 0xCF, 0x11, 0xE0,
                                                       0xA1, 0xB1, 0x1A, 0xE1};
// A compound document's header: its sector size as a power of two, its first directory sector.
constexpr size_t kSectorShiftOffset = 0x1E;
constexpr size_t kFirstDirectorySectorOffset = 0x30;
constexpr size_t kDirectoryEntryBytes = 128;
constexpr size_t kDirectoryNameLengthOffset = 0x40;

bool StartsWithControlBlock(std::span<const uint8_t> head, uint64_t fileSize) {
    const DgnV7Bytes bytes(head);
    uint16_t first = 0, words = 0;
    if (!bytes.readShort(0, first) || !bytes.readShort(2, words)) return false;
    if ((first & 0x3F) != kControlBlockLevel || ((first >> 8) & 0x7F) != kDgnControlBlock ||
        (first & 0x8000) != 0)
        return false;
    const uint64_t size = (uint64_t{words} + 2) * 2;
    return size >= kControlBlockMinBytes && size <= fileSize;
}

bool IsCompoundDocument(std::span<const uint8_t> head) {
    return head.size() >= kCompoundSignature.size() &&
           std::equal(kCompoundSignature.begin(), kCompoundSignature.end(), head.begin());
}

bool NamedDgn(const wstring& fileName) {
    return LodeUtil::FoldCase(LodeUtil::Path::GetExtension(fileName)) == u".dgn";
}

// The byte offset of a compound document's first directory sector; 0 when it can't be told.
uint64_t DirectoryOffset(std::span<const uint8_t> head) {
    const DgnV7Bytes bytes(head);
    uint16_t shift = 0, low = 0, high = 0;
    if (!bytes.readShort(kSectorShiftOffset, shift) || shift < 7 || shift > 16) return 0;
    if (!bytes.readShort(kFirstDirectorySectorOffset, low) ||
        !bytes.readShort(kFirstDirectorySectorOffset + 2, high))
        return 0;
    const uint64_t sector = (uint64_t{high} << 16) | low;
    if (sector >= 0xFFFFFFFAu) return 0;  // the special sector numbers
    return (sector + 1) << shift;
}

// True when a directory entry in `directory` is named "Dgn..." (any case).
bool HoldsDgnEntry(std::span<const uint8_t> directory) {
    const DgnV7Bytes bytes(directory);
    for (size_t entry = 0; entry + kDirectoryEntryBytes <= directory.size();
         entry += kDirectoryEntryBytes) {
        uint16_t nameBytes = 0;
        if (!bytes.readShort(entry + kDirectoryNameLengthOffset, nameBytes) || nameBytes < 8)
            continue;
        wstring prefix;
        for (size_t i = 0; i < 3; ++i) {
            uint16_t unit = 0;
            bytes.readShort(entry + 2 * i, unit);
            prefix.push_back(static_cast<char16_t>(unit));
        }
        if (LodeUtil::FoldCase(prefix) == u"dgn") return true;
    }
    return false;
}

wstring NameField(const DgnV7Bytes& bytes, size_t offset) {
    wstring name;
    for (size_t i = 0; i < 2; ++i) {
        uint8_t unit = 0;
        if (bytes.readByte(offset + i, unit) && unit != 0)
            name.push_back(static_cast<char16_t>(unit));
    }
    while (!name.empty() && name.back() == u' ') name.pop_back();
    return name;
}

// Reads up to `count` bytes at `offset`; what could be read.
std::vector<uint8_t> ReadAt(const FileIO::File& file, uint64_t offset, size_t count) {
    std::vector<uint8_t> bytes;
    if (!file.seek(static_cast<int64_t>(offset), FileIO::kSeekFromStart)) return bytes;
    bytes.resize(count);
    size_t filled = 0;
    while (filled < count) {
        uint32_t got = 0;
        if (!file.readFromFile(bytes.data() + filled, static_cast<uint32_t>(count - filled), got) ||
            got == 0)
            break;
        filled += got;
    }
    bytes.resize(filled);
    return bytes;
}

Plotwright::ErrorStatus OpenExisting(const wstring& path, FileIO::File& file) {
    if (path.empty() || !LodeUtil::File::Exists(path)) return Plotwright::StatusFileNotFound;
    file = FileIO::File::openFile(path.c_str(), FileIO::kWideChars, FileIO::kOpenForRead,
                                  FileIO::kShareRead, FileIO::kOpenExisting);
    return file.openStatus();
}

}  // namespace

DgnFileKind dgnClassifyBytes(std::span<const uint8_t> head, uint64_t fileSize,
                             const wstring& fileName) {
    if (StartsWithControlBlock(head, fileSize)) return DgnFileKind::DesignV7;
    if (!IsCompoundDocument(head)) return DgnFileKind::NotDgn;
    if (NamedDgn(fileName)) return DgnFileKind::CompoundV8;
    const uint64_t directory = DirectoryOffset(head);
    if (directory != 0 && directory < head.size() &&
        HoldsDgnEntry(head.subspan(static_cast<size_t>(directory))))
        return DgnFileKind::CompoundV8;
    return DgnFileKind::NotDgn;
}

DgnFileKind dgnClassifyFile(const wstring& path, Plotwright::ErrorStatus& status) {
    FileIO::File file;
    status = OpenExisting(path, file);
    if (status != Plotwright::StatusOk) return DgnFileKind::NotDgn;
    const int64_t size = file.size();
    if (size < 0) {
        status = Plotwright::StatusFileIOError;
        return DgnFileKind::NotDgn;
    }
    const std::vector<uint8_t> head = ReadAt(file, 0, kDgnProbeBytes);
    DgnFileKind kind = dgnClassifyBytes(head, static_cast<uint64_t>(size), path);
    if (kind == DgnFileKind::NotDgn && IsCompoundDocument(head)) {
        // The directory may lie beyond the first block: read one sector's worth of it.
        const uint64_t directory = DirectoryOffset(head);
        if (directory >= head.size() && directory < static_cast<uint64_t>(size) &&
            HoldsDgnEntry(ReadAt(file, directory, kDgnProbeBytes)))
            kind = DgnFileKind::CompoundV8;
    }
    return kind;
}

Plotwright::ErrorStatus dgnReadHeader(std::span<const uint8_t> bytes, DgnV7Header& header) {
    if (!StartsWithControlBlock(bytes, bytes.size())) return Plotwright::StatusBadFileFormat;
    const DgnV7Bytes block(bytes);
    DgnV7Header read;
    int32_t perSubunit = 1, perMaster = 1;
    block.readLong(kUorPerSubunitOffset, perSubunit);
    block.readLong(kSubunitsPerMasterOffset, perMaster);
    read.units.uorPerSubunit = std::max(perSubunit, 1);
    read.units.subunitsPerMaster = std::max(perMaster, 1);
    read.units.subunitName = NameField(block, kSubunitNameOffset);
    read.units.masterName = NameField(block, kMasterNameOffset);
    uint8_t dimension = 0;
    block.readByte(kDimensionOffset, dimension);
    read.is3d = (dimension & kThreeDimensionalBit) != 0;
    double* origin[3] = {&read.units.originX, &read.units.originY, &read.units.originZ};
    for (size_t i = 0; i < 3; ++i) {
        double value = 0.0;
        if (block.readDouble(kGlobalOriginOffset + 8 * i, value)) *origin[i] = value;
    }
    header = std::move(read);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus DgnV7DesignFile::load(const wstring& path,
                                              std::shared_ptr<const DgnV7DesignFile>& document) {
    FileIO::File file;
    if (Plotwright::ErrorStatus status = OpenExisting(path, file)) return status;
    const int64_t size = file.size();
    if (size < 0) return Plotwright::StatusFileIOError;
    if (static_cast<uint64_t>(size) > kDgnMaxFileBytes) return Plotwright::StatusBadFileFormat;
    const std::vector<uint8_t> head = ReadAt(file, 0, kDgnProbeBytes);
    if (!StartsWithControlBlock(head, static_cast<uint64_t>(size)))
        return Plotwright::StatusBadFileFormat;
    std::vector<uint8_t> bytes = ReadAt(file, 0, static_cast<size_t>(size));
    if (bytes.size() != static_cast<size_t>(size)) return Plotwright::StatusFileIOError;
    return fromBytes(std::move(bytes), LodeUtil::AbsoluteFilePath(path).FullPath(), document);
}

Plotwright::ErrorStatus DgnV7DesignFile::fromBytes(
    std::vector<uint8_t> bytes, const wstring& path,
    std::shared_ptr<const DgnV7DesignFile>& document) {
    if (bytes.size() > kDgnMaxFileBytes) return Plotwright::StatusBadFileFormat;
    DgnV7Header header;
    if (Plotwright::ErrorStatus status = dgnReadHeader(bytes, header)) return status;
    std::shared_ptr<DgnV7DesignFile> made(new DgnV7DesignFile);
    made->m_path = path;
    made->m_bytes = std::move(bytes);
    made->m_header = std::move(header);
    document = std::move(made);
    return Plotwright::StatusOk;
}
