// Keys: very many, very long, all equal.
#include <string>

#include "tests/limits/Attack.h"

namespace zupm::test {

namespace {

constexpr std::size_t kLongKey = 1000;

std::string Product(const std::string& id)
{
    return "<Product SoftwareID='" + id + "'/>";
}

std::string Task(const std::string& softwareId, const std::string& taskId)
{
    return "<TaskGroup SoftwareID='" + softwareId + "' TaskID='" + taskId + "'><Task/></TaskGroup>";
}

std::string Products(std::size_t size)
{
    return Series(
        kBeforeProducts, [](std::size_t number) { return Product(Letters(number)); }, kAfterProducts, size);
}

std::string ProductsOfOneKey(std::size_t size)
{
    return Series(
        kBeforeProducts, [](std::size_t) { return Product("P"); }, kAfterProducts, size);
}

/// A comparison of two keys reads both to the end.
std::string ProductsOfAlikeKeys(std::size_t size)
{
    const auto product = [](std::size_t number) { return Product(std::string(kLongKey, 'k') + Letters(number)); };
    return Series(kBeforeProducts, product, kAfterProducts, size);
}

std::string Tasks(std::size_t size)
{
    return Series(
        kBeforeTasks, [](std::size_t number) { return Task("P", Letters(number)); }, kAfterTasks, size);
}

std::string TasksOfManyProducts(std::size_t size)
{
    return Series(
        kBeforeTasks, [](std::size_t number) { return Task(Letters(number), "T"); }, kAfterTasks, size);
}

std::string TasksOfOneKey(std::size_t size)
{
    return Series(
        kBeforeTasks, [](std::size_t) { return Task("P", "T"); }, kAfterTasks, size);
}

/// One group with a long key and many tasks: each is indexed under the group's key.
std::string TasksInOneGroup(std::size_t size)
{
    const std::string key(size / 4, 'k');
    return std::string(kBeforeTasks) + "<TaskGroup SoftwareID='" + key + "' TaskID='" + key + "'>" +
           Repeated("<Task/>", size / 2) + "</TaskGroup>" + std::string(kAfterTasks);
}

/// Writing brings the version of every "TaskRoot" up to date with the tasks of all.
std::string TaskRoots(std::size_t size)
{
    return "<F>" + Repeated("<TaskRoot><TaskGroup/></TaskRoot>", size) + "</F>";
}

std::string PolicyRoots(std::size_t size)
{
    return "<F>" + Repeated("<PolicyRoot><PolicyGroup/></PolicyRoot>", size) + "</F>";
}

HRESULT LoadAndEnumerate(const std::u16string& path)
{
    PolicyFileClient file;
    const HRESULT code = file.Load(path);
    return code != 0 || !file.Tasks().All().empty() ? code : result::ListEmpty;
}

constexpr Attack kAttacks[] = {
    {"products", Products, LoadOnly, result::Success},
    {"products of one key", ProductsOfOneKey, LoadOnly, result::Success},
    {"products of long alike keys", ProductsOfAlikeKeys, LoadOnly, result::Success},
    {"tasks", Tasks, LoadAndEnumerate, result::Success, 2},
    {"tasks of many products", TasksOfManyProducts, LoadAndEnumerate, result::Success, 2},
    {"tasks of one key", TasksOfOneKey, LoadOnly, result::Success},
    {"tasks in one group with a long key", TasksInOneGroup, LoadOnly, result::Success},
    {"task roots, written", TaskRoots, LoadAndWrite, result::Success, 2},
    {"policy roots, written", PolicyRoots, LoadAndWrite, result::Success, 2},
};

}  // namespace

std::span<const Attack> IndexAttacks()
{
    return kAttacks;
}

}  // namespace zupm::test
