#include "tests/limits/Attack.h"

#include <algorithm>

namespace zupm::test {

std::vector<Attack> AllAttacks()
{
    std::vector<Attack> all;
    for (const auto part : {EntityAttacks(), MarkupAttacks(), EncodingAttacks(), IndexAttacks(), EditAttacks()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

const Attack* FindAttack(std::string_view label)
{
    static const std::vector<Attack> all = AllAttacks();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Attack& row) { return row.label == label; });
    return found == all.end() ? nullptr : &*found;
}

HRESULT LoadOnly(const std::u16string& path)
{
    PolicyFileClient file;
    return file.Load(path);
}

HRESULT LoadAndWrite(const std::u16string& path)
{
    PolicyFileClient file;
    const HRESULT code = file.Load(path);
    return code != 0 ? code : file.Write(path + u".out");
}

std::string Repeated(std::string_view piece, std::size_t size)
{
    std::string text;
    text.reserve(size);
    while (text.size() + piece.size() <= size) {
        text += piece;
    }
    return text;
}

std::string Letters(std::size_t number)
{
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::string name;
    do {
        name += kLetters[number % kLetters.size()];
        number /= kLetters.size();
    } while (number != 0);
    return name;
}

}  // namespace zupm::test
