// SPDX-License-Identifier: MIT
#include "spirv.hpp"

#include "diagnostics.hpp"
#include "limits.hpp"

#include <glslang/MachineIndependent/localintermediate.h>
#include <glslang/SPIRV/GlslangToSpv.h>

#include <string>

namespace glsl {
namespace {

// Blocks whose layout the source leaves to the implementation: without a choice glslang writes
// them without offsets.
class Choose_block_layouts : public glslang::TIntermTraverser {
public:
    void visitSymbol(glslang::TIntermSymbol* symbol) override {
        if (symbol->getBasicType() != glslang::EbtBlock)
            return;
        glslang::TQualifier& qualifier = symbol->getWritableType().getQualifier();
        if (qualifier.layoutPacking == glslang::ElpStd140 ||
            qualifier.layoutPacking == glslang::ElpStd430)
            return;
        if (qualifier.storage == glslang::EvqUniform)
            qualifier.layoutPacking = glslang::ElpStd140;
        else if (qualifier.storage == glslang::EvqBuffer)
            qualifier.layoutPacking = glslang::ElpStd430;
    }
};

void replace_bools(glslang::TType& type) {
    if (type.getBasicType() == glslang::EbtBool)
        type.setBasicType(glslang::EbtUint);
    if (!type.isStruct())
        return;
    for (glslang::TTypeLoc& member : *type.getWritableStruct())
        replace_bools(*member.type);
}

// SPIR-V allows no bool in what an application sets. In blocks glslang itself puts integers there
// and converts what it loads; it does so for any variable whose type is not that of the expression.
// A variable gets the type of its first symbol, and so the changed ones are put in front.
void replace_uniform_bools(glslang::TIntermediate& tree) {
    glslang::TIntermAggregate* const symbols = tree.findLinkerObjects();
    bool replaced = false;
    for (TIntermNode* node : symbols->getSequence()) {
        glslang::TIntermSymbol* const symbol = node->getAsSymbolNode();
        if (symbol == nullptr || symbol->getQualifier().storage != glslang::EvqUniform ||
            symbol->getBasicType() == glslang::EbtBlock ||
            !symbol->getType().containsBasicType(glslang::EbtBool))
            continue;
        glslang::TType type;
        type.deepCopy(symbol->getType()); // members may be shared with other variables
        replace_bools(type);
        symbol->setType(type);
        replaced = true;
    }
    glslang::TIntermSequence& parts = tree.getTreeRoot()->getAsAggregate()->getSequence();
    if (replaced)
        parts.insert(parts.begin(), symbols);
}

bool takes_locations(const glslang::TType& type) {
    const glslang::TStorageQualifier storage = type.getQualifier().storage;
    return storage == glslang::EvqUniform || storage == glslang::EvqVaryingIn ||
           storage == glslang::EvqVaryingOut;
}

bool is_too_large(const glslang::TType& type) {
    if (!type.isSizedArray() || !takes_locations(type))
        return false;
    long long elements = 1;
    for (int dimension = 0; dimension < type.getArraySizes()->getNumDims(); ++dimension) {
        elements *= type.getArraySizes()->getDimSize(dimension);
        if (elements > MAX_INTERFACE_ELEMENTS)
            return true;
    }
    return false;
}

bool check_sizes(const glslang::TIntermediate& tree, plugin::Outputs& outputs) {
    for (const TIntermNode* node : tree.findLinkerObjects()->getSequence()) {
        const glslang::TIntermSymbol* symbol = node->getAsSymbolNode();
        if (symbol == nullptr || !is_too_large(symbol->getType()))
            continue;
        outputs.errors.push_back("ERROR: '" + std::string(symbol->getName().c_str()) +
                                 "' : array of more than " +
                                 std::to_string(MAX_INTERFACE_ELEMENTS) + " elements");
    }
    return outputs.errors.empty();
}

// The tree was parsed for no client at all, since rules for OpenGL would refuse versions 100 and
// 300; what it is translated for is told afterwards.
void set_target(glslang::TIntermediate& tree) {
    glslang::SpvVersion target;
    target.spv = glslang::EShTargetSpv_1_0;
    target.openGl = 100;
    tree.setSpv(target);
    tree.setAutoMapBindings(true);
    tree.setAutoMapLocations(true);
}

void add_warnings(const spv::SpvBuildLogger& logger, plugin::Outputs& outputs) {
    if (const std::string messages = logger.getAllMessages(); !messages.empty())
        outputs.warnings.push_back("WARNING: SPIR-V: " + messages);
}

} // namespace

Spirv make_spirv(glslang::TProgram& program, EShLanguage stage, plugin::Outputs& outputs) {
    glslang::TIntermediate& tree = *program.getIntermediate(stage);
    if (!check_sizes(tree, outputs))
        return {};
    set_target(tree);
    const bool mapped = program.mapIO();
    add_diagnostics(program.getInfoLog(), outputs);
    if (!mapped)
        return {};
    Choose_block_layouts choose_block_layouts;
    tree.getTreeRoot()->traverse(&choose_block_layouts);
    replace_uniform_bools(tree);

    Spirv words;
    spv::SpvBuildLogger logger;
    glslang::SpvOptions options;
    glslang::GlslangToSpv(tree, words, &logger, &options);
    add_warnings(logger, outputs);
    return words;
}

} // namespace glsl
