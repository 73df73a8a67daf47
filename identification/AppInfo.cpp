// Reading the application information section: finding its marker, then its entries.
#include <lodeqdb/identification/AppInfo.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "identification/BufferedFile.h"

#include <lodeqdb/identification/HeaderVersion.h>
#include <lodeqdb/lodeutil/ByteOrder.h>

namespace LodeQDBUtil {

namespace {

// The header's size: the version signature and the scan start are in it.
constexpr uint32_t kHeaderBytes = 128;
// Strings up to this many units are read on the stack.
constexpr uint32_t kLocalUnits = 1024;

bool ReadUint16(BufferedFile& file, uint16_t& value) {
    unsigned char bytes[2];
    if (!ReadBytes(file, bytes, 2)) return false;
    value = LodeUtil::LittleEndian16(bytes);
    return true;
}

bool ReadUint32(BufferedFile& file, uint32_t& value) {
    unsigned char bytes[4];
    if (!ReadBytes(file, bytes, 4)) return false;
    value = LodeUtil::LittleEndian32(bytes);
    return true;
}

bool ReadKey(BufferedFile& file, Guid& key) {
    uint16_t data2 = 0;
    uint16_t data3 = 0;
    if (!ReadUint32(file, key.data1) || !ReadUint16(file, data2) || !ReadUint16(file, data3))
        return false;
    key.data2 = data2;
    key.data3 = data3;
    return ReadBytes(file, key.data4, sizeof key.data4);
}

}  // namespace

bool ReadAppInfoString(BufferedFile& file, wstring& text) {
    uint16_t length = 0;
    if (!ReadUint16(file, length)) return false;
    unsigned char local[kLocalUnits * 2];
    std::unique_ptr<unsigned char[]> onHeap;
    unsigned char* units = local;
    if (length > kLocalUnits) {
        onHeap = std::make_unique<unsigned char[]>(size_t{length} * 2);
        units = onHeap.get();
    }
    if (!ReadBytes(file, units, uint32_t{length} * 2)) return false;
    for (uint32_t i = 0; i + 1 < length; ++i)
        text.push_back(static_cast<char16_t>(LodeUtil::LittleEndian16(units + 2 * i)));
    return true;
}

bool ReadAppInfo(const char16_t* path, PwHsAppInfoNotifier& notifier) {
    // One open and one read take the header and, in the files met so far, all of the
    // application information behind it: the signature is read from the buffer, and the
    // search for the marker goes on from there.
    BufferedFile file;
    file.file = OpenHeaderFile(path);
    uint32_t got = 0;
    if (file.file.openStatus() != Plotwright::StatusOk ||
        !file.file.readFromFile(file.buffer, BufferedFile::kBufferSize, got)) {
        return false;
    }
    unsigned char start[kHeaderBytes] = {};
    std::memcpy(start, file.buffer, std::min<uint32_t>(got, kHeaderBytes));
    uint32_t scanStart = 0;
    if (ParseFileVersionSignature(start, scanStart) < kFirstCodeWithAppInfo) return false;
    if (scanStart < got) {
        file.filled = got;
        file.position = scanStart;
    } else if (!file.file.seek(static_cast<int64_t>(scanStart),
                               Morvane::Plotwright::PAL::FileIO::kSeekFromStart)) {
        file.file = HeaderFile::nullFile();
    }
    if (ScanForMarker(file, kAppInfoMarker, sizeof kAppInfoMarker) < 0) return false;
    uint32_t ignored = 0;
    wstring header;
    if (!ReadUint32(file, ignored) || !ReadAppInfoString(file, header)) return false;
    uint32_t count = 0;
    if (!ReadUint32(file, count)) return false;
    notifier.OnEntryCount(count);
    for (uint32_t i = 0; i < count; ++i) {
        Guid key;
        wstring text;
        if (!ReadKey(file, key) || !ReadAppInfoString(file, text)) return false;
        notifier.OnEntry(key, text);
    }
    return true;
}

bool ReadAppInfoMap(const char16_t* path, AppInfoMap& entries) {
    AppInfoNotifier notifier(&entries);
    return ReadAppInfo(path, notifier);
}

bool GetAppInfoText(const AppInfoMap& entries, const Guid& key, wstring& text) {
    const auto found = entries.find(key);
    if (found == entries.end()) return false;
    text = found->second;
    return true;
}

}  // namespace LodeQDBUtil
