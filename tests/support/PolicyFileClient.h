/// The four objects as a test sees them: text in, code and text out.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// What a getter gave: its code, and the text in the slot (nothing when the slot is null).
struct TextResult {
    HRESULT code;
    std::optional<std::u16string> text;

    friend bool operator==(const TextResult&, const TextResult&) = default;
};

/// For gtest messages.
void PrintTo(const TextResult& result, std::ostream* out);

/// What products and tasks have in common.
template <class Interface>
class SettingsClient {
public:
    SettingsClient() = default;
    explicit SettingsClient(ComPtr<Interface> object) : m_object(std::move(object)) {}

    [[nodiscard]] Interface* Object() const { return m_object.Get(); }
    [[nodiscard]] explicit operator bool() const { return static_cast<bool>(m_object); }

    [[nodiscard]] TextResult SoftwareID() const;
    [[nodiscard]] TextResult Get(std::u16string_view section, std::u16string_view name) const;
    HRESULT Put(std::u16string_view section, std::u16string_view name, std::u16string_view value);
    HRESULT RemoveSection(std::u16string_view section);

protected:
    ComPtr<Interface> m_object;
};

extern template class SettingsClient<IPolicyProduct>;
extern template class SettingsClient<IPolicyTask>;

/// A product policy.
class ProductClient : public SettingsClient<IPolicyProduct> {
public:
    using SettingsClient::SettingsClient;

    HRESULT PutSoftwareID(std::u16string_view id);
    [[nodiscard]] TextResult Data() const;
    HRESULT PutSection(std::u16string_view section);
    [[nodiscard]] TextResult GetCurrent(std::u16string_view name) const;
    HRESULT PutCurrent(std::u16string_view name, std::u16string_view value);
    HRESULT RemoveSetting(std::u16string_view section, std::u16string_view name);
};

/// A task.
class TaskClient : public SettingsClient<IPolicyTask> {
public:
    using SettingsClient::SettingsClient;

    /// Both identifiers.
    void Identify(std::u16string_view softwareId, std::u16string_view taskId);
    [[nodiscard]] TextResult TaskID() const;
    HRESULT PutDisplayName(std::u16string_view name);
    [[nodiscard]] TextResult DisplayName() const;
    [[nodiscard]] TextResult Data() const;
    [[nodiscard]] TextResult Version() const;
};

/// One step of an enumeration.
struct PairResult {
    HRESULT code;
    std::u16string softwareId;
    std::u16string taskId;

    friend bool operator==(const PairResult&, const PairResult&) = default;
};

/// For gtest messages.
void PrintTo(const PairResult& result, std::ostream* out);

/// An enumerator.
class TaskInfoClient {
public:
    TaskInfoClient() = default;
    explicit TaskInfoClient(ComPtr<ITaskInfo> object) : m_object(std::move(object)) {}

    [[nodiscard]] ITaskInfo* Object() const { return m_object.Get(); }
    [[nodiscard]] PairResult First();
    [[nodiscard]] PairResult Next();
    /// "software/task" of everything from the first to the end.
    [[nodiscard]] std::vector<std::u16string> All();

private:
    ComPtr<ITaskInfo> m_object;
};

/// A policy file object, created by its class identifier (std::runtime_error when it cannot be).
class PolicyFileClient {
public:
    [[nodiscard]] IPolicyFile* Object() const { return m_object.Get(); }

    HRESULT Load(std::u16string_view path, LONG readOnly = 0);
    HRESULT Write(std::u16string_view path, LONG useInternal = 0);
    /// The text of WriteFileBuffer.
    [[nodiscard]] std::optional<std::u16string> Buffer() const;
    [[nodiscard]] TextResult VersionTask() const;
    [[nodiscard]] TextResult VersionPolicy() const;
    [[nodiscard]] TextResult AssignmentList() const;

    /// The code, and the object when there is one.
    HRESULT GetPolicy(std::u16string_view softwareId, ProductClient& product) const;
    HRESULT GetTask(std::u16string_view softwareId, std::u16string_view taskId, TaskClient& task) const;
    /// The object; throws std::runtime_error when there is none.
    [[nodiscard]] ProductClient Policy(std::u16string_view softwareId) const;
    [[nodiscard]] TaskClient Task(std::u16string_view softwareId, std::u16string_view taskId) const;
    /// The codes alone.
    [[nodiscard]] HRESULT FindPolicy(std::u16string_view softwareId) const;
    [[nodiscard]] HRESULT FindTask(std::u16string_view softwareId, std::u16string_view taskId) const;
    [[nodiscard]] TaskInfoClient Tasks() const;

    HRESULT Add(const ProductClient& product, LONG overwrite = 1);
    HRESULT Add(const TaskClient& task, LONG overwrite = 1);
    HRESULT RemovePolicy(std::u16string_view softwareId);
    HRESULT RemoveTask(std::u16string_view softwareId, std::u16string_view taskId);
    /// A new object that belongs to no file, with its identifiers set.
    [[nodiscard]] ProductClient NewPolicy(std::u16string_view softwareId) const;
    [[nodiscard]] TaskClient NewTask(std::u16string_view softwareId, std::u16string_view taskId) const;

private:
    ComPtr<IPolicyFile> m_object = Create<IPolicyFile>();
};

}  // namespace zupm::test
