// The revision block as the template drawing carries it: the block "lode_RevBlock" holding one
// table, built with the toolkit's authoring interface.
//
//   auto drawing = PwDbAuthoring::createDrawing();
//   Plotwright::ErrorStatus status = lodeqdb::templates::AddRevisionBlock(*drawing);
//
// The table: a title row "REVISIONS", a header row "REV", "DATE", "DESCRIPTION", "BY", and one
// blank data row whose format new rows take. Its text styles ("RevisionTitle",
// "RevisionHeading", "RevisionText") come with it when a drawing imports the block.
#pragma once

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbDatabase;

namespace lodeqdb::templates {

/// Adds the text styles and the block to `drawing`. StatusDuplicateKey when the drawing has a
/// block or one of the styles of those names already; nothing is placed.
Plotwright::ErrorStatus AddRevisionBlock(PwDbDatabase& drawing);

}  // namespace lodeqdb::templates
