// SPDX-License-Identifier: MIT
// clang has no limit for macros and no place to put one: by the time it tells that a macro is
// expanded it is too late, since thirty nested calls of "#define D(x) x x" become a billion tokens
// before the next word from it. So each expansion is first gone through here, where it can end.
#include "macro_size.hpp"

#include <clang/Lex/MacroInfo.h>
#include <clang/Lex/Preprocessor.h>
#include <llvm/ADT/SmallPtrSet.h>

#include <optional>
#include <string>
#include <vector>

namespace opencl {
namespace {

using clang::MacroInfo;
using clang::Token;
using Token_list = std::vector<Token>;

struct Over_limit {};

class Expansion {
public:
    Expansion(clang::Preprocessor& preprocessor, std::size_t limit)
        : preprocessor_(preprocessor), limit_(limit) {}

    void run(const MacroInfo& macro, const std::vector<Tokens>& arguments) {
        Streams streams;
        open(streams, substitute(macro, arguments), &macro);
        Token_list result;
        expand(streams, result);
    }

    std::size_t size() const { return size_; }

private:
    // Tokens that are being read; those of a macro's body keep the macro from being expanded.
    struct Stream {
        Token_list tokens;
        std::size_t at;
        const MacroInfo* macro;
    };
    using Streams = std::vector<Stream>;

    // Long texts count as several tokens: they can be multiplied as well.
    void spend(const Token& token) {
        constexpr unsigned BYTES_OF_A_TOKEN = 32;
        size_ += 1 + (token.isAnnotation() ? 0 : token.getLength() / BYTES_OF_A_TOKEN);
        if (size_ > limit_)
            throw Over_limit();
    }

    void put(Token_list& list, const Token& token) {
        spend(token);
        list.push_back(token);
    }

    void open(Streams& streams, Token_list&& tokens, const MacroInfo* macro) {
        streams.push_back({std::move(tokens), 0, macro});
        if (macro != nullptr)
            active_.insert(macro);
    }

    // The next token stays where it is; nothing at the end of all streams.
    const Token* peek(Streams& streams) {
        while (!streams.empty() && streams.back().at == streams.back().tokens.size()) {
            if (streams.back().macro != nullptr)
                active_.erase(streams.back().macro);
            streams.pop_back();
        }
        return streams.empty() ? nullptr : &streams.back().tokens[streams.back().at];
    }

    std::optional<Token> take(Streams& streams) {
        const Token* next = peek(streams);
        if (next == nullptr)
            return std::nullopt;
        const Token token = *next;
        ++streams.back().at;
        return token;
    }

    void expand(Streams& streams, Token_list& result) {
        while (std::optional<Token> token = take(streams)) {
            const MacroInfo* macro = macro_of(*token);
            if (macro == nullptr || !expand_macro(streams, *macro))
                put(result, *token);
        }
    }

    const MacroInfo* macro_of(Token& token) {
        const clang::IdentifierInfo* name = token.getIdentifierInfo();
        if (name == nullptr || token.isExpandDisabled())
            return nullptr;
        const MacroInfo* macro = preprocessor_.getMacroInfo(name);
        if (macro == nullptr || macro->isBuiltinMacro())
            return nullptr;
        if (active_.count(macro) == 0)
            return macro;
        token.setFlag(Token::DisableExpand);
        return nullptr;
    }

    bool expand_macro(Streams& streams, const MacroInfo& macro) {
        if (!macro.isFunctionLike()) {
            open(streams, substitute(macro, {}), &macro);
            return true;
        }
        const Token* next = peek(streams);
        if (next == nullptr || next->isNot(clang::tok::l_paren))
            return false;
        const std::vector<Token_list> arguments = take_arguments(streams, macro);
        open(streams, substitute(macro, {arguments.begin(), arguments.end()}), &macro);
        return true;
    }

    std::vector<Token_list> take_arguments(Streams& streams, const MacroInfo& macro) {
        std::vector<Token_list> arguments(1);
        take(streams); // the parenthesis
        for (unsigned depth = 1; std::optional<Token> token = take(streams);) {
            if (token->is(clang::tok::l_paren))
                ++depth;
            else if (token->is(clang::tok::r_paren) && --depth == 0)
                break;
            if (token->is(clang::tok::comma) && depth == 1 && !is_last(arguments, macro))
                arguments.emplace_back();
            else
                put(arguments.back(), *token);
        }
        return arguments;
    }

    static bool is_last(const std::vector<Token_list>& arguments, const MacroInfo& macro) {
        return macro.isVariadic() && arguments.size() == macro.getNumParams();
    }

    Token_list substitute(const MacroInfo& macro, const std::vector<Tokens>& arguments) {
        Token_list result;
        std::vector<std::optional<Token_list>> expanded(arguments.size());
        std::size_t left = 0; // where the operand begins that a ## would follow
        const Tokens body = macro.tokens();
        for (std::size_t i = 0; i < body.size(); ++i) {
            if (body[i].is(clang::tok::hashhash) && i + 1 < body.size()) {
                paste(result, left, raw(macro, body[++i], arguments));
                continue;
            }
            left = result.size();
            const std::optional<std::size_t> number = parameter(macro, body[i], arguments.size());
            if (!number || is_raw(body, i))
                append(result, raw(macro, body[i], arguments));
            else
                append(result, expand_argument(expanded[*number], arguments[*number]));
        }
        return result;
    }

    static std::optional<std::size_t> parameter(const MacroInfo& macro, const Token& token,
                                                std::size_t count) {
        const clang::IdentifierInfo* name = token.getIdentifierInfo();
        const int number = name == nullptr ? -1 : macro.getParameterNum(name);
        if (number < 0 || static_cast<std::size_t>(number) >= count)
            return std::nullopt;
        return static_cast<std::size_t>(number);
    }

    // Beside # and ## the argument is taken as it stands. (A text that # makes of it counts as its
    // tokens here, and takes about that much.)
    static bool is_raw(Tokens body, std::size_t at) {
        const bool after = at > 0 && body[at - 1].isOneOf(clang::tok::hash, clang::tok::hashat);
        const bool before = at + 1 < body.size() && body[at + 1].is(clang::tok::hashhash);
        return after || before;
    }

    static Tokens raw(const MacroInfo& macro, const Token& token,
                      const std::vector<Tokens>& arguments) {
        const std::optional<std::size_t> number = parameter(macro, token, arguments.size());
        return number ? arguments[*number] : Tokens(token);
    }

    void append(Token_list& result, Tokens tokens) {
        for (const Token& token : tokens)
            put(result, token);
    }

    const Token_list& expand_argument(std::optional<Token_list>& expanded, Tokens argument) {
        if (!expanded) {
            Streams streams;
            open(streams, argument.vec(), nullptr);
            expanded.emplace();
            expand(streams, *expanded);
        }
        return *expanded;
    }

    // What matters of a pasted token is its length and which macro it names: it becomes a name,
    // whatever it is.
    void paste(Token_list& result, std::size_t left, Tokens right) {
        if (result.size() > left && !right.empty()) {
            Token& token = result.back();
            const std::string text = text_of(token) + text_of(right.front());
            token.startToken();
            token.setKind(clang::tok::identifier);
            token.setIdentifierInfo(preprocessor_.getIdentifierInfo(text));
            token.setLength(static_cast<unsigned>(text.size()));
            spend(token);
            right = right.drop_front();
        }
        append(result, right);
    }

    std::string text_of(const Token& token) {
        const clang::IdentifierInfo* name = token.getIdentifierInfo();
        return name != nullptr ? name->getName().str() : preprocessor_.getSpelling(token);
    }

    clang::Preprocessor& preprocessor_;
    std::size_t limit_;
    std::size_t size_ = 0;
    llvm::SmallPtrSet<const MacroInfo*, 16> active_;
};

} // namespace

std::size_t macro_size(clang::Preprocessor& preprocessor, const MacroInfo& macro,
                       const std::vector<Tokens>& arguments, std::size_t limit) {
    Expansion expansion(preprocessor, limit);
    try {
        expansion.run(macro, arguments);
    } catch (const Over_limit&) {
        // the size tells
    }
    return expansion.size();
}

} // namespace opencl
