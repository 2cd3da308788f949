// Loads the component that its first argument names, creates an object and makes it log an exception. Says how far it
// got: the code of the creation.
#include <cstdio>

#include "tests/planting/Target.h"
#include "tests/support/Bstr.h"
#include "tests/support/ComPtr.h"

namespace {

using namespace zupm::test;

HRESULT CreateProduct(GetClassObject getClassObject, ComPtr<IPolicyProduct>& product)
{
    ComPtr<IClassFactory> factory;
    const HRESULT found = getClassObject(CLSID_PolicyProduct, IID_IClassFactory, factory.PutVoid());
    return found < 0 ? found : factory->CreateInstance(nullptr, IID_IPolicyProduct, product.PutVoid());
}

}  // namespace

int main(int argc, char** argv)
{
    const GetClassObject getClassObject = argc == 2 ? LoadComponent(argv[1]) : nullptr;
    if (getClassObject == nullptr) {
        return 1;
    }
    ComPtr<IPolicyProduct> product;
    const HRESULT created = CreateProduct(getClassObject, product);
    if (product) {
        // XML cannot hold that value, which is an exception inside.
        static_cast<void>(product->PutSectionSetting(Bstr(u"S").Get(), Bstr(u"x").Get(), Bstr(u"\u0001").Get()));
    }
    std::printf("%d\n", static_cast<int>(created));
    return 0;
}
