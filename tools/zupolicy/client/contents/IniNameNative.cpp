#include <algorithm>

#include "tools/zupolicy/client/contents/IniName.h"

namespace zupm::tool {

std::string IniName(std::string_view utf8)
{
    std::string folded(WithoutIniBlanks(utf8));
    std::ranges::transform(folded, folded.begin(), [](char unit) {
        return unit >= 'a' && unit <= 'z' ? static_cast<char>(unit - 'a' + 'A') : unit;
    });
    return folded;
}

}  // namespace zupm::tool
