// DgnV7Writer: builds DGN V7 design files in memory, for tests, fuzz seeds and sample projects.
//
//   DgnWriter::DgnV7Writer dgn(false);                 // a 2D file, 10 UOR per mm, 1000 mm per m
//   dgn.addLine(12, {0, 0}, {10000, 0});               // level 12, 1 m long
//   dgn.beginCell("DOOR", {5000, 0});
//   dgn.addLine(3, {5000, 0}, {5000, 9000});           // components in design coordinates
//   dgn.endComplex();
//   dgn.save("/tmp/plan.dgn");
//
// Coordinates are design-plane units of resolution (UOR). Every element written while a complex
// element (cell, chain, shape, text node) is open becomes one of its components; endComplex()
// then fills in the header's lengths, component count and range. The file always starts with
// the design file header (a type 9 control block carrying the units, a type 8 and a type 10)
// and bytes() ends it with the end-of-design word.
//
// Nothing here checks that what is written makes sense: tests use addRaw, patchWord and
// setWordsToFollow to write files that lie on purpose.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace DgnWriter {

/// A point of the design plane in UOR; z is ignored in 2D files.
struct Point {
    int32_t x = 0;
    int32_t y = 0;
    int32_t z = 0;
};

/// The units and origin the control block records.
struct Units {
    int32_t uorPerSubunit = 10;
    int32_t subunitsPerMaster = 1000;
    /// Two characters each; shorter names are padded with spaces.
    std::string masterName = "m";
    std::string subunitName = "mm";
    /// The global origin, in UOR.
    double originX = 0.0;
    double originY = 0.0;
    double originZ = 0.0;
};

/// Colour, weight and line style of a graphic element.
struct Symbology {
    uint8_t color = 0;
    uint8_t weight = 0;
    uint8_t style = 0;
};

/// What a reference file attachment holds.
struct Attachment {
    /// Written as type 66 on level 5 instead of type 5 on level 9.
    bool asApplicationElement = false;
    /// The attached file's name; at most 65 characters.
    std::string fileName;
    uint8_t fileNumber = 1;
    /// At most 22 and 42 characters.
    std::string logicalName;
    std::string description;
    Point masterOrigin;
    Point referenceOrigin;
    double scale = 1.0;
};

class DgnV7Writer {
  public:
    explicit DgnV7Writer(bool threeD, const Units& units = {});

    bool is3d() const { return m_threeD; }

    // Each call returns the word offset of the element it starts, which is how the file refers
    // to it (markDeleted, patchWord) and how readers identify attachments.

    uint32_t addLine(int level, Point start, Point end, Symbology symbology = {});
    uint32_t addLineString(int level, const std::vector<Point>& vertices);
    /// A closing vertex equal to the first is added when `vertices` lacks one.
    uint32_t addShape(int level, std::vector<Point> vertices);
    /// All points as stored, the two leading and two trailing tangent points included.
    uint32_t addCurve(int level, const std::vector<Point>& points);
    /// Axes in UOR, angles in degrees counter-clockwise from the X axis.
    uint32_t addEllipse(int level, double centerX, double centerY, double centerZ, double primary,
                        double secondary, double rotationDegrees);
    /// A negative sweep runs clockwise.
    uint32_t addArc(int level, double centerX, double centerY, double centerZ, double primary,
                    double secondary, double rotationDegrees, double startDegrees,
                    double sweepDegrees);
    /// One line of text whose lower left corner is `origin`; `heightUor` is the character
    /// height; characters are bytes as the file stores them.
    uint32_t addText(int level, Point origin, const std::string& text, double heightUor,
                     double rotationDegrees = 0.0, uint8_t font = 0);

    uint32_t beginComplexChain(int level);
    uint32_t beginComplexShape(int level);
    uint32_t beginTextNode(int level, Point origin, double heightUor, double rotationDegrees = 0.0);
    /// A cell named with up to six characters of the Radix-50 alphabet (A-Z, 0-9, '$', '.',
    /// space); `scale` and `rotationDegrees` go into its transformation matrix only, the
    /// components being written in design coordinates by the caller.
    uint32_t beginCell(const std::string& name, Point origin, int level = 0, double scale = 1.0,
                       double rotationDegrees = 0.0);
    /// Completes the innermost open complex element.
    void endComplex();
    size_t openComplexDepth() const { return m_open.size(); }

    /// A reference file attachment element.
    uint32_t addAttachment(const Attachment& attachment);

    /// Appends bytes as they are (an odd count gets a zero byte); no header is checked.
    uint32_t addRaw(const std::vector<uint8_t>& bytes);
    /// Sets the deleted bit of the element at `wordOffset` and, for a complex header, of its
    /// components.
    void markDeleted(uint32_t wordOffset);
    void setWordsToFollow(uint32_t wordOffset, uint16_t words);
    void patchWord(uint32_t wordOffset, uint16_t value);
    uint16_t word(uint32_t wordOffset) const;

    /// The file: everything written so far and the end-of-design word. Complex elements still
    /// open are left as they are.
    std::vector<uint8_t> bytes() const;
    /// Writes bytes() to `path`; false when the file cannot be written.
    bool save(const std::string& path) const;

    /// Converts a Radix-50 name as cells store it (first three characters in the first word).
    static uint32_t radix50(const std::string& name);

  private:
    struct Written {
        uint32_t wordOffset;
        uint32_t words;
        bool complexHeader;
        uint32_t extentEnd;  // word offset after the last component (headers only)
    };
    struct Open {
        size_t written;  // index into m_written
        int type;
        uint32_t directComponents;
    };

    uint32_t append(std::vector<uint8_t> element, bool complexHeader = false);
    std::vector<uint8_t> startElement(int type, int level, size_t words,
                                      const std::vector<Point>& rangePoints, Symbology symbology);
    void putPoint(std::vector<uint8_t>& element, size_t byteOffset, Point point) const;
    void putOrientation(std::vector<uint8_t>& element, size_t byteOffset, double degrees) const;
    uint32_t beginComplexString(int type, int level);
    void writeHeaderElements(const Units& units);

    bool m_threeD;
    std::vector<uint8_t> m_bytes;
    std::vector<Written> m_written;
    std::vector<Open> m_open;
};

}  // namespace DgnWriter
