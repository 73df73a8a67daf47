// Small image files of every supported format, written byte by byte from the formats' public
// descriptions, for the raster image tests.
#pragma once

#include <cstdint>
#include <string>

namespace pwdbimagetest {

/// A complete PNG of `width` by `height` grey pixels.
std::string Png(uint32_t width, uint32_t height);
/// A JPEG header: SOI, a JFIF APP0 segment, a comment, a baseline frame header, EOI.
std::string Jpeg(uint16_t width, uint16_t height);
/// A complete GIF89a of one colour.
std::string Gif(uint16_t width, uint16_t height);
/// A complete 24-bit BMP; a negative height stores the rows top down.
std::string Bmp(int32_t width, int32_t height);
/// A BMP with the old 12-byte core header.
std::string BmpCore(uint16_t width, uint16_t height);
/// A complete 8-bit grey TIFF, little- or big-endian, its directory behind `padding` bytes of
/// pixel data (so that it may lie far beyond the file's first bytes).
std::string Tiff(uint32_t width, uint32_t height, bool littleEndian, size_t padding = 0);

}  // namespace pwdbimagetest
