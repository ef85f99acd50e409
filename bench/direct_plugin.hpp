// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "vexaoc.h"

/// A plug-in opened and called by hand, as a program without the library would.
class Direct_plugin {
public:
    explicit Direct_plugin(const std::string& path);
    ~Direct_plugin();
    Direct_plugin(const Direct_plugin&) = delete;
    Direct_plugin& operator=(const Direct_plugin&) = delete;

    /// A function of the plug-in by name; ends the program when there is none.
    template <class Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(find(name));
    }

    vexaoc_get_api_version_function get_api_version;
    vexaoc_compile_function compile;
    vexaoc_release_outputs_function release_outputs;
    vexaoc_get_capabilities_function get_capabilities;
    vexaoc_release_capabilities_function release_capabilities;

private:
    void* find(const char* name) const;

    void* handle;
};

/// Opens all plug-ins of a plug-in directory, in the order of the system.
std::vector<std::unique_ptr<Direct_plugin>> open_all(const std::string& root);
