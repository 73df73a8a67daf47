// JSON output of the client: names of files that aren't UTF-8 can't be JSON text as they are.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace lodeqdb::cli {

/// `value` as one line of JSON. Bytes that aren't UTF-8 (in a file name that isn't) become
/// U+FFFD: JSON text is UTF-8, and the human output shows such names byte for byte.
inline std::string DumpJson(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace lodeqdb::cli
