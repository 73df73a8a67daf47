// Preview images of native drawing files, read without opening a database.
//
//   HBITMAP bitmap = nullptr;
//   HPALETTE palette = nullptr;
//   if (pwdbGetPreviewBitmapFromPlw(u"/srv/a.plw", &bitmap, &palette)) {
//       uint32_t width = 0, height = 0;
//       pwdbBitmapSize(bitmap, width, height);
//       const uint32_t* pixels = pwdbBitmapPixels(bitmap);   // 0xAARRGGBB, rows top first
//       pwdbDeleteBitmap(bitmap);
//       pwdbDeletePalette(palette);
//   }
#pragma once

#include <cstdint>

/// An opaque bitmap handle; freed with pwdbDeleteBitmap.
using HBITMAP = struct PwBitmap*;
/// An opaque palette handle; freed with pwdbDeletePalette. Previews of this toolkit are true
/// colour, so the palette handed out is always null.
using HPALETTE = struct PwPalette*;

/// Reads the preview of the native drawing file `path`. True with a bitmap (owned by the
/// caller) when the file is a sound drawing with a preview; false for a file without one, a
/// missing or unreadable file, or null arguments — the outputs are then null.
bool pwdbGetPreviewBitmapFromPlw(const char16_t* path, HBITMAP* bitmap, HPALETTE* palette);

/// The bitmap's size; false for a null bitmap.
bool pwdbBitmapSize(HBITMAP bitmap, uint32_t& width, uint32_t& height);
/// width * height pixels, 0xAARRGGBB, rows top first; null for a null bitmap.
const uint32_t* pwdbBitmapPixels(HBITMAP bitmap);
/// Number of colours of a palette; 0 for a null palette.
uint32_t pwdbPaletteSize(HPALETTE palette);
/// Free a bitmap or palette; null does nothing.
void pwdbDeleteBitmap(HBITMAP bitmap);
void pwdbDeletePalette(HPALETTE palette);
