// SPDX-License-Identifier: MIT
#pragma once

#include "caller.hpp"
#include "model.hpp"

/// The library and its model on one plug-in directory. Requests are put to
/// both; where what they say differs, the process ends.
class Comparison {
public:
    /// Makes the files that the description tells of.
    Comparison(const model::Directory& description, Plugin_directory& files);

    void ask(const model::Request& request);

    /// The number of compilers; 0 too when the initialisation threw.
    unsigned compilers() const;

private:
    model::Directory directory;
    model::Manager manager;
    model::Caller caller;
    std::vector<model::Request> asked;
};

/// A driver's plug-in, which reports one compiler of each language.
model::Plugin plugin(const std::string& api, const std::string& driver_name);
