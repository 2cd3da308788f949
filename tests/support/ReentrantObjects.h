/// Foreign products and tasks that do something of their own before they answer.
#pragma once

#include <functional>
#include <utility>

#include "tests/support/ForeignObjects.h"

namespace zupm::test {

/// Calls `onId` whenever the component asks for its software ID, and `onData` whenever it asks for its data.
class ReentrantProduct final : public ForeignProduct {
public:
    ReentrantProduct(Answer softwareId, Answer data, std::function<void()> onId, std::function<void()> onData)
        : ForeignProduct(std::move(softwareId), std::move(data)), m_onId(std::move(onId)), m_onData(std::move(onData))
    {
    }

    HRESULT get_SoftwareID(BSTR* pVal) override
    {
        m_onId();
        return ForeignProduct::get_SoftwareID(pVal);
    }
    HRESULT get_PolicyData(BSTR* pVal) override
    {
        m_onData();
        return ForeignProduct::get_PolicyData(pVal);
    }

private:
    std::function<void()> m_onId;
    std::function<void()> m_onData;
};

/// The same for tasks.
class ReentrantTask final : public ForeignTask {
public:
    ReentrantTask(Answer softwareId, Answer taskId, Answer data, std::function<void()> onId,
                  std::function<void()> onData)
        : ForeignTask(std::move(softwareId), std::move(taskId), std::move(data)),
          m_onId(std::move(onId)),
          m_onData(std::move(onData))
    {
    }

    HRESULT get_SoftwareID(BSTR* pVal) override
    {
        m_onId();
        return ForeignTask::get_SoftwareID(pVal);
    }
    HRESULT get_TaskData(BSTR* pVal) override
    {
        m_onData();
        return ForeignTask::get_TaskData(pVal);
    }

private:
    std::function<void()> m_onId;
    std::function<void()> m_onData;
};

}  // namespace zupm::test
