// SPDX-License-Identifier: MIT
#pragma once

#include "api_test.hpp"

/// Plug-ins that need no steering file, so that a directory holds nothing but
/// candidates, under any name and in any number.
class Directory_test : public Api_test {
protected:
    /// Adds a copy of a small plug-in that offers one compiler, and tells its path.
    std::string add_small(std::string_view api, const std::string& file_name);

    /// What is said of a file that the loader does not take: the loader's words.
    static std::string load_error(const std::string& path);

    static std::string name_error(const std::string& driver_name,
                                  const char* reason = "Name does not begin with \"Vexa-\"");

    /// What is said of the files in "openglessl" that are no plug-ins: all but
    /// that driver's, and none of them named like one.
    std::string errors_of_all_but(std::string_view driver_name) const;

    /// The small plug-in's compiler as catalogue() tells it.
    static std::string compiler_of(const std::string& driver_name);
};
