// The module "PwDgnIO.qdb": DGN design files for callers that bind its entries by name (the
// service "PwDgnIO"). A file handle stands for one loaded V7 design file, an item handle for its
// one model, named "Default". Handles are checked against those handed out and not yet closed,
// so a stale, foreign or null handle gets a status or null instead of being followed; an item
// stays usable after its file is closed. An item is used by one thread at a time.
#include <algorithm>
#include <exception>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "modules/dgn/DgnConvertReport.h"
#include "modules/dgn/DgnV7Attachments.h"
#include "modules/dgn/DgnV7DesignFile.h"
#include "modules/dgn/DgnV7Translator.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertReport.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileData.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"
#include <lodeqdb/toolkit/rx/PwRxModules.h>

using Plotwright::ErrorStatus;

namespace {

constexpr char16_t kModelName[] = u"Default";

struct DgnFileHandle {
    std::shared_ptr<const DgnV7DesignFile> document;
};

struct DgnItemHandle {
    std::shared_ptr<const DgnV7DesignFile> document;
    DgnConvertReport lastReport;
};

// The handles handed out and not yet closed.
template <class T>
class HandleTable {
  public:
    void* add(std::shared_ptr<T> object) {
        std::lock_guard<std::mutex> lock(m_mutex);
        void* handle = object.get();
        m_live.emplace(handle, std::move(object));
        return handle;
    }
    std::shared_ptr<T> find(void* handle) {
        std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_live.find(handle);
        return found == m_live.end() ? nullptr : found->second;
    }
    void remove(void* handle) {
        std::shared_ptr<T> dropped;  // released after the lock
        std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_live.find(handle);
        if (found == m_live.end()) return;
        dropped = std::move(found->second);
        m_live.erase(found);
    }
    std::mutex& mutex() { return m_mutex; }

  private:
    std::mutex m_mutex;
    std::unordered_map<void*, std::shared_ptr<T>> m_live;
};

HandleTable<DgnFileHandle>& Files() {
    static HandleTable<DgnFileHandle> files;
    return files;
}

HandleTable<DgnItemHandle>& Items() {
    static HandleTable<DgnItemHandle> items;
    return items;
}

ErrorStatus MakeRecord(const DgnV7DesignFile& document, const DgnV7Attachment& attachment,
                       std::unique_ptr<PwDbDgnRefFileData>& record) {
    auto made = std::make_unique<PwDbDgnRefFileData>();
    const wstring resolved = dgnResolveAttachment(document.path(), attachment.storedPath);
    if (ErrorStatus status =
            made->storedPath.assign(attachment.storedPath.c_str(), attachment.storedPath.size()))
        return status;
    if (ErrorStatus status = made->resolvedPath.assign(resolved.c_str(), resolved.size()))
        return status;
    if (ErrorStatus status =
            made->logicalName.assign(attachment.logicalName.c_str(), attachment.logicalName.size()))
        return status;
    if (ErrorStatus status =
            made->description.assign(attachment.description.c_str(), attachment.description.size()))
        return status;
    made->refId = attachment.wordOffset;
    made->fileNumber = attachment.fileNumber;
    made->elementType = attachment.elementType;
    made->scale = attachment.scale;
    record = std::move(made);
    return Plotwright::StatusOk;
}

}  // namespace

extern "C" {

bool pwrxModuleInitialize() {
    return pwrxRegisterService(u"PwDgnIO");
}

/// True for a DGN V7 design file and for a V8 file recognised as DGN (a compound document
/// named *.dgn or holding a "Dgn" storage); false for anything else, missing files and folders
/// included.
bool DGNIsDgnFile(const PwString& path) {
    try {
        ErrorStatus status = Plotwright::StatusOk;
        return dgnClassifyFile(path.toWString(), status) != DgnFileKind::NotDgn;
    } catch (...) {
        return false;
    }
}

/// Loads the V7 design file `path`; null for a null path, a missing file, anything but a DGN
/// V7 design file (V8 files included) and a file whose control block can't be read. The other
/// arguments (the library passes 0, 0x80000000 and 1) ask for nothing V7 files have and are
/// accepted as they come.
void* DGNLoadFile(const char16_t* path, int /*openMode*/, uint32_t /*flags*/, int /*loadAll*/) {
    if (path == nullptr || path[0] == u'\0') return nullptr;
    try {
        auto file = std::make_shared<DgnFileHandle>();
        if (DgnV7DesignFile::load(path, file->document) != Plotwright::StatusOk) return nullptr;
        return Files().add(std::move(file));
    } catch (...) {
        return nullptr;
    }
}

void DGNCloseFile(void* file) {
    Files().remove(file);
}

/// The models of the file: one for a V7 file, 0 for a handle that isn't open.
uint32_t DGNGetItemCount(void* file) {
    return Files().find(file) != nullptr ? 1 : 0;
}

/// A new item handle for model `index` (only 0 exists); null out of range or for a file that
/// isn't open. Each item is closed with DGNCloseItem.
void* DGNGetItem(void* file, uint32_t index) {
    const std::shared_ptr<DgnFileHandle> open = Files().find(file);
    if (open == nullptr || index != 0) return nullptr;
    try {
        auto item = std::make_shared<DgnItemHandle>();
        item->document = open->document;
        return Items().add(std::move(item));
    } catch (...) {
        return nullptr;
    }
}

void DGNCloseItem(void* item) {
    Items().remove(item);
}

/// "Default" for a V7 model. StatusInvalidInput for an item that isn't open or a null name.
ErrorStatus DGNGetItemName(void* item, PwString* name) {
    if (name == nullptr || Items().find(item) == nullptr) return Plotwright::StatusInvalidInput;
    return name->assign(kModelName);
}

/// Adds the model's elements to `target` as `options` say (see PwDbDgnConvertOptions) and
/// keeps the report of this conversion for DGNGetConvertReport. StatusInvalidInput for an item
/// that isn't open, null options or options out of range; StatusNullDatabase for a null
/// target; otherwise the status of the translation (see dgnTranslate).
ErrorStatus DGNConvertItemEx(void* item, PwDbDgnConvertOptions* options, PwDbDatabase* target) {
    const std::shared_ptr<DgnItemHandle> open = Items().find(item);
    if (open == nullptr || options == nullptr) return Plotwright::StatusInvalidInput;
    if (target == nullptr) return Plotwright::StatusNullDatabase;
    try {
        DgnTranslation translation;
        if (ErrorStatus status = dgnTranslationFromOptions(*options, *target, translation))
            return status;
        DgnConvertReport report;
        const ErrorStatus status = dgnTranslate(*open->document, translation, *target, report);
        std::lock_guard<std::mutex> lock(Items().mutex());
        open->lastReport = std::move(report);
        return status;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    } catch (...) {
        return Plotwright::StatusInvalidInput;
    }
}

/// See PwDbDgnGetConvertReportFunction.
ErrorStatus DGNGetConvertReport(void* item, PwDbDgnConvertReportRow* rows, uint32_t capacity,
                                uint32_t* rowCount) {
    const std::shared_ptr<DgnItemHandle> open = Items().find(item);
    if (open == nullptr || rowCount == nullptr || (rows == nullptr && capacity != 0))
        return Plotwright::StatusInvalidInput;
    try {
        std::vector<PwDbDgnConvertReportRow> all;
        {
            std::lock_guard<std::mutex> lock(Items().mutex());
            all = open->lastReport.rows();
        }
        *rowCount = static_cast<uint32_t>(all.size());
        for (size_t i = 0; i < all.size() && i < capacity; ++i) rows[i] = all[i];
        return Plotwright::StatusOk;
    } catch (...) {
        return Plotwright::StatusOutOfMemory;
    }
}

/// Appends a new record per reference attachment of the V7 design file `path` (see
/// pwdbGetDgnFileReferences for the statuses); the caller owns them. On failure nothing is
/// appended.
ErrorStatus DGNGetFileReferences(const char16_t* path, const char16_t* /*unused*/,
                                 PwArray<PwDbDgnRefFileData*>& references) {
    if (path == nullptr || path[0] == u'\0') return Plotwright::StatusInvalidInput;
    try {
        std::shared_ptr<const DgnV7DesignFile> document;
        if (ErrorStatus status = DgnV7DesignFile::load(path, document)) return status;
        std::vector<std::unique_ptr<PwDbDgnRefFileData>> records;
        for (const DgnV7Attachment& attachment : dgnCollectAttachments(*document)) {
            std::unique_ptr<PwDbDgnRefFileData> record;
            if (ErrorStatus status = MakeRecord(*document, attachment, record)) return status;
            records.push_back(std::move(record));
        }
        const size_t before = references.length();
        if (references.setPhysicalLength(std::max(references.physicalLength(),
                                                  before + records.size())) != Plotwright::StatusOk)
            return Plotwright::StatusOutOfMemory;
        for (auto& record : records) references.append(record.release());
        return Plotwright::StatusOk;
    } catch (...) {
        return Plotwright::StatusOutOfMemory;
    }
}

}  // extern "C"
