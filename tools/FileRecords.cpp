// Printing dependency records: a table for people, a JSON array for programs.
#include "tools/FileRecords.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "tools/EnumNames.h"
#include "tools/Json.h"
#include "tools/Output.h"
#include "tools/Table.h"

namespace lodeqdb::cli {

using LodeQDBService::FileData;

void PrintFileRecords(const std::vector<FileData>& records, bool json) {
    if (json) {
        nlohmann::json list = nlohmann::json::array();
        for (const FileData& record : records) {
            list.push_back({{"name", Narrow(record.GetFullname())},
                            {"type", static_cast<int>(record.GetType())},
                            {"typeName", FileTypeName(record.GetType())},
                            {"status", static_cast<int>(record.GetXrefStatus())},
                            {"refId", record.GetRefId()}});
        }
        std::cout << DumpJson(list) << '\n';
        return;
    }
    Table table({"KIND", "REFERENCE", "FILE"});
    for (const FileData& record : records) {
        table.add({FileTypeWords(record.GetType()), XrefStatusWords(record.GetXrefStatus()),
                   Narrow(record.GetFullname())});
    }
    table.print(std::cout);
}

}  // namespace lodeqdb::cli
