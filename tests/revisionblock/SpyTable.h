// A table of the tests' own kind, derived from PwDbTable as a client's table class may be: it
// records the texts written to it and, when a test arms it, refuses or fails chosen operations,
// so that the manager's answers to a toolkit that says no can be shown.
#pragma once

#include <utility>
#include <vector>

#include <lodeqdb/toolkit/table/PwDbTable.h>

class PwTestSpyTable : public PwDbTable {
    PWRX_DECLARE_MEMBERS(PwTestSpyTable);

  public:
    /// What every spy table of the process does; ResetKnobs() before each test.
    struct Knobs {
        /// Header rows answer as data rows (the table "loses" its header row).
        bool hideHeaderRow = false;
        /// getCellText of this cell fails.
        int failReadRow = -1;
        int failReadColumn = -1;
        /// setCellText of this cell is refused, with nothing changed.
        int refuseTextRow = -1;
        int refuseTextColumn = -1;
        /// deleteRows is refused, with nothing deleted.
        bool refuseDelete = false;
        /// deleteRows answers 0 but deletes nothing.
        bool pretendDelete = false;
        /// copyFrom succeeds this many times, then fails; -1 never fails.
        int copiesBeforeFailure = -1;
        /// setCellState(…, 0) (unlocking) is refused.
        bool refuseUnlock = false;
        /// Every setCellText call: row, column, the status it got.
        std::vector<std::pair<std::pair<unsigned, unsigned>, Plotwright::ErrorStatus>> textWrites;
    };
    static Knobs& knobs();
    static void ResetKnobs();

    unsigned rowKind(unsigned row) const override;
    Plotwright::ErrorStatus getCellText(unsigned row, unsigned column, unsigned contentIndex,
                                        PwString& text) const override;
    Plotwright::ErrorStatus setCellText(unsigned row, unsigned column,
                                        const char16_t* text) override;
    Plotwright::ErrorStatus deleteRows(unsigned row, unsigned count) override;
    Plotwright::ErrorStatus setCellState(unsigned row, unsigned column, int state) override;
    Plotwright::ErrorStatus copyFrom(const PwDbTable* source, int option,
                                     const PwCellRange& sourceRange, const PwCellRange& targetRange,
                                     PwCellRange& newTargetRange) override;
};
