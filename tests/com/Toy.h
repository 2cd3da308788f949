/// A class with nothing in it, to test the base of every class.
#pragma once

#include <functional>
#include <string_view>

#include "com/DualObject.h"
#include "com/ResourceModuleUse.h"
#include "com/Strings.h"
#include "interfaces/InterfaceTables.h"
#include "zuPolicyManager/zuPolicyManager.h"

namespace zupm::test {

/// What the next toys do; a test sets it before it creates one.
struct ToyScript {
    std::function<void()> onConstruct = [] {};
    HRESULT constructed = S_OK;
    std::function<result::Code(BSTR*, BSTR*, std::u16string&)> onGetFirst = [](BSTR* first, BSTR* second,
                                                                               std::u16string&) {
        const result::Code code = StoreString(first, u"first");
        return code < 0 ? code : StoreString(second, u"second");
    };
    int living = 0;
};
inline ToyScript g_toyScript;

/// An ITaskInfo of which GetFirst does what the test says.
class CToy : public DualObject<CToy, ITaskInfo> {
public:
    static constexpr std::u16string_view kCoclass = u"Toy";
    static constexpr std::u16string_view kCreation = u"CToy::FinalConstruct()";
    static const InterfaceDescription& Description() noexcept { return TaskInfoInterface(); }

    CToy()
    {
        g_toyScript.onConstruct();
        ++g_toyScript.living;
    }
    HRESULT FinalConstruct() noexcept { return g_toyScript.constructed; }

    HRESULT GetFirst(BSTR* first, BSTR* second) noexcept override
    {
        return Call(u"CToy::GetFirst()",
                    [&](std::u16string& detail) { return g_toyScript.onGetFirst(first, second, detail); });
    }
    HRESULT GetNext(BSTR*, BSTR*) noexcept override
    {
        return Call(u"CToy::GetNext()", [] { return result::EndOfList; });
    }

protected:
    ~CToy() { --g_toyScript.living; }

private:
    ResourceModuleUse m_resources;
};

}  // namespace zupm::test
