#include "sim/services/UsageMessage.h"

#include <string>

#include "module_usage.pb.h"

namespace sim {

namespace {

template <typename Record>
void addRecords(const std::vector<UsageRecord>& records,
                google::protobuf::RepeatedPtrField<Record>* list) {
    for (const UsageRecord& record : records) {
        Record* const added = list->Add();
        if (record.start) {
            added->set_start(*record.start);
        }
        if (record.end) {
            added->set_end(*record.end);
        }
        if (record.energy) {
            added->set_energy(*record.energy);
        }
    }
}

}  // namespace

std::vector<uint8_t> usageMessage(const Usage& usage) {
    com::zenta::thermal::ModuleUsage message;
    addRecords(usage.cpu, message.mutable_cpu());
    addRecords(usage.wifi, message.mutable_wifi());
    addRecords(usage.cellular, message.mutable_cellular());
    addRecords(usage.display, message.mutable_display());
    const std::string bytes = message.SerializeAsString();
    return {bytes.begin(), bytes.end()};
}

}  // namespace sim
