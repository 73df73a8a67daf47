// Repathing the drawings of a folder that its index names, without listing them by hand.
#include <lodeqdb/relocate/Repath.h>

#include <stdexcept>

#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeQDBRelocate {

std::vector<wstring> DrawingsWithRecords(const std::string& indexPath) {
    const LodeQDBIndex::FolderIndex index(indexPath);
    std::vector<wstring> drawings;
    std::string last;
    // Records come by referrer, so a drawing's records are together.
    for (const LodeQDBIndex::IndexedRecord& record : index.AllRecords()) {
        if (record.referrer == last) continue;
        drawings.push_back(LodeUtil::Utf16FromUtf8(record.referrer));
        last = record.referrer;
    }
    return drawings;
}

std::vector<RepathOutcome> RepathOverIndex(const std::string& indexPath,
                                           const RepathOptions& options) {
    if (options.from.empty()) {
        throw std::invalid_argument("repathing over an index needs the folder to replace");
    }
    return Repath(DrawingsWithRecords(indexPath), options);
}

}  // namespace LodeQDBRelocate
