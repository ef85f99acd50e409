// SPDX-License-Identifier: MIT
#pragma once

#include "../compilers.hpp"

#include <map>
#include <string>
#include <sys/stat.h>

namespace vexacm_tool {

/// Digests of what the plug-ins of a directory hold.
class Plugin_digests {
public:
    /// Looks at the files. To be made before they are opened: one that is another
    /// when it is read need not be the one that was opened.
    explicit Plugin_digests(const std::string& directory);

    /// Reads the plug-in that a compiler came from, once.
    void read(const Compiler& compiler);

    /// Of a compiler whose plug-in was read. Empty when nobody knows what was opened.
    const std::string& of(const Compiler& compiler) const;

private:
    std::string digest(const Compiler& compiler) const;

    std::string directory_;
    std::map<std::string, struct stat> files_;
    std::map<std::string, std::string> digests_; ///< by API and driver
};

} // namespace vexacm_tool
