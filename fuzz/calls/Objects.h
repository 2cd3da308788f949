/// The objects that one script of calls has alive.
#pragma once

#include <deque>
#include <memory>
#include <span>
#include <vector>

#include "com/Dispatch.h"
#include "fuzz/support/Input.h"
#include "tests/support/ActingObjects.h"
#include "tests/support/ComPtr.h"

namespace zupm::fuzz {

/// The interfaces that the objects of one kind have: the dual one, and those beside it.
using Interfaces = std::span<const InterfaceDescription* const>;

/// One object of the component, with its dual interface.
struct LiveObject {
    test::ComPtr<IDispatch> object;
    Interfaces interfaces;

    /// One of its interfaces.
    [[nodiscard]] const InterfaceDescription& Pick(Input& input) const
    {
        return *interfaces[input.UpTo(interfaces.size() - 1)];
    }
};

class Objects;

/// One step of a script.
using ScriptStep = void (*)(Input& input, Objects& objects);

/// All objects of a script: the component's own, and foreign ones that are handed to it.
///
/// Lifetime  Destroying it releases everything and demands that the component then has nothing left.
class Objects {
public:
    /// Foreign objects run `step` before they answer.
    explicit Objects(ScriptStep step) : m_step(step) {}
    ~Objects();
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    /// Makes an object of one of the classes: alone, as a part of an outer object, or through its class factory.
    void Create(Input& input);
    /// Makes a policy file object and has it load a file, with or without success.
    void CreateLoaded(std::u16string_view path);
    /// Takes over a reference that a call handed out; null is allowed.
    void Adopt(IUnknown* object);
    /// Releases one object.
    void Drop(Input& input);
    /// Asks one object for another interface and uses that one from now on.
    void Query(Input& input);

    /// One of the objects; null when there is none.
    [[nodiscard]] LiveObject* Pick(Input& input);
    /// Something to hand to a call: an object, a foreign one or null. Stays the script's.
    [[nodiscard]] IUnknown* PickArgument(Input& input);

private:
    void Add(test::ComPtr<IUnknown> object);
    /// Adds an object that has this interface, its dual one; false when it is another object.
    [[nodiscard]] bool AddAs(const test::ComPtr<IUnknown>& object, Interfaces interfaces);
    [[nodiscard]] IUnknown* MakeForeign(Input& input);
    void CallBack(Input& input);

    std::vector<LiveObject> m_objects;
    ScriptStep m_step;
    int m_callBacks = 0;
    std::deque<test::ActingProduct> m_foreignProducts;
    std::deque<test::ActingTask> m_foreignTasks;
};

}  // namespace zupm::fuzz
