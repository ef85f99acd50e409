// SPDX-License-Identifier: MIT
#include "module_check.hpp"

#include "builtin_calls.hpp"
#include "limits.hpp"
#include "translatable.hpp"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/STLExtras.h>
#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/Demangle/Demangle.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>
#include <llvm/Support/raw_ostream.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace opencl {
namespace {

// Of one instruction of SPIR-V.
constexpr unsigned MAX_CASES = 16'383;
constexpr std::uint64_t MAX_INITIAL_VALUES = 65'000;

std::string text_of_use(llvm::StringRef builtin) {
    return builtin == SAMPLER ? "this sampler"
                              : "this use of '" + llvm::demangle(builtin.str()) + "'";
}

std::string text_of(const llvm::Type& type) {
    std::string text;
    llvm::raw_string_ostream(text) << type;
    return text;
}

class Check {
public:
    explicit Check(plugin::Outputs& outputs) : outputs_(outputs) {}

    void check(const llvm::Module& module) {
        if (has_too_many_functions(module)) {
            outputs_.errors.push_back("error: there are more than " +
                                      std::to_string(MAX_FUNCTIONS) + " functions");
            return;
        }
        if (!module.alias_empty() || !module.ifunc_empty())
            refuse("an alias");
        for (const llvm::GlobalVariable& variable : module.globals())
            check_variable(variable);
        for (const llvm::Function& function : module)
            check_function(function);
    }

private:
    static bool has_too_many_functions(const llvm::Module& module) {
        return MAX_FUNCTIONS <
               static_cast<std::size_t>(llvm::count_if(
                   module,
                   [](const llvm::Function& function) { return !function.isDeclaration(); }));
    }

    void check_variable(const llvm::GlobalVariable& variable) {
        place_ = variable.getName().str();
        if (variable.getName().startswith("llvm."))
            refuse("an attribute");
        if (variable.isThreadLocal())
            refuse("a thread's own variable");
        check_type(variable.getType());
        if (variable.hasInitializer()) {
            check_operand(variable.getInitializer());
            check_initial_value(variable.getInitializer());
        }
    }

    void check_function(const llvm::Function& function) {
        place_ = llvm::demangle(function.getName().str());
        if (!function.isIntrinsic())
            check_type(function.getFunctionType());
        for (const llvm::Instruction& instruction : llvm::instructions(function))
            check_instruction(instruction);
    }

    void check_instruction(const llvm::Instruction& instruction) {
        if (!is_known_opcode(instruction.getOpcode()))
            refuse(std::string("the instruction '") + instruction.getOpcodeName() + "'");
        check_cast(instruction);
        if (const auto* const call = llvm::dyn_cast<llvm::CallInst>(&instruction))
            check_call(*call);
        if (const auto* const variable = llvm::dyn_cast<llvm::AllocaInst>(&instruction))
            check_private_variable(*variable);
        if (const auto* const choice = llvm::dyn_cast<llvm::SwitchInst>(&instruction))
            check_switch(*choice);
        if (const auto* const atomic = llvm::dyn_cast<llvm::AtomicRMWInst>(&instruction))
            check_atomic(*atomic);
        check_type(instruction.getType());
        for (const llvm::Value* operand : instruction.operands())
            check_operand(operand);
    }

    void check_cast(const llvm::Value& value) {
        const auto* const cast = llvm::dyn_cast<llvm::AddrSpaceCastOperator>(&value);
        if (cast != nullptr && !is_known_cast(*cast))
            refuse("a conversion between address spaces");
    }

    void check_call(const llvm::CallInst& call) {
        const llvm::Function* called = call.getCalledFunction();
        if (called == nullptr)
            refuse(call.isInlineAsm() ? "inline assembly" : "a call through a pointer");
        else if (called->isDeclaration() && !is_known_call(call, *called))
            refuse(called->isIntrinsic() ? "'" + called->getName().str() + "'"
                                         : text_of_use(called->getName()));
    }

    void check_private_variable(const llvm::AllocaInst& variable) {
        if (variable.isArrayAllocation())
            refuse("a variable of variable size");
        check_type(variable.getAllocatedType());
    }

    void check_atomic(const llvm::AtomicRMWInst& atomic) {
        if (!is_known_atomic(atomic.getOperation()))
            refuse("the atomic operation '" +
                   llvm::AtomicRMWInst::getOperationName(atomic.getOperation()).str() + "'");
    }

    void check_switch(const llvm::SwitchInst& choice) {
        if (choice.getNumCases() > MAX_CASES)
            refuse("a switch of more than " + std::to_string(MAX_CASES) + " cases");
    }

    // A function can only be called, or stand in a block, where its address is a constant.
    void check_operand(const llvm::Value* value) {
        if (llvm::isa<llvm::Function>(value))
            return;
        check_type(value->getType());
        const auto* const constant = llvm::dyn_cast<llvm::Constant>(value);
        if (constant == nullptr || llvm::isa<llvm::GlobalValue>(constant) ||
            !checked_constants_.insert(constant).second)
            return;
        check_constant(*constant);
        for (const llvm::Value* operand : constant->operands())
            check_operand(operand);
    }

    void check_constant(const llvm::Constant& constant) {
        check_cast(constant);
        const auto* const expression = llvm::dyn_cast<llvm::ConstantExpr>(&constant);
        if (expression != nullptr && !is_known_opcode(expression->getOpcode()))
            refuse(std::string("the constant '") + expression->getOpcodeName() + "'");
        const auto* const data = llvm::dyn_cast<llvm::ConstantDataSequential>(&constant);
        if ((data != nullptr && data->getNumElements() > MAX_INITIAL_VALUES) ||
            constant.getNumOperands() > MAX_INITIAL_VALUES)
            refuse("more than " + std::to_string(MAX_INITIAL_VALUES) + " initial values");
    }

    // Of an address SPIR-V can compute little before the kernel runs.
    void check_initial_value(const llvm::Constant* value) {
        const auto* const expression = llvm::dyn_cast<llvm::ConstantExpr>(value);
        if (expression != nullptr && !is_address(*expression))
            refuse("an initial value that is computed from an address");
        for (const llvm::Value* operand : value->operands()) {
            if (llvm::isa<llvm::GlobalValue>(operand)) {
                if (llvm::isa<llvm::ConstantAggregate>(value))
                    refuse("an address among initial values");
            } else if (checked_values_.insert(operand).second) {
                check_initial_value(llvm::cast<llvm::Constant>(operand));
            }
        }
    }

    static bool is_address(const llvm::ConstantExpr& expression) {
        return llvm::isa<llvm::GEPOperator, llvm::BitCastOperator, llvm::AddrSpaceCastOperator>(
            expression);
    }

    // The number of levels, where a type that holds a pointer to itself is one at that place.
    unsigned check_type(llvm::Type* type) {
        if (const auto [known, added] = depths_.try_emplace(type, 0); !added)
            return known->second;
        if (!is_known_type(*type))
            refuse("the type '" + text_of(*type) + "'");
        unsigned depth = 0;
        for (llvm::Type* part : type->subtypes())
            depth = std::max(depth, check_type(part) + 1);
        if (depth == MAX_TYPE_DEPTH)
            refuse("a type of more than " + std::to_string(MAX_TYPE_DEPTH) + " levels");
        depths_[type] = depth;
        return depth;
    }

    void refuse(const std::string& what) {
        std::string error =
            "error: in '" + place_ + "': " + what + " cannot be translated to SPIR-V";
        if (outputs_.errors.empty() || outputs_.errors.back() != error)
            outputs_.errors.push_back(std::move(error));
    }

    plugin::Outputs& outputs_;
    std::string place_;
    llvm::DenseMap<llvm::Type*, unsigned> depths_;
    llvm::SmallPtrSet<const llvm::Constant*, 32> checked_constants_;
    llvm::SmallPtrSet<const llvm::Value*, 32> checked_values_;
};

} // namespace

void check_module(const llvm::Module& module, plugin::Outputs& outputs) {
    Check(outputs).check(module);
}

} // namespace opencl
