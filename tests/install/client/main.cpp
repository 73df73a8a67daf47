// A client of the installed LodeQDB package: it builds two drawings, one referring to the
// other, asks what the first depends on at any depth, turns a failure status into the
// library's exception and prints the message in English and, in a second process, in German.
#include <lodeqdb/LodeQDB.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

int PrintReadError(const char16_t* locale) {
    auto* linker = PwRxDynamicLinker::cast(pwrxSysRegistry()->at(u"DynamicLinker"));
    if (linker == nullptr) return 1;
    linker->setProductLocale(PwLocale::fromTag(locale));
    try {
        LodeQDBUtil::ThrowLodeExceptionOnFile(Plotwright::StatusInvalidInput, u"/tmp/drawing.plw");
    } catch (const lode::ReadError& error) {
        std::cout << LodeUtil::Utf8FromUtf16(error.message()) << '\n';
        return error.code() == 101 ? 0 : 1;
    }
    return 1;
}

}  // namespace

// The toolkit through the installed headers: a drawing built from nothing.
int BuildDrawing() {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId walls;
    if (PwDbAuthoring::addLayer(*drawing, u"Walls", {}, &walls) != Plotwright::StatusOk) return 1;
    if (PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0}, {1, 0, 0}, walls) !=
        Plotwright::StatusOk) {
        return 1;
    }
    PwDbObjectPointer<PwDbLayerTableRecord> layer(walls, PwDb::OpenForRead);
    if (layer.openStatus() != Plotwright::StatusOk || !layer->isInUse()) return 1;
    layer.release();
    // A round trip through a native file, as a client of the installed package does it.
    const std::string path = "/tmp/lodeqdb-client-" + std::to_string(getpid()) + ".plw";
    const wstring widePath = LodeUtil::Utf16FromUtf8(path);
    if (drawing->saveAs(widePath.c_str(), true, PwDb::PwDbPlwVersionCurrent) != 0) return 1;
    PwDbDatabase read;
    const Plotwright::ErrorStatus status =
        read.readPlwFile(widePath.c_str(), PwDbDatabase::OpenModeAlternate);
    std::remove(path.c_str());
    return status == Plotwright::StatusOk && read.numObjects() == drawing->numObjects() ? 0 : 1;
}

// The library's main job, as the umbrella header shows it: everything a drawing depends on.
int QueryDependencies() {
    const std::string folder = "/tmp/lodeqdb-client-tree-" + std::to_string(getpid());
    const wstring host = LodeUtil::Utf16FromUtf8(folder + "/site.plw");
    const wstring child = LodeUtil::Utf16FromUtf8(folder + "/plan.plw");
    if (!LodeUtil::Directory::CreateDirectory(LodeUtil::Utf16FromUtf8(folder))) return 1;
    auto plan = PwDbAuthoring::createDrawing();
    auto site = PwDbAuthoring::createDrawing();
    int result = 1;
    if (plan->saveAs(child.c_str(), true, PwDb::PwDbPlwVersionCurrent) == 0 &&
        PwDbAuthoring::addXref(*site, u"plan", u"plan.plw") == 0 &&
        PwDbAuthoring::addXref(*site, u"gone", u"gone.plw") == 0 &&
        site->saveAs(host.c_str(), true, PwDb::PwDbPlwVersionCurrent) == 0) {
        LodeQDBService::Request::WalkStop stop;
        const std::vector<LodeQDBService::FileData> files =
            LodeQDBService::Request::PlotwrightNestedChildren(host, true, stop);
        for (const LodeQDBService::FileData& file : files) {
            const bool found = LodeUtil::File::Exists(file.GetFullname());
            std::cout << LodeUtil::Utf8FromUtf16(file.GetFullname()) << (found ? "" : " (missing)")
                      << '\n';
        }
        result = !stop.stopped && files.size() == 2 && files[0].GetFullname() == child ? 0 : 1;
    }
    std::remove((folder + "/site.plw").c_str());
    std::remove((folder + "/plan.plw").c_str());
    std::remove(folder.c_str());
    return result;
}

int main(int argc, char** argv) {
    // Texts keep the language of their first load, so each language gets its own process.
    if (argc > 1) return PrintReadError(std::string(argv[1]) == "de" ? u"de-DE" : u"en-US");
    if (BuildDrawing() != 0) return 1;
    if (QueryDependencies() != 0) return 1;
    const std::string self = argv[0];
    if (std::system((self + " en").c_str()) != 0) return 1;
    return std::system((self + " de").c_str()) == 0 ? 0 : 1;
}
