// Native drawing headers built byte by byte for the header reader's tests, independently of
// the toolkit's writer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <lodeqdb/identification/AppInfo.h>

namespace lodeqdbidtest {

class AppInfoFileBuilder {
  public:
    /// 128 header bytes starting with `signature`, the scan start at 48 (and the fallbacks at
    /// 44 and 13).
    explicit AppInfoFileBuilder(const std::string& signature, uint32_t scanStart = 128,
                                uint32_t fallback44 = 0, uint32_t fallback13 = 0);

    /// Pads with zero bytes up to `offset`.
    AppInfoFileBuilder& PadTo(size_t offset);
    AppInfoFileBuilder& Marker();
    AppInfoFileBuilder& U16(uint16_t value);
    AppInfoFileBuilder& U32(uint32_t value);
    /// A string of `text` with its length (terminator's place included) and a zero unit.
    AppInfoFileBuilder& String(const std::u16string& text);
    /// A string whose length field says `length` but whose units are `units`.
    AppInfoFileBuilder& RawString(uint16_t length, const std::u16string& units);
    AppInfoFileBuilder& Key(const LodeQDBUtil::Guid& key);
    /// The first field, an empty header string and `count`.
    AppInfoFileBuilder& SectionHead(uint32_t count);

    const std::string& Bytes() const { return bytes_; }
    size_t Size() const { return bytes_.size(); }

  private:
    std::string bytes_;
};

/// The GUID {E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E} with its last byte replaced by `last`.
LodeQDBUtil::Guid TestKey(uint8_t last = 0x1E);

}  // namespace lodeqdbidtest
