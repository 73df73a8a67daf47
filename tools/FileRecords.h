// The records of the dependency queries as the client prints them.
#pragma once

#include <vector>

#include <lodeqdb/service/FileData.h>

namespace lodeqdb::cli {

/// One record a line (type name, reference status name, full name), or with `json` one JSON
/// array of objects with "name", "type", "typeName", "status" and "refId", in the given order.
void PrintFileRecords(const std::vector<LodeQDBService::FileData>& records, bool json);

}  // namespace lodeqdb::cli
