// RevisionBlock::UpdateContext: what an update of the revision table asks for.
//
//   RevisionBlock::UpdateContext wanted;
//   wanted.rows = {{{u"REV", u"A"}, {u"DESCRIPTION", u"First issue"}},
//                  {{u"REV", u"B"}, {u"DESCRIPTION", u"Doors moved"}}};
//   wanted.keyColumns = {u"REV"};
//   wanted.columns = {u"REV", u"DESCRIPTION"};
//   bool changed = manager.Update(wanted);
#pragma once

#include <map>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>

namespace RevisionBlock {

/// A plain record. Every special member is out of line (exported with the library) and works
/// field by field in declaration order; a moved-from record has three empty vectors.
struct UpdateContext {
    UpdateContext();
    UpdateContext(const UpdateContext& other);
    UpdateContext(UpdateContext&& other) noexcept;
    UpdateContext& operator=(const UpdateContext& other);
    UpdateContext& operator=(UpdateContext&& other) noexcept;
    ~UpdateContext();

    /// The wanted data rows, top row first: each maps a column name, written as in `columns`,
    /// to the cell's text. Names that aren't in `columns` are ignored.
    std::vector<std::map<wstring, wstring>> rows;
    /// Names of columns that may identify a row, in order of preference: the first that is
    /// among the resolved `columns` (compared exactly) is the key column.
    std::vector<wstring> keyColumns;
    /// The columns the update touches. Each is matched against the header's texts with blanks
    /// at either end and case ignored; a name that matches no header is left out.
    std::vector<wstring> columns;
};

}  // namespace RevisionBlock
