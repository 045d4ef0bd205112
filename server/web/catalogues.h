#pragma once

#include <string_view>

namespace velmora::server {

// The compiled catalogue (.mo) of a language, as "de"; empty without one. The build makes it from translations/pages.
std::string_view catalogueOf(std::string_view language);

} // namespace velmora::server
