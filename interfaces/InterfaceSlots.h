/// The slots for objects of the public interfaces, for the rows of their tables.
#pragma once

#include "com/DispatchThunk.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm {

template <>
struct DispatchType<IPolicyTask**> : SlotDispatchType<IPolicyTask**, ParameterType::TaskSlot> {
};
template <>
struct DispatchType<IPolicyProduct**> : SlotDispatchType<IPolicyProduct**, ParameterType::ProductSlot> {
};

}  // namespace zupm
