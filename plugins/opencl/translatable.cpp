// SPDX-License-Identifier: MIT
#include "translatable.hpp"

#include <llvm/ADT/STLExtras.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/DerivedTypes.h>
#include <llvm/IR/Intrinsics.h>

#include <cstdint>

namespace opencl {
namespace {

constexpr unsigned MAX_ADDRESS_SPACE = 4;

// SPIR-V's limits.
constexpr unsigned MAX_MEMBERS = 16'383;
constexpr unsigned MAX_PARAMETERS = 255;

bool is_known_width(unsigned bits) {
    return bits == 1 || bits == 8 || bits == 16 || bits == 32 || bits == 64;
}

bool is_known_vector(const llvm::Type& type) {
    const auto* const vector = llvm::dyn_cast<llvm::FixedVectorType>(&type);
    if (vector == nullptr)
        return false;
    const unsigned size = vector->getNumElements();
    return size == 2 || size == 3 || size == 4 || size == 8 || size == 16;
}

bool is_known_pointer(const llvm::PointerType& type) {
    return type.getAddressSpace() <= MAX_ADDRESS_SPACE && !type.isOpaque() &&
           !type.getNonOpaquePointerElementType()->isFunctionTy();
}

bool is_known_struct(const llvm::StructType& type) {
    return type.isOpaque() || (type.getNumElements() > 0 && type.getNumElements() <= MAX_MEMBERS);
}

bool is_known_intrinsic(llvm::Intrinsic::ID id) {
    switch (id) {
    case llvm::Intrinsic::memcpy:
    case llvm::Intrinsic::memset:
    case llvm::Intrinsic::fmuladd:
    case llvm::Intrinsic::lifetime_start:
    case llvm::Intrinsic::lifetime_end:
        return true;
    default:
        return false;
    }
}

bool has_constant_arguments(const llvm::CallInst& call) {
    return llvm::all_of(call.args(), [](const llvm::Use& argument) {
        return llvm::isa<llvm::ConstantInt>(argument);
    });
}

bool compares_numbers_with_fraction(const llvm::CallInst& call) {
    return llvm::any_of(call.args(), [](const llvm::Use& argument) {
        return argument->getType()->isFloatingPointTy();
    });
}

// Addressing modes end at 4; a filter is 1 or 2.
bool is_sampler(const llvm::CallInst& call) {
    const auto* const value = llvm::dyn_cast<llvm::ConstantInt>(call.getArgOperand(0));
    if (value == nullptr)
        return false;
    const std::uint64_t bits = value->getZExtValue();
    const std::uint64_t addressing = (bits >> 1U) & 7U;
    const std::uint64_t filter = bits >> 4U;
    return addressing <= 4 && (filter == 1 || filter == 2);
}

// Functions of C that clang calls on its own behalf, such as memcmp and __atomic_load, are nowhere.
bool is_opencl_builtin(llvm::StringRef name) {
    return name.startswith("_Z") || name == "printf" ||
           (name.startswith("__") && !name.startswith("__atomic_"));
}

// Where the translator expects more of a call than clang does. The names are mangled.
bool fits_builtin(const llvm::CallInst& call, llvm::StringRef name) {
    if (!is_opencl_builtin(name))
        return false;
    if (name == SAMPLER)
        return is_sampler(call);
    if (name.contains("mem_fence") || name.contains("item_fence") || name.contains("barrier"))
        return has_constant_arguments(call);
    return !name.contains("atomic_compare_exchange") || !compares_numbers_with_fraction(call);
}

} // namespace

bool is_known_type(const llvm::Type& type) {
    switch (type.getTypeID()) {
    case llvm::Type::IntegerTyID:
        return is_known_width(type.getIntegerBitWidth());
    case llvm::Type::PointerTyID:
        return is_known_pointer(llvm::cast<llvm::PointerType>(type));
    case llvm::Type::FixedVectorTyID:
        return is_known_vector(type);
    case llvm::Type::FunctionTyID:
        return type.getNumContainedTypes() <= MAX_PARAMETERS + 1;
    case llvm::Type::StructTyID:
        return is_known_struct(llvm::cast<llvm::StructType>(type));
    case llvm::Type::ArrayTyID:
        return type.getArrayNumElements() > 0;
    case llvm::Type::HalfTyID:
    case llvm::Type::FloatTyID:
    case llvm::Type::DoubleTyID:
    case llvm::Type::VoidTyID:
    case llvm::Type::LabelTyID:
        return true;
    default:
        return false;
    }
}

// To the generic address space and back.
bool is_known_cast(const llvm::AddrSpaceCastOperator& cast) {
    constexpr unsigned CONSTANT = 2;
    constexpr unsigned GENERIC = 4;
    const unsigned from = cast.getPointerOperand()->getType()->getPointerAddressSpace();
    const unsigned to = cast.getType()->getPointerAddressSpace();
    return (from == GENERIC) != (to == GENERIC) && from != CONSTANT && to != CONSTANT;
}

bool is_known_opcode(unsigned opcode) {
    using llvm::Instruction;
    switch (opcode) {
    case Instruction::Ret:
    case Instruction::Br:
    case Instruction::Switch:
    case Instruction::Unreachable:
    case Instruction::Alloca:
    case Instruction::Load:
    case Instruction::Store:
    case Instruction::GetElementPtr:
    case Instruction::AtomicRMW:
    case Instruction::AtomicCmpXchg:
    case Instruction::PHI:
    case Instruction::Call:
    case Instruction::Select:
    case Instruction::ICmp:
    case Instruction::FCmp:
    case Instruction::ExtractElement:
    case Instruction::InsertElement:
    case Instruction::ShuffleVector:
    case Instruction::ExtractValue:
    case Instruction::InsertValue:
        return true;
    default:
        return Instruction::isBinaryOp(opcode) || Instruction::isUnaryOp(opcode) ||
               Instruction::isCast(opcode);
    }
}

bool is_known_atomic(llvm::AtomicRMWInst::BinOp operation) {
    using llvm::AtomicRMWInst;
    switch (operation) {
    case AtomicRMWInst::Xchg:
    case AtomicRMWInst::Add:
    case AtomicRMWInst::Sub:
    case AtomicRMWInst::And:
    case AtomicRMWInst::Or:
    case AtomicRMWInst::Xor:
    case AtomicRMWInst::Max:
    case AtomicRMWInst::Min:
    case AtomicRMWInst::UMax:
    case AtomicRMWInst::UMin:
        return true;
    default:
        return false;
    }
}

bool is_known_call(const llvm::CallInst& call, const llvm::Function& called) {
    return called.isIntrinsic() ? is_known_intrinsic(called.getIntrinsicID())
                                : fits_builtin(call, called.getName());
}

} // namespace opencl
