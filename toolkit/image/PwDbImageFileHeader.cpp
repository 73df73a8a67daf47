// Image headers, from the formats' public descriptions: the PNG signature and IHDR chunk, the
// JPEG marker segments up to a start-of-frame, the GIF logical screen descriptor, the BMP file
// and information headers, the TIFF header and first image file directory.
#include <lodeqdb/toolkit/image/PwDbImageFileHeader.h>

#include <cstring>
#include <functional>
#include <string>

#include <lodeqdb/lodeutil/ByteOrder.h>
#include <lodeqdb/toolkit/pal/PwFileIO.h>

namespace {

// Random access to the image's bytes, so that a TIFF directory beyond the first bytes can be
// reached without reading the file whole.
using ReadAt = std::function<bool(uint64_t offset, void* destination, size_t count)>;

constexpr size_t kHeaderBytes = 64 * 1024;

bool Accept(PwDbImageFileInfo& info, PwDbImageFormat format, uint32_t width, uint32_t height) {
    if (width == 0 || height == 0) return false;
    info = {format, width, height};
    return true;
}

bool ReadPng(std::string_view bytes, PwDbImageFileInfo& info) {
    static const unsigned char kSignature[8] = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    if (bytes.size() < 24 || std::memcmp(bytes.data(), kSignature, 8) != 0) return false;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    if (LodeUtil::BigEndian(p + 8, 4) != 13 || std::memcmp(p + 12, "IHDR", 4) != 0) return false;
    const uint32_t width = LodeUtil::BigEndian(p + 16, 4);
    const uint32_t height = LodeUtil::BigEndian(p + 20, 4);
    // The format allows at most 2^31 - 1 in either direction.
    if (width > 0x7FFFFFFF || height > 0x7FFFFFFF) return false;
    return Accept(info, PwDbImageFormat::Png, width, height);
}

bool ReadGif(std::string_view bytes, PwDbImageFileInfo& info) {
    if (bytes.size() < 10) return false;
    if (bytes.substr(0, 6) != "GIF87a" && bytes.substr(0, 6) != "GIF89a") return false;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    return Accept(info, PwDbImageFormat::Gif, LodeUtil::LittleEndian(p + 6, 2), LodeUtil::LittleEndian(p + 8, 2));
}

bool ReadBmp(std::string_view bytes, PwDbImageFileInfo& info) {
    if (bytes.size() < 26 || bytes.substr(0, 2) != "BM") return false;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const uint32_t headerSize = LodeUtil::LittleEndian(p + 14, 4);
    if (headerSize == 12)
        return Accept(info, PwDbImageFormat::Bmp, LodeUtil::LittleEndian(p + 18, 2), LodeUtil::LittleEndian(p + 20, 2));
    if (headerSize < 40 || bytes.size() < 26) return false;
    const auto width = static_cast<int32_t>(LodeUtil::LittleEndian(p + 18, 4));
    const auto height = static_cast<int32_t>(LodeUtil::LittleEndian(p + 22, 4));
    // A negative height stands for rows stored top down.
    if (width <= 0 || height == 0 || height == INT32_MIN) return false;
    return Accept(info, PwDbImageFormat::Bmp, static_cast<uint32_t>(width),
                  static_cast<uint32_t>(height < 0 ? -height : height));
}

bool IsStartOfFrame(unsigned char marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

bool ReadJpeg(std::string_view bytes, PwDbImageFileInfo& info) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const size_t size = bytes.size();
    if (size < 4 || p[0] != 0xFF || p[1] != 0xD8) return false;
    size_t at = 2;
    while (at + 1 < size) {
        if (p[at] != 0xFF) return false;
        while (at + 1 < size && p[at + 1] == 0xFF) ++at;  // fill bytes
        if (at + 1 >= size) return false;
        const unsigned char marker = p[at + 1];
        if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {
            at += 2;  // markers without a segment
            continue;
        }
        if (marker == 0xD9 || marker == 0xDA) return false;  // end, or scan data before a frame
        if (at + 4 > size) return false;
        const uint32_t length = LodeUtil::BigEndian(p + at + 2, 2);
        if (length < 2) return false;
        if (IsStartOfFrame(marker)) {
            if (length < 7 || at + 9 > size) return false;
            return Accept(info, PwDbImageFormat::Jpeg, LodeUtil::BigEndian(p + at + 7, 2), LodeUtil::BigEndian(p + at + 5, 2));
        }
        at += 2 + length;
    }
    return false;
}

bool ReadTiff(const ReadAt& read, PwDbImageFileInfo& info) {
    unsigned char head[8];
    if (!read(0, head, sizeof head)) return false;
    bool little = false;
    if (std::memcmp(head, "II*\0", 4) == 0)
        little = true;
    else if (std::memcmp(head, "MM\0*", 4) != 0)
        return false;
    auto number = [little](const unsigned char* p, int bytes) {
        return little ? LodeUtil::LittleEndian(p, bytes) : LodeUtil::BigEndian(p, bytes);
    };
    const uint32_t directory = number(head + 4, 4);
    unsigned char countBytes[2];
    if (directory < 8 || !read(directory, countBytes, 2)) return false;
    const uint32_t count = number(countBytes, 2);
    uint32_t width = 0;
    uint32_t height = 0;
    for (uint32_t i = 0; i < count && (width == 0 || height == 0); ++i) {
        unsigned char entry[12];
        if (!read(uint64_t{directory} + 2 + uint64_t{i} * 12, entry, sizeof entry)) return false;
        const uint32_t tag = number(entry, 2);
        const uint32_t type = number(entry + 2, 2);
        if (tag != 256 && tag != 257) continue;
        // SHORT values lie in the first two bytes of the value field, LONG in all four.
        uint32_t value = 0;
        if (type == 3)
            value = number(entry + 8, 2);
        else if (type == 4)
            value = number(entry + 8, 4);
        else
            return false;
        (tag == 256 ? width : height) = value;
    }
    return Accept(info, PwDbImageFormat::Tiff, width, height);
}

bool ReadHeader(std::string_view first, const ReadAt& read, PwDbImageFileInfo& info) {
    return ReadPng(first, info) || ReadJpeg(first, info) || ReadGif(first, info) ||
           ReadBmp(first, info) || ReadTiff(read, info);
}

}  // namespace

bool pwdbReadImageHeader(std::string_view bytes, PwDbImageFileInfo& info) {
    const ReadAt read = [bytes](uint64_t offset, void* destination, size_t count) {
        if (offset > bytes.size() || count > bytes.size() - offset) return false;
        std::memcpy(destination, bytes.data() + offset, count);
        return true;
    };
    return ReadHeader(bytes, read, info);
}

Plotwright::ErrorStatus pwdbReadImageFileHeader(const wstring& path, PwDbImageFileInfo& info) {
    namespace FileIO = Morvane::Plotwright::PAL::FileIO;
    FileIO::File file;
    std::string first;
    if (auto status = FileIO::ReadFileStart(path.c_str(), kHeaderBytes, first, &file))
        return status;
    const int64_t size = file.size();
    const ReadAt read = [&file, size](uint64_t offset, void* destination, size_t count) {
        if (size < 0 || offset > static_cast<uint64_t>(size) ||
            count > static_cast<uint64_t>(size) - offset)
            return false;
        uint32_t got = 0;
        return file.seek(static_cast<int64_t>(offset), FileIO::kSeekFromStart) &&
               file.readFromFile(destination, static_cast<uint32_t>(count), got) && got == count;
    };
    return ReadHeader(first, read, info) ? Plotwright::StatusOk : Plotwright::StatusBadFileFormat;
}

const char* pwdbImageFormatName(PwDbImageFormat format) {
    switch (format) {
        case PwDbImageFormat::Png:
            return "PNG";
        case PwDbImageFormat::Jpeg:
            return "JPEG";
        case PwDbImageFormat::Gif:
            return "GIF";
        case PwDbImageFormat::Bmp:
            return "BMP";
        case PwDbImageFormat::Tiff:
            return "TIFF";
        case PwDbImageFormat::Unknown:
            break;
    }
    return "";
}
