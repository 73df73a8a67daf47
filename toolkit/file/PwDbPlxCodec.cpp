// The exchange format's layout: sections in a fixed order, counted lists, one line per item.
#include "toolkit/file/PwDbPlxCodec.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

#include "toolkit/file/PwDbPlxText.h"

namespace {

using Plotwright::ErrorStatus;
using Item = PwDbMemoryFiler::Item;

constexpr int kPixelsPerLine = 8;
// The fewest bytes a counted entry takes in the text, so that no count may claim more entries
// than the rest of the text could hold: an INFO line with its GUID and an empty string, a
// "B 0" item, an object with no class and no item, " XXXXXXXX" per pixel.
constexpr size_t kMinInfoBytes = 47;
constexpr size_t kMinItemBytes = 4;
constexpr size_t kMinObjectBytes = 22;
constexpr size_t kMinPixelBytes = 9;

struct RootName {
    std::string_view name;
    PwDbHandle PwDbDrawingRoots::*member;
};

constexpr std::array<RootName, 9> kRoots = {{
    {"BlockTable", &PwDbDrawingRoots::blockTable},
    {"LayerTable", &PwDbDrawingRoots::layerTable},
    {"NamedObjects", &PwDbDrawingRoots::namedObjects},
    {"LayoutDictionary", &PwDbDrawingRoots::layoutDictionary},
    {"PlotSettingsDictionary", &PwDbDrawingRoots::plotSettingsDictionary},
    {"ModelSpace", &PwDbDrawingRoots::modelSpace},
    {"PaperSpace", &PwDbDrawingRoots::paperSpace},
    {"LayerZero", &PwDbDrawingRoots::layerZero},
    {"CurrentLayer", &PwDbDrawingRoots::currentLayer},
}};

// ---------------------------------------------------------------------------------------
// Writing

void AppendNumberLine(std::string& out, std::string_view keyword, uint64_t value) {
    out += keyword;
    out += ' ';
    out += std::to_string(value);
    out += '\n';
}

void AppendHexLine(std::string& out, std::string_view keyword, uint64_t value) {
    out += keyword;
    out += ' ';
    pwdbPlxAppendHex(out, value);
    out += '\n';
}

void WriteHeader(const PwDbDrawingImage& image, int precision, std::string& out) {
    out += kPwDbPlxIdentification;
    out += '\n';
    AppendNumberLine(out, "VERSION", static_cast<uint64_t>(image.version));
    AppendNumberLine(out, "PRECISION", static_cast<uint64_t>(precision));
    AppendHexLine(out, "HANDSEED", image.handseed);
    out += image.measurement == PwDb::Imperial ? "MEASUREMENT IMPERIAL\n" : "MEASUREMENT METRIC\n";
    for (const RootName& root : kRoots) {
        out += "ROOT ";
        AppendHexLine(out, root.name, image.roots.*root.member);
    }
    AppendNumberLine(out, "APPINFO", image.appInfo.size());
    for (const PwDbAppInfoEntry& entry : image.appInfo) {
        out += "INFO ";
        // The GUID text is plain ASCII, so it stands unquoted.
        for (char16_t unit : pwdbGuidText(entry.key)) out += static_cast<char>(unit);
        out += ' ';
        pwdbPlxAppendQuoted(out, entry.text);
        out += '\n';
    }
}

void WritePreview(const std::optional<PwDbPreviewImage>& preview, std::string& out) {
    if (!preview) {
        out += "PREVIEW NONE\n";
        return;
    }
    out += "PREVIEW " + std::to_string(preview->width) + ' ' + std::to_string(preview->height);
    out += '\n';
    for (size_t i = 0; i < preview->pixels.size(); i += kPixelsPerLine) {
        out += "PIXELS";
        const size_t end = std::min(preview->pixels.size(), i + kPixelsPerLine);
        for (size_t k = i; k < end; ++k) {
            out += ' ';
            pwdbPlxAppendHex8(out, preview->pixels[k]);
        }
        out += '\n';
    }
}

// ---------------------------------------------------------------------------------------
// Reading

}  // namespace

ErrorStatus PwDbPlxWriter::writeHead(const PwDbDrawingImage& head, uint64_t objectCount) {
    if (!pwdbIsWritableVersion(head.version)) {
        return Plotwright::StatusNoSuchVersion;
    }
    if (m_precision < 0 || m_precision > kPwDbPlxMaxPrecision) {
        return Plotwright::StatusInvalidInput;
    }
    if (head.measurement != PwDb::Metric && head.measurement != PwDb::Imperial) {
        return Plotwright::StatusInvalidInput;
    }
    if (head.preview &&
        head.preview->pixels.size() != uint64_t{head.preview->width} * head.preview->height) {
        return Plotwright::StatusInvalidInput;
    }
    WriteHeader(head, m_precision, m_out);
    WritePreview(head.preview, m_out);
    AppendNumberLine(m_out, "OBJECTS", objectCount);
    return Plotwright::StatusOk;
}

void PwDbPlxWriter::writeObject(PwDbHandle handle, bool erased, std::string_view quotedChain,
                                uint64_t itemCount, std::string_view itemLines) {
    m_out += "OBJECT ";
    pwdbPlxAppendHex(m_out, handle);
    m_out += ' ';
    m_out += std::to_string(itemCount);
    m_out += erased ? " ERASED" : " LIVE";
    m_out += quotedChain;
    m_out += '\n';
    m_out += itemLines;
    m_out += "END OBJECT\n";
}

void PwDbPlxWriter::writeEnd() {
    m_out += "END FILE\n";
}

std::string pwdbPlxQuotedChain(const std::vector<wstring>& chain) {
    std::string quoted;
    for (const wstring& name : chain) {
        quoted += ' ';
        pwdbPlxAppendQuoted(quoted, name);
    }
    return quoted;
}

bool pwdbPlxReadChain(std::string_view quotedChain, std::vector<wstring>& chain) {
    chain.clear();
    if (quotedChain.empty()) return true;
    // Each name stands after a space; past the first space, the line's own rule of one space
    // between tokens reads them.
    if (quotedChain.front() != ' ') return false;
    PwDbPlxLine cursor(quotedChain.substr(1));
    do {
        wstring name;
        if (!cursor.readQuoted(name)) return false;
        chain.push_back(std::move(name));
    } while (!cursor.atEnd());
    return true;
}

bool PwDbPlxReader::nextLine(std::string_view& line) {
    if (m_position >= m_text.size()) return false;
    size_t end = m_text.find('\n', m_position);
    const size_t following = (end == std::string_view::npos) ? m_text.size() : end + 1;
    if (end == std::string_view::npos)
        end = m_text.size();
    else if (end > m_position && m_text[end - 1] == '\r')
        --end;
    line = m_text.substr(m_position, end - m_position);
    m_position = following;
    return true;
}

bool PwDbPlxReader::readFixedLine(std::string_view expected) {
    std::string_view line;
    return nextLine(line) && line == expected;
}

// A line "<keyword> <count>" whose count leaves each entry at least `minBytes` of the rest.
bool PwDbPlxReader::readCount(std::string_view keyword, size_t minBytes, uint64_t& count) {
    std::string_view line;
    if (!nextLine(line)) return false;
    PwDbPlxLine cursor(line);
    return cursor.expectWord(keyword) && cursor.readUint64(count) && cursor.atEnd() &&
           count <= remaining() / minBytes;
}

bool PwDbPlxReader::readHead(PwDbDrawingImage& head) {
    return readVersionAndSeed(head) && readRoots(head.roots) && readAppInfo(head.appInfo) &&
           readPreview(head.preview) && readCount("OBJECTS", kMinObjectBytes, m_objectCount);
}

bool PwDbPlxReader::readVersionAndSeed(PwDbDrawingImage& image) {
    std::string_view line;
    if (!readFixedLine(kPwDbPlxIdentification) || !nextLine(line)) return false;
    PwDbPlxLine version(line);
    if (!version.expectWord("VERSION") || !version.readInt32(image.version) || !version.atEnd() ||
        !pwdbIsWritableVersion(image.version)) {
        return false;
    }
    int32_t precision = -1;
    if (!nextLine(line)) return false;
    PwDbPlxLine precisionLine(line);
    if (!precisionLine.expectWord("PRECISION") || !precisionLine.readInt32(precision) ||
        !precisionLine.atEnd() || precision < 0 || precision > kPwDbPlxMaxPrecision) {
        return false;
    }
    if (!nextLine(line)) return false;
    PwDbPlxLine handseed(line);
    if (!handseed.expectWord("HANDSEED") || !handseed.readHex(image.handseed) ||
        !handseed.atEnd()) {
        return false;
    }
    if (!nextLine(line)) return false;
    if (line == "MEASUREMENT METRIC")
        image.measurement = PwDb::Metric;
    else if (line == "MEASUREMENT IMPERIAL")
        image.measurement = PwDb::Imperial;
    else
        return false;
    return true;
}

bool PwDbPlxReader::readRoots(PwDbDrawingRoots& roots) {
    std::array<bool, kRoots.size()> seen{};
    for (size_t n = 0; n < kRoots.size(); ++n) {
        std::string_view line;
        std::string_view name;
        if (!nextLine(line)) return false;
        PwDbPlxLine cursor(line);
        if (!cursor.expectWord("ROOT") || !cursor.readWord(name)) return false;
        const auto root = std::find_if(kRoots.begin(), kRoots.end(),
                                       [&](const RootName& r) { return r.name == name; });
        if (root == kRoots.end()) return false;
        const size_t index = static_cast<size_t>(root - kRoots.begin());
        if (seen[index] || !cursor.readHex(roots.*root->member) || !cursor.atEnd()) return false;
        seen[index] = true;
    }
    return true;
}

bool PwDbPlxReader::readAppInfo(std::vector<PwDbAppInfoEntry>& entries) {
    uint64_t count = 0;
    if (!readCount("APPINFO", kMinInfoBytes, count)) return false;
    entries.reserve(static_cast<size_t>(count));
    for (uint64_t n = 0; n < count; ++n) {
        std::string_view line;
        std::string_view guid;
        PwDbAppInfoEntry entry;
        if (!nextLine(line)) return false;
        PwDbPlxLine cursor(line);
        if (!cursor.expectWord("INFO") || !cursor.readWord(guid) ||
            !pwdbParseGuidText(wstring(guid.begin(), guid.end()), entry.key) ||
            !cursor.readQuoted(entry.text) || !cursor.atEnd()) {
            return false;
        }
        entries.push_back(std::move(entry));
    }
    return true;
}

bool PwDbPlxReader::readPreview(std::optional<PwDbPreviewImage>& preview) {
    std::string_view line;
    if (!nextLine(line)) return false;
    if (line == "PREVIEW NONE") {
        preview.reset();
        return true;
    }
    PwDbPreviewImage image;
    PwDbPlxLine cursor(line);
    if (!cursor.expectWord("PREVIEW") || !cursor.readUint32(image.width) ||
        !cursor.readUint32(image.height) || !cursor.atEnd()) {
        return false;
    }
    if (!readPixels(image)) return false;
    preview = std::move(image);
    return true;
}

bool PwDbPlxReader::readPixels(PwDbPreviewImage& preview) {
    const uint64_t count = uint64_t{preview.width} * preview.height;
    if (count > remaining() / kMinPixelBytes) return false;
    preview.pixels.reserve(static_cast<size_t>(count));
    while (preview.pixels.size() < count) {
        std::string_view line;
        if (!nextLine(line)) return false;
        PwDbPlxLine cursor(line);
        if (!cursor.expectWord("PIXELS")) return false;
        do {
            uint32_t pixel = 0;
            if (preview.pixels.size() == count || !cursor.readHex8(pixel)) return false;
            preview.pixels.push_back(pixel);
        } while (!cursor.atEnd());
    }
    return true;
}

namespace {

// The object line as the toolkit writes it, read without splitting it into tokens first:
// false for anything else, which the reading by tokens then takes or refuses.
bool ReadObjectLineAsWritten(std::string_view line, PwDbPlxObjectLine& object) {
    constexpr std::string_view kStart = "OBJECT ";
    if (!line.starts_with(kStart)) return false;
    const char* at = line.data() + kStart.size();
    const char* end = line.data() + line.size();
    auto handle = std::from_chars(at, end, object.handle, 16);
    if (handle.ec != std::errc() || handle.ptr == end || *handle.ptr != ' ') return false;
    auto count = std::from_chars(handle.ptr + 1, end, object.itemCount, 10);
    if (count.ec != std::errc() || count.ptr == end || *count.ptr != ' ') return false;
    std::string_view rest(count.ptr + 1, static_cast<size_t>(end - count.ptr - 1));
    if (rest.starts_with("LIVE")) {
        object.erased = false;
        rest.remove_prefix(4);
    } else if (rest.starts_with("ERASED")) {
        object.erased = true;
        rest.remove_prefix(6);
    } else {
        return false;
    }
    if (!rest.empty() && rest.front() != ' ') return false;
    object.quotedChain = rest;
    return true;
}

}  // namespace

bool PwDbPlxReader::readObjectLine(PwDbPlxObjectLine& object) {
    std::string_view line;
    if (!nextLine(line)) return false;
    if (ReadObjectLineAsWritten(line, object))
        return object.itemCount <= remaining() / kMinItemBytes;
    return readObjectLineByTokens(line, object);
}

bool PwDbPlxReader::readObjectLineByTokens(std::string_view line, PwDbPlxObjectLine& object) {
    PwDbPlxLine cursor(line);
    std::string_view state;
    if (!cursor.expectWord("OBJECT") || !cursor.readHex(object.handle) ||
        !cursor.readUint64(object.itemCount) || object.itemCount > remaining() / kMinItemBytes ||
        !cursor.readWord(state) || (state != "LIVE" && state != "ERASED")) {
        return false;
    }
    object.erased = state == "ERASED";
    // The state word ends at the chain, or at the line's end.
    object.quotedChain =
        line.substr(static_cast<size_t>(state.data() + state.size() - line.data()));
    return true;
}

PwDbPlxItemLines PwDbPlxReader::items(const PwDbPlxObjectLine& object) const {
    return PwDbPlxItemLines(m_text, object.itemCount, m_position);
}

bool PwDbPlxReader::readObjectEnd(const PwDbPlxItemLines& items) {
    if (items.left() != 0) return false;
    m_position = items.position();
    return readFixedLine("END OBJECT");
}

bool PwDbPlxReader::readEnd() {
    return readFixedLine("END FILE") && m_position >= m_text.size();
}

namespace {

// Reads a record's items as a list, for the drawing image.
bool ReadRecord(PwDbPlxReader& reader, PwDbObjectRecord& record) {
    PwDbPlxObjectLine line;
    if (!reader.readObjectLine(line) || !pwdbPlxReadChain(line.quotedChain, record.classChain)) {
        return false;
    }
    record.handle = line.handle;
    record.erased = line.erased;
    PwDbPlxItemLines items = reader.items(line);
    record.data.reserve(static_cast<size_t>(line.itemCount));
    std::string_view itemLine;
    while (items.next(itemLine)) {
        if (!pwdbPlxReadItem(itemLine, record.data.emplace_back())) return false;
    }
    return reader.readObjectEnd(items);
}

}  // namespace

ErrorStatus pwdbEncodePlx(const PwDbDrawingImage& image, int precision, std::string& text) {
    try {
        std::string out;
        PwDbPlxWriter writer(out, precision);
        if (auto status = writer.writeHead(image, image.objects.size())) return status;
        std::string items;
        for (const PwDbObjectRecord& record : image.objects) {
            items.clear();
            for (const Item& item : record.data) pwdbPlxAppendItem(items, item, precision);
            writer.writeObject(record.handle, record.erased, pwdbPlxQuotedChain(record.classChain),
                               record.data.size(), items);
        }
        writer.writeEnd();
        text = std::move(out);
        return Plotwright::StatusOk;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    } catch (const std::length_error&) {
        return Plotwright::StatusOutOfMemory;
    }
}

ErrorStatus pwdbDecodePlx(std::string_view text, PwDbDrawingImage& image) {
    if (!pwdbPlxIsValidUtf8(text)) return Plotwright::StatusBadFileFormat;
    try {
        PwDbDrawingImage read;
        PwDbPlxReader reader(text);
        if (!reader.readHead(read)) return Plotwright::StatusBadFileFormat;
        read.objects.resize(static_cast<size_t>(reader.objectCount()));
        for (PwDbObjectRecord& record : read.objects) {
            if (!ReadRecord(reader, record)) return Plotwright::StatusBadFileFormat;
        }
        if (!reader.readEnd()) return Plotwright::StatusBadFileFormat;
        image = std::move(read);
        return Plotwright::StatusOk;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    } catch (const std::length_error&) {
        return Plotwright::StatusOutOfMemory;
    }
}
