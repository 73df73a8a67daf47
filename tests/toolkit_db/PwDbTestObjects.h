// Small object classes of the tests' own, registered like any client's classes.
#pragma once

#include <lodeqdb/toolkit/db/PwDbObject.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

/// An object with one text and one number, both persistent.
class PwTestNote : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwTestNote);

  public:
    wstring text;
    int32_t number = 0;

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override {
        if (auto status = PwDbObject::plwInFields(filer)) return status;
        wstring readText;
        int32_t readNumber = 0;
        if (auto status = filer->readString(readText)) return status;
        if (auto status = filer->readInt32(readNumber)) return status;
        text = readText;
        number = readNumber;
        return Plotwright::StatusOk;
    }
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override {
        if (auto status = PwDbObject::plwOutFields(filer)) return status;
        filer->writeString(text);
        return filer->writeInt32(number);
    }
};

/// A note that also points at another object.
class PwTestLinkedNote : public PwTestNote {
    PWRX_DECLARE_MEMBERS(PwTestLinkedNote);

  public:
    PwDbObjectId link;

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override {
        if (auto status = PwTestNote::plwInFields(filer)) return status;
        return filer->readObjectId(link);
    }
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override {
        if (auto status = PwTestNote::plwOutFields(filer)) return status;
        return filer->writeObjectId(link);
    }
};
