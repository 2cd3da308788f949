#include "tests/support/Names.h"

#include <stdexcept>

namespace zupm::test {

void PrintTo(const Listed& listed, std::ostream* out)
{
    *out << listed.code;
    for (const std::u16string& name : listed.names) {
        *out << " \"" << Utf8(name) << '"';
    }
}

ComPtr<IEnumVARIANT> EnumeratorOf(IPolicyNames& names)
{
    ComPtr<IUnknown> enumerator;
    const HRESULT code = names.get__NewEnum(enumerator.Put());
    auto typed = enumerator.Query<IEnumVARIANT>();
    if (code != S_OK || !typed) {
        throw std::runtime_error("no enumerator: " + std::to_string(code));
    }
    return typed;
}

Names ReadRest(IEnumVARIANT& names)
{
    Names all;
    VARIANT value{};
    while (names.Next(1, &value, nullptr) == S_OK) {
        all.push_back(value.vt == VT_BSTR ? Text(value.bstrVal) : u"(no string)");
        static_cast<void>(VariantClear(&value));
    }
    return all;
}

Names ReadNames(IPolicyNames& names)
{
    LONG count = -1;
    if (names.get_Count(&count) != S_OK || count < 0) {
        throw std::runtime_error("no count");
    }
    Names all;
    for (LONG i = 0; i < count; ++i) {
        Bstr name;
        if (names.get_Item(i, name.Slot()) != S_OK) {
            throw std::runtime_error("no name at place " + std::to_string(i));
        }
        all.push_back(name.Text());
    }
    if (ReadRest(*EnumeratorOf(names)) != all) {
        throw std::runtime_error("the enumerator gives other names");
    }
    return all;
}

Listed Taken(HRESULT code, OutObject<IPolicyNames>& slot)
{
    if (slot.Untouched()) {
        return NoneFor(code);
    }
    const ComPtr<IPolicyNames> names = slot.Take();
    return {code, names ? ReadNames(*names) : Names{u"(null)"}};
}

}  // namespace zupm::test
