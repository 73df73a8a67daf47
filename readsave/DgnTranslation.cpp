// DGN models listed and translated into drawings through the DGN module.
#include <lodeqdb/readsave/DgnTranslation.h>

#include <atomic>

#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include "readsave/DgnBinding.h"
#include <lodeqdb/readsave/DgnSetups.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertReport.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileRepath.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"

namespace LodeQDBUtil {

namespace {

// The module's entries, bound at first use (see DgnModule.h).
std::atomic<PwDgnLoadFileEntry> g_loadFile{nullptr};
std::atomic<PwDgnCloseFileEntry> g_closeFile{nullptr};
std::atomic<PwDgnGetItemCountEntry> g_getItemCount{nullptr};
std::atomic<PwDgnGetItemEntry> g_getItem{nullptr};
std::atomic<PwDgnCloseItemEntry> g_closeItem{nullptr};
std::atomic<PwDgnGetItemNameEntry> g_getItemName{nullptr};
std::atomic<PwDgnConvertItemExEntry> g_convertItem{nullptr};
std::atomic<PwDgnGetConvertReportEntry> g_getConvertReport{nullptr};

void* LoadDgnFile(const wstring& path) {
    const PwDgnLoadFileEntry load = BindDgnEntryPointOnce(g_loadFile, kPwDgnLoadFileEntryName);
    const PwString text(path.c_str(), path.size());
    void* file = load(text.kwszPtr(), 0, 0x80000000u, 1);
    if (file == nullptr) throw lode::InvalidFormat(path);
    return file;
}

Plotwright::ErrorStatus GetDgnItemName(void* item, wstring& name) {
    const PwDgnGetItemNameEntry get = BindDgnEntryPointOnce(g_getItemName, kPwDgnGetItemNameEntryName);
    PwString text;
    const Plotwright::ErrorStatus status = get(item, &text);
    if (status == Plotwright::StatusOk) name.assign(text.kwszPtr(), text.length());
    return status;
}

// The item of the model `modelName`; the file stays open when none is found.
void* FindModel(void* file, const wstring& modelName) {
    const PwDgnGetItemEntry getItem = BindDgnEntryPointOnce(g_getItem, kPwDgnGetItemEntryName);
    if (modelName.empty()) return getItem(file, 0);
    const uint32_t count = BindDgnEntryPointOnce(g_getItemCount, kPwDgnGetItemCountEntryName)(file);
    if (count == 0) throw lode::NotFound(modelName);
    const PwDgnCloseItemEntry closeItem = BindDgnEntryPointOnce(g_closeItem, kPwDgnCloseItemEntryName);
    for (uint32_t index = 0; index < count; ++index) {
        void* item = getItem(file, index);
        wstring name;
        if (GetDgnItemName(item, name) == Plotwright::StatusOk && name == modelName) return item;
        closeItem(item);
    }
    throw lode::NotFound(modelName);
}

// The rows of the item's last translation; none when the module keeps no report.
std::vector<DgnConvertRow> ConvertReport(void* item) {
    std::vector<DgnConvertRow> report;
    const PwDgnGetConvertReportEntry get =
        BindDgnEntryPointOnce(g_getConvertReport, kPwDgnGetConvertReportEntryName);
    uint32_t count = 0;
    if (get(item, nullptr, 0, &count) != Plotwright::StatusOk || count == 0) return report;
    std::vector<PwDbDgnConvertReportRow> rows(count);
    if (get(item, rows.data(), count, &count) != Plotwright::StatusOk) return report;
    rows.resize(std::min<size_t>(count, rows.size()));
    for (const PwDbDgnConvertReportRow& row : rows) {
        DgnConvertRow made;
        made.elementType = row.elementType;
        // The class name is zero-terminated within its room, or fills it.
        size_t length = 0;
        while (length < std::size(row.className) && row.className[length] != 0) ++length;
        made.className.assign(row.className, length);
        made.count = row.count;
        report.push_back(std::move(made));
    }
    return report;
}

void Translate(const wstring& path, const wstring& modelName, PwDbDatabase& database,
               std::vector<DgnConvertRow>* report) {
    void* file = LoadDgnFile(path);
    void* item = FindModel(file, modelName);
    if (item == nullptr) throw lode::NotFound(modelName);
    EnsureDgnSetups();
    DgnConvertOptions options;
    options.cellsAsBlocks = 1;
    options.unitsMode = DgnConvertOptions::kUnitsFromSettings;
    options.attachmentsAsUnderlays = 1;
    options.layerPrefix.clear();
    options.targetBlockHandle = 0;
    options.cellBlockPrefix.clear();
    const Plotwright::ErrorStatus status =
        BindDgnEntryPointOnce(g_convertItem, kPwDgnConvertItemExEntryName)(item, &options, &database);
    if (report != nullptr) *report = ConvertReport(item);
    BindDgnEntryPointOnce(g_closeItem, kPwDgnCloseItemEntryName)(item);
    BindDgnEntryPointOnce(g_closeFile, kPwDgnCloseFileEntryName)(file);
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
}

}  // namespace

std::vector<wstring> GetModelViewNamesFromDGN(const wstring& path) {
    void* file = LoadDgnFile(path);
    std::vector<wstring> names;
    const uint32_t count = BindDgnEntryPointOnce(g_getItemCount, kPwDgnGetItemCountEntryName)(file);
    const PwDgnGetItemEntry getItem = BindDgnEntryPointOnce(g_getItem, kPwDgnGetItemEntryName);
    const PwDgnCloseItemEntry closeItem = BindDgnEntryPointOnce(g_closeItem, kPwDgnCloseItemEntryName);
    for (uint32_t index = 0; index < count; ++index) {
        void* item = getItem(file, index);
        wstring name;
        if (GetDgnItemName(item, name) == Plotwright::StatusOk) names.push_back(std::move(name));
        closeItem(item);
    }
    BindDgnEntryPointOnce(g_closeFile, kPwDgnCloseFileEntryName)(file);
    return names;
}

void ReadDGNToPlwDatabase(const wstring& path, const wstring& modelName, PwDbDatabase& database) {
    Translate(path, modelName, database, nullptr);
}

void ReadDGNToPlwDatabase(const wstring& path, const wstring& modelName, PwDbDatabase& database,
                          std::vector<DgnConvertRow>& report) {
    Translate(path, modelName, database, &report);
}

void ReadDGNFile(const wstring& path, PwDbDgnRefFileRepath& repath) {
    const PwString text(path.c_str(), path.size());
    ThrowLodeExceptionOnFile(repath.setFile(text, nullptr), path);
}

}  // namespace LodeQDBUtil
