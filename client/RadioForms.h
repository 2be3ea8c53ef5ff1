#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace client {

/** The names of a text's figures, each followed by ":" and a whole number, with commas between. */
using RadioForm = std::vector<std::string_view>;

// What a framework tells of the radios. The daemon reads a text up to the first place where it has
// another form, takes the figures after it as 0 and says nothing.

/** SET_WIFI_INFO. */
inline const RadioForm kWifiForm = {"WifiState", "ApState", "linkSpeed",
                                    "frequency", "rssi",    "generation"};
/** SET_NETWORK_INFO, in an LTE network. */
inline const RadioForm kLteForm = {"connectState", "level", "rssi", "rssnr", "rsrq", "rsrp"};
/** The same in an NR network. */
inline const RadioForm kNrForm = {"connectState", "level",   "ssSinr",  "ssRsrp",
                                  "ssRsrq",       "csiSinr", "csiRsrp", "csiRsrq"};
/** SET_NETWORK_SPEED_INFO, bytes since the text before. */
inline const RadioForm kTrafficForm = {"transmit", "receive", "mobileTx", "mobileRx"};

/** Whether the text has the form, with no figure too many. */
bool hasForm(std::string_view text, const RadioForm& form);
/** "transmit:N,receive:N,…". */
std::string formText(const RadioForm& form);

}  // namespace client
