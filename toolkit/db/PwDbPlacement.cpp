// The placement shared by block references and underlays: its persistent data and checks.
#include <lodeqdb/toolkit/db/PwDbPlacement.h>

#include <cmath>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

bool PwDbPlacement::acceptsRotation(double radians) {
    return std::isfinite(radians);
}

Plotwright::ErrorStatus PwDbPlacement::readFrom(PwDbPlwFiler* filer) {
    PwDbPlacement read;
    if (auto status = filer->readPoint3d(read.position)) return status;
    if (auto status = filer->readScale3d(read.scale)) return status;
    if (auto status = filer->readDouble(read.rotation)) return status;
    if (!acceptsPosition(read.position) || !acceptsScale(read.scale) ||
        !acceptsRotation(read.rotation))
        return Plotwright::StatusFilerError;
    *this = read;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlacement::writeTo(PwDbPlwFiler* filer) const {
    if (auto status = filer->writePoint3d(position)) return status;
    if (auto status = filer->writeScale3d(scale)) return status;
    return filer->writeDouble(rotation);
}
