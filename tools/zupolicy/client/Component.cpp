#include "tools/zupolicy/client/Component.h"

#include "tools/zupolicy/client/CallError.h"
#include "tools/zupolicy/client/Utf8.h"

namespace zupm::tool {

void RequireCreated(HRESULT result)
{
    const auto code = static_cast<result::Code>(result);
    if (code >= 0) {
        return;
    }
    const std::string description = client::TakeDescription();
    const std::u16string_view sentence = result::SentenceFor(code);
    const std::string otherwise = sentence.empty() ? "The call failed." : ToUtf8(sentence);
    throw CallError(code, "the component zuPolicyManager64", description.empty() ? otherwise : description);
}

}  // namespace zupm::tool
