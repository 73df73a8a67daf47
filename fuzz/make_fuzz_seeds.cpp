// make_fuzz_seeds FOLDER: writes small drawings in both formats as the fuzzers' seed corpus.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

namespace {

// Writes `text` as UTF-16 little-endian bytes; true when the file was written whole.
bool WriteUtf16(const std::string& name, const wstring& text) {
    std::FILE* file = std::fopen(name.c_str(), "wb");
    if (file == nullptr) return false;
    for (char16_t unit : text) {
        std::fputc(unit & 0xFF, file);
        std::fputc(unit >> 8, file);
    }
    return std::fclose(file) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_fuzz_seeds FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId layer, block;
    PwDbAuthoring::LayerOptions options;
    options.frozen = true;
    options.description = u"seed";
    PwDbAuthoring::addLayer(*drawing, u"Walls", options, &layer);
    PwDbAuthoring::addBlock(*drawing, u"Door", &block);
    PwDbAuthoring::addLine(*drawing, block, {0, 0, 0}, {0, 9, 0}, layer);
    PwDbAuthoring::addCircle(*drawing, drawing->modelSpaceId(), {1, 2, 3}, 4);
    PwDbAuthoring::addText(*drawing, drawing->modelSpaceId(), {1, 1, 0}, 2.5, u"T\u00e4");
    PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(), block, {5, 5, 0});
    PwDbAuthoring::addLayout(*drawing, u"Sheet", 2, 420, 297);
    PwDbAuthoring::addPlotSettings(*drawing, u"Draft", false, 297, 210);
    PwDbObjectId style;
    PwDbAuthoring::addTextStyle(*drawing, u"Titles", {u"serif", 3.5, 0.9}, &style);
    PwDbAuthoring::TableDesign table;
    table.columnWidths = {10, 40};
    table.rows.push_back({PwDb::RowKindTitle, 8, {u"{\\fserif;REVISIONS}"}});
    table.rows.push_back({PwDb::RowKindHeader, 6, {u"Rev", u"Description"}});
    table.rows.push_back({PwDb::RowKindData, 6, {u"A", u"First\\Pissue"}});
    table.rows[2].cells[0].state = PwDb::CellStateContentLocked;
    table.rows[1].cells[1].textStyle = style;
    PwDbAuthoring::addTable(*drawing, drawing->modelSpaceId(), table);
    int written = 0;
    constexpr int kVersions[] = {16, 21, 24, 29, 33};
    for (int version : kVersions) {
        const std::string stem = folder + "/seed" + std::to_string(version);
        const auto v = static_cast<PwDb::PwDbPlwVersion>(version);
        written += drawing->saveAs(LodeUtil::Utf16FromUtf8(stem + ".plw").c_str(), false, v) == 0;
        written += drawing->plxOut(LodeUtil::Utf16FromUtf8(stem + ".plx").c_str(), 16, v) == 0;
        // The same drawing in the older layout of whole records, which readers still take.
        PwDbDrawingImage image;
        std::string whole;
        if (drawing->captureImage(image, v) == 0 && pwdbEncodePlw(image, whole) == 0) {
            std::ofstream(stem + "-whole.plw", std::ios::binary) << whole;
            ++written;
        }
    }
    // Property set texts, as UTF-16 little-endian bytes.
    const wstring sets[] = {
        pwdbCreatorPropertySet(u"LodeQDB"),
        u"<prop_set fmt_id=\"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}\"><prop id=\"2\"><int>0x1f"
        u"</int></prop><prop id_str=\"Creator\"><datetime>2024-05-17T10:20:30</datetime></prop>"
        u"<prop id=\"258\"><boolval>true</boolval></prop></prop_set>",
        u"<double>2.5e3</double><uint>7</uint>{E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E}"};
    int index = 0;
    for (const wstring& set : sets) {
        written += WriteUtf16(folder + "/set" + std::to_string(index++) + ".txt", set);
    }
    // Formatted cell texts, as UTF-16 little-endian bytes.
    const wstring texts[] = {u"{\\fserif;\\H2.5;Rev \\L\\{A\\}\\l}\\PNext",
                             u"{{nested {deep}} \\\\ \\~end\\", u"\\H0.7x;{open \\fmono"};
    index = 0;
    for (const wstring& text : texts) {
        written += WriteUtf16(folder + "/text" + std::to_string(index++) + ".mtext", text);
    }
    std::printf("%d seed files in %s\n", written, folder.c_str());
    // Three drawings a version (native, exchange, native of whole records), the property sets
    // and the formatted texts.
    const int expected = static_cast<int>(3 * std::size(kVersions) + std::size(sets) + std::size(texts));
    return written == expected ? 0 : 1;
}
