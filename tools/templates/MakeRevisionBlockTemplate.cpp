// make_revision_block_template FILE: writes the template drawing that holds the revision
// block, in the current format generation. Run by the build; exits 1 with the status on
// stderr when the drawing can't be made or written.
#include <iostream>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "tools/templates/RevisionBlockTemplate.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make_revision_block_template FILE\n";
        return 2;
    }
    auto drawing = PwDbAuthoring::createDrawing();
    Plotwright::ErrorStatus status = lodeqdb::templates::AddRevisionBlock(*drawing);
    if (status != Plotwright::StatusOk) {
        std::cerr << "make_revision_block_template: the block can't be made (status "
                  << static_cast<int>(status) << ")\n";
        return 1;
    }
    const wstring path = LodeUtil::Utf16FromNative(argv[1]);
    status = drawing->saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent);
    if (status != Plotwright::StatusOk) {
        std::cerr << "make_revision_block_template: " << argv[1] << " can't be written (status "
                  << static_cast<int>(status) << ")\n";
        return 1;
    }
    return 0;
}
