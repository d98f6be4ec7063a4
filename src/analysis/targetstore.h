#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/targets.h"
#include "core/files.h"

namespace sitedb {
struct SitePaths;
}

// The targets of a site as its owner keeps them: a list in an order, of which a run takes the first ones.
namespace analysis {

std::vector<Target> Tgt_ReadList(core::IniStore& ini, const sitedb::SitePaths& site);
// The whole list, in one write of each file. The old list stands when it fails.
core::Result Tgt_WriteList(core::IniStore& ini, const sitedb::SitePaths& site, const std::vector<Target>& targets);

// "any page with buynow / order": what a person reads behind the name.
std::string Tgt_Describe(const Target& target);
// The item of the list LstTgts: name, " : ", description.
std::string Tgt_Item(const Target& target);
// What is wrong with a target, "" when nothing is; `others` is the list without it.
std::string Tgt_Problem(const Target& target, const std::vector<Target>& others);

}  // namespace analysis
