// The bytes of the small non-drawing files of sample folders: a PNG picture, a PDF page.
#pragma once

#include <string>

namespace lodeqdb::samples {

/// A 16 by 16 grey PNG.
std::string PngBytes();
/// One empty A4 PDF page, with its cross-reference table.
std::string PdfBytes();
/// Writes `bytes` to `path`; throws std::runtime_error when it can't.
void WriteBytes(const std::string& path, const std::string& bytes);

}  // namespace lodeqdb::samples
