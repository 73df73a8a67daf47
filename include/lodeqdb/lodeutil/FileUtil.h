// File kinds told apart by extension: drawings (PLW), exchange files (PLX), PDF and images.
//
// Defines LodeUtil::FileUtil::{GetFileExtension, IsPLWFile, IsPLXFile, IsPDFFile, IsImageFile}.
//
//   wstring extension = FileUtil::GetFileExtension(u"C:\\proj\\Host.PLW");  // u".PLW"
//   if (FileUtil::IsPLWFile(extension)) { /* open it as a drawing */ }
//
// The Is...File functions take an extension, not a path. They accept it with its leading dot
// (`.plw`, as GetFileExtension gives it) or without (`plw`), in any letter case. Anything else
// is false: a whole file name (`a.plw`), an empty string, a longer extension (`.plwx`), two
// dots (`..plw`), surrounding spaces. The accepted extensions are all ASCII, so non-ASCII text
// never matches (no fold turns `ſ` or the Kelvin sign into an ASCII letter here).
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {
namespace FileUtil {

/// The extension of the last component of `path` with its leading dot, exactly as
/// Path::GetExtension gives it (`.PLW` for `x.PLW`, empty for `name.` or `a.b\c`).
wstring GetFileExtension(const wstring& path);

/// True for the drawing extension `plw`.
bool IsPLWFile(const wstring& extension);

/// True for the exchange-file extension `plx`.
bool IsPLXFile(const wstring& extension);

/// True for `pdf`.
bool IsPDFFile(const wstring& extension);

/// True for a raster image extension: `bmp dib gif jpg jpeg jpe jfif jp2 j2k png tif tiff pcx
/// tga webp`.
bool IsImageFile(const wstring& extension);

}  // namespace FileUtil
}  // namespace LodeUtil
