// A PNG and a PDF for sample folders, written byte by byte from their public formats.
#include "tools/samplefolder/SampleFiles.h"

#include <zlib.h>

#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace lodeqdb::samples {
namespace {

void BigEndian(std::string& out, uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<char>(value >> shift));
}

void Chunk(std::string& out, const char* type, const std::string& data) {
    BigEndian(out, static_cast<uint32_t>(data.size()));
    const std::string typed = std::string(type, 4) + data;
    out += typed;
    BigEndian(out, static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(typed.data()),
                                               static_cast<uInt>(typed.size()))));
}

}  // namespace

std::string PngBytes() {
    std::string png("\x89PNG\r\n\x1a\n", 8);
    std::string header;
    BigEndian(header, 16);
    BigEndian(header, 16);
    header += std::string("\x08\x00\x00\x00\x00", 5);
    Chunk(png, "IHDR", header);
    std::string rows;
    for (int y = 0; y < 16; ++y) {
        rows += '\0';
        for (int x = 0; x < 16; ++x) rows += static_cast<char>((x + y) * 8);
    }
    std::vector<Bytef> packed(compressBound(static_cast<uLong>(rows.size())));
    uLongf size = static_cast<uLongf>(packed.size());
    compress(packed.data(), &size, reinterpret_cast<const Bytef*>(rows.data()),
             static_cast<uLong>(rows.size()));
    Chunk(png, "IDAT", std::string(reinterpret_cast<const char*>(packed.data()), size));
    Chunk(png, "IEND", "");
    return png;
}

std::string PdfBytes() {
    const std::vector<std::string> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] >>"};
    std::string pdf = "%PDF-1.4\n";
    std::vector<size_t> offsets;
    for (size_t i = 0; i < objects.size(); ++i) {
        offsets.push_back(pdf.size());
        pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const size_t table = pdf.size();
    pdf += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (size_t offset : offsets) {
        const std::string number = std::to_string(offset);
        pdf += std::string(10 - number.size(), '0') + number + " 00000 n \n";
    }
    pdf += "trailer\n<< /Size " + std::to_string(objects.size() + 1) + " /Root 1 0 R >>\n";
    pdf += "startxref\n" + std::to_string(table) + "\n%%EOF\n";
    return pdf;
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    if (!out) throw std::runtime_error("can't write " + path);
}

}  // namespace lodeqdb::samples
