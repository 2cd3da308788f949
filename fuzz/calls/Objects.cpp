#include "fuzz/calls/Objects.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "fuzz/calls/OuterObject.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/SampleTexts.h"
#include "interfaces/InterfaceTables.h"
#include "module/ModuleServer.h"
#include "tests/module/Classes.h"

namespace zupm::fuzz {

using test::ComPtr;
using test::kClasses;

namespace {

constexpr std::size_t kMostObjects = 12;
constexpr std::size_t kMostForeignObjects = 4;
constexpr int kMostCallBacks = 8;

/// What every kind of object has, those of the classes first, in the order of the classes.
std::span<const Interfaces> AllKinds()
{
    static const InterfaceDescription* const tasks[] = {&TaskInfoInterface()};
    static const InterfaceDescription* const task[] = {&PolicyTaskInterface(), &PolicySectionsInterface()};
    static const InterfaceDescription* const product[] = {&PolicyProductInterface(), &PolicySectionsInterface()};
    static const InterfaceDescription* const file[] = {&PolicyFileInterface(), &PolicyFileContentsInterface(),
                                                       &PolicyFileEditInterface()};
    static const InterfaceDescription* const names[] = {&PolicyNamesInterface()};
    static const InterfaceDescription* const notices[] = {&PolicyNoticesInterface()};
    static const Interfaces all[] = {tasks, task, product, file, names, notices};
    static_assert(std::size(all) == std::size(kClasses) + 2);
    return all;
}

/// Goes over a list of names to its end, twice.
void DemandNames(IEnumVARIANT& names)
{
    ComPtr<IEnumVARIANT> copy;
    Demand(names.Clone(copy.Put()) == S_OK && copy, "an enumerator is copied");
    ULONG count = 0;
    VARIANT value{};
    while (names.Next(1, &value, nullptr) == S_OK) {
        Demand(value.vt == VT_BSTR && value.bstrVal != nullptr, "a name is a string");
        static_cast<void>(VariantClear(&value));
        ++count;
    }
    Demand(value.vt == VT_EMPTY, "after the end there is no value");
    Demand(copy->Skip(count) == S_OK && copy->Skip(1) == S_FALSE, "a copy has as many names");
    Demand(names.Reset() == S_OK, "an enumerator starts over");
}

ComPtr<IUnknown> CreateThroughFactory(REFCLSID clsid)
{
    ComPtr<IClassFactory> factory;
    Demand(CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, factory.PutVoid()) == S_OK,
           "a class object is handed out");
    Demand(factory->LockServer(1) == S_OK && factory->LockServer(0) == S_OK, "the server can be locked");
    ComPtr<IUnknown> object;
    Demand(factory->CreateInstance(nullptr, IID_IUnknown, object.PutVoid()) == S_OK, "a factory makes objects");
    return object;
}

ComPtr<IUnknown> CreateAlone(REFCLSID clsid)
{
    ComPtr<IUnknown> object;
    Demand(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.PutVoid()) == S_OK,
           "an object is made");
    return object;
}

/// Codes of the component, because a policy file passes the codes of foreign getters on.
test::Answer MakeAnswer(Input& input)
{
    constexpr HRESULT kCodes[] = {0, 0, 0, 0, 0, 0, result::NotInitialised, E_FAIL};
    return {kCodes[input.UpTo(std::size(kCodes) - 1)], input.Text(kTexts)};
}

}  // namespace

Objects::~Objects()
{
    m_objects.clear();
    for (const auto& product : m_foreignProducts) {
        Demand(product.References() == 0, "a foreign product is released");
    }
    for (const auto& task : m_foreignTasks) {
        Demand(task.References() == 0, "a foreign task is released");
    }
    static_cast<void>(SetErrorInfo(0, nullptr));
    Demand(ModuleCanUnloadNow() == S_OK, "nothing is left when everything was released");
}

void Objects::Create(Input& input)
{
    enum : std::uint8_t { Aggregated, Factory, Alone };
    const CLSID& clsid = kClasses[input.UpTo(std::size(kClasses) - 1)].clsid;
    switch (input.UpTo<std::uint8_t>(3)) {
        case Aggregated:
            Add(OuterObject::Create(clsid));
            break;
        case Factory:
            Add(CreateThroughFactory(clsid));
            break;
        default:
            Add(CreateAlone(clsid));
    }
}

void Objects::CreateLoaded(std::u16string_view path)
{
    const auto file = test::Create<IPolicyFile>();
    static_cast<void>(file->InitializeFile(test::Bstr(path).Get(), 0));
    Add(file.Query<IUnknown>());
}

void Objects::Adopt(IUnknown* object)
{
    Add(ComPtr<IUnknown>::Attach(object));
}

void Objects::Add(ComPtr<IUnknown> object)
{
    if (!object || m_objects.size() == kMostObjects) {
        return;
    }
    if (const auto names = object.Query<IEnumVARIANT>()) {
        DemandNames(*names);
        return;
    }
    const bool isAdded =
        std::ranges::any_of(AllKinds(), [&](const Interfaces& interfaces) { return AddAs(object, interfaces); });
    Demand(isAdded, "an object has the interface of its class");
}

bool Objects::AddAs(const ComPtr<IUnknown>& object, Interfaces interfaces)
{
    ComPtr<IDispatch> called;
    if (object->QueryInterface(interfaces.front()->iid, called.PutVoid()) != S_OK) {
        return false;
    }
    m_objects.push_back({std::move(called), interfaces});
    return true;
}

void Objects::Drop(Input& input)
{
    if (!m_objects.empty()) {
        m_objects.erase(m_objects.begin() + static_cast<std::ptrdiff_t>(input.UpTo(m_objects.size() - 1)));
    }
}

void Objects::Query(Input& input)
{
    LiveObject* const live = Pick(input);
    if (live == nullptr) {
        return;
    }
    const IID* const ids[] = {&IID_IUnknown,      &IID_IDispatch, &IID_ISupportErrorInfo,
                              &IID_IClassFactory, &IID_NULL,      &live->Pick(input).iid};
    ComPtr<IUnknown> other;
    const HRESULT code = live->object->QueryInterface(*ids[input.UpTo(std::size(ids) - 1)], other.PutVoid());
    Demand((code == S_OK && other) || (code == E_NOINTERFACE && !other), "asking for an interface gives it or null");
    Demand(live->object->QueryInterface(IID_IUnknown, nullptr) == E_POINTER, "a null slot is refused");
    if (const auto support = live->object.Query<ISupportErrorInfo>()) {
        Demand(support->InterfaceSupportsErrorInfo(live->Pick(input).iid) == S_OK, "failures leave error information");
        Demand(support->InterfaceSupportsErrorInfo(IID_IUnknown) == S_FALSE, "other interfaces leave none");
    }
    Add(other);
}

LiveObject* Objects::Pick(Input& input)
{
    return m_objects.empty() ? nullptr : &m_objects[input.UpTo(m_objects.size() - 1)];
}

IUnknown* Objects::PickArgument(Input& input)
{
    enum : std::uint8_t { Null, Foreign, Own };
    const std::uint8_t kind = input.UpTo<std::uint8_t>(7);
    if (kind == Null) {
        return nullptr;
    }
    if (kind == Foreign) {
        return MakeForeign(input);
    }
    LiveObject* const live = Pick(input);
    return live == nullptr ? nullptr : live->object.Get();
}

IUnknown* Objects::MakeForeign(Input& input)
{
    if (m_foreignProducts.size() + m_foreignTasks.size() == kMostForeignObjects) {
        return nullptr;
    }
    test::Answer softwareId = MakeAnswer(input);
    test::Answer data = MakeAnswer(input);
    const auto callBack = [this, &input] { CallBack(input); };
    if (input.Flag()) {
        auto& product = m_foreignProducts.emplace_back(std::move(softwareId), std::move(data));
        product.actions = {.onId = callBack, .onData = callBack};
        return &product;
    }
    auto& task = m_foreignTasks.emplace_back(std::move(softwareId), MakeAnswer(input), std::move(data));
    task.actions = {.onId = callBack, .onData = callBack};
    return &task;
}

void Objects::CallBack(Input& input)
{
    if (m_callBacks < kMostCallBacks && input.Flag()) {
        ++m_callBacks;
        m_step(input, *this);
    }
}

}  // namespace zupm::fuzz
