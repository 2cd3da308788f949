/// The owner of a reference to an object that a client handed in.
#pragma once

#include "zuPolicyManager/ComBase.h"

namespace zupm {

/// One reference to an object that may be anybody's, and may break the rules.
///
/// Errors  Empty when the object is null or refuses the interface; what a refusal leaves in the slot is no reference
///         and is not touched. What QueryInterface throws passes out, as for every other call of the object; what
///         Release throws is dropped, because nothing is left to do with the object then.
template <class Interface>
class IncomingObject {
public:
    IncomingObject(IUnknown* object, REFIID iid)
    {
        void* found = nullptr;
        if (object != nullptr && SUCCEEDED(object->QueryInterface(iid, &found))) {
            m_object = static_cast<Interface*>(found);
        }
    }
    ~IncomingObject()
    {
        if (m_object == nullptr) {
            return;
        }
        try {
            m_object->Release();
        } catch (...) {  // NOLINT(bugprone-empty-catch): see Errors
        }
    }
    IncomingObject(const IncomingObject&) = delete;
    IncomingObject& operator=(const IncomingObject&) = delete;

    explicit operator bool() const noexcept { return m_object != nullptr; }
    Interface& operator*() const noexcept { return *m_object; }

private:
    Interface* m_object = nullptr;
};

}  // namespace zupm
