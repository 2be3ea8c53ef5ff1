#pragma once

#include <string>
#include <vector>

#include "kelvoconf/lint/ConfigNode.h"

namespace kelvo::lint {

/** Whether a member of the top level is a section for a list of projects. */
bool isGroupName(const std::string& name);
/** The projects of such a name, as the daemon takes it apart: blanks and empty pieces count. */
std::vector<std::string> projectsOf(const std::string& groupName);
/** Whether a name looks like a list of projects that has no commas. */
bool isListWithoutCommas(const std::string& name);
/** Whether a name is made like a platform's: letters of a chip maker's family, then digits. */
bool isPlatformLike(const std::string& name);
/**
 * Whether a member of the top level, by a name that is free, is a section: one has a key that the
 * daemon reads.
 */
bool isSectionOfProject(const std::string& name, const ConfigNode& node);
/** All platforms that a phone can report. */
std::vector<std::string> detectablePlatforms();

}  // namespace kelvo::lint
