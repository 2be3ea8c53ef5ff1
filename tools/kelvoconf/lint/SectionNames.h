#pragma once

#include <string>
#include <vector>

namespace kelvo::lint {

/** Whether a member of the top level is a section for a list of projects. */
bool isGroupName(const std::string& name);
/** The projects of such a name, as the daemon takes it apart: blanks and empty pieces count. */
std::vector<std::string> projectsOf(const std::string& groupName);
/** Whether a name looks like a list of projects that has no commas. */
bool isListWithoutCommas(const std::string& name);
/** Whether a name is made like a platform's: letters of a chip maker's family, then digits. */
bool isPlatformLike(const std::string& name);
/** All platforms that a phone can report. */
std::vector<std::string> detectablePlatforms();

}  // namespace kelvo::lint
