// SPDX-License-Identifier: MIT
#include "translatable.hpp"

#include <llvm/IR/DerivedTypes.h>

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

} // namespace opencl
