// The codes the revision block gives its lode::LodeException objects, and the number of the
// table title's text. These exceptions carry no message: a caller that shows one to people
// supplies the words for its code.
//
//   catch (const lode::LodeException& error) {
//       if (error.code() == RevisionBlock::NoBlockInstance) ... // nothing shows the block
//   }
#pragma once

#include <cstdint>

#include <lodeqdb/platform/MessageTexts.h>

namespace RevisionBlock {

enum ErrorCode : int32_t {
    /// A cell of the table couldn't be read (a bare lode::LodeException, not a
    /// lode::PlotwrightException, though it shares that class's code).
    CellReadFailed = 301,
    /// Update found no revision block, or no reference that shows it; also given by the calls
    /// that need a block when the manager has none.
    NoBlockInstance = 401,
    /// The block "lode_RevBlock" holds no table.
    NoTableInBlock = 402,
    /// No column of an update's `columns` is in the table's header, or no name of its
    /// `keyColumns` is among those that are.
    NoMatchingColumn = 403,
};

/// The text of the resource module that is the table's title.
inline constexpr int TitleStringId = LodeQDBUtil::RevisionTableTitleText;

}  // namespace RevisionBlock
