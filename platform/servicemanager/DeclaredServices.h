#pragma once

#include <string>
#include <vector>

/**
 * What the device's manifest promises: the lines of "/vendor/etc/vintf/declared" below KELVO_ROOT,
 * one instance a line ("android.hardware.health.IHealth/default"), empty lines and what follows a
 * "#" dropped. The file is read at each call: it may change while the phone runs. An absent file
 * promises nothing. Thread-safe.
 */
namespace servicemanager {

bool isDeclared(const std::string& instance);

/** The part after the "/" of each promised instance of this interface, in the file's order. */
std::vector<std::string> declaredInstances(const std::string& interface);

}  // namespace servicemanager
