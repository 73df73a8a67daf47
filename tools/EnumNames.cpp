// The names and plain words of the library's enumerations, as the client prints them.
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

std::string PlwFileTypeWords(lode::PlwFileType type) {
    switch (type) {
        case lode::PlwTypeUnknown:
            return "made by an application this library doesn't know";
        case lode::PlwTypePlain:
            return "made by a plain drawing application, without any add-on's marks";
        case lode::PlwTypeMarkerBlock:
            return "made by the marker-block application";
        case lode::PlwTypeGearmark:
            return "made by the Gearmark mechanical application";
        case lode::PlwTypeScope:
            return "made by the Scope application, a scope drawing";
        case lode::PlwTypeScopeMaster:
            return "made by the Scope application, a scope master drawing";
        case lode::PlwTypeTreeNode:
            return "made by the tree-node application";
    }
    return "of a kind this client has no words for";
}

std::string PlotwrightFileFormatWords(lode::PlotwrightFileFormat format) {
    switch (format) {
        case lode::FormatUnsupported:
            return "a format generation this library doesn't support";
        case lode::FormatOldestPlx:
            return "the oldest generation of exchange files";
        case lode::FormatOldestPlw:
            return "the oldest generation of drawing files";
        case lode::FormatGeneration3:
        case lode::FormatGeneration4:
        case lode::FormatGeneration5:
        case lode::FormatGeneration6:
        case lode::FormatGeneration7:
            return "an earlier generation, " + std::to_string(static_cast<int>(format)) +
                   " of 8, readable by older applications";
        case lode::FormatCurrent:
            return "the current generation, 8 of 8";
    }
    return "a generation this client has no words for";
}

std::string XrefStatusWords(PwDb::XrefStatus status) {
    switch (status) {
        case PwDb::XrefNotAnXref:
            return "not a reference";
        case PwDb::XrefResolved:
            return "found";
        case PwDb::XrefUnloaded:
            return "unloaded";
        case PwDb::XrefUnreferenced:
            return "not used";
        case PwDb::XrefFileMissing:
            return "missing";
        case PwDb::XrefFilePresentUnresolved:
            return "unresolved";
    }
    return "status " + std::to_string(static_cast<int>(status));
}

std::string FileTypeWords(lode::FileType type) {
    switch (type) {
        case lode::Unknown:
            return "unknown kind";
        case lode::Plw:
            return "drawing";
        case lode::Image:
            return "image";
        case lode::PlxOrPlf:
            return "exchange or PLF file";
        case lode::Dgn:
            return "DGN design file";
        case lode::Pdf:
            return "PDF";
    }
    return "kind " + std::to_string(static_cast<int>(type));
}

}  // namespace lodeqdb::cli
