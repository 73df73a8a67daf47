// Telling a raster image file by its header: PNG, JPEG, GIF, BMP or TIFF, and its size in
// pixels.
//
//   PwDbImageFileInfo info;
//   if (pwdbReadImageFileHeader(u"/srv/site/aerial.png", info) == Plotwright::StatusOk)
//       use(info.width, info.height);
//
// Only the header is read: at most the first 64 KiB, and for TIFF the first directory
// wherever it lies. Every field is checked against the bytes there are: truncated or lying
// headers are no image, never a read outside the bytes.
#pragma once

#include <cstdint>
#include <string_view>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

enum class PwDbImageFormat { Unknown = 0, Png, Jpeg, Gif, Bmp, Tiff };

struct PwDbImageFileInfo {
    PwDbImageFormat format = PwDbImageFormat::Unknown;
    uint32_t width = 0;
    uint32_t height = 0;
};

/// Reads a header from `bytes` (the file's first bytes, or all of it). True for an image of a
/// supported format with a width and height above 0; `info` is written only then.
bool pwdbReadImageHeader(std::string_view bytes, PwDbImageFileInfo& info);

/// Reads the header of the file `path`. StatusFileNotFound for a missing file (or a folder),
/// the statuses of opening a file the toolkit may not read, StatusBadFileFormat for a file
/// that is no image of a supported format.
Plotwright::ErrorStatus pwdbReadImageFileHeader(const wstring& path, PwDbImageFileInfo& info);

/// The format's usual name: "PNG", "JPEG", "GIF", "BMP", "TIFF"; "" for Unknown.
const char* pwdbImageFormatName(PwDbImageFormat format);
