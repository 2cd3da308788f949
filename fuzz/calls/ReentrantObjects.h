/// Foreign products and tasks that do something else before they answer.
#pragma once

#include <functional>
#include <utility>

#include "tests/support/ForeignObjects.h"

namespace zupm::fuzz {

/// Calls back whenever the component asks it for something, and then answers.
class ReentrantProduct final : public test::ForeignProduct {
public:
    ReentrantProduct(test::Answer softwareId, test::Answer data, std::function<void()> callBack)
        : ForeignProduct(std::move(softwareId), std::move(data)), m_callBack(std::move(callBack))
    {
    }

    HRESULT get_SoftwareID(BSTR* pVal) override
    {
        m_callBack();
        return ForeignProduct::get_SoftwareID(pVal);
    }
    HRESULT get_PolicyData(BSTR* pVal) override
    {
        m_callBack();
        return ForeignProduct::get_PolicyData(pVal);
    }

private:
    std::function<void()> m_callBack;
};

/// The same for tasks.
class ReentrantTask final : public test::ForeignTask {
public:
    ReentrantTask(test::Answer softwareId, test::Answer taskId, test::Answer data, std::function<void()> callBack)
        : ForeignTask(std::move(softwareId), std::move(taskId), std::move(data)), m_callBack(std::move(callBack))
    {
    }

    HRESULT get_SoftwareID(BSTR* pVal) override
    {
        m_callBack();
        return ForeignTask::get_SoftwareID(pVal);
    }
    HRESULT get_TaskData(BSTR* pVal) override
    {
        m_callBack();
        return ForeignTask::get_TaskData(pVal);
    }

private:
    std::function<void()> m_callBack;
};

}  // namespace zupm::fuzz
