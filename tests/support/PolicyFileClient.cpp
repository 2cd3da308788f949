#include "tests/support/PolicyFileClient.h"

#include <stdexcept>

namespace zupm::test {

namespace {

/// Calls a getter with a fresh slot.
template <class Call>
TextResult GetText(Call call)
{
    Bstr slot;
    const HRESULT code = call(slot.Slot());
    return {code, slot.Get() == nullptr ? std::nullopt : std::optional(slot.Text())};
}

template <class Call>
PairResult GetPair(Call call)
{
    Bstr softwareId;
    Bstr taskId;
    const HRESULT code = call(softwareId.Slot(), taskId.Slot());
    return {code, softwareId.Text(), taskId.Text()};
}

void Require(bool condition, const char* what)
{
    if (!condition) {
        throw std::runtime_error(what);
    }
}

}  // namespace

void PrintTo(const TextResult& result, std::ostream* out)
{
    *out << result.code << (result.text ? " \"" + Utf8(*result.text) + "\"" : " null");
}

void PrintTo(const PairResult& result, std::ostream* out)
{
    *out << result.code << " \"" << Utf8(result.softwareId) << "\" \"" << Utf8(result.taskId) << "\"";
}

// --- SettingsClient --------------------------------------------------------------------------------------------------

template <class Interface>
TextResult SettingsClient<Interface>::SoftwareID() const
{
    return GetText([&](BSTR* slot) { return m_object->get_SoftwareID(slot); });
}

template <class Interface>
TextResult SettingsClient<Interface>::Get(std::u16string_view section, std::u16string_view name) const
{
    return GetText(
        [&](BSTR* slot) { return m_object->GetSectionSetting(Bstr(section).Get(), Bstr(name).Get(), slot); });
}

template <class Interface>
HRESULT SettingsClient<Interface>::Put(std::u16string_view section, std::u16string_view name, std::u16string_view value)
{
    return m_object->PutSectionSetting(Bstr(section).Get(), Bstr(name).Get(), Bstr(value).Get());
}

template <class Interface>
HRESULT SettingsClient<Interface>::RemoveSection(std::u16string_view section)
{
    return m_object->RemoveSection(Bstr(section).Get());
}

template class SettingsClient<IPolicyProduct>;
template class SettingsClient<IPolicyTask>;

// --- ProductClient ---------------------------------------------------------------------------------------------------

HRESULT ProductClient::PutSoftwareID(std::u16string_view id)
{
    return m_object->put_SoftwareID(Bstr(id).Get());
}

TextResult ProductClient::Data() const
{
    return GetText([&](BSTR* slot) { return m_object->get_PolicyData(slot); });
}

HRESULT ProductClient::PutSection(std::u16string_view section)
{
    return m_object->put_Section(Bstr(section).Get());
}

TextResult ProductClient::GetCurrent(std::u16string_view name) const
{
    return GetText([&](BSTR* slot) { return m_object->GetSetting(Bstr(name).Get(), slot); });
}

HRESULT ProductClient::PutCurrent(std::u16string_view name, std::u16string_view value)
{
    return m_object->PutSetting(Bstr(name).Get(), Bstr(value).Get());
}

HRESULT ProductClient::RemoveSetting(std::u16string_view section, std::u16string_view name)
{
    return m_object->RemoveSetting(Bstr(section).Get(), Bstr(name).Get());
}

// --- TaskClient ------------------------------------------------------------------------------------------------------

void TaskClient::Identify(std::u16string_view softwareId, std::u16string_view taskId)
{
    Require(m_object->put_SoftwareID(Bstr(softwareId).Get()) == 0, "put SoftwareID");
    Require(m_object->put_TaskID(Bstr(taskId).Get()) == 0, "put TaskID");
}

TextResult TaskClient::TaskID() const
{
    return GetText([&](BSTR* slot) { return m_object->get_TaskID(slot); });
}

HRESULT TaskClient::PutDisplayName(std::u16string_view name)
{
    return m_object->put_DisplayName(Bstr(name).Get());
}

TextResult TaskClient::DisplayName() const
{
    return GetText([&](BSTR* slot) { return m_object->get_DisplayName(slot); });
}

TextResult TaskClient::Data() const
{
    return GetText([&](BSTR* slot) { return m_object->get_TaskData(slot); });
}

TextResult TaskClient::Version() const
{
    return GetText([&](BSTR* slot) { return m_object->get_Version(slot); });
}

// --- TaskInfoClient --------------------------------------------------------------------------------------------------

PairResult TaskInfoClient::First()
{
    return GetPair([&](BSTR* softwareId, BSTR* taskId) { return m_object->GetFirst(softwareId, taskId); });
}

PairResult TaskInfoClient::Next()
{
    return GetPair([&](BSTR* softwareId, BSTR* taskId) { return m_object->GetNext(softwareId, taskId); });
}

std::vector<std::u16string> TaskInfoClient::All()
{
    std::vector<std::u16string> pairs;
    for (PairResult pair = First(); pair.code == 0; pair = Next()) {
        pairs.push_back(pair.softwareId + u"/" + pair.taskId);
    }
    return pairs;
}

// --- PolicyFileClient ------------------------------------------------------------------------------------------------

HRESULT PolicyFileClient::Load(std::u16string_view path, LONG readOnly)
{
    return m_object->InitializeFile(Bstr(path).Get(), readOnly);
}

HRESULT PolicyFileClient::Write(std::u16string_view path, LONG useInternal)
{
    return m_object->WriteFile(Bstr(path).Get(), useInternal);
}

std::optional<std::u16string> PolicyFileClient::Buffer() const
{
    const TextResult result = GetText([&](BSTR* slot) { return m_object->WriteFileBuffer(slot); });
    Require(result.code == 0, "WriteFileBuffer failed");
    return result.text;
}

TextResult PolicyFileClient::VersionTask() const
{
    return GetText([&](BSTR* slot) { return m_object->get_VersionTask(slot); });
}

TextResult PolicyFileClient::VersionPolicy() const
{
    return GetText([&](BSTR* slot) { return m_object->get_VersionPolicy(slot); });
}

TextResult PolicyFileClient::AssignmentList() const
{
    return GetText([&](BSTR* slot) { return m_object->get_PolicyAssignmentList(slot); });
}

HRESULT PolicyFileClient::GetPolicy(std::u16string_view softwareId, ProductClient& product) const
{
    ComPtr<IUnknown> object;
    const HRESULT code = m_object->GetPolicy(Bstr(softwareId).Get(), object.Put());
    ComPtr<IPolicyProduct> policy = object.Query<IPolicyProduct>();
    Require(static_cast<bool>(policy) == static_cast<bool>(object), "a policy without IPolicyProduct");
    product = ProductClient(std::move(policy));
    return code;
}

HRESULT PolicyFileClient::GetTask(std::u16string_view softwareId, std::u16string_view taskId, TaskClient& task) const
{
    ComPtr<IUnknown> object;
    const HRESULT code = m_object->GetTask(Bstr(softwareId).Get(), Bstr(taskId).Get(), object.Put());
    ComPtr<IPolicyTask> found = object.Query<IPolicyTask>();
    Require(static_cast<bool>(found) == static_cast<bool>(object), "a task without IPolicyTask");
    task = TaskClient(std::move(found));
    return code;
}

ProductClient PolicyFileClient::Policy(std::u16string_view softwareId) const
{
    ProductClient product;
    Require(GetPolicy(softwareId, product) == 0 && product, "no such policy");
    return product;
}

TaskClient PolicyFileClient::Task(std::u16string_view softwareId, std::u16string_view taskId) const
{
    TaskClient task;
    Require(GetTask(softwareId, taskId, task) == 0 && task, "no such task");
    return task;
}

HRESULT PolicyFileClient::FindPolicy(std::u16string_view softwareId) const
{
    ProductClient product;
    return GetPolicy(softwareId, product);
}

HRESULT PolicyFileClient::FindTask(std::u16string_view softwareId, std::u16string_view taskId) const
{
    TaskClient task;
    return GetTask(softwareId, taskId, task);
}

TaskInfoClient PolicyFileClient::Tasks() const
{
    ComPtr<IUnknown> object;
    Require(m_object->GetTaskInfo(object.Put()) == 0, "GetTaskInfo failed");
    ComPtr<ITaskInfo> tasks = object.Query<ITaskInfo>();
    Require(static_cast<bool>(tasks), "an enumerator without ITaskInfo");
    return TaskInfoClient(std::move(tasks));
}

HRESULT PolicyFileClient::Add(const ProductClient& product, LONG overwrite)
{
    return m_object->AddPolicy(product.Object(), overwrite);
}

HRESULT PolicyFileClient::Add(const TaskClient& task, LONG overwrite)
{
    return m_object->AddTask(task.Object(), overwrite);
}

HRESULT PolicyFileClient::RemovePolicy(std::u16string_view softwareId)
{
    return m_object->RemovePolicy(Bstr(softwareId).Get());
}

HRESULT PolicyFileClient::RemoveTask(std::u16string_view softwareId, std::u16string_view taskId)
{
    return m_object->RemoveTask(Bstr(softwareId).Get(), Bstr(taskId).Get());
}

ProductClient PolicyFileClient::NewPolicy(std::u16string_view softwareId) const
{
    ComPtr<IPolicyProduct> object;
    Require(m_object->CreatePolicy(object.Put()) == 0 && object, "CreatePolicy failed");
    ProductClient product(std::move(object));
    Require(product.PutSoftwareID(softwareId) == 0, "put SoftwareID");
    return product;
}

TaskClient PolicyFileClient::NewTask(std::u16string_view softwareId, std::u16string_view taskId) const
{
    ComPtr<IPolicyTask> object;
    Require(m_object->CreateTask(object.Put()) == 0 && object, "CreateTask failed");
    TaskClient task(std::move(object));
    task.Identify(softwareId, taskId);
    return task;
}

}  // namespace zupm::test
