// SPDX-License-Identifier: MIT
#include "call_graph.hpp"

#include <glslang/MachineIndependent/localintermediate.h>

#include <set>
#include <string_view>
#include <utility>

namespace glsl {
namespace {

class Calls : public glslang::TIntermTraverser {
public:
    bool visitAggregate(glslang::TVisit, glslang::TIntermAggregate* node) override {
        const std::string_view name(node->getName().c_str(), node->getName().size());
        if (node->getOp() == glslang::EOpFunction)
            caller_ = name;
        else if (node->getOp() == glslang::EOpFunctionCall)
            pairs_.emplace(caller_, name);
        return true;
    }

    std::size_t count() const { return pairs_.size(); }

private:
    std::string_view caller_;
    std::set<std::pair<std::string_view, std::string_view>> pairs_;
};

} // namespace

std::size_t calls_in(const glslang::TIntermediate& tree) {
    Calls calls;
    if (TIntermNode* const root = tree.getTreeRoot()) // an empty source has none
        root->traverse(&calls);
    return calls.count();
}

} // namespace glsl
