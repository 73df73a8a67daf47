// The revision block's design: styles, column widths, rows.
#include "tools/templates/RevisionBlockTemplate.h"

#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

namespace lodeqdb::templates {
namespace {

// The name the library looks for; the template is written without the library, so it is
// spelled out here and the template's test holds the two together.
constexpr char16_t kBlockName[] = u"lode_RevBlock";

// Widths in drawing units, for entries like "C", "2024-06-20", a sentence, initials.
constexpr double kRevisionWidth = 15.0;
constexpr double kDateWidth = 25.0;
constexpr double kDescriptionWidth = 80.0;
constexpr double kByWidth = 20.0;
constexpr double kTitleHeight = 10.0;
// Data rows go back to the header row's height when they change, so the two are equal.
constexpr double kRowHeight = 8.0;

PwDbAuthoring::TableCellDesign Cell(const char16_t* text, PwDbObjectId style, int alignment) {
    PwDbAuthoring::TableCellDesign cell(text);
    cell.textStyle = style;
    cell.alignment = alignment;
    return cell;
}

}  // namespace

Plotwright::ErrorStatus AddRevisionBlock(PwDbDatabase& drawing) {
    PwDbObjectId titleStyle, headingStyle, textStyle, block;
    PwDbAuthoring::TextStyleOptions title;
    title.fontName = u"Sans Bold";
    title.textHeight = 3.5;
    PwDbAuthoring::TextStyleOptions heading;
    heading.fontName = u"Sans Bold";
    heading.textHeight = 2.5;
    PwDbAuthoring::TextStyleOptions text;
    text.textHeight = 2.5;
    if (auto status = PwDbAuthoring::addTextStyle(drawing, u"RevisionTitle", title, &titleStyle))
        return status;
    if (auto status =
            PwDbAuthoring::addTextStyle(drawing, u"RevisionHeading", heading, &headingStyle))
        return status;
    if (auto status = PwDbAuthoring::addTextStyle(drawing, u"RevisionText", text, &textStyle))
        return status;
    if (auto status = PwDbAuthoring::addBlock(drawing, kBlockName, &block)) return status;

    PwDbAuthoring::TableDesign design;
    design.columnWidths = {kRevisionWidth, kDateWidth, kDescriptionWidth, kByWidth};
    design.textStyle = textStyle;
    design.textHeight = 2.5;
    design.rows.push_back(
        {PwDb::RowKindTitle, kTitleHeight, {Cell(u"REVISIONS", titleStyle, PwDb::MiddleCenter)}});
    PwDbAuthoring::TableRowDesign header{PwDb::RowKindHeader, kRowHeight, {}};
    for (const char16_t* name : {u"REV", u"DATE", u"DESCRIPTION", u"BY"})
        header.cells.push_back(Cell(name, headingStyle, PwDb::MiddleCenter));
    design.rows.push_back(header);
    PwDbAuthoring::TableRowDesign blank{PwDb::RowKindData, kRowHeight, {}};
    for (int column = 0; column < 4; ++column)
        blank.cells.push_back(
            Cell(u"", PwDbObjectId(), column == 2 ? PwDb::MiddleLeft : PwDb::MiddleCenter));
    design.rows.push_back(blank);
    return PwDbAuthoring::addTable(drawing, block, design);
}

}  // namespace lodeqdb::templates
