#include "tools/zupolicy/model/MakeObjects.h"

#include <utility>

#include "tools/zupolicy/client/Component.h"
#include "tools/zupolicy/client/Utf8.h"
#include "tools/zupolicy/report/Problem.h"

namespace zupm::model {
namespace {

template <class Interface>
ComPtr<Interface> NewObject()
{
    ComPtr<Interface> object;
    tool::CreateObject(InterfaceTraits<Interface>::Class(), InterfaceTraits<Interface>::Id(), object.PutVoid());
    return object;
}

}  // namespace

PolicyFile MakeFile(const std::string& path, ComPtr<IPolicyFile> object)
{
    if (!tool::IsUtf8(path)) {
        throw tool::Failure(tool::ExitCode::FileError, path, "the file name is not valid UTF-8");
    }
    return PolicyFile(object ? std::move(object) : NewObject<IPolicyFile>(), path);
}

Policy MakePolicy(const EntryId& id)
{
    return Policy(NewObject<IPolicyProduct>()).SetSoftwareId(id.softwareId);
}

Task MakeTask(const EntryId& id)
{
    // The component begins with the word "invalid" in every field.
    Task task(NewObject<IPolicyTask>());
    task.SetSoftwareId(id.softwareId).SetTaskId(*id.taskId).SetDisplayName(*id.taskId);
    task.SetType({}).SetPlatforms({}).SetCreator({});
    return task;
}

}  // namespace zupm::model
