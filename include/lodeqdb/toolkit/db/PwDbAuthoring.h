// Building drawings from nothing: one call per thing a drawing holds. Every function opens
// what it needs, closes it again before it returns, and reports by status; an object handed
// over is owned by the drawing on success and deleted on failure.
//
//   auto drawing = PwDbAuthoring::createDrawing();
//   PwDbObjectId walls, door, layout;
//   PwDbAuthoring::LayerOptions frozen;
//   frozen.frozen = true;
//   frozen.description = u"Outer walls";
//   PwDbAuthoring::addLayer(*drawing, u"Walls", frozen, &walls);
//   PwDbAuthoring::addBlock(*drawing, u"Door", &door);
//   PwDbAuthoring::addLine(*drawing, door, {0, 0, 0}, {0, 900, 0});
//   PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(), door, {100, 0, 0});
//   PwDbAuthoring::addLayout(*drawing, u"A1 Sheet", 2, 841, 594, &layout);
//   PwDbAuthoring::addPlotSettings(*drawing, u"Draft", false, 420, 297);
#pragma once

#include <memory>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbEntity;
class PwDbObject;

namespace PwDbAuthoring {

/// A new empty drawing (see PwDbDatabase for what it holds).
std::unique_ptr<PwDbDatabase> createDrawing();

/// What a new layer is like besides its name.
struct LayerOptions {
    wstring description;
    bool frozen = false;
    bool hidden = false;
    bool locked = false;
    bool off = false;
    bool reconciled = false;
    int16_t colorIndex = 7;
};

/// Adds the layer `name`; StatusDuplicateKey or StatusInvalidKey for a name that is taken or
/// not allowed.
Plotwright::ErrorStatus addLayer(PwDbDatabase& drawing, const wstring& name,
                                 const LayerOptions& options = {}, PwDbObjectId* id = nullptr);

/// What a new text style is like besides its name.
struct TextStyleOptions {
    wstring fontName = u"sans-serif";
    /// 0: each text chooses its own height.
    double textHeight = 0.0;
    double widthFactor = 1.0;
};

/// Adds the text style `name`; StatusDuplicateKey or StatusInvalidKey for a name that is
/// taken or not allowed, StatusInvalidInput for an option out of range.
Plotwright::ErrorStatus addTextStyle(PwDbDatabase& drawing, const wstring& name,
                                     const TextStyleOptions& options = {},
                                     PwDbObjectId* id = nullptr);

/// Adds an empty block definition `name`.
Plotwright::ErrorStatus addBlock(PwDbDatabase& drawing, const wstring& name,
                                 PwDbObjectId* id = nullptr);

/// Appends `entity` (not in a database) to the block `block`, on `layer` when that isn't null
/// (else on the current layer). The drawing owns the entity on success; on failure it is
/// deleted.
Plotwright::ErrorStatus addEntity(PwDbDatabase& drawing, PwDbObjectId block, PwDbEntity* entity,
                                  PwDbObjectId layer = {}, PwDbObjectId* id = nullptr);

Plotwright::ErrorStatus addLine(PwDbDatabase& drawing, PwDbObjectId block, const PwGePoint3d& start,
                                const PwGePoint3d& end, PwDbObjectId layer = {},
                                PwDbObjectId* id = nullptr);
Plotwright::ErrorStatus addCircle(PwDbDatabase& drawing, PwDbObjectId block,
                                  const PwGePoint3d& center, double radius, PwDbObjectId layer = {},
                                  PwDbObjectId* id = nullptr);
Plotwright::ErrorStatus addText(PwDbDatabase& drawing, PwDbObjectId block,
                                const PwGePoint3d& position, double height, const wstring& text,
                                PwDbObjectId layer = {}, PwDbObjectId* id = nullptr);
/// Places the block `referenced` in the block `block`.
Plotwright::ErrorStatus addBlockReference(PwDbDatabase& drawing, PwDbObjectId block,
                                          PwDbObjectId referenced, const PwGePoint3d& position,
                                          const PwGeScale3d& scale = {}, double rotation = 0.0,
                                          PwDbObjectId layer = {}, PwDbObjectId* id = nullptr);

/// Files `object` (not in a database) under `key` in the dictionary `dictionary`; a key that
/// is there already gives StatusDuplicateKey. The drawing owns the object on success; on
/// failure it is deleted.
Plotwright::ErrorStatus addDictionaryEntry(PwDbDatabase& drawing, PwDbObjectId dictionary,
                                           const wstring& key, PwDbObject* object,
                                           PwDbObjectId* id = nullptr);

/// Adds a paper layout `name` with its own paper space block, at tab position `tabOrder`,
/// with a paper of `paperWidth` by `paperHeight` (0 by 0 for none). StatusDuplicateKey when
/// a layout has that name.
Plotwright::ErrorStatus addLayout(PwDbDatabase& drawing, const wstring& name, int tabOrder,
                                  double paperWidth, double paperHeight,
                                  PwDbObjectId* id = nullptr);

/// Adds named plot settings to the drawing's plot settings dictionary.
Plotwright::ErrorStatus addPlotSettings(PwDbDatabase& drawing, const wstring& name, bool modelType,
                                        double paperWidth, double paperHeight,
                                        PwDbObjectId* id = nullptr);

}  // namespace PwDbAuthoring
