#include "tools/FileRecords.h"

#include <iostream>
#include <nlohmann/json.hpp>

#include "tools/EnumNames.h"
#include "tools/Json.h"
#include "tools/Output.h"

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
    for (const FileData& record : records) {
        std::cout << FileTypeName(record.GetType()) << '\t'
                  << XrefStatusName(record.GetXrefStatus()) << '\t' << Narrow(record.GetFullname())
                  << '\n';
    }
}

}  // namespace lodeqdb::cli
