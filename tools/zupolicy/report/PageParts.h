/// The parts of the page that are the same in every page: files of page/, which the build embeds.
#pragma once

#include <string_view>

namespace zupm::tool {

/// The document, with the marks @policy@, @title@, @style@, @data@ and @script@.
extern const std::string_view kPageDocument;
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;
/// The hashes of the two, as a Content-Security-Policy names them: SHA-256 in Base64.
extern const std::string_view kPageStyleHash;
extern const std::string_view kPageScriptHash;

}  // namespace zupm::tool
