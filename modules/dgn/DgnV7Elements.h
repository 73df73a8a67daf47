// Decoded DGN V7 elements: the geometry of lines, line strings, shapes, curves, ellipses, arcs
// and texts, and what cell headers say of themselves, in the design file's units of resolution.
// Each decoder answers false for an element too short for what it claims (a vertex count
// beyond its words, characters past its end); the output is then left in no particular state.
//
//   DgnV7Line line;
//   if (raw.type == kDgnLine && dgnDecodeLine(raw, document.header().is3d, line)) use(line.end);
#pragma once

#include <cstdint>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include "modules/dgn/DgnV7Reader.h"

/// A point or direction in UOR; z is 0 in 2D files.
struct DgnV7Point {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

/// Where an element's own X and Y axes point in the design plane (unit vectors).
struct DgnV7Axes {
    DgnV7Point xAxis{1.0, 0.0, 0.0};
    DgnV7Point yAxis{0.0, 1.0, 0.0};
};

struct DgnV7Line {
    DgnV7Point start;
    DgnV7Point end;
};

/// The vertices of a line string, shape or curve, as stored (a curve's tangent points and a
/// shape's closing vertex included).
struct DgnV7Vertices {
    std::vector<DgnV7Point> points;
};

/// An ellipse or an elliptical arc: points at center + primary cos(t) xAxis + secondary sin(t)
/// yAxis, for t from start over sweep (negative sweeps run clockwise).
struct DgnV7Conic {
    DgnV7Point center;
    double primary = 0.0;
    double secondary = 0.0;
    DgnV7Axes axes;
    double startRadians = 0.0;
    double sweepRadians = 0.0;
    /// True for an ellipse element (type 15); an arc whose sweep is 0 has a full turn.
    bool closed = false;
};

struct DgnV7Text {
    /// The lower left corner of the text.
    DgnV7Point origin;
    /// Character height in UOR.
    double height = 0.0;
    DgnV7Axes axes;
    /// The stored characters, one code unit per byte (Latin-1).
    wstring text;
    uint8_t font = 0;
    uint8_t justification = 0;
};

struct DgnV7CellHeader {
    /// The Radix-50 name, trailing blanks removed; may be empty.
    wstring name;
    DgnV7Point origin;
};

bool dgnDecodeLine(const DgnV7RawElement& element, bool is3d, DgnV7Line& line);
/// For line strings, shapes, curves: at least one vertex, all of them inside the element.
bool dgnDecodeVertices(const DgnV7RawElement& element, bool is3d, DgnV7Vertices& vertices);
/// For ellipses (type 15) and arcs (type 16). Axes that are not finite are refused.
bool dgnDecodeConic(const DgnV7RawElement& element, bool is3d, DgnV7Conic& conic);
bool dgnDecodeText(const DgnV7RawElement& element, bool is3d, DgnV7Text& text);
bool dgnDecodeCellHeader(const DgnV7RawElement& element, bool is3d, DgnV7CellHeader& cell);

/// The six characters of a Radix-50 name stored as a DGN long (first three in the high word),
/// trailing blanks removed; code 29, which has no agreed character, reads as '_'.
wstring dgnRadix50Name(uint32_t stored);
