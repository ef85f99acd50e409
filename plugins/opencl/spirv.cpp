// SPDX-License-Identifier: MIT
#include "spirv.hpp"

#include <LLVMSPIRVLib/LLVMSPIRVLib.h>

#include <sstream>
#include <string>

namespace opencl {
namespace {

// OpenCL devices read SPIR-V up to 1.2; the extensions for subgroups take 1.3.
SPIRV::VersionNumber highest_version(const llvm::Module& module) {
    for (const llvm::Function& function : module) {
        if (function.isDeclaration() && function.getName().contains("sub_group"))
            return SPIRV::VersionNumber::SPIRV_1_3;
    }
    return SPIRV::VersionNumber::SPIRV_1_2;
}

// The translator ends the process over a built-in whose extension is not enabled here. These are
// the ones that clang lets a source call; what a source does not use leaves no trace.
SPIRV::TranslatorOpts::ExtensionsStatusMap extensions() {
    using SPIRV::ExtensionID;
    SPIRV::TranslatorOpts::ExtensionsStatusMap map;
    for (const ExtensionID extension :
         {ExtensionID::SPV_EXT_shader_atomic_float_add,
          ExtensionID::SPV_EXT_shader_atomic_float_min_max,
          ExtensionID::SPV_KHR_integer_dot_product, ExtensionID::SPV_KHR_bit_instructions,
          ExtensionID::SPV_INTEL_subgroups, ExtensionID::SPV_INTEL_media_block_io,
          ExtensionID::SPV_INTEL_device_side_avc_motion_estimation})
        map[extension] = true;
    return map;
}

} // namespace

std::vector<std::uint8_t> make_spirv(llvm::Module& module, plugin::Outputs& outputs) {
    const SPIRV::TranslatorOpts options(highest_version(module), extensions());
    std::ostringstream stream;
    std::string error;
    if (!llvm::writeSpirv(&module, options, stream, error)) {
        outputs.errors.push_back("error: " + error);
        return {};
    }
    const std::string bytes = stream.str();
    return {bytes.begin(), bytes.end()};
}

} // namespace opencl
