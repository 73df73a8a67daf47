#include "ImageFiles.h"

#include <zlib.h>

#include <vector>

namespace pwdbimagetest {

namespace {

void Be(std::string& out, uint32_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) out.push_back(static_cast<char>(value >> (8 * i)));
}

void Le(std::string& out, uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>(value >> (8 * i)));
}

void PngChunk(std::string& out, const char* type, const std::string& data) {
    Be(out, static_cast<uint32_t>(data.size()), 4);
    const std::string typed = std::string(type, 4) + data;
    out += typed;
    Be(out,
       static_cast<uint32_t>(
           crc32(0, reinterpret_cast<const Bytef*>(typed.data()), static_cast<uInt>(typed.size()))),
       4);
}

}  // namespace

std::string Png(uint32_t width, uint32_t height) {
    std::string png("\x89PNG\r\n\x1a\n", 8);
    std::string header;
    Be(header, width, 4);
    Be(header, height, 4);
    header += std::string("\x08\x00\x00\x00\x00", 5);  // 8-bit grey, no interlace
    PngChunk(png, "IHDR", header);
    std::string rows;
    for (uint32_t y = 0; y < height; ++y) rows += '\0' + std::string(width, '\x80');
    std::vector<Bytef> packed(compressBound(static_cast<uLong>(rows.size())));
    uLongf packedSize = static_cast<uLongf>(packed.size());
    compress(packed.data(), &packedSize, reinterpret_cast<const Bytef*>(rows.data()),
             static_cast<uLong>(rows.size()));
    PngChunk(png, "IDAT", std::string(reinterpret_cast<const char*>(packed.data()), packedSize));
    PngChunk(png, "IEND", "");
    return png;
}

std::string Jpeg(uint16_t width, uint16_t height) {
    std::string jpeg("\xFF\xD8", 2);
    jpeg += std::string("\xFF\xE0\x00\x10JFIF\x00\x01\x01\x00\x00\x01\x00\x01\x00\x00", 18);
    jpeg += std::string("\xFF\xFE\x00\x07hello", 9);
    jpeg += std::string("\xFF\xC0\x00\x0B\x08", 5);
    Be(jpeg, height, 2);
    Be(jpeg, width, 2);
    jpeg += std::string("\x01\x01\x11\x00", 4);
    jpeg += std::string("\xFF\xD9", 2);
    return jpeg;
}

std::string Gif(uint16_t width, uint16_t height) {
    std::string gif = "GIF89a";
    Le(gif, width, 2);
    Le(gif, height, 2);
    gif += std::string("\x80\x00\x00", 3);  // a global table of two colours
    gif += std::string("\xFF\xFF\xFF\x00\x00\x00", 6);
    gif += ',';
    Le(gif, 0, 4);
    Le(gif, width, 2);
    Le(gif, height, 2);
    gif += std::string("\x00\x02\x02\x44\x01\x00", 6);  // LZW data of one colour
    gif += ';';
    return gif;
}

std::string Bmp(int32_t width, int32_t height) {
    const uint32_t rowBytes = (static_cast<uint32_t>(width) * 3 + 3) / 4 * 4;
    const uint32_t rows = static_cast<uint32_t>(height < 0 ? -height : height);
    std::string bmp = "BM";
    Le(bmp, 54 + rowBytes * rows, 4);
    Le(bmp, 0, 4);
    Le(bmp, 54, 4);
    Le(bmp, 40, 4);
    Le(bmp, static_cast<uint32_t>(width), 4);
    Le(bmp, static_cast<uint32_t>(height), 4);
    Le(bmp, 1, 2);
    Le(bmp, 24, 2);
    Le(bmp, 0, 4);
    Le(bmp, rowBytes * rows, 4);
    Le(bmp, 2835, 4);
    Le(bmp, 2835, 4);
    Le(bmp, 0, 4);
    Le(bmp, 0, 4);
    bmp += std::string(rowBytes * rows, '\x40');
    return bmp;
}

std::string BmpCore(uint16_t width, uint16_t height) {
    const uint32_t rowBytes = (uint32_t{width} * 3 + 3) / 4 * 4;
    std::string bmp = "BM";
    Le(bmp, 26 + rowBytes * height, 4);
    Le(bmp, 0, 4);
    Le(bmp, 26, 4);
    Le(bmp, 12, 4);
    Le(bmp, width, 2);
    Le(bmp, height, 2);
    Le(bmp, 1, 2);
    Le(bmp, 24, 2);
    bmp += std::string(rowBytes * height, '\x20');
    return bmp;
}

std::string Tiff(uint32_t width, uint32_t height, bool littleEndian, size_t padding) {
    auto put = [littleEndian](std::string& out, uint32_t value, int bytes) {
        littleEndian ? Le(out, value, bytes) : Be(out, value, bytes);
    };
    const uint32_t pixels = width * height;
    const uint32_t data = 8;
    const uint32_t directory =
        static_cast<uint32_t>(data + pixels + padding + (pixels + padding) % 2);
    std::string tiff = littleEndian ? std::string("II*\0", 4) : std::string("MM\0*", 4);
    put(tiff, directory, 4);
    tiff += std::string(pixels, '\x7F');
    tiff.resize(directory, '\0');
    struct Entry {
        uint16_t tag, type;
        uint32_t value;
    };
    const Entry entries[] = {{256, 3, width}, {257, 4, height}, {258, 3, 8},      {259, 3, 1},
                             {262, 3, 1},     {273, 4, data},   {278, 4, height}, {279, 4, pixels}};
    put(tiff, sizeof entries / sizeof entries[0], 2);
    for (const Entry& entry : entries) {
        put(tiff, entry.tag, 2);
        put(tiff, entry.type, 2);
        put(tiff, 1, 4);
        if (entry.type == 3) {
            put(tiff, entry.value, 2);
            put(tiff, 0, 2);
        } else {
            put(tiff, entry.value, 4);
        }
    }
    put(tiff, 0, 4);
    return tiff;
}

}  // namespace pwdbimagetest
