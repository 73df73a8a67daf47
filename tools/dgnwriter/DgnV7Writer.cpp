// Element layouts of DGN V7 as written: 16-bit words, shorts little-endian, longs with their
// high word first, doubles in VAX D form, ranges in offset binary.
#include "tools/dgnwriter/DgnV7Writer.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <stdexcept>

namespace DgnWriter {
namespace {

constexpr int kTypeCell = 2;
constexpr int kTypeLine = 3;
constexpr int kTypeLineString = 4;
constexpr int kTypeGroupData = 5;
constexpr int kTypeShape = 6;
constexpr int kTypeTextNode = 7;
constexpr int kTypeDigitizer = 8;
constexpr int kTypeControlBlock = 9;
constexpr int kTypeLevelSymbology = 10;
constexpr int kTypeCurve = 11;
constexpr int kTypeComplexChain = 12;
constexpr int kTypeComplexShape = 14;
constexpr int kTypeEllipse = 15;
constexpr int kTypeArc = 16;
constexpr int kTypeText = 17;
constexpr int kTypeApplication = 66;

constexpr uint16_t kComplexBit = 0x0080;
constexpr uint16_t kDeletedBit = 0x8000;
// Words of the element header and display header, the part every graphic element shares.
constexpr size_t kDisplayHeaderWords = 18;
// A cell's matrix coefficients count in steps of 1 / 214748.3648.
constexpr double kCellMatrixUnit = 214748.3648;
constexpr double kPi = 3.14159265358979323846;

void PutShort(std::vector<uint8_t>& bytes, size_t offset, uint16_t value) {
    bytes.at(offset) = static_cast<uint8_t>(value & 0xFF);
    bytes.at(offset + 1) = static_cast<uint8_t>(value >> 8);
}

void PutLong(std::vector<uint8_t>& bytes, size_t offset, int32_t value) {
    const auto bits = static_cast<uint32_t>(value);
    PutShort(bytes, offset, static_cast<uint16_t>(bits >> 16));
    PutShort(bytes, offset + 2, static_cast<uint16_t>(bits & 0xFFFF));
}

void PutRangeLong(std::vector<uint8_t>& bytes, size_t offset, int32_t value) {
    PutLong(bytes, offset, static_cast<int32_t>(static_cast<uint32_t>(value) ^ 0x80000000u));
}

// VAX D: sign, an exponent biased by 128 and a 55-bit fraction behind a hidden leading bit, the
// value being 0.1fff... times two to the exponent; stored as four words, most significant first.
void PutVaxDouble(std::vector<uint8_t>& bytes, size_t offset, double value) {
    uint64_t ieee = 0;
    std::memcpy(&ieee, &value, sizeof ieee);
    const uint64_t sign = ieee >> 63;
    const int64_t exponent = static_cast<int64_t>((ieee >> 52) & 0x7FF) - 1023 + 129;
    uint64_t vax = 0;
    if (value != 0.0 && exponent >= 1) {
        const uint64_t fraction = (ieee & ((uint64_t{1} << 52) - 1)) << 3;
        const uint64_t biased = static_cast<uint64_t>(std::min<int64_t>(exponent, 255));
        vax = (sign << 63) | (biased << 55) | fraction;
    }
    for (int word = 0; word < 4; ++word) {
        PutShort(bytes, offset + 2 * word, static_cast<uint16_t>(vax >> (48 - 16 * word)));
    }
}

int32_t ToLong(double value) {
    const double rounded = std::round(value);
    if (rounded >= 2147483647.0) return std::numeric_limits<int32_t>::max();
    if (rounded <= -2147483648.0) return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(rounded);
}

// Angles of 2D elements: hundredths of a second, counter-clockwise.
int32_t AngleLong(double degrees) {
    return ToLong(degrees * 360000.0);
}

// Sweep angles keep their direction in the top bit and the size in the others.
int32_t SweepLong(double degrees) {
    const int32_t size = ToLong(std::fabs(degrees) * 360000.0) & 0x7FFFFFFF;
    return degrees < 0 ? static_cast<int32_t>(static_cast<uint32_t>(size) | 0x80000000u) : size;
}

void PutText(std::vector<uint8_t>& bytes, size_t offset, const std::string& text, size_t room) {
    if (text.size() > room) throw std::invalid_argument("DGN text field too long: " + text);
    std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::vector<Point> ConicRange(double x, double y, double z, double primary, double secondary) {
    const double reach = std::max(std::fabs(primary), std::fabs(secondary));
    return {{ToLong(x - reach), ToLong(y - reach), ToLong(z - reach)},
            {ToLong(x + reach), ToLong(y + reach), ToLong(z + reach)}};
}

}  // namespace

DgnV7Writer::DgnV7Writer(bool threeD, const Units& units) : m_threeD(threeD) {
    writeHeaderElements(units);
}

void DgnV7Writer::writeHeaderElements(const Units& units) {
    // The control block: 768 words, the units and the dimension at fixed byte positions.
    std::vector<uint8_t> control(1536, 0);
    PutShort(control, 0,
             static_cast<uint16_t>((kTypeControlBlock << 8) | 8 | (m_threeD ? 0xC0 : 0)));
    PutShort(control, 2, 766);
    PutLong(control, 1112, units.uorPerSubunit);
    PutLong(control, 1116, units.subunitsPerMaster);
    std::string sub = units.subunitName, master = units.masterName;
    sub.resize(2, ' ');
    master.resize(2, ' ');
    PutText(control, 1120, sub, 2);
    PutText(control, 1122, master, 2);
    if (m_threeD) control[1214] |= 0x40;
    PutVaxDouble(control, 1240, units.originX);
    PutVaxDouble(control, 1248, units.originY);
    PutVaxDouble(control, 1256, units.originZ);
    m_bytes.insert(m_bytes.end(), control.begin(), control.end());
    m_written.push_back({0, 768, false, 0});

    std::vector<uint8_t> digitizer(1536, 0);
    PutShort(digitizer, 0, static_cast<uint16_t>((kTypeDigitizer << 8) | 8));
    PutShort(digitizer, 2, 766);
    append(std::move(digitizer));

    // Level symbology: the element header without display header, then 64 symbology words.
    std::vector<uint8_t> symbology(156, 0);
    PutShort(symbology, 0, static_cast<uint16_t>((kTypeLevelSymbology << 8) | 8));
    PutShort(symbology, 2, 76);
    append(std::move(symbology));
}

std::vector<uint8_t> DgnV7Writer::startElement(int type, int level, size_t words,
                                               const std::vector<Point>& rangePoints,
                                               Symbology symbology) {
    if (words < kDisplayHeaderWords || words > 65537) throw std::invalid_argument("element size");
    std::vector<uint8_t> element(words * 2, 0);
    PutShort(element, 0, static_cast<uint16_t>(((type & 0x7F) << 8) | (level & 0x3F)));
    PutShort(element, 2, static_cast<uint16_t>(words - 2));
    if (!rangePoints.empty()) {
        Point low = rangePoints.front(), high = rangePoints.front();
        for (const Point& p : rangePoints) {
            low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
            high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        }
        if (!m_threeD) low.z = high.z = 0;
        const int32_t range[6] = {low.x, low.y, low.z, high.x, high.y, high.z};
        for (int i = 0; i < 6; ++i) PutRangeLong(element, 4 + 4 * i, range[i]);
    }
    // No attribute data: the index points past the end of the element.
    PutShort(element, 30, static_cast<uint16_t>(words - 17));
    PutShort(element, 34,
             static_cast<uint16_t>((symbology.style & 0x7) | ((symbology.weight & 0x1F) << 3) |
                                   (symbology.color << 8)));
    return element;
}

void DgnV7Writer::putPoint(std::vector<uint8_t>& element, size_t byteOffset, Point point) const {
    PutLong(element, byteOffset, point.x);
    PutLong(element, byteOffset + 4, point.y);
    if (m_threeD) PutLong(element, byteOffset + 8, point.z);
}

// 2D files store an angle; 3D files a quaternion for the turn about Z, scalar part first.
void DgnV7Writer::putOrientation(std::vector<uint8_t>& element, size_t byteOffset,
                                 double degrees) const {
    if (!m_threeD) {
        PutLong(element, byteOffset, AngleLong(degrees));
        return;
    }
    const double half = degrees * kPi / 360.0;
    const double unit = 2147483648.0;
    PutLong(element, byteOffset, ToLong(std::cos(half) * unit));
    PutLong(element, byteOffset + 4, 0);
    PutLong(element, byteOffset + 8, 0);
    PutLong(element, byteOffset + 12, ToLong(std::sin(half) * unit));
}

uint32_t DgnV7Writer::append(std::vector<uint8_t> element, bool complexHeader) {
    if (!m_open.empty()) {
        element.at(0) = static_cast<uint8_t>(element.at(0) | kComplexBit);
        ++m_open.back().directComponents;
    }
    const auto wordOffset = static_cast<uint32_t>(m_bytes.size() / 2);
    const auto words = static_cast<uint32_t>(element.size() / 2);
    m_bytes.insert(m_bytes.end(), element.begin(), element.end());
    m_written.push_back({wordOffset, words, complexHeader, wordOffset + words});
    return wordOffset;
}

uint32_t DgnV7Writer::addLine(int level, Point start, Point end, Symbology symbology) {
    const size_t pointWords = m_threeD ? 6 : 4;
    auto element = startElement(kTypeLine, level, kDisplayHeaderWords + 2 * pointWords,
                                {start, end}, symbology);
    putPoint(element, 36, start);
    putPoint(element, 36 + 2 * pointWords, end);
    return append(std::move(element));
}

uint32_t DgnV7Writer::addLineString(int level, const std::vector<Point>& vertices) {
    const size_t pointWords = m_threeD ? 6 : 4;
    auto element =
        startElement(kTypeLineString, level, kDisplayHeaderWords + 1 + vertices.size() * pointWords,
                     vertices, {});
    PutShort(element, 36, static_cast<uint16_t>(vertices.size()));
    for (size_t i = 0; i < vertices.size(); ++i)
        putPoint(element, 38 + 2 * pointWords * i, vertices[i]);
    return append(std::move(element));
}

uint32_t DgnV7Writer::addShape(int level, std::vector<Point> vertices) {
    if (!vertices.empty()) {
        const Point& first = vertices.front();
        const Point& last = vertices.back();
        if (first.x != last.x || first.y != last.y || (m_threeD && first.z != last.z))
            vertices.push_back(first);
    }
    const uint32_t offset = addLineString(level, vertices);
    patchWord(offset, static_cast<uint16_t>((word(offset) & 0x80FF) | (kTypeShape << 8)));
    return offset;
}

uint32_t DgnV7Writer::addCurve(int level, const std::vector<Point>& points) {
    const uint32_t offset = addLineString(level, points);
    patchWord(offset, static_cast<uint16_t>((word(offset) & 0x80FF) | (kTypeCurve << 8)));
    return offset;
}

uint32_t DgnV7Writer::addEllipse(int level, double centerX, double centerY, double centerZ,
                                 double primary, double secondary, double rotationDegrees) {
    const size_t words = m_threeD ? 46 : 36;
    auto element = startElement(kTypeEllipse, level, words,
                                ConicRange(centerX, centerY, centerZ, primary, secondary), {});
    PutVaxDouble(element, 36, primary);
    PutVaxDouble(element, 44, secondary);
    putOrientation(element, 52, rotationDegrees);
    const size_t origin = m_threeD ? 68 : 56;
    PutVaxDouble(element, origin, centerX);
    PutVaxDouble(element, origin + 8, centerY);
    if (m_threeD) PutVaxDouble(element, origin + 16, centerZ);
    return append(std::move(element));
}

uint32_t DgnV7Writer::addArc(int level, double centerX, double centerY, double centerZ,
                             double primary, double secondary, double rotationDegrees,
                             double startDegrees, double sweepDegrees) {
    const size_t words = m_threeD ? 50 : 40;
    auto element = startElement(kTypeArc, level, words,
                                ConicRange(centerX, centerY, centerZ, primary, secondary), {});
    PutLong(element, 36, AngleLong(startDegrees));
    PutLong(element, 40, SweepLong(sweepDegrees));
    PutVaxDouble(element, 44, primary);
    PutVaxDouble(element, 52, secondary);
    putOrientation(element, 60, rotationDegrees);
    const size_t origin = m_threeD ? 76 : 64;
    PutVaxDouble(element, origin, centerX);
    PutVaxDouble(element, origin + 8, centerY);
    if (m_threeD) PutVaxDouble(element, origin + 16, centerZ);
    return append(std::move(element));
}

uint32_t DgnV7Writer::addText(int level, Point origin, const std::string& text, double heightUor,
                              double rotationDegrees, uint8_t font) {
    if (text.size() > 255) throw std::invalid_argument("DGN text longer than 255 characters");
    // Multipliers count thousandths of the basic character cell of 6 UOR.
    const int32_t multiplier = ToLong(heightUor * 1000.0 / 6.0);
    const size_t textStart = m_threeD ? 76 : 60;
    const size_t padded = text.size() + (text.size() % 2);
    const int32_t width = ToLong(heightUor * static_cast<double>(text.size()));
    auto element =
        startElement(kTypeText, level, (textStart + padded) / 2,
                     {origin, {origin.x + width, origin.y + ToLong(heightUor), origin.z}}, {});
    element[36] = font;
    element[37] = 2;  // left/bottom: the stored origin is the text's lower left corner
    PutLong(element, 38, multiplier);
    PutLong(element, 42, multiplier);
    putOrientation(element, 46, rotationDegrees);
    putPoint(element, m_threeD ? 62 : 50, origin);
    element[textStart - 2] = static_cast<uint8_t>(text.size());
    element[textStart - 1] = 0;
    PutText(element, textStart, text, padded);
    return append(std::move(element));
}

uint32_t DgnV7Writer::beginComplexString(int type, int level) {
    auto element = startElement(type, level, 24, {}, {});
    const uint32_t offset = append(std::move(element), true);
    m_open.push_back({m_written.size() - 1, type, 0});
    return offset;
}

uint32_t DgnV7Writer::beginComplexChain(int level) {
    return beginComplexString(kTypeComplexChain, level);
}

uint32_t DgnV7Writer::beginComplexShape(int level) {
    return beginComplexString(kTypeComplexShape, level);
}

uint32_t DgnV7Writer::beginTextNode(int level, Point origin, double heightUor,
                                    double rotationDegrees) {
    const size_t words = m_threeD ? 43 : 35;
    auto element = startElement(kTypeTextNode, level, words, {origin}, {});
    const int32_t multiplier = ToLong(heightUor * 1000.0 / 6.0);
    PutShort(element, 40, 1);  // node number
    element[42] = 255;         // longest line allowed
    element[45] = 2;
    PutLong(element, 46, ToLong(heightUor * 1.5));  // line spacing
    PutLong(element, 50, multiplier);
    PutLong(element, 54, multiplier);
    putOrientation(element, 58, rotationDegrees);
    putPoint(element, m_threeD ? 74 : 62, origin);
    const uint32_t offset = append(std::move(element), true);
    m_open.push_back({m_written.size() - 1, kTypeTextNode, 0});
    return offset;
}

uint32_t DgnV7Writer::beginCell(const std::string& name, Point origin, int level, double scale,
                                double rotationDegrees) {
    const size_t words = m_threeD ? 62 : 46;
    auto element = startElement(kTypeCell, level, words, {origin}, {});
    PutLong(element, 38, static_cast<int32_t>(radix50(name)));
    PutShort(element, 42, 0);
    for (int i = 0; i < 4; ++i) PutShort(element, 44 + 2 * i, 0);
    const double radians = rotationDegrees * kPi / 180.0;
    const double c = std::cos(radians) * scale, s = std::sin(radians) * scale;
    if (m_threeD) {
        const double matrix[9] = {c, s, 0, -s, c, 0, 0, 0, scale};
        for (int i = 0; i < 9; ++i)
            PutLong(element, 76 + 4 * i, ToLong(matrix[i] * kCellMatrixUnit));
        putPoint(element, 112, origin);
    } else {
        const double matrix[4] = {c, s, -s, c};
        for (int i = 0; i < 4; ++i)
            PutLong(element, 68 + 4 * i, ToLong(matrix[i] * kCellMatrixUnit));
        putPoint(element, 84, origin);
    }
    const uint32_t offset = append(std::move(element), true);
    m_open.push_back({m_written.size() - 1, kTypeCell, 0});
    return offset;
}

void DgnV7Writer::endComplex() {
    if (m_open.empty()) throw std::logic_error("endComplex without an open complex element");
    const Open open = m_open.back();
    m_open.pop_back();
    Written& header = m_written[open.written];
    const auto end = static_cast<uint32_t>(m_bytes.size() / 2);
    header.extentEnd = end;
    const size_t byte = size_t{header.wordOffset} * 2;
    // Words after the length word in the header, plus every component word.
    const uint32_t total = (header.words - 19) + (end - header.wordOffset - header.words);
    PutShort(m_bytes, byte + 36, static_cast<uint16_t>(std::min<uint32_t>(total, 0xFFFF)));
    if (open.type == kTypeComplexChain || open.type == kTypeComplexShape ||
        open.type == kTypeTextNode) {
        PutShort(m_bytes, byte + 38, static_cast<uint16_t>(open.directComponents));
    }
    // The header's range covers its components.
    bool any = false;
    int32_t range[6] = {0, 0, 0, 0, 0, 0};
    for (size_t i = open.written + 1; i < m_written.size(); ++i) {
        const size_t at = size_t{m_written[i].wordOffset} * 2;
        int32_t component[6];
        for (int k = 0; k < 6; ++k) {
            const size_t p = at + 4 + 4 * k;
            const uint32_t bits = (uint32_t{m_bytes[p]} << 16) | (uint32_t{m_bytes[p + 1]} << 24) |
                                  uint32_t{m_bytes[p + 2]} | (uint32_t{m_bytes[p + 3]} << 8);
            component[k] = static_cast<int32_t>(bits ^ 0x80000000u);
        }
        for (int k = 0; k < 3; ++k) {
            range[k] = any ? std::min(range[k], component[k]) : component[k];
            range[k + 3] = any ? std::max(range[k + 3], component[k + 3]) : component[k + 3];
        }
        any = true;
    }
    if (any) {
        for (int k = 0; k < 6; ++k) PutRangeLong(m_bytes, byte + 4 + 4 * k, range[k]);
        if (open.type == kTypeCell) {
            if (m_threeD) {
                for (int k = 0; k < 6; ++k) PutLong(m_bytes, byte + 52 + 4 * k, range[k]);
            } else {
                PutLong(m_bytes, byte + 52, range[0]);
                PutLong(m_bytes, byte + 56, range[1]);
                PutLong(m_bytes, byte + 60, range[3]);
                PutLong(m_bytes, byte + 64, range[4]);
            }
        }
    }
}

uint32_t DgnV7Writer::addAttachment(const Attachment& attachment) {
    auto element = startElement(attachment.asApplicationElement ? kTypeApplication : kTypeGroupData,
                                attachment.asApplicationElement ? 5 : 9, 247, {}, {});
    if (attachment.fileName.size() > 65) throw std::invalid_argument("attached file name too long");
    PutShort(element, 36, static_cast<uint16_t>(attachment.fileName.size()));
    PutText(element, 38, attachment.fileName, 65);
    element[103] = attachment.fileNumber;
    PutShort(element, 104, 0x0004);                           // the slot is in use
    PutShort(element, 106, 0x0002);                           // displayed
    for (size_t i = 0; i < 64; ++i) element[124 + i] = 0xFF;  // every level on
    const Point& ref = attachment.referenceOrigin;
    const int32_t refOrigin[3] = {ref.x, ref.y, ref.z};
    for (int i = 0; i < 3; ++i) PutLong(element, 188 + 4 * i, refOrigin[i]);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            PutVaxDouble(element, 200 + 8 * (3 * row + column),
                         row == column ? attachment.scale : 0);
        }
    }
    PutVaxDouble(element, 272, 1.0);
    const Point& master = attachment.masterOrigin;
    const int32_t masterOrigin[3] = {master.x, master.y, master.z};
    for (int i = 0; i < 3; ++i) PutLong(element, 280 + 4 * i, masterOrigin[i]);
    PutShort(element, 292, static_cast<uint16_t>(attachment.logicalName.size()));
    PutText(element, 294, attachment.logicalName, 22);
    PutShort(element, 316, static_cast<uint16_t>(attachment.description.size()));
    PutText(element, 318, attachment.description, 42);
    PutShort(element, 492, 0);  // no clipping polygon
    return append(std::move(element));
}

uint32_t DgnV7Writer::addRaw(const std::vector<uint8_t>& bytes) {
    const auto wordOffset = static_cast<uint32_t>(m_bytes.size() / 2);
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    if (m_bytes.size() % 2 != 0) m_bytes.push_back(0);
    const auto words = static_cast<uint32_t>(m_bytes.size() / 2) - wordOffset;
    m_written.push_back({wordOffset, words, false, wordOffset + words});
    return wordOffset;
}

void DgnV7Writer::markDeleted(uint32_t wordOffset) {
    for (const Written& element : m_written) {
        if (element.wordOffset != wordOffset) continue;
        for (uint32_t at = element.wordOffset; at < element.extentEnd;) {
            patchWord(at, static_cast<uint16_t>(word(at) | kDeletedBit));
            const auto next = std::find_if(m_written.begin(), m_written.end(),
                                           [&](const Written& w) { return w.wordOffset == at; });
            if (next == m_written.end()) break;
            at += next->words;
        }
        return;
    }
    throw std::invalid_argument("no element starts at that word");
}

void DgnV7Writer::setWordsToFollow(uint32_t wordOffset, uint16_t words) {
    patchWord(wordOffset + 1, words);
}

void DgnV7Writer::patchWord(uint32_t wordOffset, uint16_t value) {
    PutShort(m_bytes, size_t{wordOffset} * 2, value);
}

uint16_t DgnV7Writer::word(uint32_t wordOffset) const {
    const size_t at = size_t{wordOffset} * 2;
    return static_cast<uint16_t>(m_bytes.at(at) | (m_bytes.at(at + 1) << 8));
}

std::vector<uint8_t> DgnV7Writer::bytes() const {
    std::vector<uint8_t> file = m_bytes;
    file.push_back(0xFF);
    file.push_back(0xFF);
    return file;
}

bool DgnV7Writer::save(const std::string& path) const {
    const std::vector<uint8_t> file = bytes();
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(file.data()),
              static_cast<std::streamsize>(file.size()));
    return static_cast<bool>(out);
}

uint32_t DgnV7Writer::radix50(const std::string& name) {
    static constexpr char kAlphabet[] = " ABCDEFGHIJKLMNOPQRSTUVWXYZ$._0123456789";
    std::string padded = name;
    padded.resize(6, ' ');
    uint32_t words[2] = {0, 0};
    for (int i = 0; i < 6; ++i) {
        const char* found = std::strchr(kAlphabet, padded[i]);
        if (found == nullptr || padded[i] == '\0' || padded[i] == '_')
            throw std::invalid_argument("not a Radix-50 name: " + name);
        words[i / 3] = words[i / 3] * 40 + static_cast<uint32_t>(found - kAlphabet);
    }
    // As a DGN long: the first word is the high half.
    return (words[0] << 16) | words[1];
}

}  // namespace DgnWriter
