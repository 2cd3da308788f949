// Document type declarations: entities that grow, reach for other files, or cost work for every element.
#include <algorithm>
#include <string>

#include "tests/limits/Attack.h"

namespace zupm::test {

namespace {

std::string BillionLaughs(std::size_t size)
{
    std::string text = "<!DOCTYPE F [<!ENTITY e0 'ha'>";
    for (int level = 1; level < 30; ++level) {
        const std::string below = "&e" + std::to_string(level - 1) + ";";
        text += "<!ENTITY e" + std::to_string(level) + " '" + Repeated(below, 10 * below.size()) + "'>";
    }
    return text + "]><F>" + Repeated("&e29;", size) + "</F>";
}

/// One long entity, many references.
std::string LongEntityOftenUsed(std::size_t size)
{
    return "<!DOCTYPE F [<!ENTITY e '" + std::string(size / 2, 'x') + "'>]><F>" + Repeated("&e;", size / 2) + "</F>";
}

std::string ParameterEntities(std::size_t size)
{
    return "<!DOCTYPE F [" + Repeated("%e;", size) + "]><F/>";
}

std::string ParameterEntityFromAFile(std::size_t size)
{
    return "<!DOCTYPE F [<!ENTITY % e SYSTEM 'file:///etc/passwd'>" + Repeated("%e;", size) + "]><F/>";
}

std::string EntityFromAFile(std::size_t size)
{
    return "<!DOCTYPE F [<!ENTITY e SYSTEM 'file:///dev/zero'>]><F>" + Repeated("&e;", size) + "</F>";
}

std::string EntityFromTheNetwork(std::size_t size)
{
    return "<!DOCTYPE F [<!ENTITY e SYSTEM 'http://127.0.0.1/e'>]><F>" + Repeated("&e;", size) + "</F>";
}

std::string ExternalSubset(std::size_t size)
{
    return "<!DOCTYPE F SYSTEM 'http://127.0.0.1/" + std::string(size, 'x') + "'><F/>";
}

/// After an external subset a parser may accept references that it does not know.
std::string ReferencesBehindAnExternalSubset(std::size_t size)
{
    return "<!DOCTYPE F SYSTEM 'file:///etc/passwd'><F>" + Repeated("&e;", size) + "</F>";
}

std::string Default(std::size_t number)
{
    return " " + Letters(number) + " CDATA ''";
}

/// Every declaration must be compared with those before it.
std::string AttributeDeclarations(std::size_t size)
{
    return Series("<!DOCTYPE F [<!ATTLIST a", Default, ">]><F/>", std::max<std::size_t>(size, 200'000));
}

/// Every element gets all the defaults.
std::string AttributeDefaultsOfManyElements(std::size_t size)
{
    const std::string subset = Series("<!DOCTYPE F [<!ATTLIST a", Default, ">]>", std::min<std::size_t>(size, 90'000));
    return subset + "<F>" + Repeated("<a/>", size - subset.size()) + "</F>";
}

std::string DeepContentModel(std::size_t size)
{
    return "<!DOCTYPE F [<!ELEMENT F " + std::string(size / 2, '(') + "a" + std::string(size / 2, ')') + ">]><F/>";
}

std::string ManyDeclarations(std::size_t size)
{
    return Series(
        "<!DOCTYPE F [",
        [](std::size_t number) {
            const std::string name = Letters(number);
            return "<!ELEMENT " + name + " ANY><!NOTATION " + name + " SYSTEM ''>";
        },
        "]><F/>", size);
}

constexpr Attack kAttacks[] = {
    {"billion laughs", BillionLaughs, LoadOnly, result::SyntaxError},
    {"long entity, many references", LongEntityOftenUsed, LoadOnly, result::SyntaxError},
    {"parameter entities", ParameterEntities, LoadOnly, result::SyntaxError},
    {"parameter entity from a file", ParameterEntityFromAFile, LoadOnly, result::SyntaxError},
    {"entity from a file", EntityFromAFile, LoadOnly, result::SyntaxError},
    {"entity from the network", EntityFromTheNetwork, LoadOnly, result::SyntaxError},
    {"external subset", ExternalSubset, LoadOnly, result::Success, 1, 1, kCountedLarge},
    {"references behind an external subset", ReferencesBehindAnExternalSubset, LoadOnly, result::SyntaxError},
    {"attribute declarations", AttributeDeclarations, LoadOnly, result::SyntaxError, 1, 1, kCountedLarge},
    {"attribute defaults of many elements", AttributeDefaultsOfManyElements, LoadOnly, result::Success, 1, 1,
     kCountedLarge},
    {"deep content model", DeepContentModel, LoadOnly, result::Success},
    {"many declarations", ManyDeclarations, LoadOnly, result::Success},
};

}  // namespace

std::span<const Attack> EntityAttacks()
{
    return kAttacks;
}

}  // namespace zupm::test
