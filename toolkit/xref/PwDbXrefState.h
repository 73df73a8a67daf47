// What a host drawing keeps of the drawings loaded for its references; internal to the
// toolkit.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "toolkit/db/PwDbDatabase.h"

struct PwDbDatabase::LoadedXrefs {
    /// The drawings loaded below the host, by the identity of their files, so that a file
    /// reached along several ways is loaded once.
    std::map<std::string, std::unique_ptr<PwDbDatabase>> byFile;
};
