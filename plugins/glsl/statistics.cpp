// SPDX-License-Identifier: MIT
#include "statistics.hpp"

#include <glslang/MachineIndependent/localintermediate.h>
#include <glslang/SPIRV/spirv.hpp>

#include <cstddef>
#include <string>

namespace glsl {
namespace {

// What the source declares, used or not.
struct Interface {
    std::size_t inputs = 0;
    std::size_t outputs = 0;
    std::size_t uniforms = 0;
    std::size_t uniform_blocks = 0;
    std::size_t storage_blocks = 0;
    std::size_t samplers = 0;
    std::size_t images = 0;

    void count(const glslang::TType& type) {
        const bool block = type.getBasicType() == glslang::EbtBlock;
        switch (type.getQualifier().storage) {
        case glslang::EvqVaryingIn:
            ++inputs;
            break;
        case glslang::EvqVaryingOut:
            ++outputs;
            break;
        case glslang::EvqBuffer:
            ++storage_blocks;
            break;
        case glslang::EvqUniform:
            ++(block             ? uniform_blocks
               : type.isImage()  ? images
               : type.isOpaque() ? samplers
                                 : uniforms);
            break;
        default:
            break;
        }
    }
};

struct Instructions {
    std::size_t all = 0;
    std::size_t arithmetic = 0;
    std::size_t texture = 0;
    std::size_t image = 0;
    std::size_t memory = 0;
    std::size_t branches = 0;
    std::size_t calls = 0;

    void count(unsigned opcode) {
        ++all;
        if (opcode >= spv::OpSNegate && opcode <= spv::OpSMulExtended)
            ++arithmetic;
        else if (opcode >= spv::OpImageSampleImplicitLod && opcode <= spv::OpImageDrefGather)
            ++texture;
        else if (opcode == spv::OpImageRead || opcode == spv::OpImageWrite)
            ++image;
        else if (opcode == spv::OpLoad || opcode == spv::OpStore)
            ++memory;
        else if (opcode >= spv::OpBranch && opcode <= spv::OpSwitch)
            ++branches;
        else if (opcode == spv::OpFunctionCall)
            ++calls;
    }
};

// Of the language's own variables only blocks are listed beside the declared ones, as gl_in is.
bool is_built_in_block(const glslang::TType& type) {
    return type.getBasicType() == glslang::EbtBlock && type.getTypeName().compare(0, 3, "gl_") == 0;
}

Interface count_interface(const glslang::TIntermediate& tree) {
    Interface interface;
    for (const TIntermNode* node : tree.findLinkerObjects()->getSequence()) {
        const glslang::TIntermSymbol* symbol = node->getAsSymbolNode();
        if (symbol != nullptr && !is_built_in_block(symbol->getType()))
            interface.count(symbol->getType());
    }
    return interface;
}

Instructions count_instructions(const Spirv& words) {
    constexpr std::size_t HEADER_WORDS = 5;
    Instructions instructions;
    std::size_t at = HEADER_WORDS;
    while (at < words.size()) {
        instructions.count(words[at] & spv::OpCodeMask);
        at += words[at] >> spv::WordCountShift;
    }
    return instructions;
}

} // namespace

std::vector<plugin::Texts> statistics(const glslang::TIntermediate& tree, const Spirv& words) {
    const Interface interface = count_interface(tree);
    const Instructions instructions = count_instructions(words);
    return {
        {"statistic", "count"},
        {"inputs", std::to_string(interface.inputs)},
        {"outputs", std::to_string(interface.outputs)},
        {"uniforms", std::to_string(interface.uniforms)},
        {"uniform blocks", std::to_string(interface.uniform_blocks)},
        {"storage blocks", std::to_string(interface.storage_blocks)},
        {"samplers", std::to_string(interface.samplers)},
        {"images", std::to_string(interface.images)},
        {"SPIR-V instructions", std::to_string(instructions.all)},
        {"arithmetic instructions", std::to_string(instructions.arithmetic)},
        {"texture instructions", std::to_string(instructions.texture)},
        {"image instructions", std::to_string(instructions.image)},
        {"load and store instructions", std::to_string(instructions.memory)},
        {"branch instructions", std::to_string(instructions.branches)},
        {"function calls", std::to_string(instructions.calls)},
    };
}

} // namespace glsl
