// Authoring raster images: definitions in the image dictionary, placements that show them.
//
//   PwDbObjectId definition;
//   PwDbAuthoring::addRasterImageDef(drawing, u"AERIAL", u"images\\aerial.png", &definition);
//   PwDbAuthoring::addRasterImage(drawing, drawing.modelSpaceId(), definition, {0, 0, 0}, 40, 30);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbDatabase;

namespace PwDbAuthoring {

/// Files a new definition of the image `sourcePath` under `key` in the drawing's image
/// dictionary, made when there is none. StatusDuplicateKey for a key that is taken.
Plotwright::ErrorStatus addRasterImageDef(PwDbDatabase& drawing, const wstring& key,
                                          const wstring& sourcePath, PwDbObjectId* id = nullptr);

/// Places the definition `definition` in the block `block` at `position`, `width` by `height`,
/// and adds the placement to the definition's persistent reactors.
Plotwright::ErrorStatus addRasterImage(PwDbDatabase& drawing, PwDbObjectId block,
                                       PwDbObjectId definition, const PwGePoint3d& position,
                                       double width, double height, PwDbObjectId layer = {},
                                       PwDbObjectId* id = nullptr);

}  // namespace PwDbAuthoring
