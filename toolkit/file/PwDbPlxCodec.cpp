// The exchange format's layout: sections in a fixed order, counted lists, one line per item.
#include "toolkit/file/PwDbPlxCodec.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <stdexcept>
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

void WriteItem(const Item& item, int precision, std::string& out) {
    std::visit(
        [&](const auto& value) {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, wstring>) {
                out += "S ";
                pwdbPlxAppendQuoted(out, value);
            } else if constexpr (std::is_same_v<T, int32_t>) {
                out += "I " + std::to_string(value);
            } else if constexpr (std::is_same_v<T, int64_t>) {
                out += "L " + std::to_string(value);
            } else if constexpr (std::is_same_v<T, double>) {
                out += "D ";
                pwdbPlxAppendDouble(out, value, precision);
            } else if constexpr (std::is_same_v<T, bool>) {
                out += value ? "B 1" : "B 0";
            } else if constexpr (std::is_same_v<T, std::string>) {
                out += "X " + std::to_string(value.size());
                if (!value.empty()) out += ' ';
                pwdbPlxAppendHexBytes(out, value);
            } else {
                static_assert(std::is_same_v<T, PwDbMemoryFiler::Handle>);
                out += "H ";
                pwdbPlxAppendHex(out, value.value);
            }
        },
        item);
    out += '\n';
}

void WriteObject(const PwDbObjectRecord& record, int precision, std::string& out) {
    out += "OBJECT ";
    pwdbPlxAppendHex(out, record.handle);
    out += ' ' + std::to_string(record.data.size());
    out += record.erased ? " ERASED" : " LIVE";
    for (const wstring& name : record.classChain) {
        out += ' ';
        pwdbPlxAppendQuoted(out, name);
    }
    out += '\n';
    for (const Item& item : record.data) WriteItem(item, precision, out);
    out += "END OBJECT\n";
}

// ---------------------------------------------------------------------------------------
// Reading

// The text's lines, one at a time; a line end is "\n" or "\r\n", and the last line may lack it.
class LineSource {
  public:
    explicit LineSource(std::string_view text) : m_text(text) {}

    bool next(std::string_view& line) {
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
    bool atEnd() const { return m_position >= m_text.size(); }
    /// The bytes not read yet: what any count must fit into.
    size_t remaining() const { return m_text.size() - m_position; }

  private:
    std::string_view m_text;
    size_t m_position = 0;
};

class Reader {
  public:
    explicit Reader(std::string_view text) : m_lines(text) {}

    bool read(PwDbDrawingImage& image) {
        return readHeader(image) && readRoots(image.roots) && readAppInfo(image.appInfo) &&
               readPreview(image.preview) && readObjects(image.objects) &&
               readFixedLine("END FILE") && m_lines.atEnd();
    }

  private:
    bool nextLine(std::string_view& line) { return m_lines.next(line); }

    bool readFixedLine(std::string_view expected) {
        std::string_view line;
        return nextLine(line) && line == expected;
    }

    // A line "<keyword> <count>" whose count leaves each entry at least `minBytes` of the rest.
    bool readCount(std::string_view keyword, size_t minBytes, uint64_t& count) {
        std::string_view line;
        if (!nextLine(line)) return false;
        PwDbPlxLine cursor(line);
        return cursor.expectWord(keyword) && cursor.readUint64(count) && cursor.atEnd() &&
               count <= m_lines.remaining() / minBytes;
    }

    bool readHeader(PwDbDrawingImage& image);
    bool readRoots(PwDbDrawingRoots& roots);
    bool readAppInfo(std::vector<PwDbAppInfoEntry>& entries);
    bool readPreview(std::optional<PwDbPreviewImage>& preview);
    bool readPixels(PwDbPreviewImage& preview);
    bool readObjects(std::vector<PwDbObjectRecord>& objects);
    bool readObject(PwDbObjectRecord& record);
    bool readItem(Item& item);

    LineSource m_lines;
};

bool Reader::readHeader(PwDbDrawingImage& image) {
    std::string_view line;
    if (!readFixedLine(kPwDbPlxIdentification) || !nextLine(line)) return false;
    PwDbPlxLine version(line);
    if (!version.expectWord("VERSION") || !version.readInt32(image.version) || !version.atEnd() ||
        image.version < kPwDbOldestVersion || image.version > kPwDbNewestVersion) {
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

bool Reader::readRoots(PwDbDrawingRoots& roots) {
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

bool Reader::readAppInfo(std::vector<PwDbAppInfoEntry>& entries) {
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

bool Reader::readPreview(std::optional<PwDbPreviewImage>& preview) {
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

bool Reader::readPixels(PwDbPreviewImage& preview) {
    const uint64_t count = uint64_t{preview.width} * preview.height;
    if (count > m_lines.remaining() / kMinPixelBytes) return false;
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

bool Reader::readObjects(std::vector<PwDbObjectRecord>& objects) {
    uint64_t count = 0;
    if (!readCount("OBJECTS", kMinObjectBytes, count)) return false;
    objects.resize(static_cast<size_t>(count));
    for (PwDbObjectRecord& record : objects) {
        if (!readObject(record)) return false;
    }
    return true;
}

bool Reader::readObject(PwDbObjectRecord& record) {
    std::string_view line;
    uint64_t itemCount = 0;
    if (!nextLine(line)) return false;
    PwDbPlxLine cursor(line);
    std::string_view state;
    if (!cursor.expectWord("OBJECT") || !cursor.readHex(record.handle) ||
        !cursor.readUint64(itemCount) || itemCount > m_lines.remaining() / kMinItemBytes ||
        !cursor.readWord(state) || (state != "LIVE" && state != "ERASED")) {
        return false;
    }
    record.erased = state == "ERASED";
    while (!cursor.atEnd()) {
        wstring name;
        if (!cursor.readQuoted(name)) return false;
        record.classChain.push_back(std::move(name));
    }
    record.data.reserve(static_cast<size_t>(itemCount));
    for (uint64_t n = 0; n < itemCount; ++n) {
        Item item;
        if (!readItem(item)) return false;
        record.data.push_back(std::move(item));
    }
    return readFixedLine("END OBJECT");
}

bool Reader::readItem(Item& item) {
    std::string_view line;
    std::string_view type;
    if (!nextLine(line)) return false;
    PwDbPlxLine cursor(line);
    if (!cursor.readWord(type) || type.size() != 1) return false;
    bool read = false;
    switch (type[0]) {
        case 'S':
            read = cursor.readQuoted(item.emplace<wstring>());
            break;
        case 'I':
            read = cursor.readInt32(item.emplace<int32_t>());
            break;
        case 'L':
            read = cursor.readInt64(item.emplace<int64_t>());
            break;
        case 'D':
            read = cursor.readDouble(item.emplace<double>());
            break;
        case 'B': {
            std::string_view word;
            read = cursor.readWord(word) && (word == "0" || word == "1");
            item.emplace<bool>(word == "1");
            break;
        }
        case 'X': {
            uint64_t size = 0;
            std::string& bytes = item.emplace<std::string>();
            read = cursor.readUint64(size) && (size == 0 || cursor.readHexBytes(size, bytes));
            break;
        }
        case 'H':
            read = cursor.readHex(item.emplace<PwDbMemoryFiler::Handle>().value);
            break;
        default:
            return false;
    }
    return read && cursor.atEnd();
}

}  // namespace

ErrorStatus pwdbEncodePlx(const PwDbDrawingImage& image, int precision, std::string& text) {
    if (image.version < kPwDbOldestVersion || image.version > kPwDbNewestVersion) {
        return Plotwright::StatusNoSuchVersion;
    }
    if (precision < 0 || precision > kPwDbPlxMaxPrecision) return Plotwright::StatusInvalidInput;
    if (image.measurement != PwDb::Metric && image.measurement != PwDb::Imperial) {
        return Plotwright::StatusInvalidInput;
    }
    if (image.preview &&
        image.preview->pixels.size() != uint64_t{image.preview->width} * image.preview->height) {
        return Plotwright::StatusInvalidInput;
    }
    try {
        std::string out;
        WriteHeader(image, precision, out);
        WritePreview(image.preview, out);
        AppendNumberLine(out, "OBJECTS", image.objects.size());
        for (const PwDbObjectRecord& record : image.objects) WriteObject(record, precision, out);
        out += "END FILE\n";
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
        Reader reader(text);
        if (!reader.read(read)) return Plotwright::StatusBadFileFormat;
        image = std::move(read);
        return Plotwright::StatusOk;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    } catch (const std::length_error&) {
        return Plotwright::StatusOutOfMemory;
    }
}
