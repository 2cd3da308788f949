#include "fuzz/calls/NameCall.h"

#include <vector>

#include "fuzz/calls/Codes.h"
#include "fuzz/calls/Files.h"
#include "fuzz/calls/Variants.h"
#include "fuzz/support/Demand.h"
#include "fuzz/support/SampleTexts.h"

namespace zupm::fuzz {

namespace {

constexpr LCID kLocale = 0x0409;

/// Which member a call means, and how.
struct Target {
    const Member* member;
    DISPID id;
    WORD flags;
};

Target PickTarget(Input& input, const InterfaceDescription& description)
{
    constexpr WORD kAllFlags = 15;
    const Member& member = description.members[input.UpTo(description.members.size() - 1)];
    Target target{&member, member.id, static_cast<WORD>(member.kind)};
    if (input.UpTo(15) == 15) {
        // Of the members with higher numbers some take a path, and the arguments are made for another one.
        target.id = input.Flag() ? 1000 + input.UpTo<DISPID>(8) : input.UpTo<DISPID>(24) - 4;
    }
    if (input.UpTo(15) == 15) {
        target.flags = input.UpTo(kAllFlags);
    }
    return target;
}

/// The arguments, last one first. A fitting call may leave its result out.
std::vector<VARIANT> MakeArguments(Input& input, Variants& variants, const Member& member)
{
    std::vector<VARIANT> arguments;
    for (const Parameter& parameter : member.parameters) {
        if (parameter.isResult && input.Flag()) {
            continue;
        }
        arguments.insert(arguments.begin(), input.UpTo(15) == 15 ? variants.Any() : variants.Fitting(parameter.type));
    }
    if (input.UpTo(15) == 15) {
        arguments.push_back(variants.Any());
    }
    return arguments;
}

void FreeException(EXCEPINFO& exception)
{
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

void TakeResult(VARIANT& result, Objects& objects)
{
    if (result.vt == VT_DISPATCH || result.vt == VT_UNKNOWN) {
        objects.Adopt(result.punkVal);
        result = VARIANT{};
    }
    static_cast<void>(VariantClear(&result));
}

void Invoke(Input& input, Objects& objects, IDispatch& object, const Target& target, std::vector<VARIANT> arguments)
{
    DISPID putValue = input.UpTo(15) == 15 ? DISPID_VALUE : DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if ((target.flags & DISPATCH_PROPERTYPUT) != 0) {
        parameters.rgdispidNamedArgs = &putValue;
        parameters.cNamedArgs = 1;
    }
    VARIANT result{};
    EXCEPINFO exception{};
    UINT badArgument = 0;
    EXCEPINFO* const wanted = input.UpTo(7) == 7 ? nullptr : &exception;
    const HRESULT code =
        object.Invoke(target.id, IID_NULL, kLocale, target.flags, input.UpTo(63) == 63 ? nullptr : &parameters,
                      input.UpTo(7) == 7 ? nullptr : &result, wanted, input.Flag() ? &badArgument : nullptr);
    DemandInvokeCode(code, wanted);
    Demand(badArgument <= parameters.cArgs, "the bad argument is one of the call's");
    TakeResult(result, objects);
    FreeException(exception);
}

}  // namespace

void CallByName(Input& input, Objects& objects)
{
    const LiveObject* const live = objects.Pick(input);
    if (live == nullptr) {
        return;
    }
    const test::ComPtr<IDispatch> object = live->object;
    const Interfaces interfaces = live->interfaces;
    const Target target = PickTarget(input, live->Pick(input));
    Variants variants(input, objects, TakesPath(interfaces, target.id));
    Invoke(input, objects, *object.Get(), target, MakeArguments(input, variants, *target.member));
}

void AskForNumbers(Input& input, Objects& objects)
{
    const LiveObject* const live = objects.Pick(input);
    if (live == nullptr) {
        return;
    }
    const InterfaceDescription& description = live->Pick(input);
    const Member& member = description.members[input.UpTo(description.members.size() - 1)];
    std::u16string known(member.name);
    std::u16string other =
        member.parameters.empty() || input.Flag() ? input.Text(kTexts) : std::u16string(member.parameters.front().name);
    LPOLESTR names[] = {known.data(), input.UpTo(15) == 15 ? nullptr : other.data()};
    DISPID ids[2] = {};
    const HRESULT code = live->object->GetIDsOfNames(IID_NULL, names, input.UpTo<UINT>(2), kLocale, ids);
    Demand(code == S_OK || code == DISP_E_UNKNOWNNAME || code == E_INVALIDARG, "names have numbers or are unknown");
    Demand(code != S_OK || ids[0] == member.id, "a member's name has its number");
}

}  // namespace zupm::fuzz
