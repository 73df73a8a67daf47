// The spy table: the base table's operations, refused or failed where a test armed it.
#include "SpyTable.h"

PWRX_DEFINE_DYNAMIC_MEMBERS(PwTestSpyTable, PwDbTable, u"PwTestSpyTable");

PwTestSpyTable::Knobs& PwTestSpyTable::knobs() {
    static Knobs all;
    return all;
}

void PwTestSpyTable::ResetKnobs() {
    knobs() = Knobs();
}

unsigned PwTestSpyTable::rowKind(unsigned row) const {
    const unsigned kind = PwDbTable::rowKind(row);
    if (knobs().hideHeaderRow && kind == PwDb::RowKindHeader) return PwDb::RowKindData;
    return kind;
}

Plotwright::ErrorStatus PwTestSpyTable::getCellText(unsigned row, unsigned column,
                                                    unsigned contentIndex, PwString& text) const {
    if (static_cast<int>(row) == knobs().failReadRow &&
        static_cast<int>(column) == knobs().failReadColumn) {
        return Plotwright::StatusInvalidIndex;
    }
    return PwDbTable::getCellText(row, column, contentIndex, text);
}

Plotwright::ErrorStatus PwTestSpyTable::setCellText(unsigned row, unsigned column,
                                                    const char16_t* text) {
    Plotwright::ErrorStatus status = Plotwright::StatusCellLocked;
    if (static_cast<int>(row) != knobs().refuseTextRow ||
        static_cast<int>(column) != knobs().refuseTextColumn) {
        status = PwDbTable::setCellText(row, column, text);
    }
    knobs().textWrites.push_back({{row, column}, status});
    return status;
}

Plotwright::ErrorStatus PwTestSpyTable::deleteRows(unsigned row, unsigned count) {
    if (knobs().refuseDelete) return Plotwright::StatusNotApplicable;
    if (knobs().pretendDelete) return Plotwright::StatusOk;
    return PwDbTable::deleteRows(row, count);
}

Plotwright::ErrorStatus PwTestSpyTable::setCellState(unsigned row, unsigned column, int state) {
    if (knobs().refuseUnlock && state == 0) return Plotwright::StatusNotApplicable;
    return PwDbTable::setCellState(row, column, state);
}

Plotwright::ErrorStatus PwTestSpyTable::copyFrom(const PwDbTable* source, int option,
                                                 const PwCellRange& sourceRange,
                                                 const PwCellRange& targetRange,
                                                 PwCellRange& newTargetRange) {
    if (knobs().copiesBeforeFailure == 0) return Plotwright::StatusOutOfMemory;
    if (knobs().copiesBeforeFailure > 0) --knobs().copiesBeforeFailure;
    return PwDbTable::copyFrom(source, option, sourceRange, targetRange, newTargetRange);
}
