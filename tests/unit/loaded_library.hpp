// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <memory>
#include <string>

#include <dlfcn.h>

#include "captured_stderr.hpp"
#include "vexacm_vexaoc_library.hpp"

using Library = VexaCM::Vexacm_vexaoc_library;

/// A driver name that parses: loading under it adds no message.
inline const std::string DRIVER = "Vexa-K300_r5p0-06rel0";
inline const std::string DRIVER_FILE = "lib" + DRIVER + ".so";

/// A library and all that was printed while it was loaded.
struct Loaded_library {
    explicit Loaded_library(const std::string& path) {
        Captured_stderr captured;
        library = std::make_shared<Library>(path);
        err = captured.take();
    }

    std::shared_ptr<Library> library;
    std::string err;
};

/// The log of these calls to one plug-in, which is named subdirectory/file.
inline std::string log_of(const std::string& plugin, std::initializer_list<const char*> calls) {
    std::string log;
    for (const char* call : calls)
        log += plugin + " " + call + "\n";
    return log;
}

/// What the library prints about a driver name.
inline std::string driver_name_error(const std::string& name, const std::string& reason) {
    return "Driver name parse error: \"" + name + "\" has an unknown name format: " + reason + "\n";
}

/// What the loader says about a file that it cannot open.
inline std::string loader_error(const std::string& path) {
    void* const opened = dlopen(path.c_str(), RTLD_NOW);
    if (!opened)
        return dlerror();
    dlclose(opened);
    return "the file can be opened";
}

inline std::string open_error(const std::string& path) {
    return "Couldn't load library at " + path + "\nLibrary load error: " + loader_error(path) +
           "\n";
}
