// From design file elements to entities: one pass over the elements, complex ones taking their
// components from the same stream, then the reference attachments.
#include "modules/dgn/DgnV7Translator.h"

#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <unordered_map>
#include <vector>

#include <lodeqdb/lodeutil/Path.h>
#include "modules/dgn/DgnSettings.h"
#include "modules/dgn/DgnUnderlayAttachments.h"
#include "modules/dgn/DgnV7Attachments.h"
#include "modules/dgn/DgnV7Elements.h"
#include "modules/dgn/DgnV7Reader.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbPolyline.h>
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>
#include <lodeqdb/toolkit/db/PwDbText.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>

using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

namespace {

// Cells within cells beyond this depth are skipped: crafted files can nest without end.
constexpr size_t kMaxNesting = 32;
// Curves drawn as polylines get this many segments per full turn.
constexpr double kSegmentsPerTurn = 72.0;
constexpr double kFullTurn = 2.0 * std::numbers::pi;

// Where entities go: a block, and the drawing point that is that block's origin.
struct Place {
    PwDbObjectId block;
    PwGePoint3d base;
};

wstring Decimal(uint64_t number) {
    const std::string digits = std::to_string(number);
    return wstring(digits.begin(), digits.end());
}

double NormalizedAngle(double radians) {
    double angle = std::fmod(radians, kFullTurn);
    if (angle < 0) angle += kFullTurn;
    return angle;
}

// Points in UOR closer than this are one point: where a stroked arc meets a line, rounding
// leaves them a hair apart.
constexpr double kSamePointUor = 1e-6;

bool SamePoint(const DgnV7Point& a, const DgnV7Point& b) {
    return std::fabs(a.x - b.x) <= kSamePointUor && std::fabs(a.y - b.y) <= kSamePointUor &&
           std::fabs(a.z - b.z) <= kSamePointUor;
}

bool Finite(const PwGePoint3d& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// Points along an ellipse or arc, in UOR: both ends of an arc, no repeated point for a closed
// curve.
std::vector<DgnV7Point> StrokeConic(const DgnV7Conic& conic, bool& closed) {
    const double sweep = conic.closed ? kFullTurn : conic.sweepRadians;
    closed = conic.closed || std::fabs(sweep) >= kFullTurn;
    const int segments = static_cast<int>(
        std::clamp(std::ceil(kSegmentsPerTurn * std::fabs(sweep) / kFullTurn), 8.0, 360.0));
    const int count = closed ? segments : segments + 1;
    std::vector<DgnV7Point> points;
    points.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double t = conic.startRadians + sweep * i / segments;
        const double a = conic.primary * std::cos(t), b = conic.secondary * std::sin(t);
        const DgnV7Point& u = conic.axes.xAxis;
        const DgnV7Point& v = conic.axes.yAxis;
        points.push_back({conic.center.x + a * u.x + b * v.x, conic.center.y + a * u.y + b * v.y,
                          conic.center.z + a * u.z + b * v.z});
    }
    return points;
}

class Translator {
  public:
    Translator(const DgnV7DesignFile& document, const DgnTranslation& translation,
               PwDbDatabase& target, DgnConvertReport& report)
        : m_document(document),
          m_is3d(document.header().is3d),
          m_translation(translation),
          m_target(target),
          m_report(report) {
        const DgnV7Units& units = document.header().units;
        m_scale = translation.masterUnits ? 1.0 / units.uorPerMaster() : 1.0;
        m_origin = {units.originX, units.originY, m_is3d ? units.originZ : 0.0};
    }

    ErrorStatus run() {
        const Place top{m_translation.targetBlock.isNull() ? m_target.modelSpaceId()
                                                           : m_translation.targetBlock,
                        PwGePoint3d()};
        DgnV7ElementStream stream(m_document.bytes());
        DgnV7RawElement element;
        while (stream.next(element)) {
            if (ErrorStatus status = translate(element, stream, top, 0, SIZE_MAX)) return status;
        }
        if (stream.end() == DgnV7StreamEnd::Truncated) {
            m_report.addSkipped(kPwDbDgnUnreadableBytes, static_cast<uint32_t>(std::min<size_t>(
                                                             stream.unreadBytes(), UINT32_MAX)));
        }
        return attachments(top);
    }

  private:
    ErrorStatus translate(const DgnV7RawElement& element, DgnV7ElementStream& stream,
                          const Place& place, size_t depth, size_t limit) {
        if (element.deleted) {
            skipComponents(element, stream, limit);
            return StatusOk;
        }
        if (depth > kMaxNesting) return skip(element, stream, limit);
        switch (element.type) {
            case kDgnDigitizerSetup:
            case kDgnControlBlock:
            case kDgnLevelSymbology:
                return StatusOk;
            case kDgnLine:
                return line(element, place);
            case kDgnLineString:
            case kDgnShape:
            case kDgnCurve:
                return vertices(element, place);
            case kDgnEllipse:
            case kDgnArc:
                return conic(element, place);
            case kDgnText:
                return text(element, place);
            case kDgnTextNode:
                return textNode(element, stream, place, depth, limit);
            case kDgnComplexChain:
            case kDgnComplexShape:
                return chain(element, stream, place, limit);
            case kDgnCellHeader:
                return cell(element, stream, place, depth, limit);
            default:
                // Attachments become underlays after the elements, in attachments().
                if (dgnIsAttachmentElement(element)) return StatusOk;
                return skip(element, stream, limit);
        }
    }

    ErrorStatus skip(const DgnV7RawElement& element, DgnV7ElementStream& stream, size_t limit) {
        m_report.addSkipped(element.type);
        skipComponents(element, stream, limit);
        return StatusOk;
    }

    void skipComponents(const DgnV7RawElement& element, DgnV7ElementStream& stream, size_t limit) {
        size_t words = 0, count = 0;
        if (dgnComplexExtent(element, words, count))
            DgnV7Components(stream, words, count, limit).skipRest();
    }

    // --- Primitive elements ---------------------------------------------------------------

    ErrorStatus line(const DgnV7RawElement& element, const Place& place) {
        DgnV7Line decoded;
        if (!dgnDecodeLine(element, m_is3d, decoded)) return skipped(element.type);
        auto* entity = new PwDbLine;
        if (entity->setStartPoint(toDrawing(decoded.start, place)) != StatusOk ||
            entity->setEndPoint(toDrawing(decoded.end, place)) != StatusOk) {
            delete entity;
            return skipped(element.type);
        }
        return add(place, element.level, entity, element.type);
    }

    ErrorStatus vertices(const DgnV7RawElement& element, const Place& place) {
        DgnV7Vertices decoded;
        if (!dgnDecodeVertices(element, m_is3d, decoded)) return skipped(element.type);
        std::vector<DgnV7Point>& points = decoded.points;
        bool closed = false;
        if (element.type == kDgnShape) {
            closed = true;
            if (points.size() > 2 && SamePoint(points.front(), points.back())) points.pop_back();
        } else if (element.type == kDgnCurve) {
            // The two first and two last points only shape the ends; the curve passes through
            // the others.
            if (points.size() < 6) return skipped(element.type);
            points = std::vector<DgnV7Point>(points.begin() + 2, points.end() - 2);
        }
        return polyline(place, element.level, points, closed, element.type);
    }

    ErrorStatus conic(const DgnV7RawElement& element, const Place& place) {
        DgnV7Conic decoded;
        if (!dgnDecodeConic(element, m_is3d, decoded)) return skipped(element.type);
        const double a = std::fabs(decoded.primary) * m_scale;
        const double b = std::fabs(decoded.secondary) * m_scale;
        const PwGePoint3d center = toDrawing(decoded.center, place);
        if (!(a > 0) || !(b > 0) || !std::isfinite(a) || !std::isfinite(b) || !Finite(center))
            return skipped(element.type);
        const DgnV7Point& u = decoded.axes.xAxis;
        const DgnV7Point& v = decoded.axes.yAxis;
        const bool flat = std::fabs(u.z) < 1e-9 && std::fabs(v.z) < 1e-9;
        const bool round = std::fabs(a - b) <= 1e-9 * std::max(a, b);
        const double sweep = decoded.closed ? kFullTurn : decoded.sweepRadians;
        if (flat && round) {
            if (std::fabs(sweep) >= kFullTurn) {
                auto* circle = new PwDbCircle;
                circle->setCenter(center);
                circle->setRadius(a);
                return add(place, element.level, circle, element.type);
            }
            // Angles in the plane; a mirrored frame (Y axis clockwise of X) turns the other way.
            const double axis = std::atan2(u.y, u.x);
            const double turn = u.x * v.y - u.y * v.x >= 0 ? 1.0 : -1.0;
            const double first = axis + turn * decoded.startRadians;
            const double last = axis + turn * (decoded.startRadians + sweep);
            const bool counterClockwise = turn * sweep >= 0;
            auto* arc = new PwDbArc;
            arc->setCenter(center);
            arc->setRadius(a);
            arc->setStartAngle(NormalizedAngle(counterClockwise ? first : last));
            arc->setEndAngle(NormalizedAngle(counterClockwise ? last : first));
            return add(place, element.level, arc, element.type);
        }
        bool closed = false;
        const std::vector<DgnV7Point> points = StrokeConic(decoded, closed);
        return polyline(place, element.level, points, closed, element.type);
    }

    ErrorStatus text(const DgnV7RawElement& element, const Place& place) {
        DgnV7Text decoded;
        if (!dgnDecodeText(element, m_is3d, decoded)) return skipped(element.type);
        auto* entity = new PwDbText;
        const DgnV7Point& u = decoded.axes.xAxis;
        if (entity->setPosition(toDrawing(decoded.origin, place)) != StatusOk ||
            entity->setHeight(decoded.height * m_scale) != StatusOk ||
            entity->setRotation(std::atan2(u.y, u.x)) != StatusOk ||
            entity->setTextString(decoded.text.c_str()) != StatusOk) {
            delete entity;
            return skipped(element.type);
        }
        return add(place, element.level, entity, element.type);
    }

    // --- Complex elements -----------------------------------------------------------------

    ErrorStatus textNode(const DgnV7RawElement& element, DgnV7ElementStream& stream,
                         const Place& place, size_t depth, size_t limit) {
        size_t words = 0, count = 0;
        if (!dgnComplexExtent(element, words, count)) return skipped(element.type);
        // The node itself makes nothing: its texts do.
        DgnV7Components components(stream, words, count, limit);
        return translateComponents(components, stream, place, depth);
    }

    // A chain's or complex shape's components, joined into one polyline.
    ErrorStatus chain(const DgnV7RawElement& element, DgnV7ElementStream& stream,
                      const Place& place, size_t limit) {
        size_t words = 0, count = 0;
        if (!dgnComplexExtent(element, words, count)) return skipped(element.type);
        DgnV7Components components(stream, words, count, limit);
        std::vector<DgnV7Point> points;
        DgnV7RawElement component;
        while (components.next(component)) {
            if (component.deleted) continue;
            std::vector<DgnV7Point> part;
            if (!componentPoints(component, part)) {
                m_report.addSkipped(component.type);
                continue;
            }
            size_t first = 0;
            if (!points.empty() && !part.empty() && SamePoint(points.back(), part.front()))
                first = 1;
            points.insert(points.end(), part.begin() + static_cast<std::ptrdiff_t>(first),
                          part.end());
        }
        const bool closed = element.type == kDgnComplexShape;
        if (closed && points.size() > 2 && SamePoint(points.front(), points.back()))
            points.pop_back();
        return polyline(place, element.level, points, closed, element.type);
    }

    bool componentPoints(const DgnV7RawElement& component, std::vector<DgnV7Point>& points) {
        switch (component.type) {
            case kDgnLine: {
                DgnV7Line decoded;
                if (!dgnDecodeLine(component, m_is3d, decoded)) return false;
                points = {decoded.start, decoded.end};
                return true;
            }
            case kDgnLineString:
            case kDgnShape: {
                DgnV7Vertices decoded;
                if (!dgnDecodeVertices(component, m_is3d, decoded)) return false;
                points = std::move(decoded.points);
                return true;
            }
            case kDgnCurve: {
                DgnV7Vertices decoded;
                if (!dgnDecodeVertices(component, m_is3d, decoded) || decoded.points.size() < 6)
                    return false;
                points.assign(decoded.points.begin() + 2, decoded.points.end() - 2);
                return true;
            }
            case kDgnArc:
            case kDgnEllipse: {
                DgnV7Conic decoded;
                if (!dgnDecodeConic(component, m_is3d, decoded)) return false;
                bool closed = false;
                points = StrokeConic(decoded, closed);
                if (closed && !points.empty()) points.push_back(points.front());
                return true;
            }
            default:
                return false;
        }
    }

    ErrorStatus cell(const DgnV7RawElement& element, DgnV7ElementStream& stream, const Place& place,
                     size_t depth, size_t limit) {
        DgnV7CellHeader header;
        size_t words = 0, count = 0;
        if (!dgnDecodeCellHeader(element, m_is3d, header) ||
            !dgnComplexExtent(element, words, count))
            return skip(element, stream, limit);
        DgnV7Components components(stream, words, count, limit);
        const PwGePoint3d origin = toDrawing(header.origin, Place{});
        if (!m_translation.cellsAsBlocks || !Finite(origin)) {
            if (m_translation.cellsAsBlocks) m_report.addSkipped(element.type);
            return translateComponents(components, stream, place, depth);
        }
        PwDbObjectId block;
        if (ErrorStatus status = PwDbAuthoring::addBlock(m_target, blockName(header.name), &block))
            return status;
        if (ErrorStatus status =
                translateComponents(components, stream, Place{block, origin}, depth))
            return status;
        auto* reference = new PwDbBlockReference;
        reference->setReferencedBlock(block);
        reference->setInsertionPoint(origin + (PwGePoint3d() - place.base));
        return add(place, element.level, reference, element.type);
    }

    ErrorStatus translateComponents(DgnV7Components& components, DgnV7ElementStream& stream,
                                    const Place& place, size_t depth) {
        DgnV7RawElement component;
        while (components.next(component)) {
            if (ErrorStatus status =
                    translate(component, stream, place, depth + 1, components.end()))
                return status;
        }
        return StatusOk;
    }

    // --- Reference attachments ------------------------------------------------------------

    ErrorStatus attachments(const Place& place) {
        for (const DgnV7Attachment& attachment : dgnCollectAttachments(m_document)) {
            if (!m_translation.attachmentsAsUnderlays) {
                m_report.addSkipped(attachment.elementType);
                continue;
            }
            underlay(attachment, place);
        }
        return StatusOk;
    }

    // An underlay that can't be made is counted as skipped: the drawing is whole without it.
    void underlay(const DgnV7Attachment& attachment, const Place& place) {
        const wstring found = dgnResolveAttachment(m_document.path(), attachment.storedPath);
        const wstring source = found.empty() ? attachment.storedPath : found;
        wstring key = attachment.logicalName;
        if (key.empty()) key = LodeUtil::Path::GetFileName(attachment.storedPath);
        if (key.empty()) key = u"DGN reference";
        DgnUnderlayPlacement placement;
        placement.sourcePath = source;
        placement.position = toDrawing(attachment.masterOrigin, place);
        placement.scale = attachment.scale;
        wstring className;
        for (const wstring& candidate : {key, key + u" " + Decimal(attachment.wordOffset),
                                         u"DGN reference " + Decimal(attachment.wordOffset)}) {
            placement.key = candidate;
            if (dgnAddAttachmentUnderlay(m_target, place.block, placement, className) == StatusOk) {
                m_report.addTranslated(attachment.elementType, className);
                return;
            }
        }
        m_report.addSkipped(attachment.elementType);
    }

    // --- The drawing side -----------------------------------------------------------------

    PwGePoint3d toDrawing(const DgnV7Point& uor, const Place& place) const {
        return {(uor.x - m_origin.x) * m_scale - place.base.x,
                (uor.y - m_origin.y) * m_scale - place.base.y,
                m_is3d ? (uor.z - m_origin.z) * m_scale - place.base.z : -place.base.z};
    }

    ErrorStatus polyline(const Place& place, uint8_t level, const std::vector<DgnV7Point>& points,
                         bool closed, int32_t type) {
        if (points.size() < 2) return skipped(type);
        auto* entity = new PwDbPolyline;
        bool made = true;
        for (size_t i = 0; i < points.size() && made; ++i) {
            const PwGePoint3d p = toDrawing(points[i], place);
            made = entity->addVertexAt(static_cast<unsigned int>(i), {p.x, p.y}) == StatusOk;
        }
        made = made && entity->setClosed(closed) == StatusOk &&
               entity->setElevation(toDrawing(points.front(), place).z) == StatusOk;
        if (!made) {
            delete entity;
            return skipped(type);
        }
        return add(place, level, entity, type);
    }

    ErrorStatus skipped(int32_t type) {
        m_report.addSkipped(type);
        return StatusOk;
    }

    ErrorStatus add(const Place& place, uint8_t level, PwDbEntity* entity, int32_t type) {
        const wstring className = entity->runtimeClass()->name();
        PwDbObjectId layer;
        if (ErrorStatus status = layerFor(level, layer)) {
            delete entity;
            return status;
        }
        if (ErrorStatus status = PwDbAuthoring::addEntity(m_target, place.block, entity, layer))
            return status;
        m_report.addTranslated(type, className);
        return StatusOk;
    }

    ErrorStatus layerFor(uint8_t level, PwDbObjectId& layer) {
        PwDbObjectId& known = m_layers[level & 0x3F];
        if (known.isNull()) {
            const wstring name = m_translation.layerPrefix + Decimal(level & 0x3F);
            {
                PwDbObjectPointer<PwDbLayerTable> layers(&m_target, PwDb::OpenForRead);
                if (layers.openStatus() != StatusOk) return layers.openStatus();
                layers->getIdAt(name.c_str(), known);
            }
            if (known.isNull()) {
                if (ErrorStatus status = PwDbAuthoring::addLayer(m_target, name, {}, &known))
                    return status;
            }
        }
        layer = known;
        return StatusOk;
    }

    // A free block name for a cell: the cell's own, else the first free "_2", "_3", ...
    // The search for each base goes on from where the last one stopped, so a file of many
    // cells of one name costs one probe a cell rather than one for every earlier cell.
    wstring blockName(const wstring& cellName) {
        const wstring base =
            m_translation.cellBlockPrefix + (cellName.empty() ? u"Cell" : cellName);
        PwDbObjectPointer<PwDbBlockTable> blocks(&m_target, PwDb::OpenForRead);
        if (blocks.openStatus() != StatusOk || !blocks->has(base.c_str())) return base;
        uint64_t& next = m_nextSuffix.try_emplace(base, 2).first->second;
        for (;; ++next) {
            const wstring candidate = base + u"_" + Decimal(next);
            if (!blocks->has(candidate.c_str())) return candidate;
        }
    }

    const DgnV7DesignFile& m_document;
    const bool m_is3d;
    const DgnTranslation& m_translation;
    PwDbDatabase& m_target;
    DgnConvertReport& m_report;
    double m_scale = 1.0;
    DgnV7Point m_origin;
    std::array<PwDbObjectId, 64> m_layers{};
    std::unordered_map<wstring, uint64_t> m_nextSuffix;
};

}  // namespace

ErrorStatus dgnTranslationFromOptions(const PwDbDgnConvertOptions& options, PwDbDatabase& target,
                                      DgnTranslation& translation) {
    const auto isFlag = [](int32_t value) { return value == 0 || value == 1; };
    if (!isFlag(options.cellsAsBlocks) || !isFlag(options.attachmentsAsUnderlays) ||
        options.unitsMode < PwDbDgnConvertOptions::kUnitsOfResolution ||
        options.unitsMode > PwDbDgnConvertOptions::kUnitsFromSettings ||
        options.targetBlockHandle < 0)
        return Plotwright::StatusInvalidInput;
    DgnTranslation made;
    made.cellsAsBlocks = options.cellsAsBlocks == 1;
    made.attachmentsAsUnderlays = options.attachmentsAsUnderlays == 1;
    switch (options.unitsMode) {
        case PwDbDgnConvertOptions::kUnitsOfResolution:
            made.masterUnits = false;
            break;
        case PwDbDgnConvertOptions::kMasterUnits:
            made.masterUnits = true;
            break;
        default:
            made.masterUnits = dgnImportInMasterUnits();
            break;
    }
    if (!options.layerPrefix.empty()) made.layerPrefix = options.layerPrefix;
    made.cellBlockPrefix = options.cellBlockPrefix;
    // A prefix is fine when names made with it are.
    if (!PwDbSymbolUtilities::isValidSymbolName(made.layerPrefix + u"0", false) ||
        !PwDbSymbolUtilities::isValidSymbolName(made.cellBlockPrefix + u"Cell", false))
        return Plotwright::StatusInvalidInput;
    if (options.targetBlockHandle != 0) {
        const PwDbObjectId block =
            target.getPwDbObjectId(static_cast<PwDbHandle>(options.targetBlockHandle));
        PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
        if (block.isNull() || record.openStatus() != StatusOk)
            return Plotwright::StatusInvalidInput;
        made.targetBlock = block;
    }
    translation = std::move(made);
    return StatusOk;
}

ErrorStatus dgnTranslate(const DgnV7DesignFile& document, const DgnTranslation& translation,
                         PwDbDatabase& target, DgnConvertReport& report) {
    report.clear();
    if (!translation.targetBlock.isNull() && translation.targetBlock.database() != &target)
        return Plotwright::StatusWrongDatabase;
    return Translator(document, translation, target, report).run();
}
