/// What a user could pick instead: the same work with other libraries, directly on their trees.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace zupm::bench {

/// A loaded policy file in a peer's tree.
class Tree {
public:
    virtual ~Tree() = default;
    [[nodiscard]] virtual std::string RootName() const = 0;
    /// Sets an existing setting of a product, found by walking the tree. Ends the program where the peer has no writer.
    virtual void Set(const std::string& softwareId, const std::string& setting, const std::string& value);
    virtual void Write(const std::string& path);
};

using LoadTree = std::unique_ptr<Tree> (*)(const std::string& path);

[[nodiscard]] std::unique_ptr<Tree> LoadWithLibxml2(const std::string& path);
/// As pugixml loads by default: without comments, processing instructions, declaration and blanks between elements.
[[nodiscard]] std::unique_ptr<Tree> LoadWithPugixml(const std::string& path);
[[nodiscard]] std::unique_ptr<Tree> LoadWithPugixmlFull(const std::string& path);
/// In place, UTF-8 only.
[[nodiscard]] std::unique_ptr<Tree> LoadWithRapidxml(const std::string& path);

/// The loader of a contender: "libxml2", "pugixml", "pugixml full", "RapidXML".
[[nodiscard]] LoadTree TreeLoaderOf(std::string_view contender);

}  // namespace zupm::bench
