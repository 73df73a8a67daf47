#include "tools/EnumNames.h"

namespace lodeqdb::cli {

std::string PlwFileTypeName(lode::PlwFileType type) {
    switch (type) {
        case lode::PlwTypeUnknown:
            return "PlwTypeUnknown";
        case lode::PlwTypePlain:
            return "PlwTypePlain";
        case lode::PlwTypeMarkerBlock:
            return "PlwTypeMarkerBlock";
        case lode::PlwTypeGearmark:
            return "PlwTypeGearmark";
        case lode::PlwTypeScope:
            return "PlwTypeScope";
        case lode::PlwTypeScopeMaster:
            return "PlwTypeScopeMaster";
        case lode::PlwTypeTreeNode:
            return "PlwTypeTreeNode";
    }
    return "PlwType" + std::to_string(static_cast<int>(type));
}

std::string PlotwrightFileFormatName(lode::PlotwrightFileFormat format) {
    switch (format) {
        case lode::FormatUnsupported:
            return "FormatUnsupported";
        case lode::FormatOldestPlx:
            return "FormatOldestPlx";
        case lode::FormatOldestPlw:
            return "FormatOldestPlw";
        case lode::FormatGeneration3:
            return "FormatGeneration3";
        case lode::FormatGeneration4:
            return "FormatGeneration4";
        case lode::FormatGeneration5:
            return "FormatGeneration5";
        case lode::FormatGeneration6:
            return "FormatGeneration6";
        case lode::FormatGeneration7:
            return "FormatGeneration7";
        case lode::FormatCurrent:
            return "FormatCurrent";
    }
    return "Format" + std::to_string(static_cast<int>(format));
}

std::string FileTypeName(lode::FileType type) {
    switch (type) {
        case lode::Unknown:
            return "Unknown";
        case lode::Plw:
            return "Plw";
        case lode::Image:
            return "Image";
        case lode::PlxOrPlf:
            return "PlxOrPlf";
        case lode::Dgn:
            return "Dgn";
        case lode::Pdf:
            return "Pdf";
    }
    return "FileType" + std::to_string(static_cast<int>(type));
}

std::string XrefStatusName(PwDb::XrefStatus status) {
    switch (status) {
        case PwDb::XrefNotAnXref:
            return "NotAnXref";
        case PwDb::XrefResolved:
            return "XrefResolved";
        case PwDb::XrefUnloaded:
            return "XrefUnloaded";
        case PwDb::XrefUnreferenced:
            return "XrefUnreferenced";
        case PwDb::XrefFileMissing:
            return "XrefFileMissing";
        case PwDb::XrefFilePresentUnresolved:
            return "XrefFilePresentUnresolved";
    }
    return "XrefStatus" + std::to_string(static_cast<int>(status));
}

}  // namespace lodeqdb::cli
