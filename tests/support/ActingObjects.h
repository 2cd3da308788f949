/// Products and tasks that do something of their own while a policy file uses them.
#pragma once

#include <functional>

#include "tests/support/ForeignObjects.h"

namespace zupm::test {

/// When an object acts; each action runs before the answer, and what it throws passes out.
struct Actions {
    std::function<void()> onQuery = {};
    std::function<void()> onRelease = {};
    std::function<void()> onId = {};
    std::function<void()> onData = {};

    static void Run(const std::function<void()>& action)
    {
        if (action) {
            action();
        }
    }
};

/// A foreign object with actions; a reference that it hands out or takes back is counted before it acts.
template <class Base>
class ActingObject : public Base {
public:
    using Base::Base;

    Actions actions;

    HRESULT QueryInterface(REFIID iid, void** out) override
    {
        const HRESULT result = Base::QueryInterface(iid, out);
        Actions::Run(actions.onQuery);
        return result;
    }
    ULONG Release() override
    {
        const ULONG left = Base::Release();
        Actions::Run(actions.onRelease);
        return left;
    }
    HRESULT get_SoftwareID(BSTR* pVal) override
    {
        Actions::Run(actions.onId);
        return Base::get_SoftwareID(pVal);
    }
};

class ActingProduct : public ActingObject<ForeignProduct> {
public:
    using ActingObject::ActingObject;

    HRESULT get_PolicyData(BSTR* pVal) override
    {
        Actions::Run(actions.onData);
        return ForeignProduct::get_PolicyData(pVal);
    }
};

class ActingTask : public ActingObject<ForeignTask> {
public:
    using ActingObject::ActingObject;

    HRESULT get_TaskData(BSTR* pVal) override
    {
        Actions::Run(actions.onData);
        return ForeignTask::get_TaskData(pVal);
    }
};

}  // namespace zupm::test
