#pragma once

#include <array>

// Names in the configuration document, spelled as configurations in the field spell them:
// "wirless_charge", "paramter_name" and "cellar_model" are no slips of ours. One home for engines,
// lint and tools.

namespace kelvo {

/** Members of the document and of its sections. */
namespace key {

inline constexpr char kConfigVersion[] = "config_version";
inline constexpr char kMaxAbnormalDetections[] = "max_abn_tz_detect_times";
inline constexpr char kOldSafetyProject[] = "old_safety_project";

inline constexpr char kBigData[] = "big_data";
inline constexpr char kEnable[] = "enable";
inline constexpr char kSamplePeriod[] = "sample_period";
inline constexpr char kThermalOffThousandth[] = "thermal_off_thousandth";

inline constexpr char kShellTempBroadcast[] = "shell_temp_broadcast";
inline constexpr char kDisable[] = "disable";
inline constexpr char kStartEndValues[] = "start_end_values";

inline constexpr char kSpecifiedZones[] = "specified_tempzone_info";
inline constexpr char kTsensorZones[] = "tsensor_tempzone_info";
inline constexpr char kThermalZoneType[] = "thermal_zone_type";

inline constexpr char kCpuLimitProcess[] = "cpulimit_process";
inline constexpr char kLimitInfo[] = "limit_info";

inline constexpr char kThermalStatusModel[] = "thermal_status_model";
inline constexpr char kTempThreshold[] = "temp_threshold";
inline constexpr char kTempThresholdDown[] = "temp_threshold_down";
inline constexpr char kThermalStatus[] = "thermal_status";
inline constexpr char kThermalStatusReport[] = "thermal_status_report";

/** Scenes and, between them, the section of the heat center. */
inline constexpr char kFittingModels[] = "shell_temp_fitting_model";
inline constexpr char kTempModel[] = "temp_model";
inline constexpr char kIndex[] = "index";
inline constexpr char kType[] = "type";
inline constexpr char kThermalZone[] = "thermal_zone";
inline constexpr char kCoefficient[] = "coefficient";

inline constexpr char kAmbientFitting[] = "ambient_fitting";
inline constexpr char kParameterName[] = "paramter_name";
inline constexpr char kTempRateThreshold[] = "temp_rate_threshold";
inline constexpr char kPowerDiffThreshold[] = "power_diff_threshold";
inline constexpr char kChargeCurrentThreshold[] = "charge_current_threshold";

inline constexpr char kHeatDetection[] = "heatsource_detection";
inline constexpr char kHeatModel[] = "heatsource_model";
inline constexpr char kDeviceName[] = "device_name";
inline constexpr char kBrightnessModel[] = "brightness_model";
inline constexpr char kFactor[] = "factor";
inline constexpr char kGpuModel[] = "gpu_model";
inline constexpr char kGpuFreq[] = "gpufreq";
inline constexpr char kPowerMa[] = "powermA";
inline constexpr char kCellularModel[] = "cellar_model";
inline constexpr char kRsrpValue[] = "rsrp_value";
inline constexpr char kCurrent4G[] = "current_value_4G";
inline constexpr char kCurrent5G[] = "current_value_5G";

}  // namespace key

/** What "paramter_name" calls the coefficients of the ambient estimate. */
namespace parameter {

inline constexpr char kTemp[] = "temp_coeff";
inline constexpr char kTempSlope[] = "tempSlope_coeff";
inline constexpr char kPower[] = "power_coeff";
inline constexpr char kConst[] = "const_coeff";
// As members beside the list they count, too.
using key::kPowerDiffThreshold;
using key::kTempRateThreshold;
inline constexpr char kBatteryCurrent[] = "battery_current_coeff";

}  // namespace parameter

/** Members of "shell_temp_fitting_model" that the daemon knows by name. */
namespace scene {

inline constexpr char kDefault[] = "default";
inline constexpr char kFlashOn[] = "flashon";
inline constexpr char kWirelessCharge[] = "wirless_charge";
inline constexpr char kScreenFold[] = "screen_fold";
/** What a backup scene's name begins with. */
inline constexpr char kBackupPrefix[] = "backup_";

inline constexpr char kAmbient[] = "ambient";
inline constexpr char kAmbientCharge[] = "ambient_charge";
inline constexpr char kAmbientFold[] = "ambient_fold";
inline constexpr char kAmbientFoldCharge[] = "ambient_fold_charge";
/** By index: 1 while charging, plus 2 while folded. */
inline constexpr std::array<const char*, 4> kAmbientScenes = {kAmbient, kAmbientCharge,
                                                              kAmbientFold, kAmbientFoldCharge};

}  // namespace scene

/** Models whose names mean something to the daemon. */
namespace model {

inline constexpr char kFront[] = "front";
inline constexpr char kFrame[] = "frame";
inline constexpr char kBack[] = "back";
inline constexpr char kBoard[] = "board";
inline constexpr char kInner[] = "inner";
inline constexpr char kPower[] = "power";

}  // namespace model

}  // namespace kelvo
