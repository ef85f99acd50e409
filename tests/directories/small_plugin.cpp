// SPDX-License-Identifier: MIT
#include "small_plugin.hpp"

#include <filesystem>

#include <dlfcn.h>

std::string Directory_test::add_small(std::string_view api, const std::string& file_name) {
    std::filesystem::copy_file(SMALL_PLUGIN, plugins.path(api, file_name));
    return plugins.path(api, file_name);
}

std::string Directory_test::load_error(const std::string& path) {
    EXPECT_EQ(dlopen(path.c_str(), RTLD_NOW), nullptr);
    return "Couldn't load library at " + path + "\nLibrary load error: " + dlerror() + "\n";
}

std::string Directory_test::name_error(const std::string& driver_name, const char* reason) {
    return "Driver name parse error: \"" + driver_name +
           "\" has an unknown name format: " + reason + "\n";
}

std::string Directory_test::errors_of_all_but(std::string_view driver_name) const {
    std::string errors;
    for (const std::string& name : plugins.listed("openglessl"))
        if (name.find(driver_name) == std::string::npos)
            errors += load_error(plugins.path("openglessl", name)) +
                      name_error(name.substr(0, name.size() - 3));
    return errors;
}

std::string Directory_test::compiler_of(const std::string& driver_name) {
    return driver_name + " Vexa-K460 r0p0_00rel0 openglessl 320\n";
}
