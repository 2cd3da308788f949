/// What a user would pick instead: the same work with libxml2 and with pugixml, straight on the XML tree.
#pragma once

#include <memory>
#include <string>

namespace zupm::bench {

/// A loaded policy file in a peer's tree.
class Peer {
public:
    virtual ~Peer() = default;
    /// Sets an existing setting of a product, found by walking the tree.
    virtual void Set(const std::string& softwareId, const std::string& setting, const std::string& value) = 0;
    virtual void Write(const std::string& path) = 0;
};

using LoadPeer = std::unique_ptr<Peer> (*)(const std::string& path);

[[nodiscard]] std::unique_ptr<Peer> LoadWithLibxml2(const std::string& path);
[[nodiscard]] std::unique_ptr<Peer> LoadWithPugixml(const std::string& path);

}  // namespace zupm::bench
