#pragma once

#include <json/value.h>

#include <string>

namespace kelvo {

/** Takes what the kernel tells of the CPU's power, for the statistics; by default nothing does. */
class CpuPowerRecords {
  public:
    virtual ~CpuPowerRecords() = default;
    /** The operating points of a cluster, as parseCpuPowerTable() gives them. */
    virtual void onOperatingPoints(const std::string& /*cluster*/, const Json::Value& /*points*/) {}
    /** The kernel's text about static power, as it stands. */
    virtual void onStaticPower(const std::string& /*text*/) {}
};

}  // namespace kelvo
