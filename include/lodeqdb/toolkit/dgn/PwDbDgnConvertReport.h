// The report of a DGN model's last conversion, in a shape plain C can read: one row per element
// type and entity class made from it, and one row per element type left untranslated.
//
//   PwDbDgnConvertReportRow rows[64];
//   uint32_t count = 0;
//   if (getReport(item, rows, 64, &count) == Plotwright::StatusOk) {
//       for (uint32_t i = 0; i < count && i < 64; ++i) {
//           if (rows[i].className[0] == 0) { /* rows[i].count elements were skipped */ }
//       }
//   }
#pragma once

#include <cstdint>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

/// Element type of the row that counts bytes no element could be read from: the tail of a file
/// cut short inside an element.
inline constexpr int32_t kPwDbDgnUnreadableBytes = -1;

struct PwDbDgnConvertReportRow {
    /// The DGN element type (1 to 127), or kPwDbDgnUnreadableBytes.
    int32_t elementType;
    /// The run-time class name of the entities made ("PwDbLine", ...), zero-terminated; empty
    /// for a row of skipped elements.
    char16_t className[40];
    /// Entities made, or elements (for kPwDbDgnUnreadableBytes: bytes) skipped.
    uint32_t count;
};
