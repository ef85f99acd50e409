// SPDX-License-Identifier: MIT
#include "macro_budget.hpp"

#include "limits.hpp"

#include <glslang/MachineIndependent/ParseHelper.h>
#include <glslang/MachineIndependent/preprocessor/PpContext.h>

#include <cstddef>

namespace {

using Pp = glslang::TPpContext;

thread_local std::size_t tokens_left = 0;

// The number of tokens is protected; a derived class may name the member.
struct Open_stream : Pp::TokenStream {
    static std::size_t size(TokenStream& stream) { return (stream.*&Open_stream::stream).size(); }
};

bool spend(std::size_t tokens) {
    if (tokens > tokens_left) {
        tokens_left = 0;
        return false;
    }
    tokens_left -= tokens;
    return true;
}

} // namespace

namespace glsl {

Macro_budget::Macro_budget() {
    tokens_left = MAX_MACRO_TOKENS + 1;
}

Macro_budget::~Macro_budget() {
    tokens_left = 0;
}

bool Macro_budget::exhausted() const {
    return tokens_left == 0;
}

} // namespace glsl

// glslang has no limit of its own and no place to put one, so the linker's --wrap puts it where
// the preprocessor reads a macro's body and where it goes on to read an argument. A release
// of glslang without these two functions does not link.
extern "C" {

int __real__ZN7glslang10TPpContext11TokenStream8getTokenERNS_17TParseContextBaseEPNS_8TPpTokenE(
    Pp::TokenStream*, glslang::TParseContextBase&, glslang::TPpToken*);
void __real__ZN7glslang10TPpContext20pushTokenStreamInputERNS0_11TokenStreamEb(Pp*,
                                                                               Pp::TokenStream&,
                                                                               bool);

int __wrap__ZN7glslang10TPpContext11TokenStream8getTokenERNS_17TParseContextBaseEPNS_8TPpTokenE(
    Pp::TokenStream* body, glslang::TParseContextBase& context, glslang::TPpToken* token) {
    if (!spend(1))
        return glslang::EndOfInput;
    return __real__ZN7glslang10TPpContext11TokenStream8getTokenERNS_17TParseContextBaseEPNS_8TPpTokenE(
        body, context, token);
}

void __wrap__ZN7glslang10TPpContext20pushTokenStreamInputERNS0_11TokenStreamEb(
    Pp* preprocessor, Pp::TokenStream& argument, bool pasted) {
    if (spend(Open_stream::size(argument)))
        __real__ZN7glslang10TPpContext20pushTokenStreamInputERNS0_11TokenStreamEb(preprocessor,
                                                                                  argument, pasted);
}

} // extern "C"
