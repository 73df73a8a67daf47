// The folder index's answers as the client prints them.
#include "tools/IndexOutput.h"

#include <cstdio>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tools/EnumNames.h"
#include "tools/Json.h"

namespace lodeqdb::cli {
namespace {

nlohmann::json RecordJson(const LodeQDBIndex::IndexedRecord& record) {
    return {{"referrer", record.referrer},
            {"name", record.name},
            {"type", record.type},
            {"typeName", FileTypeName(static_cast<lode::FileType>(record.type))},
            {"status", record.status},
            {"statusName", XrefStatusName(static_cast<PwDb::XrefStatus>(record.status))},
            {"refId", record.refId},
            {"present", record.present}};
}

std::string Why(const LodeQDBIndex::IndexedRecord& record) {
    if (!record.present) return "not there";
    return XrefStatusWords(static_cast<PwDb::XrefStatus>(record.status));
}

}  // namespace

void PrintProgress(const LodeQDBIndex::Progress& progress) {
    const double rate = progress.seconds > 0 ? double(progress.done) / progress.seconds : 0;
    std::ostringstream line;
    line << "\rindexing: " << progress.done << " of " << progress.total << " files, "
         << std::fixed << std::setprecision(0) << rate << " a second";
    if (rate > 0 && progress.done < progress.total)
        line << ", " << std::setprecision(0) << double(progress.total - progress.done) / rate
             << " s left";
    line << "   ";
    std::cerr << line.str() << std::flush;
}

void PrintSummary(const LodeQDBIndex::UpdateSummary& summary, bool json) {
    if (json) {
        std::cout << DumpJson({{"database", summary.database},
                               {"seen", summary.seen},
                               {"read", summary.read},
                               {"unchanged", summary.unchanged},
                               {"removed", summary.removed},
                               {"failed", summary.failed},
                               {"seconds", summary.seconds}})
                  << '\n';
        return;
    }
    std::cout << "index " << summary.database << '\n'
              << "  seen       " << summary.seen << '\n'
              << "  read       " << summary.read << '\n'
              << "  unchanged  " << summary.unchanged << '\n'
              << "  removed    " << summary.removed << '\n'
              << "  failed     " << summary.failed << '\n'
              << "  seconds    " << std::fixed << std::setprecision(2) << summary.seconds << '\n';
}

void PrintUsages(const std::vector<LodeQDBIndex::Usage>& uses, bool json) {
    if (json) {
        nlohmann::json all = nlohmann::json::array();
        for (const LodeQDBIndex::Usage& use : uses)
            all.push_back({{"drawing", use.drawing},
                           {"depth", use.chain.size() - 1},
                           {"chain", use.chain}});
        std::cout << DumpJson(all) << '\n';
        return;
    }
    if (uses.empty()) {
        std::cout << "no drawing of the index uses it\n";
        return;
    }
    std::cout << "DEPTH  DRAWING (and the chain of references down to the file)\n";
    for (const LodeQDBIndex::Usage& use : uses) {
        std::cout << std::left << std::setw(7) << use.chain.size() - 1 << use.drawing << '\n';
        for (size_t step = 1; step + 1 < use.chain.size(); ++step)
            std::cout << "         via " << use.chain[step] << '\n';
    }
}

void PrintBroken(const std::vector<LodeQDBIndex::IndexedRecord>& references,
                 const std::vector<LodeQDBIndex::FailedFile>& failed, bool json) {
    if (json) {
        nlohmann::json out = {{"references", nlohmann::json::array()},
                              {"failedFiles", nlohmann::json::array()}};
        for (const auto& record : references) out["references"].push_back(RecordJson(record));
        for (const auto& file : failed)
            out["failedFiles"].push_back({{"path", file.path},
                                          {"kind", file.kind},
                                          {"exceptionClass", file.errorClass},
                                          {"code", file.errorCode},
                                          {"message", file.errorMessage}});
        std::cout << DumpJson(out) << '\n';
        return;
    }
    std::cout << "Broken references: " << references.size() << '\n';
    for (const auto& record : references)
        std::cout << "  " << record.referrer << "\n    -> " << record.name << " ("
                  << FileTypeWords(static_cast<lode::FileType>(record.type)) << ", "
                  << Why(record) << ")\n";
    std::cout << "Files that couldn't be read: " << failed.size() << '\n';
    for (const auto& file : failed)
        std::cout << "  " << file.path << "\n    " << file.errorClass << " (code "
                  << file.errorCode << ")" << (file.errorMessage.empty() ? "" : ": ")
                  << file.errorMessage << '\n';
}

void PrintStats(const LodeQDBIndex::IndexStats& stats, bool json) {
    if (json) {
        nlohmann::json out = {{"files", stats.files},
                              {"records", stats.records},
                              {"brokenReferences", stats.brokenReferences},
                              {"failedFiles", stats.failedFiles},
                              {"byKind", nlohmann::json::object()},
                              {"byFormatGeneration", nlohmann::json::array()},
                              {"byCreatorKind", nlohmann::json::array()}};
        for (const auto& [kind, count] : stats.byKind) out["byKind"][kind] = count;
        for (const auto& [format, count] : stats.byFormatGeneration)
            out["byFormatGeneration"].push_back(
                {{"format", format},
                 {"name", PlotwrightFileFormatName(static_cast<lode::PlotwrightFileFormat>(format))},
                 {"count", count}});
        for (const auto& [kind, count] : stats.byCreatorKind)
            out["byCreatorKind"].push_back(
                {{"kind", kind},
                 {"name", PlwFileTypeName(static_cast<lode::PlwFileType>(kind))},
                 {"count", count}});
        std::cout << DumpJson(out) << '\n';
        return;
    }
    std::cout << "files               " << stats.files << '\n';
    for (const auto& [kind, count] : stats.byKind)
        std::cout << "  " << std::left << std::setw(18) << kind << count << '\n';
    std::cout << "by format generation\n";
    for (const auto& [format, count] : stats.byFormatGeneration)
        std::cout << "  " << std::left << std::setw(18)
                  << PlotwrightFileFormatName(static_cast<lode::PlotwrightFileFormat>(format))
                  << count << '\n';
    std::cout << "by creator kind\n";
    for (const auto& [kind, count] : stats.byCreatorKind)
        std::cout << "  " << std::left << std::setw(18)
                  << PlwFileTypeName(static_cast<lode::PlwFileType>(kind)) << count << '\n';
    std::cout << "dependency records  " << stats.records << '\n'
              << "broken references   " << stats.brokenReferences << '\n'
              << "failed files        " << stats.failedFiles << '\n';
}

}  // namespace lodeqdb::cli
