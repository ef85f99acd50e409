// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "generator.hpp"

namespace model {

/// Puts a request to what the model is compared with.
using Other = std::function<Reply(const Request&)>;

/// Called with each request and what both said to it; false ends it.
using Judge = std::function<bool(const Request&, const Reply& model, const Reply& other)>;

/// One life of the library on a directory: requests before initialisation,
/// initialisation, everything about every compiler, requests, release; then
/// rarely once more. Both are asked the same.
void exercise(Dice& dice, Manager& model, const Other& other, const Judge& judge);

} // namespace model
