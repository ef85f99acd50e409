// SPDX-License-Identifier: MIT
// A C++ library with nothing in it.
