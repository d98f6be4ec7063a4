#pragma once

#include <string>
#include <string_view>

namespace names {

struct UrlParts {
    std::string_view scheme{};
    std::string_view net{};
    std::string_view path{};
    std::string_view params{};
    std::string_view query{};
    std::string_view fragment{};
};

// Cuts, in this order, the fragment at "#", the scheme, the net location, the query at "?" and the params at ";".
// The parts are views into `url`.
UrlParts URL_Parse(std::string_view url);

// Puts the parts together; separators of empty parts are left out ("/p?" comes back as "/p").
std::string URL_Join(const UrlParts& parts);

}  // namespace names
