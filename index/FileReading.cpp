// Reading one file for the index, through the library's public interface.
#include "index/FileReading.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <exception>
#include <new>

#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/DgnChildren.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/vocabulary/FormatGeneration.h>
#include "index/PathKey.h"

namespace LodeQDBIndex::detail {
namespace {

std::string Native(const wstring& name) {
    return LodeUtil::NativeFromUtf16(name).value_or(LodeUtil::Utf8FromUtf16(name));
}

void RecordFailure(FileFacts& facts, const std::exception& error) {
    facts.errorClass = lode::ExceptionClassName(error);
    if (const auto* library = dynamic_cast<const lode::LodeException*>(&error)) {
        facts.errorCode = library->code();
        facts.errorMessage = LodeUtil::Utf8FromUtf16(library->message());
    } else {
        facts.errorCode = 0;
        facts.errorMessage = error.what();
    }
}

void TakeRecords(FileFacts& facts, const std::vector<LodeQDBService::FileData>& records) {
    for (const LodeQDBService::FileData& record : records) {
        DependencyRecord out;
        out.name = Native(record.GetFullname());
        out.key = PathKey(out.name);
        out.type = record.GetType();
        out.status = record.GetXrefStatus();
        out.refId = static_cast<int64_t>(record.GetRefId());
        // At the file system a backslash counts as '/', as the library's own lookups take it.
        std::string onDisk = out.name;
        std::replace(onDisk.begin(), onDisk.end(), '\\', '/');
        struct stat info {};
        out.present = ::stat(onDisk.c_str(), &info) == 0;
        facts.records.push_back(std::move(out));
    }
}

// A drawing or an exchange file: read with its references resolved, as the children query
// by file reads it; the creator by the header where there is one, else by the database.
void ReadDrawing(FileFacts& facts, const wstring& path, bool native) {
    if (native) {
        try {
            facts.creatorKind = LodeQDBUtil::GetPlwFileTypeByHeader(path);
        } catch (const lode::LodeException&) {
            // No application information: the database tells below.
        }
        try {
            facts.creatorName = LodeUtil::Utf8FromUtf16(LodeQDBUtil::GetPlwCreatorName(path));
        } catch (const lode::LodeException&) {
        }
    }
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(path, drawing, true, true);
    TakeRecords(facts, LodeQDBService::Request::PlotwrightChildren(drawing, nullptr));
    facts.formatGeneration = LodeQDBUtil::GetPlotwrightFileFormat(drawing, &path);
    if (!facts.creatorKind) facts.creatorKind = LodeQDBUtil::GetPlwFileTypeByDatabase(drawing);
}

}  // namespace

std::string KindOfName(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "other";
    std::string extension = path.substr(dot + 1);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (extension == "plw") return "drawing";
    if (extension == "plx") return "exchange";
    if (extension == "dgn") return "dgn";
    if (extension == "pdf") return "pdf";
    if (extension == "plf") return "plf";
    for (const char* image : {"png", "jpg", "jpeg", "gif", "bmp", "tif", "tiff"})
        if (extension == image) return "image";
    return "other";
}

bool IsReadKind(const std::string& kind) {
    return kind == "drawing" || kind == "exchange" || kind == "dgn";
}

FileFacts ReadFileFacts(const FoundFile& file) {
    FileFacts facts;
    facts.file = file;
    facts.key = PathKey(file.path);
    facts.kind = KindOfName(file.path);
    if (!IsReadKind(facts.kind)) return facts;
    const wstring path = LodeUtil::Utf16FromNative(file.path);
    try {
        if (facts.kind == "dgn")
            TakeRecords(facts, LodeQDBService::Request::DGNChildren(path));
        else
            ReadDrawing(facts, path, facts.kind == "drawing");
    } catch (const std::exception& error) {
        facts.records.clear();
        RecordFailure(facts, error);
    } catch (...) {
        facts.records.clear();
        facts.errorClass = "unknown";
        facts.errorCode = 0;
        facts.errorMessage = "an exception of no known class";
    }
    return facts;
}

}  // namespace LodeQDBIndex::detail
