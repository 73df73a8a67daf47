// The exception for a revision table that has no row of a kind the manager needs (no header
// row, as a rule).
//
//   try {
//       RevisionBlock::BlockMgr manager(drawing);
//   } catch (const RevisionBlock::RowNotFoundException&) {
//       // the block's table has lost its header row
//   }
#pragma once

#include <exception>

namespace RevisionBlock {

/// Carries no text and no data: its type is the whole message. It stands outside the lode
/// tree of exceptions and has no code; a caller that shows it to people supplies the words.
/// what() is std::exception's own.
class RowNotFoundException : public std::exception {
  public:
    RowNotFoundException() = default;
    RowNotFoundException(const RowNotFoundException& other);
};

}  // namespace RevisionBlock
