// PwDbPlwRecords: the objects section of the native file, the records of a drawing as bytes.
//
//   std::string payload;
//   if (auto status = pwdbPlwWriteObjects(image.objects, payload)) return status;
//   std::vector<PwDbObjectRecord> read;
//   if (!pwdbPlwReadObjects(payload, read)) return Plotwright::StatusBadFileFormat;
//
// The byte layout is the "objects payload" table of PwDbPlwCodec.h.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectRecord.h>

/// Appends the objects payload of `objects` to `payload`. StatusInvalidInput for a record the
/// file can't hold: no class names, an empty class name, a count past 32 bits; `payload` may
/// then hold part of the records.
Plotwright::ErrorStatus pwdbPlwWriteObjects(const std::vector<PwDbObjectRecord>& objects,
                                            std::string& payload);

/// Reads a whole objects payload into `objects` (replacing what it held); false when the
/// payload isn't exactly a sound run of records, `objects` then holding part of them.
bool pwdbPlwReadObjects(std::string_view payload, std::vector<PwDbObjectRecord>& objects);
