// make_dgn_samples FOLDER: writes small DGN V7 design files covering every element kind the
// writer knows, in 2D and 3D, with and without reference attachments; the DGN fuzzer's seed
// corpus and material for sample projects.
#include <cstdio>
#include <string>

#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using DgnWriter::DgnV7Writer;
using DgnWriter::Point;

void AddEverything(DgnV7Writer& dgn) {
    dgn.addLine(1, {0, 0, 0}, {10000, 0, 500}, {3, 1, 0});
    dgn.addLineString(2, {{0, 0, 0}, {1000, 0, 0}, {1000, 1000, 0}, {2000, 1500, 0}});
    dgn.addShape(3, {{0, 0, 0}, {4000, 0, 0}, {4000, 3000, 0}, {0, 3000, 0}});
    dgn.addCurve(4, {{0, 0, 0},
                     {100, 0, 0},
                     {200, 100, 0},
                     {300, 0, 0},
                     {400, 100, 0},
                     {500, 0, 0},
                     {600, 0, 0}});
    dgn.addEllipse(5, 5000, 5000, 0, 2000, 1000, 30);
    dgn.addEllipse(5, 8000, 5000, 0, 1500, 1500, 0);
    dgn.addArc(6, 0, 0, 0, 1000, 1000, 0, 0, 90);
    dgn.addArc(6, 0, 0, 0, 3000, 1000, 45, 10, -120);
    dgn.addText(7, {100, 200, 0}, "GROUND FLOOR", 350, 15);
    dgn.beginTextNode(7, {100, 900, 0}, 250);
    dgn.addText(7, {100, 900, 0}, "LINE ONE", 250);
    dgn.addText(7, {100, 500, 0}, "LINE TWO", 250);
    dgn.endComplex();
    dgn.beginComplexChain(8);
    dgn.addLine(8, {0, 0, 0}, {1000, 0, 0});
    dgn.addArc(8, 1000, 500, 0, 500, 500, 0, 270, 180);
    dgn.addLineString(8, {{1000, 1000, 0}, {0, 1000, 0}});
    dgn.endComplex();
    dgn.beginComplexShape(9);
    dgn.addLineString(9, {{0, 0, 0}, {500, 0, 0}, {500, 500, 0}});
    dgn.addLine(9, {500, 500, 0}, {0, 0, 0});
    dgn.endComplex();
    dgn.beginCell("DOOR", {20000, 0, 0}, 10);
    dgn.addLine(10, {20000, 0, 0}, {20000, 9000, 0});
    dgn.addArc(10, 20000, 0, 0, 9000, 9000, 0, 0, 90);
    dgn.beginCell("KNOB", {20500, 4500, 0}, 10);
    dgn.addEllipse(10, 20500, 4500, 0, 100, 100, 0);
    dgn.endComplex();
    dgn.endComplex();
    const uint32_t gone = dgn.addLine(11, {0, 0, 0}, {1, 1, 0});
    dgn.markDeleted(gone);
}

bool Write(const DgnV7Writer& dgn, const std::string& path, int& written) {
    const bool ok = dgn.save(path);
    if (ok)
        ++written;
    else
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_dgn_samples FOLDER\n");
        return 2;
    }
    const std::string folder = argv[1];
    int written = 0;
    for (bool threeD : {false, true}) {
        DgnWriter::Units units;
        units.originX = 1000;
        DgnV7Writer plain(threeD, units);
        AddEverything(plain);
        Write(plain, folder + (threeD ? "/plain3d.dgn" : "/plain2d.dgn"), written);

        DgnV7Writer host(threeD);
        host.addLine(0, {0, 0, 0}, {5000, 5000, 0});
        DgnWriter::Attachment site;
        site.fileName = "plain2d.dgn";
        site.fileNumber = 1;
        site.logicalName = "SITE";
        site.description = "Site plan";
        host.addAttachment(site);
        DgnWriter::Attachment survey;
        survey.asApplicationElement = true;
        survey.fileName = "C:\\survey\\terrain.dgn";
        survey.fileNumber = 40;
        survey.scale = 2.0;
        host.addAttachment(survey);
        Write(host, folder + (threeD ? "/host3d.dgn" : "/host2d.dgn"), written);
    }
    std::printf("%d sample design files in %s\n", written, folder.c_str());
    return written == 4 ? 0 : 1;
}
