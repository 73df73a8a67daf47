// Field positions of the graphic elements, in bytes from the element's start; they differ
// between 2D files (points of two longs, rotation as one angle) and 3D files (points of three
// longs, rotation as a quaternion).
#include "modules/dgn/DgnV7Elements.h"

#include <cmath>
#include <numbers>

#include "modules/dgn/DgnV7Bytes.h"

namespace {

// Every graphic element starts with the element header and the display header.
constexpr size_t kBodyOffset = 36;
constexpr double kHundredthsOfSecondsPerDegree = 360000.0;
// Text sizes: the basic character cell is 6 UOR, multipliers count thousandths of it.
constexpr double kUorPerMultiplierUnit = 6.0 / 1000.0;
// Quaternion parts are fractions of 2^31.
constexpr double kQuaternionUnit = 2147483648.0;

bool ReadPoint(const DgnV7Bytes& bytes, size_t offset, bool is3d, DgnV7Point& point) {
    int32_t x = 0, y = 0, z = 0;
    if (!bytes.readLong(offset, x) || !bytes.readLong(offset + 4, y)) return false;
    if (is3d && !bytes.readLong(offset + 8, z)) return false;
    point = {static_cast<double>(x), static_cast<double>(y), static_cast<double>(z)};
    return true;
}

bool ReadDoublePoint(const DgnV7Bytes& bytes, size_t offset, bool is3d, DgnV7Point& point) {
    DgnV7Point read;
    if (!bytes.readDouble(offset, read.x) || !bytes.readDouble(offset + 8, read.y)) return false;
    if (is3d && !bytes.readDouble(offset + 16, read.z)) return false;
    point = read;
    return true;
}

double AngleRadians(int32_t stored) {
    return static_cast<double>(stored) / kHundredthsOfSecondsPerDegree * std::numbers::pi / 180.0;
}

DgnV7Axes AxesFromAngle(double radians) {
    const double c = std::cos(radians), s = std::sin(radians);
    return {{c, s, 0.0}, {-s, c, 0.0}};
}

// The quaternion's scalar part comes first, then the vector part; its rotation matrix's first
// two rows are the element's X and Y axes.
bool ReadQuaternionAxes(const DgnV7Bytes& bytes, size_t offset, DgnV7Axes& axes) {
    int32_t stored[4] = {0, 0, 0, 0};
    for (size_t i = 0; i < 4; ++i) {
        if (!bytes.readLong(offset + 4 * i, stored[i])) return false;
    }
    const double w = stored[0] / kQuaternionUnit, q1 = stored[1] / kQuaternionUnit,
                 q2 = stored[2] / kQuaternionUnit, q3 = stored[3] / kQuaternionUnit;
    const double norm = std::sqrt(w * w + q1 * q1 + q2 * q2 + q3 * q3);
    if (norm < 1e-9) {
        axes = {};
        return true;
    }
    const double q4 = w / norm, a = q1 / norm, b = q2 / norm, c = q3 / norm;
    axes.xAxis = {a * a - b * b - c * c + q4 * q4, 2 * (c * q4 + a * b), 2 * (a * c - b * q4)};
    axes.yAxis = {2 * (a * b - c * q4), -a * a + b * b - c * c + q4 * q4, 2 * (a * q4 + b * c)};
    return true;
}

bool ReadOrientation(const DgnV7Bytes& bytes, size_t offset, bool is3d, DgnV7Axes& axes) {
    if (is3d) return ReadQuaternionAxes(bytes, offset, axes);
    int32_t angle = 0;
    if (!bytes.readLong(offset, angle)) return false;
    axes = AxesFromAngle(AngleRadians(angle));
    return true;
}

}  // namespace

bool dgnDecodeLine(const DgnV7RawElement& element, bool is3d, DgnV7Line& line) {
    const DgnV7Bytes bytes(element.bytes);
    const size_t pointBytes = is3d ? 12 : 8;
    return ReadPoint(bytes, kBodyOffset, is3d, line.start) &&
           ReadPoint(bytes, kBodyOffset + pointBytes, is3d, line.end);
}

bool dgnDecodeVertices(const DgnV7RawElement& element, bool is3d, DgnV7Vertices& vertices) {
    const DgnV7Bytes bytes(element.bytes);
    uint16_t count = 0;
    if (!bytes.readShort(kBodyOffset, count) || count == 0) return false;
    const size_t pointBytes = is3d ? 12 : 8;
    const size_t first = kBodyOffset + 2;
    // The count is checked against the element before anything is allocated for it.
    if (!bytes.holds(first, size_t{count} * pointBytes)) return false;
    vertices.points.resize(count);
    for (size_t i = 0; i < count; ++i) {
        ReadPoint(bytes, first + i * pointBytes, is3d, vertices.points[i]);
    }
    return true;
}

bool dgnDecodeConic(const DgnV7RawElement& element, bool is3d, DgnV7Conic& conic) {
    const DgnV7Bytes bytes(element.bytes);
    DgnV7Conic read;
    size_t at = kBodyOffset;
    if (element.type == kDgnArc) {
        int32_t start = 0, sweep = 0;
        if (!bytes.readLong(at, start) || !bytes.readLong(at + 4, sweep)) return false;
        read.startRadians = AngleRadians(start);
        // The top bit gives the direction, the others the size; no size means a full turn.
        const int32_t size = static_cast<int32_t>(static_cast<uint32_t>(sweep) & 0x7FFFFFFFu);
        const double turn = size == 0 ? 2 * std::numbers::pi : AngleRadians(size);
        read.sweepRadians = (static_cast<uint32_t>(sweep) & 0x80000000u) != 0 ? -turn : turn;
        at += 8;
    } else if (element.type == kDgnEllipse) {
        read.closed = true;
        read.sweepRadians = 2 * std::numbers::pi;
    } else {
        return false;
    }
    if (!bytes.readDouble(at, read.primary) || !bytes.readDouble(at + 8, read.secondary))
        return false;
    at += 16;
    if (!ReadOrientation(bytes, at, is3d, read.axes)) return false;
    at += is3d ? 16 : 4;
    if (!ReadDoublePoint(bytes, at, is3d, read.center)) return false;
    if (!std::isfinite(read.primary) || !std::isfinite(read.secondary)) return false;
    conic = read;
    return true;
}

bool dgnDecodeText(const DgnV7RawElement& element, bool is3d, DgnV7Text& text) {
    const DgnV7Bytes bytes(element.bytes);
    DgnV7Text read;
    int32_t heightMultiplier = 0;
    if (!bytes.readByte(kBodyOffset, read.font) ||
        !bytes.readByte(kBodyOffset + 1, read.justification) ||
        !bytes.readLong(kBodyOffset + 6, heightMultiplier))
        return false;
    read.height = static_cast<double>(heightMultiplier) * kUorPerMultiplierUnit;
    const size_t orientation = kBodyOffset + 10;
    if (!ReadOrientation(bytes, orientation, is3d, read.axes)) return false;
    const size_t origin = orientation + (is3d ? 16 : 4);
    if (!ReadPoint(bytes, origin, is3d, read.origin)) return false;
    const size_t countAt = origin + (is3d ? 12 : 8);
    uint8_t count = 0;
    if (!bytes.readByte(countAt, count) || !bytes.holds(countAt + 2, count)) return false;
    for (size_t i = 0; i < count; ++i) {
        uint8_t unit = 0;
        bytes.readByte(countAt + 2 + i, unit);
        read.text.push_back(static_cast<char16_t>(unit));
    }
    text = std::move(read);
    return true;
}

bool dgnDecodeCellHeader(const DgnV7RawElement& element, bool is3d, DgnV7CellHeader& cell) {
    const DgnV7Bytes bytes(element.bytes);
    int32_t name = 0;
    if (!bytes.readLong(kBodyOffset + 2, name)) return false;
    // Name, class, levels, range low and high, the matrix, then the origin.
    const size_t origin = is3d ? 112 : 84;
    DgnV7CellHeader read;
    if (!ReadPoint(bytes, origin, is3d, read.origin)) return false;
    read.name = dgnRadix50Name(static_cast<uint32_t>(name));
    cell = std::move(read);
    return true;
}

wstring dgnRadix50Name(uint32_t stored) {
    static constexpr char16_t kAlphabet[] = u" ABCDEFGHIJKLMNOPQRSTUVWXYZ$._0123456789";
    wstring name;
    for (uint32_t word : {stored >> 16, stored & 0xFFFF}) {
        // A word beyond 39 * 1600 + 39 * 40 + 39 is no Radix-50 triple; its digits still read.
        const uint32_t digits[3] = {(word / 1600) % 40, (word / 40) % 40, word % 40};
        for (uint32_t digit : digits) name.push_back(kAlphabet[digit]);
    }
    while (!name.empty() && name.back() == u' ') name.pop_back();
    return name;
}
