#include "AppInfoFileBuilder.h"

namespace lodeqdbidtest {

namespace {

void PutU32(std::string& bytes, size_t at, uint32_t value) {
    for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(value >> (8 * i));
}

}  // namespace

AppInfoFileBuilder::AppInfoFileBuilder(const std::string& signature, uint32_t scanStart,
                                       uint32_t fallback44, uint32_t fallback13)
    : bytes_(128, '\0') {
    bytes_.replace(0, signature.size(), signature);
    PutU32(bytes_, 13, fallback13);
    PutU32(bytes_, 44, fallback44);
    PutU32(bytes_, 48, scanStart);
}

AppInfoFileBuilder& AppInfoFileBuilder::PadTo(size_t offset) {
    if (bytes_.size() < offset) bytes_.resize(offset, '\0');
    return *this;
}

AppInfoFileBuilder& AppInfoFileBuilder::Marker() {
    bytes_.append(reinterpret_cast<const char*>(LodeQDBUtil::kAppInfoMarker), 32);
    return *this;
}

AppInfoFileBuilder& AppInfoFileBuilder::U16(uint16_t value) {
    bytes_.push_back(static_cast<char>(value & 0xFF));
    bytes_.push_back(static_cast<char>(value >> 8));
    return *this;
}

AppInfoFileBuilder& AppInfoFileBuilder::U32(uint32_t value) {
    for (int i = 0; i < 4; ++i) bytes_.push_back(static_cast<char>(value >> (8 * i)));
    return *this;
}

AppInfoFileBuilder& AppInfoFileBuilder::String(const std::u16string& text) {
    return RawString(static_cast<uint16_t>(text.size() + 1), text + u'\0');
}

AppInfoFileBuilder& AppInfoFileBuilder::RawString(uint16_t length, const std::u16string& units) {
    U16(length);
    for (char16_t unit : units) U16(unit);
    return *this;
}

AppInfoFileBuilder& AppInfoFileBuilder::Key(const LodeQDBUtil::Guid& key) {
    U32(key.data1);
    U16(key.data2);
    U16(key.data3);
    for (uint8_t byte : key.data4) bytes_.push_back(static_cast<char>(byte));
    return *this;
}

AppInfoFileBuilder& AppInfoFileBuilder::SectionHead(uint32_t count) {
    U32(0);
    U16(0);
    return U32(count);
}

LodeQDBUtil::Guid TestKey(uint8_t last) {
    LodeQDBUtil::Guid key;
    key.data1 = 0xE006715E;
    key.data2 = 0x1EB4;
    key.data3 = 0x4AE0;
    const uint8_t tail[8] = {0xBC, 0x05, 0x4B, 0xC5, 0xEF, 0xDD, 0xB4, last};
    for (int i = 0; i < 8; ++i) key.data4[i] = tail[i];
    return key;
}

}  // namespace lodeqdbidtest
