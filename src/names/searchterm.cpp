#include "names/searchterm.h"

#include "core/text.h"
#include "core/utf8.h"
#include "names/urlcode.h"

namespace names {

std::string ST_Std(std::string& term) {
    term = core::LowerUtf8(core::ToUtf8(URL_Decode(core::fReplace(term, "+", " "))));
    return std::string(core::fTrim(term));
}

}  // namespace names
