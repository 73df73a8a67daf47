// Translating a DGN V7 design file into a drawing database:
//
//   element                          becomes
//   line (3)                         PwDbLine
//   line string (4), shape (6)       PwDbPolyline, open / closed
//   curve (11)                       PwDbPolyline through its displayed points
//   ellipse (15), arc (16)           PwDbCircle / PwDbArc when circular and in the XY plane,
//                                    otherwise a PwDbPolyline along the curve
//   text (17)                        PwDbText
//   text node (7)                    its texts
//   complex chain (12), shape (14)   one PwDbPolyline through its components, open / closed
//   cell (2)                         a block definition and a PwDbBlockReference (or its
//                                    components drawn in place)
//   reference attachment (5, 66)     a DGN underlay, when underlays are built in
//
// Each level N gives a layer "Level N". Deleted elements are left out, the design file
// header (types 8, 9, 10) is read for settings only; every other element that makes no entity
// is counted in the report as skipped, per element type.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include "modules/dgn/DgnConvertReport.h"
#include "modules/dgn/DgnV7DesignFile.h"
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>

/// What a translation does, worked out from PwDbDgnConvertOptions.
struct DgnTranslation {
    bool cellsAsBlocks = true;
    /// Coordinates divided by the UOR per master unit; else kept in UOR. Both measure from the
    /// file's global origin.
    bool masterUnits = true;
    bool attachmentsAsUnderlays = true;
    /// Layer names are this followed by the level number.
    wstring layerPrefix = u"Level ";
    /// Block names of cells start with this.
    wstring cellBlockPrefix;
    /// The block that receives the model's elements; null for the model space.
    PwDbObjectId targetBlock;
};

/// Checks `options` against `target` and fills `translation`; StatusInvalidInput for a value
/// other than those PwDbDgnConvertOptions lists, a prefix that can't start a name, or a
/// handle that names no block of `target`. kUnitsFromSettings reads the host's settings file.
Plotwright::ErrorStatus dgnTranslationFromOptions(const PwDbDgnConvertOptions& options,
                                                  PwDbDatabase& target,
                                                  DgnTranslation& translation);

/// Adds the document's elements to `target` and fills `report` (emptied first). Fails only
/// when the database refuses an addition it should take (its status is given back, and what
/// was added so far stays); elements that can't be read or made are skipped and counted.
Plotwright::ErrorStatus dgnTranslate(const DgnV7DesignFile& document,
                                     const DgnTranslation& translation, PwDbDatabase& target,
                                     DgnConvertReport& report);
